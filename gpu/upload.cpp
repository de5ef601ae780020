#include "gpu/upload.h"

#include "kernels/border.h"

namespace Gpu {

namespace {

int StrideOf(int width) {
    return width * static_cast<int>(sizeof(float));
}

}  // namespace

void UploadPlane(const float* plane, const GpuLevel& level, TextureArray& array, const PinnedBlock& staging,
                 int line) {
    const float* aligned = plane;
    if (level.alignedWidth != level.width || level.alignedHeight != level.height) {
        Kernels::CopyReplicateBorder(plane, StrideOf(level.width), level.width, level.height, staging.Get(),
                                     StrideOf(level.alignedWidth), level.alignedWidth, level.alignedHeight, 0,
                                     0);
        aligned = staging.Get();
    }
    array.CopyFrom(aligned, level.alignedWidth, level.alignedWidth, level.alignedHeight, kDefaultStream,
                   line);
}

}  // namespace Gpu
