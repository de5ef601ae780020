#pragma once

#include <cstddef>
#include <cstdint>

namespace Kernels {

/// A plane of integer samples of 1 or 2 bytes, in the machine's order and aligned to their size; the stride
/// is the bytes from row to row and may be negative.
struct SampleRows {
    const std::uint8_t* first;
    std::ptrdiff_t stride;
};

/// Sum of the squared differences of all pixels, exact modulo 2^64, which more than 2^32 pixels may pass. It
/// is what `NormDiffL2` of the same values as floats adds up before its root, as long as it is at most 2^53:
/// every one of its additions is exact then too. Reads a quarter or half of the memory. 0 for empty planes.
/// Any thread; big planes are shared out to a team.
std::uint64_t SumSquaredDifferences(const SampleRows& a, const SampleRows& b, int sampleBytes, int width,
                                    int height);

}  // namespace Kernels
