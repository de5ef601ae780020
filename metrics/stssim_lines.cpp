#include "metrics/stssim_lines.h"

#include <cstddef>
#include <cstdlib>
#include <utility>

#include "kernels/arithmetic.h"
#include "kernels/border.h"

namespace Metric {

namespace {

using Kernels::LineSet;

constexpr int kBlock = MotionParameters::blockSize;
constexpr int kSmall = MotionParameters::smallestBlock;
static_assert(kSmall == Kernels::kLineCell);

int Aligned(int size) {
    return (size + kBlock - 1) / kBlock * kBlock;
}

Kernels::BytePlane MakePlane(int width, int height) {
    int stride = 0;
    return Kernels::BytePlane(Kernels::AllocPlaneByte(width, height, stride));
}

LineSet LinesOf(const MotionVector& vector) {
    const int across = std::abs(vector.x);
    const int down = std::abs(vector.y);
    if (across == 0 && down == 0) return LineSet::Star;
    if (across == down) return LineSet::Cross;
    return across < down ? LineSet::Vertical : LineSet::Horizontal;
}

}  // namespace

MotionLines::MotionLines(int pictureWidth, int pictureHeight)
    : width(pictureWidth),
      height(pictureHeight),
      alignedWidth(Aligned(width)),
      alignedHeight(Aligned(height)),
      bytes(MakePlane(width, height)),
      lines(static_cast<std::size_t>(alignedWidth / kSmall * (alignedHeight / kSmall))) {
    motion.Setup(alignedHeight, alignedWidth, MotionParameters{});
    const int planeHeight = alignedHeight + 2 * motion.Margin();
    current = MakePlane(motion.Stride(), planeHeight);
    previous = MakePlane(motion.Stride(), planeHeight);
}

void MotionLines::Push(const float* frame) {
    std::swap(current, previous);
    Kernels::ConvertToBytes(frame, width * static_cast<int>(sizeof(float)), bytes.get(), width, width,
                            height);
    const int margin = motion.Margin();
    Kernels::CopyReplicateBorder(bytes.get(), width, width, height, current.get(), motion.Stride(),
                                 motion.Stride(), alignedHeight + 2 * margin, margin, margin);
}

const LineSet* MotionLines::Find() {
    motion.Estimate(PictureIn(current), PictureIn(previous));
    LineSet* line = lines.data();
    for (int y = 0; y < alignedHeight; y += kSmall) {
        for (int x = 0; x < alignedWidth; x += kSmall) {
            const int quadrant = y % kBlock / 8 * 2 + x % kBlock / 8;
            const int small = y % 8 / kSmall * 2 + x % 8 / kSmall;
            *line++ = LinesOf(motion.Field().At(x / kBlock, y / kBlock).VectorOf(quadrant, small));
        }
    }
    return lines.data();
}

MotionPicture MotionLines::PictureIn(const Kernels::BytePlane& plane) const {
    const int stride = motion.Stride();
    return {plane.get() + std::ptrdiff_t{motion.Margin()} * (stride + 1), stride};
}

}  // namespace Metric
