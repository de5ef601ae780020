#include "metrics/flat_byte_windows.h"

#include <cstdint>

namespace Metric {

std::optional<Kernels::BytePictures> BytePicturesOf(const std::vector<CMetricImage*>& images, int component) {
    const auto bytesOf = [&](CMetricImage* image) -> const SamplePlane* {
        const SamplePlane* const samples = image->GetSamples(component);
        if (samples == nullptr || !samples->IsPacked() || samples->sampleBytes != 1) return nullptr;
        if (samples->scale != 1 || samples->centre != 0) return nullptr;
        return samples->shiftX == 0 && samples->shiftY == 0 ? samples : nullptr;
    };
    if (images[0]->GetHeight() > Kernels::FlatWalk::kMostRows) return {};
    const SamplePlane* const first = bytesOf(images[0]);
    const SamplePlane* const second = bytesOf(images[1]);
    if (first == nullptr || second == nullptr) return {};
    return Kernels::BytePictures{first->rows,      first->rowBytes,       second->rows,
                                 second->rowBytes, images[0]->GetWidth(), images[0]->GetHeight()};
}

FlatByteWindows::FlatByteWindows(int pictureWidth, int pictureHeight)
    : width(pictureWidth),
      height(pictureHeight),
      memory(static_cast<std::uint8_t*>(Kernels::AllocZeroed(Kernels::FlatWalk::MemoryBytes(width) *
                                                             static_cast<std::size_t>(MostThreads())))),
      rows(Kernels::MakeFloatPlane(Kernels::FlatWalk::RowFloats(width), MostThreads())) {}

int FlatByteWindows::MostThreads() const {
    return Kernels::MaxTeamSize(width, height, PixelsPerThread());
}

std::int64_t FlatByteWindows::PixelsPerThread() const {
    constexpr int kMostThreads = 16;
    constexpr std::int64_t kWorthwhile = 1 << 20;
    return std::max(kWorthwhile, (std::int64_t{width} * height + kMostThreads - 1) / kMostThreads);
}

void* FlatByteWindows::MemoryOf(int thread) const {
    return memory.get() + Kernels::FlatWalk::MemoryBytes(width) * static_cast<std::size_t>(thread);
}

float* FlatByteWindows::RowOf(int thread) const {
    return rows.get() + std::ptrdiff_t{thread} * Kernels::FlatWalk::RowFloats(width);
}

}  // namespace Metric
