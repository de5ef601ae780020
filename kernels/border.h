#pragma once

#include <cstdint>

namespace Kernels {

/// What a filter sees outside the region.
enum BorderKind {
    BorderConstant,   // a given value
    BorderReplicate,  // the nearest pixel of the region
};

/// Copies the source to row `top`, column `left` of the target; every other cell of the target repeats the
/// nearest source pixel, also where the target is wider or higher than source and margins. Margins are 0 or
/// more; what doesn't fit into the target is left out. An empty source leaves the target as it is.
///
/// A stride is the bytes from row to row. The planes may not overlap. Any thread; big planes are shared out
/// to a team.
void CopyReplicateBorder(const std::uint8_t* source, int sourceStride, int sourceWidth, int sourceHeight,
                         std::uint8_t* target, int targetStride, int targetWidth, int targetHeight, int top,
                         int left);
void CopyReplicateBorder(const float* source, int sourceStride, int sourceWidth, int sourceHeight,
                         float* target, int targetStride, int targetWidth, int targetHeight, int top,
                         int left);

}  // namespace Kernels
