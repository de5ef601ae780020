#pragma once

#include "kernels/rows.h"

#include <cstdint>

namespace Kernels::Reference {

inline std::uint8_t GreyOf(float value) {
    constexpr float kIntegers = 2147483648.0f;
    const int level = value > -kIntegers && value < kIntegers ? static_cast<int>(value) : 0;
    return static_cast<std::uint8_t>(level & 0xFF);
}

template <class GreyOfValue>
void Paint(const float* plane, int stride, std::uint8_t* picture, int pictureStride, int width, int height,
           GreyOfValue greyOf) {
    for (int y = 0; y < height; ++y) {
        std::uint8_t* pixel = Row(picture, pictureStride, y);
        for (int x = 0; x < width; ++x) {
            const std::uint8_t grey = greyOf(Row(plane, stride, y)[x]);
            for (int i = 0; i < 3; ++i) *pixel++ = grey;
        }
    }
}

inline void PaintGrey(const float* plane, int stride, std::uint8_t* picture, int pictureStride, int width,
                      int height) {
    Paint(plane, stride, picture, pictureStride, width, height, GreyOf);
}

inline void PaintSimilarity(const float* plane, int stride, std::uint8_t* picture, int pictureStride,
                            int width, int height) {
    Paint(plane, stride, picture, pictureStride, width, height,
          [](float value) { return GreyOf(255 - value * 255); });
}

}  // namespace Kernels::Reference
