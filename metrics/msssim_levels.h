#pragma once

#include <array>
#include <vector>

#include "kernels/plane.h"

class rkVideoImage;

namespace Metric {

/// The weights of the levels of a multi-scale SSIM from the finest on, found by experiment with viewers.
/// Source: Wang, Simoncelli, Bovik, "Multiscale structural similarity for image quality assessment", Asilomar
/// Conference on Signals, Systems and Computers, 2003.
inline constexpr std::array<double, 5> kLevelWeights = {0.0448, 0.2856, 0.3001, 0.2363, 0.1333};

/// What one level gives at each of its pixels: contrast and structure, at the last level the whole SSIM.
struct LevelMap {
    int width = 0;
    int height = 0;
    Kernels::FloatPlane values;
};

/// Paints every visible pixel of `target`, an `RGB24` image, by the product of the levels' values at its
/// place, each raised to its level's weight: black where all are 1, the brighter the worse. From level to
/// level a pixel covers twice as many a side; a place beyond a level's edge takes the nearest. A value below
/// 0 has no power and gives black.
///
/// `levels` starts with the finest, which is no smaller than the picture; none is empty, and there are no
/// more than weights. Allocates a row for the picture and one for each row of a level. Costs a power for each
/// pixel of each level.
void PaintLevels(rkVideoImage& target, const std::vector<LevelMap>& levels);

}  // namespace Metric
