#pragma once

#include "kernels/space_time_ssim.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Structural similarity over time by the 363 samples of every line.
namespace Kernels::Reference {

/// A picture of bytes, continued to all sides by its nearest pixel.
struct Picture {
    int width;
    int height;
    std::vector<std::uint8_t> pixels;

    double At(int x, int y) const {
        return pixels[static_cast<std::size_t>(std::clamp(y, 0, height - 1) * width +
                                               std::clamp(x, 0, width - 1))];
    }
};

using Sequence = std::vector<Picture>;  // 33 of them, the oldest first

inline std::vector<double> SpaceTimeWeights() {
    std::vector<double> weights;
    double sum = 0;
    for (int t = -16; t <= 16; ++t)
        for (int d = -5; d <= 5; ++d) sum += weights.emplace_back(std::exp(-(d * d + t * t) / 4.5));
    for (double& weight : weights) weight /= sum;
    return weights;
}

inline double LineValue(const Sequence& first, const Sequence& second, const std::vector<double>& weights,
                        int x, int y, int stepX, int stepY, double c1, double c2) {
    double mx = 0, my = 0, ex = 0, ey = 0, exy = 0;
    for (std::size_t i = 0; i < 33; ++i) {
        for (int d = -5; d <= 5; ++d) {
            const double w = weights[i * 11 + static_cast<std::size_t>(d + 5)];
            const double a = first[i].At(x + d * stepX, y + d * stepY);
            const double b = second[i].At(x + d * stepX, y + d * stepY);
            mx += w * a;
            my += w * b;
            ex += w * (a * a);
            ey += w * (b * b);
            exy += w * (a * b);
        }
    }
    const double value = ((2 * mx * my + c1) * ((exy - mx * my) * 2 + c2)) /
                         ((mx * mx + my * my + c1) * (((ex - mx * mx) - my * my) + ey + c2));
    return std::clamp(value, 0.0, 1.0);
}

inline double PixelValue(const Sequence& first, const Sequence& second, const std::vector<double>& weights,
                         int x, int y, LineSet lines, double c1, double c2) {
    const auto line = [&](int stepX, int stepY) {
        return LineValue(first, second, weights, x, y, stepX, stepY, c1, c2);
    };
    switch (lines) {
        case LineSet::Horizontal:
            return line(1, 0);
        case LineSet::Vertical:
            return line(0, 1);
        case LineSet::Cross:
            return (line(1, 0) + line(0, 1)) * 0.5;
        default:
            return std::clamp((line(1, 0) + line(0, 1) + line(1, 1) + line(1, -1)) * 0.25, 0.0, 1.0);
    }
}

}  // namespace Kernels::Reference
