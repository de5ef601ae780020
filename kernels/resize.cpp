#include "kernels/resize.h"

#include "kernels/bands.h"
#include "kernels/halve.h"
#include "kernels/reference/resize.h"
#include "kernels/rows.h"

#include <algorithm>

namespace Kernels {

void ResizeLinear(const float* source, int sourceStride, int sourceWidth, int sourceHeight,
                  const Rectangle& rectangle, float* target, int targetStride, int targetWidth,
                  int targetHeight, double xFactor, double yFactor) {
    const Rectangle part = CutToPlane(rectangle, sourceWidth, sourceHeight);
    const bool halving =
        xFactor == 0.5 && yFactor == 0.5 && part.width / 2 >= targetWidth && part.height / 2 >= targetHeight;
    if (!halving) {
        Reference::ResizeLinear(source, sourceStride, sourceWidth, sourceHeight, rectangle, target,
                                targetStride, targetWidth, targetHeight, xFactor, yFactor);
        return;
    }
    ForEachBand(targetWidth, targetHeight, [=](const Band& band) {
        Halve(Row(source, sourceStride, part.y + 2 * band.first) + part.x, sourceStride,
              Row(target, targetStride, band.first), targetStride, targetWidth, band.end - band.first);
    });
}

Rectangle CutToPlane(const Rectangle& rectangle, int width, int height) {
    const int left = std::max(rectangle.x, 0);
    const int top = std::max(rectangle.y, 0);
    return {left, top, std::min(rectangle.x + rectangle.width, width) - left,
            std::min(rectangle.y + rectangle.height, height) - top};
}

}  // namespace Kernels
