#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "tests/metrics/flat_windows.h"

// The Gaussian windows of the precise SSIM metrics by their definition, in double and plain loops.

namespace Metric {

using Doubles = std::vector<double>;

/// The scenes that plain loops get through in a moment; the biggest is still worth a team of 8.
inline std::vector<Scene> SmallScenes() {
    std::vector<Scene> scenes = Scenes();
    std::erase_if(scenes, [](const Scene& scene) { return scene.width * scene.height > 150000; });
    return scenes;
}

enum class Outside { Nearest, Black };

/// The 11 weights of a window's row.
inline Doubles GaussWeights() {
    Doubles weights;
    double sum = 0;
    for (int i = -5; i <= 5; ++i) sum += weights.emplace_back(std::exp(-i * i / 4.5));
    for (double& weight : weights) weight /= sum;
    return weights;
}

/// The weighted mean of the window around each pixel.
inline Doubles GaussMeans(const Doubles& plane, int width, int height, Outside outside) {
    const Doubles weights = GaussWeights();
    const auto along = [&](const Doubles& from, int dx, int dy) {
        Doubles means;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                double mean = 0;
                for (int i = -5; i <= 5; ++i) {
                    const int column = std::clamp(x + i * dx, 0, width - 1);
                    const int row = std::clamp(y + i * dy, 0, height - 1);
                    const bool inside = column == x + i * dx && row == y + i * dy;
                    if (inside || outside == Outside::Nearest)
                        mean += weights[static_cast<std::size_t>(i + 5)] *
                                from[static_cast<std::size_t>(row * width + column)];
                }
                means.push_back(mean);
            }
        }
        return means;
    };
    return along(along(plane, 1, 0), 0, 1);
}

/// The factors of SSIM at each pixel, for peaks of 255 and 255.75.
struct GaussTerms {
    Doubles luminance;
    Doubles contrastStructure;
};

inline GaussTerms TermsOf(const Doubles& first, const Doubles& second, int width, int height,
                          Outside outside) {
    const double c1 = 0.01 * 0.01 * 255 * 255.75;
    const double c2 = 0.03 * 0.03 * 255 * 255.75;
    const auto meansOfProduct = [&](const Doubles& a, const Doubles& b) {
        Doubles product(a.size());
        std::transform(a.begin(), a.end(), b.begin(), product.begin(), std::multiplies<>());
        return GaussMeans(product, width, height, outside);
    };
    const Doubles mx = GaussMeans(first, width, height, outside);
    const Doubles my = GaussMeans(second, width, height, outside);
    const Doubles mxx = meansOfProduct(first, first);
    const Doubles myy = meansOfProduct(second, second);
    const Doubles mxy = meansOfProduct(first, second);
    GaussTerms terms;
    for (std::size_t i = 0; i < mx.size(); ++i) {
        terms.luminance.push_back((2 * mx[i] * my[i] + c1) / (mx[i] * mx[i] + my[i] * my[i] + c1));
        terms.contrastStructure.push_back((2 * (mxy[i] - mx[i] * my[i]) + c2) /
                                          (mxx[i] - mx[i] * mx[i] + myy[i] - my[i] * my[i] + c2));
    }
    return terms;
}

inline double MeanOf(const Doubles& values) {
    double sum = 0;
    for (const double value : values) sum += value;
    return sum / static_cast<double>(values.size());
}

inline Doubles Product(Doubles first, const Doubles& second) {
    std::transform(first.begin(), first.end(), second.begin(), first.begin(), std::multiplies<>());
    return first;
}

/// A metric that shows its map.
template <class Measured>
struct Probe : Measured {
    using Measured::GetMap;
    using Measured::Measured;
};

/// An image and a distorted one, of 8 and 10 bits.
struct PicturePair {
    explicit PicturePair(const Scene& scene) : first(scene.Image()), second(TenBitImage(Distorted(scene))) {}

    std::vector<CMetricImage*> Images() const { return {first.get(), second.get()}; }

    std::unique_ptr<CMetricImage> first;
    std::unique_ptr<CMetricImage> second;
};

}  // namespace Metric
