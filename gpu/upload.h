#pragma once

#include "gpu/level.h"
#include "gpu/storage.h"

namespace Gpu {

/// Sends a plane of the level's size, rows contiguous, to an array of its aligned size, whose further
/// columns and rows repeat the last ones. `staging` has the aligned size; it and the plane stay as they are
/// until the default stream has come to the end of the copy.
void UploadPlane(const float* plane, const GpuLevel& level, TextureArray& array, const PinnedBlock& staging,
                 int line = __builtin_LINE());

}  // namespace Gpu
