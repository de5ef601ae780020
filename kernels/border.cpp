#include "kernels/border.h"

#include "kernels/bands.h"
#include "kernels/rows.h"

#include <algorithm>

namespace Kernels {

namespace {

template <class Pixel>
void CopyReplicate(const Pixel* source, int sourceStride, int sourceWidth, int sourceHeight, Pixel* target,
                   int targetStride, int targetWidth, int targetHeight, int top, int left) {
    if (sourceWidth <= 0 || sourceHeight <= 0) return;
    ForEachBand(
        targetWidth, targetHeight,
        [=](const Band& band) {
            const int before = std::min(left, targetWidth);
            const int copied = std::clamp(targetWidth - left, 0, sourceWidth);
            for (int y = band.first; y < band.end; ++y) {
                const Pixel* from = Row(source, sourceStride, std::clamp(y - top, 0, sourceHeight - 1));
                Pixel* to = Row(target, targetStride, y);
                std::fill_n(to, before, from[0]);
                std::copy_n(from, copied, to + before);
                std::fill(to + before + copied, to + targetWidth, from[sourceWidth - 1]);
            }
        },
        kLightPixelsPerThread);
}

}  // namespace

void CopyReplicateBorder(const std::uint8_t* source, int sourceStride, int sourceWidth, int sourceHeight,
                         std::uint8_t* target, int targetStride, int targetWidth, int targetHeight, int top,
                         int left) {
    CopyReplicate(source, sourceStride, sourceWidth, sourceHeight, target, targetStride, targetWidth,
                  targetHeight, top, left);
}

void CopyReplicateBorder(const float* source, int sourceStride, int sourceWidth, int sourceHeight,
                         float* target, int targetStride, int targetWidth, int targetHeight, int top,
                         int left) {
    CopyReplicate(source, sourceStride, sourceWidth, sourceHeight, target, targetStride, targetWidth,
                  targetHeight, top, left);
}

}  // namespace Kernels
