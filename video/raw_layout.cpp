#include "video/raw_layout.h"

#include "video/color_space.h"

#include <limits>

namespace {

constexpr std::int64_t kMaxInt = std::numeric_limits<int>::max();

// Bytes from row to row of a packed frame's first plane.
std::int64_t PackedRowStep(int colorSpace, std::int64_t width) {
    if (colorSpace == RGB24) return (3 * width + 3) / 4 * 4;
    if (colorSpace == RGB32) return (4 * width + 7) / 8 * 8;
    return rkPlaneShapeOf(colorSpace).sampleBytes * width;
}

std::int64_t PackedLineBytes(int colorSpace, std::int64_t width) {
    const rkPlaneShape shape = rkPlaneShapeOf(colorSpace);
    if (shape.planes == 0 || width < 1) return 0;
    const std::int64_t first = PackedRowStep(colorSpace, width);
    return shape.planes == 1 ? first : first + (2 * first >> (shape.shiftX + shape.shiftY));
}

int TimesHeight(std::int64_t lineBytes, int height) {
    if (height < 1 || lineBytes > kMaxInt) return 0;
    const std::int64_t bytes = lineBytes * height;
    return bytes <= kMaxInt ? static_cast<int>(bytes) : 0;
}

std::size_t RoundedUpShift(int side, int shift) {
    return (static_cast<std::size_t>(side) + (std::size_t{1} << shift) - 1) >> shift;
}

}  // namespace

int RawLineBytes(int colorSpace, int width) {
    if (!rkIsYuv(colorSpace) && !rkIsDeepRgb(colorSpace)) return 0;
    const std::int64_t bytes = PackedLineBytes(colorSpace, width);
    return bytes <= kMaxInt ? static_cast<int>(bytes) : 0;
}

int RawFrameBytes(int colorSpace, int width, int height) {
    return TimesHeight(RawLineBytes(colorSpace, width), height);
}

int PackedFrameBytes(int colorSpace, int width, int height) {
    return TimesHeight(PackedLineBytes(colorSpace, width), height);
}

PackedPlane PackedPlaneOf(int colorSpace, int width, int height, int plane) {
    const rkPlaneShape shape = rkPlaneShapeOf(colorSpace);
    const auto sampleBytes = static_cast<std::size_t>(shape.sampleBytes);
    const auto columns = static_cast<std::size_t>(width);
    if (plane >= shape.planes) return {};
    if (plane == 0) {
        return {0, static_cast<std::size_t>(PackedRowStep(colorSpace, width)), columns * sampleBytes, height};
    }
    const std::size_t lumaSamples = columns * static_cast<std::size_t>(height);
    const std::size_t chromaSamples = lumaSamples >> (shape.shiftX + shape.shiftY);
    return {(lumaSamples + (plane == 2 ? chromaSamples : 0)) * sampleBytes,
            (columns >> shape.shiftX) * sampleBytes, RoundedUpShift(width, shape.shiftX) * sampleBytes,
            static_cast<int>(RoundedUpShift(height, shape.shiftY))};
}
