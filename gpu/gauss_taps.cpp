#include "gpu/kernels/gauss_taps.h"

#include <cmath>
#include <numbers>

namespace Gpu {

GaussTaps MakeGaussTaps() {
    constexpr long double kSigma = 1.5L;
    const long double peak = 1 / (std::sqrt(2 * std::numbers::pi_v<long double>) * kSigma);
    GaussTaps taps;
    float* weight = taps.weights;
    for (int k = kWindowRadius; k >= -kWindowRadius; --k)
        *weight++ = static_cast<float>(std::exp(-k * k / (2 * kSigma * kSigma)) * peak);
    return taps;
}

}  // namespace Gpu
