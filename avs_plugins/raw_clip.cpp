#include "avs_plugins/raw_clip.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "platform/file.h"
#include "platform/script_host/script_text.h"
#include "platform/text.h"

namespace {

constexpr std::uint64_t kMaxFrameBytes = (std::uint64_t{1} << 31) - 1;

struct RawFormat {
    const char* name;
    Surface surface;
    bool hasChroma;
    bool swapsChroma;  ///< planar: U stands before V
    /// Interleaved: where Y, U, second Y and V of a pair of pixels stand in the file.
    std::array<int, 4> pair;
};
constexpr RawFormat kFormats[] = {
    {"YV12", Surface::YV12, true, false, {}},
    {"I420", Surface::YV12, true, true, {}},
    {"Y8", Surface::YV12, false, false, {}},
    {"YUYV", Surface::YUY2, true, false, {0, 1, 2, 3}},
    {"YVYU", Surface::YUY2, true, false, {0, 3, 2, 1}},
    {"UYVY", Surface::YUY2, true, false, {1, 0, 3, 2}},
    {"VYUY", Surface::YUY2, true, false, {1, 2, 3, 0}},
};

const RawFormat* FindFormat(const std::string& name) {
    const auto found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                    [&name](const RawFormat& f) { return IsSameName(f.name, name); });
    return found != std::end(kFormats) ? found : nullptr;
}

class RawClip : public Clip {
public:
    /// Why the clip can't be, empty if it can.
    std::string Open(const std::string& path, int width, int height, const RawFormat& rawFormat) {
        format = &rawFormat;
        const bool isPlanar = format->surface == Surface::YV12;
        if (width < 1 || height < 1 || width % 2 != 0 || (isPlanar && height % 2 != 0))
            return std::string(format->name) + " takes an even width" + (isPlanar ? " and height" : "");
        const auto luma = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
        const std::uint64_t bytes = isPlanar ? luma + luma / 2 : luma * 2;
        if (bytes > kMaxFrameBytes) return "a frame takes less than 2 GiB";
        if (!file.Open(FromUtf8(path))) return "the file can't be read";

        lumaBytes = static_cast<std::size_t>(luma);
        fileBytes = format->hasChroma ? static_cast<std::size_t>(bytes) : lumaBytes;
        const std::uint64_t frames = file.Size() / fileBytes;
        if (frames == 0) return "the file is shorter than one frame";
        properties.width = width;
        properties.height = height;
        properties.surface = format->surface;
        properties.frameCount =
            static_cast<int>(std::min<std::uint64_t>(frames, std::numeric_limits<int>::max()));
        return {};
    }

    const Properties& GetProperties() const override { return properties; }

    bool ReadFrame(int frame, std::uint8_t* buffer) override {
        if (frame < 0 || frame >= properties.frameCount) return false;
        const std::uint64_t offset = static_cast<std::uint64_t>(frame) * fileBytes;
        if (file.ReadAt(offset, buffer, fileBytes) != fileBytes) return false;
        if (format->surface == Surface::YUY2) {
            SortPairs(buffer);
        } else if (!format->hasChroma) {
            std::fill_n(buffer + lumaBytes, lumaBytes / 2, std::uint8_t{128});
        } else if (format->swapsChroma) {
            std::uint8_t* chroma = buffer + lumaBytes;
            std::swap_ranges(chroma, chroma + lumaBytes / 4, chroma + lumaBytes / 4);
        }
        return true;
    }

private:
    void SortPairs(std::uint8_t* buffer) const {
        for (std::uint8_t* pair = buffer; pair != buffer + fileBytes; pair += 4) {
            const std::array<std::uint8_t, 4> stored = {pair[0], pair[1], pair[2], pair[3]};
            for (std::size_t i = 0; i < 4; ++i) pair[i] = stored[static_cast<std::size_t>(format->pair[i])];
        }
    }

    ReadOnlyFile file;
    const RawFormat* format = nullptr;
    std::size_t lumaBytes = 0;
    std::size_t fileBytes = 0;  // of a frame
    Properties properties;
};

}  // namespace

ScriptResult OpenRawClip(const std::string& path, int width, int height, const std::string& format) {
    const RawFormat* rawFormat = FindFormat(format);
    if (rawFormat == nullptr) {
        return {nullptr, "format takes YV12, I420, Y8, UYVY, YUYV, VYUY or YVYU; it got \"" + format + "\""};
    }
    auto clip = std::make_unique<RawClip>();
    const std::string error = clip->Open(path, width, height, *rawFormat);
    if (!error.empty()) return {nullptr, error};
    return {std::move(clip), ""};
}
