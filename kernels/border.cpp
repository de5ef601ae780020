#include "kernels/border.h"

#include "kernels/bands.h"
#include "kernels/rows.h"

#include <algorithm>
#include <cstring>

namespace Kernels {

void CopyReplicateBorder(const std::uint8_t* source, int sourceStride, int sourceWidth, int sourceHeight,
                         std::uint8_t* target, int targetStride, int targetWidth, int targetHeight, int top,
                         int left) {
    if (sourceWidth <= 0 || sourceHeight <= 0) return;
    ForEachBand(targetWidth, targetHeight, [=](const Band& band) {
        const auto before = static_cast<std::size_t>(std::min(left, targetWidth));
        const auto copied = static_cast<std::size_t>(std::clamp(targetWidth - left, 0, sourceWidth));
        const auto behind = static_cast<std::size_t>(targetWidth) - before - copied;
        for (int y = band.first; y < band.end; ++y) {
            const std::uint8_t* from = Row(source, sourceStride, std::clamp(y - top, 0, sourceHeight - 1));
            std::uint8_t* to = Row(target, targetStride, y);
            std::memset(to, from[0], before);
            std::memcpy(to + before, from, copied);
            std::memset(to + before + copied, from[sourceWidth - 1], behind);
        }
    });
}

}  // namespace Kernels
