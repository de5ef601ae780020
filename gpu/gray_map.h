#pragma once

#include <algorithm>

#include "metric/painting.h"

namespace Metric {

/// A map's value as a grey: cut towards zero and limited to 0 to 255; black for not a number.
inline Bgr LimitedGrey(float value) {
    return value > 0 ? Grey(std::min(value, 255.0f)) : Bgr{};
}

/// Paints `target`, an `RGB24` image, from a map on the host with rows of `rowStep` floats.
inline void PaintGrayMap(const float* hostMap, int rowStep, rkVideoImage& target) {
    PaintPixels(target, hostMap, rowStep, LimitedGrey);
}

}  // namespace Metric
