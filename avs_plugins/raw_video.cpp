#include "avs_plugins/raw_video.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "platform/text.h"

namespace {

constexpr std::uint64_t kMaxFrameBytes = std::numeric_limits<std::int32_t>::max();

constexpr RawFormat kFormats[] = {
    {"YV12", true, true, false, {}},
    {"I420", true, true, true, {}},
    {"Y8", true, false, false, {}},
    {"YUYV", false, true, false, {0, 1, 2, 3}},
    {"YVYU", false, true, false, {0, 3, 2, 1}},
    {"UYVY", false, true, false, {1, 0, 3, 2}},
    {"VYUY", false, true, false, {1, 2, 3, 0}},
};

}  // namespace

const RawFormat* FindRawFormat(const std::string& name) {
    const std::wstring wanted = FromUtf8(name);
    for (const RawFormat& format : kFormats) {
        const std::wstring known = FromUtf8(format.name);
        if (known.size() == wanted.size() && EndsWithNoCase(known, wanted)) return &format;
    }
    return nullptr;
}

std::string RawVideo::Open(const std::string& path, int width, int height, const RawFormat& rawFormat) {
    format = &rawFormat;
    if (width < 1 || height < 1 || width % 2 != 0 || (format->isPlanar && height % 2 != 0))
        return std::string(format->name) + " takes an even width" + (format->isPlanar ? " and height" : "");
    const auto luma = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    const std::uint64_t bytes = format->isPlanar ? luma + luma / 2 : luma * 2;
    if (bytes > kMaxFrameBytes) return "a frame takes less than 2 GiB";
    if (!file.Open(FromUtf8(path))) return "the file can't be read";

    lumaBytes = static_cast<std::size_t>(luma);
    fileBytes = format->hasChroma ? static_cast<std::size_t>(bytes) : lumaBytes;
    const std::uint64_t frames = file.Size() / fileBytes;
    frameCount = static_cast<int>(std::min<std::uint64_t>(frames, std::numeric_limits<int>::max()));
    return frameCount == 0 ? "the file is shorter than one frame" : "";
}

bool RawVideo::ReadFrame(int frame, std::uint8_t* buffer) const {
    const std::uint64_t offset = static_cast<std::uint64_t>(frame) * fileBytes;
    if (file.ReadAt(offset, buffer, fileBytes) != fileBytes) return false;
    std::uint8_t* chroma = buffer + lumaBytes;
    if (!format->isPlanar) {
        SortPairs(buffer);
    } else if (!format->hasChroma) {
        std::fill_n(chroma, lumaBytes / 2, std::uint8_t{128});
    } else if (format->startsWithU) {
        std::swap_ranges(chroma, chroma + lumaBytes / 4, chroma + lumaBytes / 4);
    }
    return true;
}

void RawVideo::SortPairs(std::uint8_t* buffer) const {
    for (std::uint8_t* pair = buffer; pair != buffer + fileBytes; pair += 4) {
        const std::array<std::uint8_t, 4> stored = {pair[0], pair[1], pair[2], pair[3]};
        for (std::size_t i = 0; i < 4; ++i) pair[i] = stored[format->pair[i]];
    }
}
