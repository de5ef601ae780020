#pragma once

#include "kernels/rows.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace Kernels {

/// A plane whose rows are followed by cells that belong to nobody. Two planes are equal if all their bits
/// are, those cells included, so a comparison finds a pixel written beside the region.
template <class Pixel>
class TestPlane {
public:
    TestPlane(int columns, int rows)
        : width(columns),
          height(rows),
          stride((columns + kForeign) * static_cast<int>(sizeof(Pixel))),
          cells(static_cast<std::size_t>((columns + kForeign) * rows), Pixel{77}) {}

    TestPlane(int columns, const std::vector<Pixel>& pixels)
        : TestPlane(columns, static_cast<int>(pixels.size()) / columns) {
        for (int y = 0; y < height; ++y) {
            std::copy_n(pixels.begin() + y * width, width, Row(data(), stride, y));
        }
    }

    Pixel* data() { return cells.data(); }
    const Pixel* data() const { return cells.data(); }

    template <class Use>
    void ForEach(const Use& use) {
        for (int y = 0; y < height; ++y) {
            Pixel* row = Row(data(), stride, y);
            for (int x = 0; x < width; ++x) use(row[x]);
        }
    }

    std::vector<Pixel> Pixels() {
        std::vector<Pixel> pixels;
        ForEach([&](Pixel& pixel) { pixels.push_back(pixel); });
        return pixels;
    }

    bool operator==(const TestPlane& other) const {
        if (width != other.width || height != other.height) return false;
        return cells.empty() || std::memcmp(data(), other.data(), cells.size() * sizeof(Pixel)) == 0;
    }

    const int width;
    const int height;
    const int stride;

private:
    static constexpr int kForeign = 3;

    std::vector<Pixel> cells;
};

/// Pixels of both signs and of sizes from 2^-30 to 2^30, of which a sum shows the order of its additions.
inline TestPlane<float> PixelsOfAllSizes(int width, int height, unsigned seed) {
    TestPlane<float> plane(width, height);
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> mantissas(-1, 1);
    plane.ForEach(
        [&](float& pixel) { pixel = std::ldexp(mantissas(random), static_cast<int>(random() % 61) - 30); });
    return plane;
}

/// Samples of a picture, from 0 to 255.
inline TestPlane<float> Picture(int width, int height, unsigned seed) {
    TestPlane<float> plane(width, height);
    std::mt19937 random(seed);
    plane.ForEach([&](float& pixel) { pixel = static_cast<float>(random() % 256); });
    return plane;
}

struct PlaneSize {
    int width;
    int height;
};

/// Around the lengths of vectors and strips, lower than a filter's window, and two that are worth a team of 2
/// and of 8.
inline constexpr PlaneSize kPlaneSizes[] = {
    {1, 1},  {1, 7},  {3, 2},   {7, 5},  {8, 1},  {9, 3},   {11, 11},   {15, 2},    {16, 4},
    {17, 3}, {31, 2}, {33, 12}, {64, 3}, {65, 5}, {129, 4}, {257, 130}, {301, 450},
};

}  // namespace Kernels
