#include "video/avisynth/script_filter.h"

#include <algorithm>
#include <iterator>

#include "platform/text.h"
#include "video/color_space.h"
#include "video/file_kind.h"

namespace {

constexpr const wchar_t* kContainerParameters = L"audio = false, pixel_type = \"RGB24\"";

struct Filter {
    const wchar_t* role;
    const wchar_t* function;
    const wchar_t* pluginLine;
    const wchar_t* parameters;
};
constexpr Filter kFilters[] = {
    {L"AviSource", L"AviSource", L"", kContainerParameters},
    {L"OpenDMLSource", L"OpenDMLSource", L"", kContainerParameters},
    {L"AviFileSource", L"AviFileSource", L"", kContainerParameters},
    {L"DirectShowSource", L"DirectShowSource", L"", kContainerParameters},
    {L"DirectShowSource2", L"dss2", L"loadplugin(\"avs_plugins\\avss.dll\")\n", L""},
    {L"FFMpegSource", L"FFVideoSource", L"loadplugin(\"avs_plugins\\FFMpegSource.dll\")\n", L""},
    {L"QTSource", L"QTInput", L"loadplugin(\"avs_plugins\\QTSource.dll\")\n",
     L"color = 2, quality = 100, audio = false, mode = 0"},
    {L"RawSource", L"RawSource", L"loadplugin(\"avs_plugins\\rawsource.dll\")\n", L""},  // made of the input
};
static_assert(std::size(kFilters) == rkScriptFilterCount);

/// Null for a layout that it doesn't read.
const wchar_t* RawFormat(int colorSpace) {
    switch (colorSpace) {
        case YV12:
            return L"YV12";
        case IYUV:
            return L"I420";
        case Y:
            return L"Y8";
        case UYVY:
            return L"UYVY";
        case YUY2:
            return L"YUYV";
        case VYUY:
            return L"VYUY";
        case YVYU:
            return L"YVYU";
        default:
            return nullptr;
    }
}

bool IsSameName(const std::wstring& first, const std::wstring& second) {
    return first.size() == second.size() && EndsWithNoCase(first, second);
}

}  // namespace

std::wstring rkDefaultParameters(const rkScriptInput& input, int filter) {
    if (filter < 0 || filter >= rkScriptFilterCount) return {};
    if (filter != rkRawSourceFilter) return kFilters[filter].parameters;
    const std::wstring format =
        rkRawSourceReads(input.yuvType) ? RawFormat(input.yuvType) : L"unknown format";
    return std::to_wstring(input.width) + L", " + std::to_wstring(input.height) + L", \"" + format + L"\"";
}

bool rkRawSourceReads(int yuvType) {
    return RawFormat(yuvType) != nullptr;
}

int rkScriptFilterByName(const std::wstring& name) {
    const auto found = std::find_if(std::begin(kFilters), std::end(kFilters), [&name](const Filter& filter) {
        return IsSameName(filter.role, name) || IsSameName(filter.function, name);
    });
    return found != std::end(kFilters) ? static_cast<int>(found - std::begin(kFilters)) : -1;
}

int rkScriptFilterForFile(const std::wstring& fileName) {
    if (rkIsRawName(fileName)) return rkRawSourceFilter;
    if (rkIsAviName(fileName)) return rkAviSourceFilter;
    return rkIsMovName(fileName) ? rkQTSourceFilter : rkDirectShowSource2Filter;
}

std::wstring rkScriptText(const rkScriptInput& input, int filter, const std::wstring& parameters) {
    const std::wstring arguments =
        L"\"" + input.sourceName + L"\"" + (parameters.empty() ? L"" : L", " + parameters);
    return std::wstring(kFilters[filter].pluginLine) + kFilters[filter].function + L"(" + arguments + L")";
}
