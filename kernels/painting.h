#pragma once

#include <cstdint>

namespace Kernels {

// Float planes as grey pictures of three bytes a pixel. A value is cut towards 0, and of the integer the low
// 8 bits are the grey: 256 is black again. What isn't a number or doesn't fit into 32 bits is black.
//
// A stride is the bytes from row to row; rows need no alignment. Any thread; big planes are shared out to a
// team.

/// The plane's values as they are.
void PaintGrey(const float* plane, int stride, std::uint8_t* picture, int pictureStride, int width,
               int height);

/// 255 - 255 times each value, in float: black for 1, white for 0.
void PaintSimilarity(const float* plane, int stride, std::uint8_t* picture, int pictureStride, int width,
                     int height);

/// A row of greys to pixels of three equal bytes.
void SpreadGreys(const std::uint8_t* greys, int width, std::uint8_t* pixels);

}  // namespace Kernels
