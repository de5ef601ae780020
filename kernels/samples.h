#pragma once

#include <cstdint>

namespace Kernels {

/// A row of integer samples among others: sample i lies `offset` bytes into the unit of `unitBytes` bytes at
/// `units` + i * unitBytes, and has `sampleBytes` of them, the lower byte first.
///
/// Bytes  units of 1 (one plane), 2, 3 or 4 bytes (interleaved), any offset inside.
/// Words  units of 2 bytes, offset 0.
struct SampleRow {
    const std::uint8_t* units;
    int unitBytes;
    int offset;
    int sampleBytes;
};

/// pixels[i] = samples[i] * scale - centre in float for `count` pixels, or with `inPairs` samples[i / 2]: a
/// sample then serves two pixels side by side. Reads whole units and none beyond the last one that is needed.
/// Any thread.
void LoadSamples(const SampleRow& samples, bool inPairs, float scale, float centre, float* pixels, int count);

/// pixels[place][i] = the byte at `place` in unit i of three bytes, for `count` units: what three calls of
/// `LoadSamples` give, with the units taken apart once. Any thread.
void LoadTriples(const std::uint8_t* units, float* const (&pixels)[3], int count);

}  // namespace Kernels
