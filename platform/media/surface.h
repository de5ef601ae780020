#pragma once

#include <cstddef>

/// The three memory forms in which decoded pictures are handed over, all 8-bit: luma and chroma in video range (16 to
/// 235 and 240), RGB in the whole range.
///
/// YV12   planes Y, V, U without gaps, 4:2:0, rows top-down; even sizes.
/// YUY2   interleaved Y U Y V, 4:2:2, rows top-down and without gaps; even width.
/// RGB24  interleaved B G R, rows bottom-up, padded to a multiple of 4 bytes.
enum class Surface { YV12, YUY2, RGB24 };

/// Bytes of one picture. Sizes are at least 1.
std::size_t SurfaceBytes(Surface surface, int width, int height);
