#pragma once

#include <algorithm>
#include <cstdint>

#include "video/video_image.h"

namespace Metric {

/// A pixel of a visualization, as `RGB24` stores it.
struct Bgr {
    std::uint8_t b = 0;
    std::uint8_t g = 0;
    std::uint8_t r = 0;
};

/// Paints every visible pixel of `target`, an `RGB24` image, with `color(value)` of the map's pixel; rows
/// from the top, those of the map `mapWidth` floats apart. The map is no smaller than the picture.
template <class Color>
void PaintPixels(rkVideoImage& target, const float* map, int mapWidth, Color color) {
    std::uint8_t* row = target.Data();
    for (int y = 0; y < target.VisibleHeight(); ++y, row += target.Stride(), map += mapWidth) {
        std::uint8_t* pixel = row;
        for (int x = 0; x < target.VisibleWidth(); ++x, pixel += 3) {
            const Bgr painted = color(map[x]);
            pixel[0] = painted.b;
            pixel[1] = painted.g;
            pixel[2] = painted.r;
        }
    }
}

/// The grey of a map value: cut towards zero, of that the low 8 bits. A metric scales its values to 0 to 255
/// beforehand and limits those that aren't to wrap around. Beyond 31 bits everything is black.
inline Bgr Grey(float value) {
    constexpr float kIntegers = 2147483648.0f;
    const int level = value > -kIntegers && value < kIntegers ? static_cast<int>(value) : 0;
    const auto byte = static_cast<std::uint8_t>(level & 0xFF);
    return {byte, byte, byte};
}

/// The colour of a difference of two videos at a pixel: red where it is above 0, green below; brighter by 3
/// for each unit, cut towards zero, at most 255.
inline Bgr RedGreen(float difference) {
    const int level = static_cast<int>(std::clamp(difference * 3, -255.0f, 255.0f));
    return {0, static_cast<std::uint8_t>(std::max(-level, 0)), static_cast<std::uint8_t>(std::max(level, 0))};
}

}  // namespace Metric
