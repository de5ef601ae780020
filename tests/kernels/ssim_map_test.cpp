#include "kernels/ssim_map.h"

#include "kernels/reference/ssim_map.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <vector>

namespace Kernels {
namespace {

using Plane = TestPlane<float>;

// One pixel's moments, in a row of 19 such pixels: whole vectors and single pixels.
std::vector<float> MapOf(float mx, float my, float mxx, float myy, float mxy, float c1, float c2) {
    std::vector<float> planes[5];
    const float values[5] = {mx, my, mxx, myy, mxy};
    for (std::size_t i = 0; i < 5; ++i) planes[i].assign(19, values[i]);
    std::vector<float> map(19);
    SSIMMap({planes[0].data(), planes[1].data(), planes[2].data(), planes[3].data(), planes[4].data(), 0},
            map.data(), 0, 19, 1, c1, c2);
    return map;
}

TEST(SSIMMap, ByHand) {
    constexpr struct {
        const char* what;
        float mx, my, mxx, myy, mxy, c1, c2;
        double expected;
    } kCases[] = {
        {"the formula in whole numbers", 10, 20, 110, 420, 205, 1, 2, 401.0 * 12 / (501.0 * 32)},
        {"anticorrelated", 10, 20, 110, 420, 195, 1, 2, 401.0 * -8 / (501.0 * 32)},
        {"black pictures", 0, 0, 0, 0, 0, 6.5f, 58.5f, 1},
        {"everything vanishes", 0, 0, 0, 0, 0, 0, 0, 1},
        {"flat pictures without constants: luminance alone", 3, 1, 9, 1, 3, 0, 0, 6.0 / 10},
        {"a denominator below 0 counts as vanished", 3, 1, 8, 1, 3, 0, 0, 6.0 / 10},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        ForEachTarget([&] {
            EXPECT_EQ(std::vector<float>(19, static_cast<float>(c.expected)),
                      MapOf(c.mx, c.my, c.mxx, c.myy, c.mxy, c.c1, c.c2));
        });
    }
}

TEST(SSIMMap, SameBitsAsReference) {
    for (const auto& [width, height] : kPlaneSizes) {
        SCOPED_TRACE(testing::Message() << width << " by " << height);
        // Half of the windows are all but flat, so that the differences show the last bits of what is taken
        // away and denominators lie on both sides of 0; the other half has variances of very different sizes.
        // c1 is too small to be added to a product without a rounding.
        std::vector<Plane> planes(5, Plane(width, height));
        std::mt19937 random(2);
        const auto mean = [&] {
            return std::ldexp(std::uniform_real_distribution<float>(1, 2)(random),
                              static_cast<int>(random() % 16) - 8);
        };
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const float meanX = mean();
                const float meanY = mean();
                const bool flat = random() % 2 == 0;
                const float moments[] = {meanX, meanY, meanX * meanX + (flat ? 0 : mean()),
                                         meanY * meanY + (flat ? 0 : mean()), meanX * meanY};
                for (std::size_t i = 0; i < 5; ++i)
                    Row(planes[i].data(), planes[i].stride, y)[x] = moments[i];
            }
        }
        const SSIMMoments moments{planes[0].data(), planes[1].data(), planes[2].data(),
                                  planes[3].data(), planes[4].data(), planes[0].stride};
        const auto results = [&, w = width, h = height](auto ssim, auto contrastStructure) {
            std::pair<Plane, Plane> maps{Plane(w, h), Plane(w, h)};
            ssim(moments, maps.first.data(), maps.first.stride, w, h, 1e-7f, 1e-3f);
            contrastStructure(moments, maps.second.data(), maps.second.stride, w, h, 1e-3);
            return maps;
        };
        const auto expected = results(Reference::SSIMMap, Reference::ContrastStructureMap);
        ForEachTargetAndTeam([&] { EXPECT_TRUE(expected == results(SSIMMap, ContrastStructureMap)); });
    }
}

// (2 (205 - 200) + 2) / (10 + 20 + 2)
TEST(ContrastStructureMap, ByHand) {
    const float values[5] = {10, 20, 110, 420, 205};
    float map = 0;
    ContrastStructureMap({&values[0], &values[1], &values[2], &values[3], &values[4], 0}, &map, 0, 1, 1, 2);
    EXPECT_EQ(0.375f, map);
}

}  // namespace
}  // namespace Kernels
