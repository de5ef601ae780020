#include "kernels/sobel.h"

#include "kernels/plane.h"
#include "kernels/reference/sobel.h"
#include "kernels/sobel_squares.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace Kernels {
namespace {

using Plane = TestPlane<float>;

template <class Filter>
Plane Filtered(const Plane& source, BorderKind border, float borderValue, Filter filter) {
    Plane target(source.width, source.height);
    const BytePlane scratch(
        static_cast<std::uint8_t*>(AllocZeroed(GetSobelScratchSize(source.width, source.height))));
    filter(source.data(), source.stride, target.data(), target.stride, source.width, source.height, border,
           borderValue, scratch.get());
    return target;
}

TEST(Sobel, ByHand) {
    const Plane flat(3, {1, 1, 1,  //
                         1, 1, 1,  //
                         1, 1, 1});
    const Plane plane(3, {1, 2, 4,  //
                          0, 3, 0,  //
                          5, 0, 1});
    const struct {
        const char* what;
        const Plane& source;
        BorderKind border;
        Plane horiz, vert;
    } cases[] = {
        {"a flat plane in darkness",
         flat,
         BorderConstant,
         {3,
          {-3, -4, -3,  //
           0, 0, 0,     //
           3, 4, 3}},
         {3,
          {3, 0, -3,  //
           4, 0, -4,  //
           3, 0, -3}}},
        {"in darkness",
         plane,
         BorderConstant,
         {3,
          {-3, -6, -3,  //
           -6, 3, 8,    //
           3, 6, 3}},
         {3,
          {7, 6, -7,   //
           8, -1, -8,  //
           3, -8, -3}}},
        {"replicated",
         plane,
         BorderReplicate,
         {3,
          {2, 3, 11,    //
           -10, 3, 11,  //
           -12, 0, 0}},
         {3,
          {6, 9, 3,    //
           2, -1, -3,  //
           -12, -12, 0}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Plane(c.horiz).Pixels(), Filtered(c.source, c.border, 0, FilterSobelHorizBorder).Pixels());
        EXPECT_EQ(Plane(c.vert).Pixels(), Filtered(c.source, c.border, 0, FilterSobelVertBorder).Pixels());
    }
}

TEST(Sobel, SameBitsAsReference) {
    for (const auto& [width, height] : kPlaneSizes) {
        const Plane source = PixelsOfAllSizes(width, height, 1);
        for (const BorderKind border : {BorderConstant, BorderReplicate}) {
            SCOPED_TRACE(testing::Message() << width << " by " << height << ", border " << border);
            const Plane horiz = Filtered(source, border, 1.1f, Reference::FilterSobelHorizBorder);
            const Plane vert = Filtered(source, border, 1.1f, Reference::FilterSobelVertBorder);
            ForEachTargetAndTeam([&] {
                EXPECT_TRUE(horiz == Filtered(source, border, 1.1f, FilterSobelHorizBorder));
                EXPECT_TRUE(vert == Filtered(source, border, 1.1f, FilterSobelVertBorder));
            });
        }
    }
}

TEST(Sobel, GreatestSquareAnywhere) {
    for (const auto& [width, height] : kPlaneSizes) {
        SCOPED_TRACE(testing::Message() << width << " by " << height);
        const Plane first = PixelsOfAllSizes(width, height, 3);
        Plane second = PixelsOfAllSizes(width, height, 4);
        // The second plane is bigger at one place at a time, also at the rim.
        for (const int x : {0, width / 2, width - 1}) {
            for (const int y : {0, height / 2, height - 1}) {
                Row(second.data(), second.stride, y)[x] = 1e12f;
                Plane squares(width, height);
                Reference::SobelSquares(second.data(), second.stride, squares.data(), squares.stride, width,
                                        height);
                const std::vector<float> values = squares.Pixels();
                const float greatest = *std::max_element(values.begin(), values.end());
                ForEachTargetAndTeam([&, w = width, h = height] {
                    EXPECT_EQ(greatest,
                              GreatestSobelSquare({{first.data(), second.data()}, first.stride, w, h}));
                });
                Row(second.data(), second.stride, y)[x] = 1;
            }
        }
    }
}

}  // namespace
}  // namespace Kernels
