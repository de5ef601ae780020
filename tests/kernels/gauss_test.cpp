#include "kernels/gauss.h"

#include "kernels/gauss_ssim.h"
#include "kernels/gauss_taps.h"
#include "kernels/plane.h"
#include "kernels/reference/gauss.h"
#include "kernels/reference/gauss_ssim.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <omp.h>

#include <limits>

namespace Kernels {
namespace {

using Plane = TestPlane<float>;

// Scratch memory of just the asked size, full of NaN, so that the sanitizer sees a step beyond it and the
// result a use of what lay there.
BytePlane Scratch(std::size_t bytes) {
    auto* memory = static_cast<float*>(AllocZeroed(bytes));
    std::fill_n(memory, bytes / sizeof(float), std::numeric_limits<float>::quiet_NaN());
    return BytePlane(reinterpret_cast<std::uint8_t*>(memory));
}

Plane Filtered(const Plane& source, int kernelSize, float sigma, BorderKind border, float borderValue) {
    Plane target(source.width, source.height);
    const BytePlane scratch = Scratch(GetGaussScratchSize(source.width, source.height, kernelSize));
    FilterGaussBorder(source.data(), source.stride, target.data(), target.stride, source.width, source.height,
                      kernelSize, sigma, border, borderValue, scratch.get());
    return target;
}

// The window of the SSIM literature to eight decimals, worked out in double elsewhere.
constexpr std::array<double, 11> kPublishedTaps = {0.00102838, 0.00759876, 0.03600077, 0.10936069,
                                                   0.21300554, 0.26601172, 0.21300554, 0.10936069,
                                                   0.03600077, 0.00759876, 0.00102838};

TEST(Gauss, OnePixelBecomesTheWindow) {
    Plane source(11, 11);
    source.ForEach([](float& pixel) { pixel = 0; });
    Row(source.data(), source.stride, 5)[5] = 1000;
    Plane target = Filtered(source, 11, 1.5f, BorderConstant, 0);
    for (int y = 0; y < 11; ++y) {
        for (int x = 0; x < 11; ++x) {
            const double expected = 1000 * kPublishedTaps[static_cast<std::size_t>(x)] *
                                    kPublishedTaps[static_cast<std::size_t>(y)];
            // Half a unit of the last decimal of both taps, and eight roundings of a float.
            EXPECT_NEAR(expected, Row(target.data(), target.stride, y)[x],
                        1000 * 0.54 * 0.5e-8 + expected * 8 * 6e-8)
                << x << ", " << y;
        }
    }
}

TEST(Gauss, FlatPlane) {
    Plane source(40, 30);
    source.ForEach([](float& pixel) { pixel = 100; });
    Plane replicated = Filtered(source, 11, 1.5f, BorderReplicate, 0);
    replicated.ForEach([](float& pixel) { EXPECT_NEAR(100, pixel, 100 * 23 * 6e-8); });  // 23 roundings

    // At the corner of a plane in darkness the window has the middle tap and those of one side, in each
    // direction.
    const Plane dark = Filtered(source, 11, 1.5f, BorderConstant, 0);
    const double side = (1 + kPublishedTaps[5]) / 2;
    EXPECT_NEAR(100 * side * side, dark.data()[0], 1e-4);
    EXPECT_NEAR(100 * side, dark.data()[20], 1e-4);

    // Darkness of the plane's own shade changes nothing, in the corner either.
    EXPECT_NEAR(100, Filtered(source, 11, 1.5f, BorderConstant, 100).data()[0], 100 * 23 * 6e-8);
}

TEST(Gauss, SameBitsAsReference) {
    constexpr struct {
        int kernelSize;
        float sigma;
        BorderKind border;
        float borderValue;
    } kCases[] = {{11, 1.5f, BorderReplicate, 0},   {11, 1.5f, BorderConstant, 0},
                  {11, 1.5f, BorderConstant, 1.1f}, {1, 1, BorderReplicate, 0},
                  {5, 0.8f, BorderConstant, -3},    {21, 4, BorderReplicate, 0}};
    for (const auto& [width, height] : kPlaneSizes) {
        const Plane source = PixelsOfAllSizes(width, height, 1);
        for (const auto& c : kCases) {
            SCOPED_TRACE(testing::Message() << width << " by " << height << ", kernel " << c.kernelSize);
            Plane expected(width, height);
            Reference::FilterGaussBorder(source.data(), source.stride, expected.data(), expected.stride,
                                         width, height, c.kernelSize, c.sigma, c.border, c.borderValue,
                                         nullptr);
            ForEachTargetAndTeam([&] {
                EXPECT_TRUE(expected == Filtered(source, c.kernelSize, c.sigma, c.border, c.borderValue));
            });
        }
    }
}

// Both maps and their means, by the fused operations or by the reference's composition.
struct Maps {
    Plane ssim;
    Plane contrastStructure;
    std::array<double, 2> means;

