#include "kernels/border.h"

#include "kernels/reference/border.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

namespace Kernels {
namespace {

using Bytes = TestPlane<std::uint8_t>;

TEST(CopyReplicateBorder, ByHand) {
    const Bytes source(2, {1, 2,  //
                           3, 4});
    const struct {
        const char* what;
        int top, left;
        Bytes expected;
    } cases[] = {
        {"far margins take what remains", 1, 2, {5, {1, 1, 1, 2, 2,  //
                                                     1, 1, 1, 2, 2,  //
                                                     3, 3, 3, 4, 4,  //
                                                     3, 3, 3, 4, 4}}},
        {"no near margin",
         0,
         0,
         {3,
          {1, 2, 2,  //
           3, 4, 4}}},
        {"what doesn't fit is left out",
         1,
         1,
         {2,
          {1, 1,  //
           1, 1}}},
        {"margins beyond the target", 9, 9, {2, {1, 1}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Bytes target(c.expected.width, c.expected.height);
        CopyReplicateBorder(source.data(), source.stride, 2, 2, target.data(), target.stride, target.width,
                            target.height, c.top, c.left);
        EXPECT_TRUE(c.expected == target);
    }
}

template <class Pixel>
void ExpectSameAsReference() {
    using Plane = TestPlane<Pixel>;
    Plane source(300, 200);
    std::mt19937 random(1);
    source.ForEach([&](Pixel& pixel) { pixel = static_cast<Pixel>(random() & 0xFFFFFF); });
    const auto result = [&](const auto& copy) {
        Plane target(400, 320);
        copy(source.data(), source.stride, 300, 200, target.data(), target.stride, 400, 320, 48, 48);
        return target;
    };
    const Plane expected =
        result([](auto... arguments) { Reference::CopyReplicateBorder<Pixel>(arguments...); });
    ForEachTargetAndTeam([&] {
        EXPECT_TRUE(expected == result([](auto... arguments) { CopyReplicateBorder(arguments...); }));
    });
}

TEST(CopyReplicateBorder, SameAsReference) {
    ExpectSameAsReference<std::uint8_t>();
    ExpectSameAsReference<float>();
}

}  // namespace
}  // namespace Kernels
