#pragma once

#include <cstddef>
#include <cstdint>

namespace Kernels {

/// A plane of bytes; the stride is the bytes from row to row and may be negative.
struct ByteRows {
    const std::uint8_t* first;
    std::ptrdiff_t stride;
};

/// Sum of the squared differences of all pixels, exact. It is what `NormDiffL2` of the same values as floats
/// adds up before its root: as long as that sum is below 2^53, so up to 138 thousand million pixels, every one
/// of its additions is exact too. Reads a quarter of the memory. 0 for empty planes. Any thread; big planes are
/// shared out to a team.
std::uint64_t SumSquaredDifferences(const ByteRows& a, const ByteRows& b, int width, int height);

}  // namespace Kernels