    bool operator==(const Maps&) const = default;
};

template <class SSIM, class ContrastStructure>
Maps MapsOf(const Plane& first, const Plane& second, BorderKind border, SSIM ssim,
            ContrastStructure contrastStructure, bool wantsMaps = true) {
    const int width = first.width;
    const int height = first.height;
    Maps maps{{width, height}, {width, height}, {}};
    const BytePlane scratch = Scratch(GetGaussSSIMScratchSize(width, height));
    const auto planes = [&](Plane& map) {
        return SSIMPlanes{
            first.data(), first.stride, second.data(), second.stride, wantsMaps ? map.data() : nullptr,
            map.stride,   width,        height};
    };
    maps.means[0] = ssim(planes(maps.ssim), border, 6.5025f, 58.5225f, scratch.get());
    maps.means[1] = contrastStructure(planes(maps.contrastStructure), border, 58.5225, scratch.get());
    return maps;
}

// Around the lengths of the blocks that the pictures are filtered in, and of a window at their rim.
constexpr PlaneSize kGaussSizes[] = {{15, 17}, {16, 16}, {21, 27}, {26, 21},
                                     {27, 26}, {32, 33}, {5, 100}, {100, 5}};

TEST(GaussSSIM, SameBitsAsTheComposition) {
    std::vector<PlaneSize> sizes(std::begin(kPlaneSizes), std::end(kPlaneSizes));
    sizes.insert(sizes.end(), std::begin(kGaussSizes), std::end(kGaussSizes));
    for (const auto& [width, height] : sizes) {
        const Plane first = Picture(width, height, 1);
        const Plane second = Picture(width, height, 2);
        for (const BorderKind border : {BorderReplicate, BorderConstant}) {
            SCOPED_TRACE(testing::Message() << width << " by " << height << ", border " << border);
            const Maps expected =
                MapsOf(first, second, border, Reference::GaussSSIM, Reference::GaussContrastStructure);
            ForEachTargetAndTeam([&] {
                EXPECT_TRUE(expected == MapsOf(first, second, border, GaussSSIM, GaussContrastStructure));
                const Maps withoutMaps =
                    MapsOf(first, second, border, GaussSSIM, GaussContrastStructure, false);
                EXPECT_EQ(expected.means, withoutMaps.means);
            });
        }
    }
}

// Metrics call the kernels from within a team, each thread with its own planes.
TEST(GaussSSIM, InsideATeam) {
    const Plane first = Picture(257, 130, 1);
    const Plane second = Picture(257, 130, 2);
    const Maps expected = MapsOf(first, second, BorderReplicate, GaussSSIM, GaussContrastStructure);
    const int levels = omp_get_max_active_levels();
    for (const int allowedLevels : {1, 2}) {
        omp_set_max_active_levels(allowedLevels);
        int equal = 0;
#pragma omp parallel for num_threads(4) reduction(+ : equal)
        for (int i = 0; i < 8; ++i) {
            equal += expected == MapsOf(first, second, BorderReplicate, GaussSSIM, GaussContrastStructure);
        }
        EXPECT_EQ(8, equal) << allowedLevels;
    }
    omp_set_max_active_levels(levels);
}

}  // namespace
}  // namespace Kernels
