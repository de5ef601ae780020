#include "app/rules/progress_text.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace {

/// Three digits, as far as there are some: "412", "41.2", "4.12".
std::wstring RateText(double rate) {
    const int digits = rate < 9.995 ? 2 : rate < 99.95 ? 1 : 0;
    wchar_t text[64];
    std::swprintf(text, std::size(text), L"%.*f frames/s", digits, rate);
    return text;
}

std::wstring LeftText(double seconds) {
    if (seconds < 1) return L"less than a second left";
    const long whole = std::lround(std::min(seconds, 359999.0));  // 99 h 59 min
    const std::wstring minutes = std::to_wstring(whole / 60 % 60) + L" min";
    if (whole < 60) return std::to_wstring(whole) + L" s left";
    if (whole < 3600) return minutes + L" " + std::to_wstring(whole % 60) + L" s left";
    return std::to_wstring(whole / 3600) + L" h " + minutes + L" left";
}

}  // namespace

ProgressTexts ProgressTextsOf(int done, int length, double seconds) {
    ProgressTexts texts;
    texts.frame = L"Frame " + std::to_wstring(done) + L" of " + std::to_wstring(length);
    if (done <= 0 || seconds <= 0) return texts;
    const double rate = done / seconds;
    texts.rate = RateText(rate);
    texts.left = LeftText((length - done) / rate);
    return texts;
}
