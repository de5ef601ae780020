#pragma once

#include <cmath>

namespace Kernels {

/// The weights of a Gaussian window of `size` places around place size / 2, divided by their sum, all in
/// float: exp(-(i - size / 2)^2 / (2 sigma^2)), the sum being made in ascending order.
inline void GaussTaps(int size, float sigma, float* taps) {
    float sum = 0;
    for (int i = 0; i < size; ++i) {
        const auto distance = static_cast<float>(i - size / 2);
        taps[i] = std::exp(-(distance * distance) / (2 * sigma * sigma));
        sum += taps[i];
    }
    for (int i = 0; i < size; ++i) taps[i] /= sum;
}

}  // namespace Kernels
