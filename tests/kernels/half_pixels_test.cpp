#include "kernels/half_pixels.h"

#include "kernels/reference/half_pixels.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <array>

namespace Kernels {
namespace {

using Bytes = TestPlane<std::uint8_t>;
using Planes = std::array<Bytes, 3>;

// Three rows and columns beside the picture are read.
constexpr int kBeside = 3;

template <class Filter>
Planes Filtered(const Bytes& source, const Filter& filter) {
    const Bytes empty(source.width, source.height);
    Planes planes = {empty, empty, empty};
    const std::ptrdiff_t first = kBeside * source.stride + kBeside;
    filter(source.data() + first, source.stride, source.width - 2 * kBeside, source.height - 2 * kBeside,
           HalfPixelPlanes{planes[0].data() + first, planes[1].data() + first, planes[2].data() + first});
    return planes;
}

TEST(HalfPixels, SameAsReference) {
    for (const PlaneSize& size : kPlaneSizes) {
        SCOPED_TRACE(testing::Message() << size.width << " by " << size.height);
        Bytes source(size.width + 2 * kBeside, size.height + 2 * kBeside);
        std::mt19937 random(7);
        // Black and white drive the filters beyond both ends of the range.
        source.ForEach([&](std::uint8_t& pixel) {
            const auto bits = static_cast<unsigned>(random());
            pixel = static_cast<std::uint8_t>(bits % 2 == 0 ? 255 * (bits >> 1 & 1) : bits >> 8);
        });
        const Planes expected = Filtered(source, Reference::HalfPixels);
        ForEachTargetAndTeam([&] {
            const Planes planes = Filtered(source, HalfPixels);
            for (std::size_t i = 0; i < planes.size(); ++i) EXPECT_TRUE(expected[i] == planes[i]) << i;
        });
    }
}

// Across an edge from 0 to 255 the taps add up to 0, 0, 255, -1020, 4080, 9180, 7905 and 8160 in turn.
TEST(HalfPixels, EdgeByHand) {
    Bytes source(16, 7);
    for (int y = 0; y < 7; ++y)
        for (int x = 8; x < 16; ++x) source.data()[y * source.stride + x] = 255;
    for (int y = 0; y < 7; ++y) std::fill_n(source.data() + y * source.stride, 8, std::uint8_t{0});
    const Planes planes = Filtered(source, HalfPixels);
    const std::uint8_t expected[] = {0, 0, 8, 0, 128, 255, 247, 255};  // from column 3 on
    for (int i = 0; i < 8; ++i) {
        const int pixel = 3 * source.stride + 3 + i;
        EXPECT_EQ(expected[i], planes[0].data()[pixel]) << i;
        EXPECT_EQ(source.data()[pixel], planes[1].data()[pixel]) << i;
        EXPECT_EQ(expected[i], planes[2].data()[pixel]) << i;
    }
}

}  // namespace
}  // namespace Kernels
