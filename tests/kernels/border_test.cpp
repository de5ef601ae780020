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

TEST(CopyReplicateBorder, SameAsReference) {
    Bytes source(300, 200);
    std::mt19937 random(1);
    source.ForEach([&](std::uint8_t& pixel) { pixel = static_cast<std::uint8_t>(random()); });
    const auto result = [&](auto copy) {
        Bytes target(400, 320);
        copy(source.data(), source.stride, 300, 200, target.data(), target.stride, 400, 320, 48, 48);
        return target;
    };
    const Bytes expected = result(Reference::CopyReplicateBorder);
    ForEachTargetAndTeam([&] { EXPECT_TRUE(expected == result(CopyReplicateBorder)); });
}

}  // namespace
}  // namespace Kernels
