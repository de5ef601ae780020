#include "metric/metric_types.h"

#include <array>
#include <cstddef>

namespace Metric {

const wchar_t* ComponentName(int component) {
    constexpr std::array<const wchar_t*, kComponentCount> kNames = {L"YYUV", L"UYUV", L"VYUV", L"LLUV",
                                                                    L"RRGB", L"GRGB", L"BRGB"};
    if (component < 0 || component >= kComponentCount) return L"";
    return kNames[static_cast<std::size_t>(component)];
}

}  // namespace Metric
