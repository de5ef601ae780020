#include "kernels/resize.h"

#include "kernels/reference/resize.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

namespace Kernels {
namespace {

using Plane = TestPlane<float>;

TEST(ResizeLinear, ByHand) {
    const Plane plane(5, {1, 2, 3, 4, 9,  //
                          5, 6, 7, 8, 9,  //
                          9, 9, 9, 9, 9});
    const struct {
        const char* what;
        Rectangle rectangle;
        double xFactor, yFactor;
        Plane expected;
    } cases[] = {
        {"halved, odd column and row dropped", {0, 0, 5, 3}, 0.5, 0.5, {2, {3.5f, 5.5f}}},
        {"a part, halved", {1, 0, 4, 2}, 0.5, 0.5, {2, {4.5f, 7.5f}}},
        {"halved to more than there is: the last row repeats",
         {0, 1, 2, 1},
         0.5,
         0.5,
         {1, std::vector{5.5f}}},
        // Columns at -0.25, 0.25, 0.75, 1.25 between 1 and 5.
        {"doubled down the first column", {0, 0, 1, 2}, 1, 2, {1, {1, 2, 4, 5}}},
        {"doubled along the row", {0, 0, 2, 1}, 2, 1, {4, {1, 1.25f, 1.75f, 2}}},
        {"copied", {1, 1, 2, 1}, 1, 1, {2, {6, 7}}},
        {"what lies outside is cut off", {3, -7, 100, 8}, 1, 1, {2, {4, 9}}},
        {"wholly outside: untouched", {5, 0, 2, 2}, 1, 1, {1, std::vector{77.0f}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ForEachTarget([&] {
            Plane target(c.expected.width, c.expected.height);
            ResizeLinear(plane.data(), plane.stride, 5, 3, c.rectangle, target.data(), target.stride,
                         target.width, target.height, c.xFactor, c.yFactor);
            EXPECT_EQ(Plane(c.expected).Pixels(), target.Pixels());
        });
    }
}

TEST(ResizeLinear, HalvingHasTheBitsOfTheReference) {
    for (const auto& [width, height] : kPlaneSizes) {
        SCOPED_TRACE(testing::Message() << width << " by " << height);
        const Plane source = PixelsOfAllSizes(width, height, 1);
        const auto halved = [&, w = width, h = height](auto resize) {
            Plane target(w / 2, h / 2);
            resize(source.data(), source.stride, w, h, Rectangle{0, 0, w, h}, target.data(), target.stride,
                   w / 2, h / 2, 0.5, 0.5);
            return target;
        };
        const Plane expected = halved(Reference::ResizeLinear);
        ForEachTargetAndTeam([&] { EXPECT_TRUE(expected == halved(ResizeLinear)); });
    }
}

}  // namespace
}  // namespace Kernels
