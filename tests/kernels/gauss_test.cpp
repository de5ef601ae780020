#include "kernels/gauss.h"

#include "kernels/plane.h"
#include "kernels/reference/gauss_ssim.h"
#include "tests/kernels/test_plane.h"

#include <array>

namespace Kernels {
namespace {

// Scratch memory of just the asked size, full of NaN, so that the sanitizer sees a step beyond it and the
// result a use of what lay there.
BytePlane Scratch(std::size_t bytes) {
    auto* memory = static_cast<float*>(AllocZeroed(bytes));
    std::fill_n(memory, bytes / sizeof(float), kNan);
    return BytePlane(reinterpret_cast<std::uint8_t*>(memory));
}

struct Window {
    int size;
    float sigma;
    BorderKind border;
    float borderValue;
};

template <class Filter>
Plane Filtered(Filter filter, const Plane& source, const Window& window) {
    Plane target(source.width, source.height);
    const BytePlane scratch = Scratch(GetGaussScratchSize(source.width, source.height, window.size));
    filter(source.data(), source.stride, target.data(), target.stride, source.width, source.height,
           window.size, window.sigma, window.border, window.borderValue, scratch.get());
    return target;
}

// The window of the SSIM literature to eight decimals, worked out in double elsewhere.
constexpr std::array<double, 11> kPublishedTaps = {0.00102838, 0.00759876, 0.03600077, 0.10936069,
                                                   0.21300554, 0.26601172, 0.21300554, 0.10936069,
                                                   0.03600077, 0.00759876, 0.00102838};

TEST(Gauss, OnePixelBecomesTheWindow) {
    Plane source(11, std::vector<float>(121, 0));
    source.At(5, 5) = 1000;
    const Plane target = Filtered(FilterGaussBorder, source, {11, 1.5f, BorderConstant, 0});
    for (int y = 0; y < 11; ++y) {
        for (int x = 0; x < 11; ++x) {
            const double expected = 1000 * kPublishedTaps[static_cast<std::size_t>(x)] *
                                    kPublishedTaps[static_cast<std::size_t>(y)];
            // Half a unit of the last decimal of both taps, and eight roundings of a float.
            EXPECT_NEAR(expected, target.At(x, y), 1000 * 0.54 * 0.5e-8 + expected * 8 * 6e-8)
                << x << ", " << y;
        }
    }
}

// At the corner of a plane in darkness the window has the middle tap and those of one side, in each
// direction. Darkness of the plane's own shade changes nothing. There are 23 roundings.
TEST(Gauss, FlatPlane) {
    const Plane source(40, std::vector<float>(40 * 30, 100));
    const auto filtered = [&](BorderKind border, float borderValue) {
        return Filtered(FilterGaussBorder, source, {11, 1.5f, border, borderValue});
    };
    for (const float pixel : filtered(BorderReplicate, 0).Pixels()) EXPECT_NEAR(100, pixel, 100 * 23 * 6e-8);
    const double side = (1 + kPublishedTaps[5]) / 2;
    EXPECT_NEAR(100 * side * side, filtered(BorderConstant, 0).At(0, 0), 1e-4);
    EXPECT_NEAR(100 * side, filtered(BorderConstant, 0).At(20, 0), 1e-4);
    EXPECT_NEAR(100, filtered(BorderConstant, 100).At(0, 0), 100 * 23 * 6e-8);
}

TEST(Gauss, SameBitsAsReference) {
    constexpr Window kWindows[] = {{11, 1.5f, BorderReplicate, 0},   {11, 1.5f, BorderConstant, 0},
                                   {11, 1.5f, BorderConstant, 1.1f}, {1, 1, BorderReplicate, 0},
                                   {5, 0.8f, BorderConstant, -3},    {21, 4, BorderReplicate, 0}};
    for (const Window& window : kWindows) {
        SCOPED_TRACE(window.size);
        ExpectReference("", FilterGaussBorder, Reference::FilterGaussBorder, [&](auto filter, int w, int h) {
            return Filtered(filter, PixelsOfAllSizes(w, h, 1), window);
        });
    }
}

// In a row of 19 such pixels: whole vectors and single pixels.
TEST(SSIMMap, ByHand) {
    constexpr struct {
        const char* what;
        float moments[5], c1, c2;
        double expected;
    } kCases[] = {
        {"the formula in whole numbers", {10, 20, 110, 420, 205}, 1, 2, 401.0 * 12 / (501.0 * 32)},
        {"anticorrelated", {10, 20, 110, 420, 195}, 1, 2, 401.0 * -8 / (501.0 * 32)},
        {"black pictures", {0, 0, 0, 0, 0}, 6.5f, 58.5f, 1},
        {"everything vanishes", {0, 0, 0, 0, 0}, 0, 0, 1},
        {"flat pictures without constants: luminance alone", {3, 1, 9, 1, 3}, 0, 0, 6.0 / 10},
        {"a denominator below 0 counts as vanished", {3, 1, 8, 1, 3}, 0, 0, 6.0 / 10},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        std::vector<std::vector<float>> planes;
        for (const float moment : c.moments) planes.emplace_back(19, moment);
        ForEachTarget([&] {
            std::vector<float> map(19);
            SSIMMap(
                {planes[0].data(), planes[1].data(), planes[2].data(), planes[3].data(), planes[4].data(), 0},
                map.data(), 0, 19, 1, c.c1, c.c2);
            EXPECT_EQ(std::vector<float>(19, static_cast<float>(c.expected)), map);
        });
    }
}

// (2 (205 - 200) + 2) / (10 + 20 + 2)
TEST(ContrastStructureMap, ReferenceByHand) {
    const float values[5] = {10, 20, 110, 420, 205};
    float map = 0;
    Reference::ContrastStructureMap({&values[0], &values[1], &values[2], &values[3], &values[4], 0}, &map, 0,
                                    1, 1, 2);
    EXPECT_EQ(0.375f, map);
}

/// Both maps, and their means where they are told.
struct Maps {
    Plane ssim, contrastStructure;
    std::array<double, 2> means = {};

