#pragma once

namespace Kernels {

/// Two pictures of `width` by `height` and their map: float planes, a stride being the bytes from row to row.
/// The map may not overlap the pictures; where only its mean is wanted it may be null.
struct SSIMPlanes {
    const float* first;
    int firstStride;
    const float* second;
    int secondStride;
    float* map;
    int mapStride;
    int width;
    int height;
};

}  // namespace Kernels
