#include "cli/option_values.h"

#include <charconv>
#include <string_view>

#include "platform/text.h"
#include "video/avisynth/script_filter.h"
#include "video/color_space.h"

namespace {

constexpr const char* kSizeForm = "takes WxH in pixels, such as 1920x1080";
constexpr const char* kMetricForm = "takes ID[:COMPONENT][=SETTINGS], COMPONENT one of Y, U, V, L, R, G, B";
constexpr const char* kFilterForm =
    "takes AviSource, OpenDMLSource, AviFileSource, DirectShowSource, DirectShowSource2 (dss2), FFMpegSource "
    "(FFVideoSource), QTSource (QTInput) or RawSource";
constexpr const char* kLayoutForm =
    "takes IYUV, YV12, YUV, UYVY, YUY2, Y, YV16, Y410, or P010 to P416 and P410_RGB to P416_RGB with 10, 14 "
    "or 16 bits";

bool ParseNumber(std::string_view text, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

UsageError Wrong(const std::string& option, const std::string& given, const char* form) {
    return UsageError(option + " " + form + "; it got \"" + given + "\"");
}

PictureSize ParseSize(const std::string& option, const std::string& text) {
    const auto x = text.find('x');
    PictureSize size;
    if (x == text.npos || !ParseNumber(std::string_view(text).substr(0, x), size.width) ||
        !ParseNumber(std::string_view(text).substr(x + 1), size.height) || size.width < 1 ||
        size.height < 1) {
        throw Wrong(option, text, kSizeForm);
    }
    return size;
}

int ParseLayout(const std::string& option, const std::string& text) {
    const int layout = rkColorSpaceByName(FromUtf8(text).c_str());
    if (layout < 0) throw Wrong(option, text, kLayoutForm);
    return layout;
}

int ParseFilter(const std::string& option, const std::string& text) {
    const int filter = rkScriptFilterByName(FromUtf8(text));
    if (filter < 0) throw Wrong(option, text, kFilterForm);
    return filter;
}

MetricOption ParseMetric(const std::string& text) {
    // In the order of the component numbers.
    static constexpr std::string_view kComponents = "YUVLRGB";
    MetricOption metric;
    std::string head = text;
    if (const auto equals = text.find('='); equals != text.npos) {
        metric.settings = FromUtf8(std::string_view(text).substr(equals + 1));
        head.resize(equals);
    }
    if (const auto colon = head.find(':'); colon != head.npos) {
        const std::string component = head.substr(colon + 1);
        const auto number = component.size() == 1 ? kComponents.find(component) : kComponents.npos;
        if (number == kComponents.npos) throw Wrong("--metric", text, kMetricForm);
        metric.component = static_cast<int>(number);
        head.resize(colon);
    }
    if (head.empty()) throw Wrong("--metric", text, kMetricForm);
    metric.id = FromUtf8(head);
    return metric;
}
