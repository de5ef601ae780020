#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

// The measures on a GPU by their definition, in plain loops and without a line of what they are made of.
// Floats are added in the order of the definition, so values are compared bit for bit.

namespace Metric::Literal {

struct Plane {
    Plane(int columns, int rows)
        : Plane(columns, rows, std::vector<float>(static_cast<std::size_t>(columns * rows))) {}
    Plane(int columns, int rows, std::vector<float> samples)
        : width(columns), height(rows), cells(std::move(samples)) {}

    /// The nearest sample beyond the sides.
    float At(int x, int y) const {
        return cells[Index(std::clamp(x, 0, width - 1), std::clamp(y, 0, height - 1))];
    }
    float& operator()(int x, int y) { return cells[Index(x, y)]; }
    std::size_t Index(int x, int y) const { return static_cast<std::size_t>(y * width + x); }

    int width, height;
    std::vector<float> cells;
};

// exp(-k * k / 4.5) / (sqrt(2 pi) * 1.5) in nine digits, by another program.
constexpr float kTaps[11] = {0.00102818594f, 0.00759732397f, 0.0359939784f, 0.109340049f,
                             0.212965339f,   0.265961528f,   0.212965339f,  0.109340049f,
                             0.0359939784f,  0.00759732397f, 0.00102818594f};

/// sample(k, tap) of the eleven places of a window, each weighed and added with one rounding.
template <class Sample>
float WindowSum(const Sample& sample) {
    float sum = 0;
    for (int k = -5; k <= 5; ++k) sum = std::fma(kTaps[k + 5], sample(k), sum);
    return sum;
}

/// The five sums along one axis: of a, a a, b, b b and a b.
using Sums = std::vector<Plane>;

inline std::vector<float> Terms(float a, float b) {
    return {a, a * a, b, b * b, a * b};
}

/// The first pass; read(plane, x, y, k) is the sample at a place of the window around (x, y).
template <class Read>
Sums FirstSums(const Plane& a, const Plane& b, int width, int height, const Read& read) {
    Sums sums(5, Plane(width, height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (std::size_t i = 0; i < 5; ++i)
                sums[i](x, y) =
                    WindowSum([&](int k) { return Terms(read(a, x, y, k), read(b, x, y, k))[i]; });
    return sums;
}

/// The second pass along (dx, dy), and the formula.
inline Plane SsimMap(const Sums& sums, int dx, int dy) {
    const float c1 = 6.5025f, c2 = 58.5225f;
    Plane map(sums[0].width, sums[0].height);
    for (int y = 0; y < map.height; ++y) {
        for (int x = 0; x < map.width; ++x) {
            float m[5];
            for (std::size_t i = 0; i < 5; ++i)
                m[i] = WindowSum([&](int k) { return sums[i].At(x + k * dx, y + k * dy); });
            const float covariance = m[4] - m[0] * m[2];
            const float luminance = std::fma(m[2], m[0] + m[0], c1);
            const float squares = c1 + std::fma(m[0], m[0], m[2] * m[2]);
            const float variances = c2 + ((m[3] + (m[1] - m[0] * m[0])) - m[2] * m[2]);
            map(x, y) = ((c2 + (covariance + covariance)) * luminance) / (squares * variances);
        }
    }
    return map;
}

/// Columns first for SSIM, rows first for 3SSIM.
inline Plane SsimMap(const Plane& a, const Plane& b, bool rowsFirst) {
    const int dx = rowsFirst ? 1 : 0, dy = 1 - dx;
    const auto read = [=](const Plane& plane, int x, int y, int k) {
        return plane.At(x + k * dx, y + k * dy);
    };
    return SsimMap(FirstSums(a, b, a.width, a.height, read), dy, dx);
}

/// The threads' sums added in a tree: the upper half on the lower one until one is left.
inline float Tree(std::vector<float> sums) {
    while (sums.size() > 1) {
        const std::size_t half = sums.size() / 2;
        std::transform(sums.begin(), sums.end() - static_cast<std::ptrdiff_t>(half),
                       sums.begin() + static_cast<std::ptrdiff_t>(half), sums.begin(), std::plus<>());
        sums.resize(half);
    }
    return sums[0];
}

/// In blocks of 256 threads, at most 64, each thread two elements a round; a short list in one block of
/// half as many threads, rounded up to a power of two.
inline float Sum(const std::vector<float>& list) {
    std::size_t threads = 1;
    while (threads < 256 && 2 * threads < list.size()) threads *= 2;
    const std::size_t blocks = std::min<std::size_t>((list.size() + 2 * threads - 1) / (2 * threads), 64);
    float total = 0;
    for (std::size_t block = 0; block < blocks; ++block) {
        std::vector<float> sums(threads);
        for (std::size_t thread = 0; thread < threads; ++thread)
            for (std::size_t pair = 2 * block * threads + thread; pair < list.size();
                 pair += 2 * blocks * threads)
                for (const std::size_t i : {pair, pair + threads})
                    if (i < list.size()) sums[thread] += list[i];
        total += Tree(sums);
    }
    return total;
}

/// Equal, or both not a number.
inline bool IsSame(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

inline float Mean(const Plane& plane) {
    return static_cast<float>(double{Sum(plane.cells)} / static_cast<double>(plane.cells.size()));
}

/// Scenes whose aligned sizes differ from their padded ones in every way.
inline std::vector<Scene> GpuScenes() {
    std::vector<Scene> scenes = SmallScenes();
    scenes.push_back({"aligned in its width only", 48, 40, Coded});
    scenes.push_back({"a width of 45 blocks of 16", 720, 24, Coded});
    scenes.push_back({"16 by 16", 16, 16, FullNoise});
    return scenes;
}

}  // namespace Metric::Literal
