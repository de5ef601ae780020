#pragma once

#include <cstddef>

namespace Kernels {

/// The first pixel of row `y` of a plane whose rows lie `stride` bytes apart.
template <class Pixel>
const Pixel* Row(const Pixel* plane, int stride, int y) {
    const auto* bytes = reinterpret_cast<const std::byte*>(plane);
    return reinterpret_cast<const Pixel*>(bytes + std::ptrdiff_t{stride} * y);
}

template <class Pixel>
Pixel* Row(Pixel* plane, int stride, int y) {
    auto* bytes = reinterpret_cast<std::byte*>(plane);
    return reinterpret_cast<Pixel*>(bytes + std::ptrdiff_t{stride} * y);
}

}  // namespace Kernels