    bool operator==(const Maps&) const = default;
};

// Every second row has windows that are flat up to the rounding of products, so that differences show the
// last bits of what is taken away and denominators lie on both sides of 0; the others have any moments. c1 is
// too small to be added to a product without a rounding.
TEST(SSIMMap, SameBitsAsReference) {
    const auto mapBy = [](const auto& operation, int w, int h) {
        std::vector<Plane> planes;
        for (const unsigned seed : {1u, 2u, 3u, 4u, 5u}) planes.push_back(PixelsOfAllSizes(w, h, seed));
        for (int y = 0; y < h; y += 2) {
            for (int x = 0; x < w; ++x) {
                const float meanX = planes[0].At(x, y), meanY = planes[1].At(x, y);
                planes[2].At(x, y) = meanX * meanX;
                planes[3].At(x, y) = meanY * meanY;
                planes[4].At(x, y) = meanX * meanY;
            }
        }
        const SSIMMoments moments{planes[0].data(), planes[1].data(), planes[2].data(),
                                  planes[3].data(), planes[4].data(), planes[0].stride};
        Plane map(w, h);
        operation(moments, map.data(), map.stride, w, h, 1e-7f, 1e-3f);
        return map;
    };
    ExpectReference("", SSIMMap, Reference::SSIMMap, mapBy);
}

template <class Operations>
Maps GaussMaps(const Operations& operations, int width, int height, BorderKind border,
               bool wantsMaps = true) {
    const Plane first = Picture(width, height, 1), second = Picture(width, height, 2);
    Maps maps{{width, height}, {width, height}};
    const BytePlane scratch = Scratch(GetGaussSSIMScratchSize(width, height));
    const auto planes = [&](Plane& map) {
        return SSIMPlanes{
            first.data(), first.stride, second.data(), second.stride, wantsMaps ? map.data() : nullptr,
            map.stride,   width,        height};
    };
    maps.means[0] = operations.first(planes(maps.ssim), border, 6.5025f, 58.5225f, scratch.get());
    maps.means[1] = operations.second(planes(maps.contrastStructure), border, 58.5225, scratch.get());
    return maps;
}

const auto kFused = std::make_pair(GaussSSIM, GaussContrastStructure);
const auto kComposed = std::make_pair(Reference::GaussSSIM, Reference::GaussContrastStructure);

// Also around the lengths of the blocks that the pictures are filtered in, and of a window at their rim.
TEST(GaussSSIM, SameBitsAsTheComposition) {
    std::vector<PlaneSize> sizes = {{15, 17}, {16, 16}, {21, 27}, {26, 21},
                                    {27, 26}, {32, 33}, {5, 100}, {100, 5}};
    sizes.insert(sizes.end(), kPlaneSizes.begin(), kPlaneSizes.end());
    for (const BorderKind border : {BorderReplicate, BorderConstant}) {
        SCOPED_TRACE(border);
        const auto maps = [&](const auto& operations, int w, int h) {
            return GaussMaps(operations, w, h, border);
        };
        ExpectReference("maps", kFused, kComposed, maps, sizes);
        const auto means = [&](const auto& operations, int w, int h) {
            return GaussMaps(operations, w, h, border, operations == kComposed).means;
        };
        ExpectReference("means alone", kFused, kComposed, means, sizes);
    }
}

// Metrics call the kernels from within a team, each thread with its own planes.
TEST(GaussSSIM, InsideATeam) {
    const Maps expected = GaussMaps(kFused, 257, 130, BorderReplicate);
    const int levels = omp_get_max_active_levels();
    for (const int allowedLevels : {1, 2}) {
        omp_set_max_active_levels(allowedLevels);
        int equal = 0;
#pragma omp parallel for num_threads(4) reduction(+ : equal)
        for (int i = 0; i < 8; ++i) equal += expected == GaussMaps(kFused, 257, 130, BorderReplicate);
        EXPECT_EQ(8, equal) << allowedLevels;
    }
    omp_set_max_active_levels(levels);
}

}  // namespace
}  // namespace Kernels
