#include "platform/clock.h"

#include <ctime>
#include <cwchar>

std::wstring TimeOfDay(bool twelveHours) {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    wchar_t text[12];
    const std::size_t length =
        std::wcsftime(text, std::size(text), twelveHours ? L"%I:%M:%S" : L"%H:%M:%S", &local);
    return {text, length};
}
