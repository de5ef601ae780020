#include "metric/plane_tiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace Metric {
namespace {

// Tiles over a picture of 37 by 11 and beyond hold what its planes do, whether these are made or not, whoever
// wrote to them, with the last column and row repeated.
TEST(PlaneTiles, HoldThePlane) {
    constexpr int kWidth = 37, kHeight = 11;
    std::mt19937 random(1);
    std::vector<std::uint8_t> frame(6 * kWidth * kHeight);
    for (auto& byte : frame) byte = static_cast<std::uint8_t>(random());

    const struct {
        const char* what;
        std::function<void(CMetricImage&)> load;
        int component;
        bool needsPlane;
    } kCases[] = {
        {"bytes", [&](auto& image) { image.LoadYuvBytes(frame.data(), kWidth, kWidth * kHeight); },
         ComponentV, false},
        {"10 bits, subsampled", [&](auto& image) { image.LoadYuvDeep420(frame.data(), 10); }, ComponentU,
         false},
        {"luma of RGB",
         [&](auto& image) {
             image.LoadRgbBytes(frame.data(), kWidth, kWidth * kHeight);
             image.ToYuv(0);
         },
         ComponentY, true},
        {"lightness of RGB, for one reader",
         [&](auto& image) {
             image.LoadRgbBytes(frame.data(), kWidth, kWidth * kHeight);
             image.ToL(1);
             image.ExpectOneReader(true);
         },
         ComponentL, false},
        {"a plane that was written to",
         [&](auto& image) {
             image.LoadYuvBytes(frame.data(), kWidth, kWidth * kHeight);
             image.ForgetFrame();
             image.GetY()[3] = 0.3f;
             image.ExpectOneReader(true);
         },
         ComponentY, true},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        CMetricImage read(kWidth, kHeight), made(kWidth, kHeight);
        c.load(read);
        c.load(made);
        const float* const plane = made.GetPlane(c.component);
        const PlaneTiles tiles(read, c.component);
        for (int y = 0; y < kHeight; y += 4) {
            for (int x = 0; x < kWidth; x += 16) {
                std::vector<float> tile(16 * 4);
                tiles.Read(x, y, 16, 4, tile.data());
                for (int i = 0; i < 16 * 4; ++i) {
                    const int column = std::min(x + i % 16, kWidth - 1);
                    const int row = std::min(y + i / 16, kHeight - 1);
                    ASSERT_EQ(plane[row * kWidth + column], tile[static_cast<std::size_t>(i)])
                        << column << ", " << row;
                }
            }
        }
        EXPECT_EQ(c.needsPlane, tiles.Plane() != nullptr);
    }
}

}  // namespace
}  // namespace Metric
