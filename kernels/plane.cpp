#include "kernels/plane.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace Kernels {

namespace {

constexpr std::size_t kAlignment = 64;

std::size_t SampleCount(int width, int height) {
    return static_cast<std::size_t>(std::max(width, 0)) * static_cast<std::size_t>(std::max(height, 0));
}

}  // namespace

// calloc is the one allocation that gets big blocks as untouched zero pages. Its own address is kept in the
// word in front of the aligned block.
void* AllocZeroed(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() - 2 * kAlignment) throw std::bad_alloc();
    void* block = std::calloc(bytes + kAlignment + sizeof(void*), 1);
    if (block == nullptr) throw std::bad_alloc();

    const auto first = reinterpret_cast<std::uintptr_t>(block) + sizeof(void*);
    const auto aligned = (first + kAlignment - 1) / kAlignment * kAlignment;
    auto* plane = reinterpret_cast<void**>(aligned);
    plane[-1] = block;
    return plane;
}

void FreePlane(void* plane) {
    if (plane != nullptr) std::free(static_cast<void**>(plane)[-1]);
}

float* AllocPlaneFloat(int width, int height, int& stride) {
    const std::size_t samples = SampleCount(width, height);
    if (samples > std::numeric_limits<std::size_t>::max() / sizeof(float)) throw std::bad_alloc();
    stride = std::max(width, 0) * static_cast<int>(sizeof(float));
    return static_cast<float*>(AllocZeroed(samples * sizeof(float)));
}

std::uint8_t* AllocPlaneByte(int width, int height, int& stride) {
    stride = std::max(width, 0);
    return static_cast<std::uint8_t*>(AllocZeroed(SampleCount(width, height)));
}

FloatPlane MakeFloatPlane(int width, int height) {
    int stride = 0;
    return FloatPlane(AllocPlaneFloat(width, height, stride));
}

}  // namespace Kernels
