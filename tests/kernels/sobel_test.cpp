#include "kernels/sobel.h"

#include "kernels/plane.h"
#include "kernels/reference/sobel.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

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
            const Plane magnitude = Filtered(source, border, 1.1f, Reference::FilterSobelMagnitudeBorder);
            ForEachTargetAndTeam([&] {
                EXPECT_TRUE(horiz == Filtered(source, border, 1.1f, FilterSobelHorizBorder));
                EXPECT_TRUE(vert == Filtered(source, border, 1.1f, FilterSobelVertBorder));
                EXPECT_TRUE(magnitude == Filtered(source, border, 1.1f, FilterSobelMagnitudeBorder));
            });
        }
    }
}

}  // namespace
}  // namespace Kernels
