#include "video/file_kind.h"

#include "platform/text.h"

bool rkIsAviName(const std::wstring& name) {
    return EndsWithNoCase(name, L"avi");
}

bool rkIsMovName(const std::wstring& name) {
    return EndsWithNoCase(name, L"mov");
}

bool rkIsAvsName(const std::wstring& name) {
    return EndsWithNoCase(name, L"avs");
}

bool rkIsBmpName(const std::wstring& name) {
    return EndsWithNoCase(name, L"bmp");
}

bool rkIsY4mName(const std::wstring& name) {
    return EndsWithNoCase(name, L"y4m");
}

bool rkIsRawName(const std::wstring& name) {
    for (const wchar_t* ending : {L"yuv", L"yuv10", L"rgb", L"6"}) {
        if (EndsWithNoCase(name, ending)) return true;
    }
    return false;
}
