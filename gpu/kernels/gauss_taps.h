#pragma once

#include "gpu/kernels/portable.h"

namespace Gpu {

constexpr int kWindowRadius = 5;

/// The weights of a Gaussian window's row with sigma 1.5, from the normal distribution's density: they add
/// up to 0.99981, and nothing brings them to 1.
struct GaussTaps {
    float weights[2 * kWindowRadius + 1];

    /// The weight at distance `k`, -5 to 5.
    GPU_FUNCTION float operator[](int k) const { return weights[kWindowRadius - k]; }
};

/// Computed in the widest type and rounded once.
GaussTaps MakeGaussTaps();

}  // namespace Gpu
