#include "kernels/block_difference.h"

#include "kernels/reference/block_difference.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

namespace Kernels {
namespace {

using Bytes = TestPlane<std::uint8_t>;

// Noise with its share of extremes, and black against white, which makes the greatest sums there are.
Bytes BytePixels(unsigned seed) {
    Bytes plane(45, 33);
    std::mt19937 random(seed);
    plane.ForEach([&](std::uint8_t& pixel) {
        const auto bits = static_cast<unsigned>(random());
        pixel = static_cast<std::uint8_t>(bits % 5 == 0 ? 255 * (bits & 1) : bits >> 8);
    });
    return plane;
}

TEST(BlockDifference, SameAsReference) {
    const Bytes block = BytePixels(1);
    const Bytes other = BytePixels(2);
    Bytes black(45, 33), white(45, 33);
    black.ForEach([](std::uint8_t& pixel) { pixel = 0; });
    white.ForEach([](std::uint8_t& pixel) { pixel = 255; });
    ForEachTarget([&] {
        for (int side : {4, 8, 16}) {
            SCOPED_TRACE(side);
            for (int offset : {0, 1, 3, 17}) {
                const std::uint8_t* first = other.data() + offset;
                for (const std::uint8_t* second :
                     {static_cast<const std::uint8_t*>(nullptr), first + 1, first + other.stride}) {
                    EXPECT_EQ(Reference::BlockDifference(block.data() + offset, block.stride, first, second,
                                                         other.stride, side),
                              BlockDifference(block.data() + offset, block.stride, first, second,
                                              other.stride, side));
                }
            }
            EXPECT_EQ(255 * side * side,
                      BlockDifference(black.data(), black.stride, white.data(), nullptr, white.stride, side));
        }
    });
}

}  // namespace
}  // namespace Kernels
