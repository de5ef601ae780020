#pragma once

#include <cstdint>

/// The picture that viewers and saved bad frames show: three full planes of bytes Y, U, V to pixels B, G, R.
///
/// planes       plane k starts `k * height * planeRowStep` bytes in; so `height` is the allocated height when
///              the planes are those of a padded `YUV` image
/// destination  `height` rows of `width` pixels, `destinationRowStep` bytes apart, in the order of the planes
/// matrix       0 REC.601 (luma from 16 to 235), any other number PC.601 (full range)
/// Numbers      double, cut to an int without rounding and limited to 0 to 255
void rkYuvPlanesToRgb24(const std::uint8_t* planes, std::uint8_t* destination, int width, int height,
                        int planeRowStep, int destinationRowStep, int matrix);
