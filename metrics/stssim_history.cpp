#include "metrics/stssim_history.h"

#include <cstddef>

#include "kernels/arithmetic.h"
#include "kernels/space_time_ssim.h"

namespace Metric {

namespace {
constexpr int kFramesToMiddle = Kernels::kWindowFrames / 2 + 1;
}

SequenceHistory::SequenceHistory(int pictureWidth, int pictureHeight)
    : layout{pictureWidth, pictureHeight, Kernels::kWindowFrames},
      tiles(static_cast<std::uint8_t*>(Kernels::AllocZeroed(layout.Bytes()))),
      newestSlot(layout.slots - 1) {
    for (int i = 0; i < kFramesToMiddle; ++i)
        frames.push_back(Kernels::MakeFloatPlane(pictureWidth, pictureHeight));
}

void SequenceHistory::Push(const float* frame) {
    newestSlot = OldestSlot();
    const int stride = layout.width * static_cast<int>(sizeof(float));
    Kernels::StoreFrame(frame, stride, layout, newestSlot, tiles.get());

    newestFrame = (newestFrame + 1) % frames.size();
    Kernels::CopyPlane(frame, stride, frames[newestFrame].get(), stride, layout.width, layout.height);
}

}  // namespace Metric
