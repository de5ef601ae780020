#include "kernels/painting.h"

#include "kernels/reference/painting.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace Kernels {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

using Paint = void (*)(const float*, int, std::uint8_t*, int, int, int);

TestPlane<std::uint8_t> Painted(Paint paint, const TestPlane<float>& plane) {
    TestPlane<std::uint8_t> picture(3 * plane.width, plane.height);
    paint(plane.data(), plane.stride, picture.data(), picture.stride, plane.width, plane.height);
    return picture;
}

TEST(Painting, ByHand) {
    const std::vector<float> values = {
        0,  -0.0f, 0.99f,   1,          254.999f,   255,         256,       257.5f,     -0.5f,
        -1, -255,  -256.5f, 2147483520, 2147483648, -2147483520, kInfinity, -kInfinity, std::nanf("")};
    const std::vector<std::uint8_t> greys = {0, 0, 0, 1, 254, 255, 0, 1, 0, 255, 1, 0, 128, 0, 128, 0, 0, 0};
    ForEachTarget([&] {
        const TestPlane<float> plane(static_cast<int>(values.size()), values);
        std::vector<std::uint8_t> pixels = Painted(PaintGrey, plane).Pixels();
        for (std::size_t i = 0; i < greys.size(); ++i)
            for (std::size_t byte = 0; byte < 3; ++byte)
                EXPECT_EQ(greys[i], pixels[3 * i + byte]) << values[i];
    });
}

TEST(Painting, SameBytesAsReference) {
    for (const auto& [width, height] : kPlaneSizes) {
        SCOPED_TRACE(testing::Message() << width << " by " << height);
        const TestPlane<float> values = PixelsOfAllSizes(width, height, 1);
        TestPlane<float> similarities = Picture(width, height, 2);
        similarities.ForEach([](float& pixel) { pixel = pixel / 200 - 0.2f; });
        ForEachTargetAndTeam([&] {
            EXPECT_TRUE(Painted(Reference::PaintGrey, values) == Painted(PaintGrey, values));
            EXPECT_TRUE(Painted(Reference::PaintSimilarity, similarities) ==
                        Painted(PaintSimilarity, similarities));
        });
    }
}

}  // namespace
}  // namespace Kernels
