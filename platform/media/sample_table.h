#pragma once

#include <cstdint>
#include <vector>

/// What a sample of `depth` bits becomes as a byte. All results are the nearest integers (a half goes away from 0), so
/// they are the same on every machine.
///
/// With m = 2^depth - 1 the largest sample v, and c = 2^(depth - 1) the middle:
///
/// VideoRange         v / 2^(depth - 8), at most 255: depth alone, black and white keep their place
/// FullToVideoLuma    16 + 219 * v / m
/// FullToVideoChroma  128 + 224 * (v - c) / m
/// FullRange          255 * v / m: depth alone, the whole range stays the whole range
/// VideoToFullLuma    255 * (v - 16 * 2^(depth - 8)) / (219 * 2^(depth - 8)), within 0 to 255
enum class SampleMap { VideoRange, FullToVideoLuma, FullToVideoChroma, FullRange, VideoToFullLuma };

/// The bytes of all samples of `depth` bits, 1 to 16 (8 to 16 where 2^(depth - 8) occurs). Empty if every sample stays
/// as it is.
std::vector<std::uint8_t> SampleTable(SampleMap map, int depth);
