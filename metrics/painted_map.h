#pragma once

#include "kernels/painting.h"
#include "metric/painting.h"

namespace Metric {

/// Paints every visible pixel of `target`, an `RGB24` image, with `paint`, one of `Kernels::PaintGrey` and
/// its kin; rows of the map are `mapWidth` floats apart. The map is no smaller than the picture.
template <class Paint>
void PaintMap(rkVideoImage& target, const float* map, int mapWidth, const Paint& paint) {
    paint(map, mapWidth * static_cast<int>(sizeof(float)), target.Data(), target.Stride(),
          target.VisibleWidth(), target.VisibleHeight());
}

}  // namespace Metric
