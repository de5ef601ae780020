#pragma once

#include "kernels/rows.h"
#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace Kernels {

inline constexpr float kInfinity = std::numeric_limits<float>::infinity();
inline constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

using Random = std::mt19937;

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
        auto next = pixels.begin();
        ForEach([&](Pixel& pixel) { pixel = *next++; });
    }

    Pixel* data() { return cells.data(); }
    const Pixel* data() const { return cells.data(); }
    Pixel& At(int x, int y) { return Row(data(), stride, y)[x]; }
    const Pixel& At(int x, int y) const { return Row(data(), stride, y)[x]; }

    template <class Use>
    void ForEach(const Use& use) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) use(At(x, y));
    }

    template <class Other = Pixel>
    std::vector<Other> Pixels() const {
        std::vector<Other> pixels;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) pixels.push_back(static_cast<Other>(At(x, y)));
        return pixels;
    }

    bool operator==(const TestPlane& other) const {
        if (width != other.width || height != other.height) return false;
        return cells.empty() || std::memcmp(data(), other.data(), cells.size() * sizeof(Pixel)) == 0;
    }

    const int width, height, stride;

private:
    static constexpr int kForeign = 3;

    std::vector<Pixel> cells;
};

using Plane = TestPlane<float>;
using Bytes = TestPlane<std::uint8_t>;

/// Pixels of both signs and of sizes from 2^-30 to 2^30, of which a sum shows the order of its additions.
inline Plane PixelsOfAllSizes(int width, int height, unsigned seed) {
    Plane plane(width, height);
    Random random(seed);
    std::uniform_real_distribution<float> mantissas(-1, 1);
    plane.ForEach(
        [&](float& pixel) { pixel = std::ldexp(mantissas(random), static_cast<int>(random() % 61) - 30); });
    return plane;
}

/// Samples of a picture, from 0 to 255.
inline Plane Picture(int width, int height, unsigned seed) {
    Plane plane(width, height);
    Random random(seed);
    plane.ForEach([&](float& pixel) { pixel = static_cast<float>(random() % 256); });
    return plane;
}

inline Bytes BytesOf(const Plane& plane) {
    return {plane.width, plane.Pixels<std::uint8_t>()};
}

/// Noise of which half is black or white, what drives filters and sums to the ends of their range.
inline Bytes HarshBytes(int width, int height, unsigned seed) {
    Bytes plane(width, height);
    Random random(seed);
    plane.ForEach([&](std::uint8_t& pixel) {
        const auto bits = static_cast<unsigned>(random());
        pixel = static_cast<std::uint8_t>(bits % 2 == 0 ? 255 * (bits >> 1 & 1) : bits >> 8);
    });
    return plane;
}

struct PlaneSize {
    int width, height;
};

/// Around the lengths of vectors and strips, lower than a filter's window, and two that are worth a team of 2
/// and of 8.
inline const std::vector<PlaneSize> kPlaneSizes = {
    {1, 1},  {1, 7},  {3, 2},   {7, 5},  {8, 1},  {9, 3},   {11, 11},   {15, 2},    {16, 4},
    {17, 3}, {31, 2}, {33, 12}, {64, 3}, {65, 5}, {129, 4}, {257, 130}, {301, 450},
};

/// make(operation, width, height) gives by the kernel, on every target and team, the bits that it gives by
/// the reference.
template <class Kernel, class Reference, class Make>
void ExpectReference(const char* what, Kernel kernel, Reference reference, const Make& make,
                     const std::vector<PlaneSize>& sizes = kPlaneSizes) {
    for (const auto& [width, height] : sizes) {
        SCOPED_TRACE(testing::Message() << what << ", " << width << " by " << height);
        const auto expected = make(reference, width, height);
        ForEachTargetAndTeam([&, w = width, h = height] { EXPECT_TRUE(expected == make(kernel, w, h)); });
    }
}

}  // namespace Kernels
