#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace Metric {

/// The constants of VQM; blocks in row order. Never change once built.
struct VqmTables {
    /// The tables of the process, built by the first call. Any thread.
    static const VqmTables& Get();

    /// The factor that makes the coefficients of a block with this dc coefficient, of 16 bits, local
    /// contrasts: powf(dc / 1024, 0.65) / dc, 0 for dc 0, NaN below. The powers of all integers are kept,
    /// which gives the bits that computing them anew would give.
    float ContrastGain(int dc) const { return contrastGains[static_cast<std::size_t>(dc + 32768)]; }

    std::array<double, 64> dctMatrix;      ///< orthonormal DCT-II of 8 points: row u, column x
    std::array<double, 64> dctTransposed;  ///< the same, row x, column u
    /// What a contrast is divided by. Kin to the default intra matrix of MPEG-2, not equal to it.
    std::array<float, 64> quantTable;
    std::array<float, 64> quantInverses;  ///< 1 / quantTable in float
    std::vector<float> contrastGains;     ///< by dc + 32768

private:
    VqmTables();
};

}  // namespace Metric
