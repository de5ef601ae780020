#include "app/rules/window_size.h"

#include <gtest/gtest.h>

#include <array>
#include <tuple>

namespace {

constexpr PixelSize kMargins = {20, 130};

TEST(PreviewLayout, Steps) {
    constexpr std::array<int, 4> kCases[] = {
        {10, 25, 25, 25},     {25, 25, 50, 25},     {33, 25, 50, 33},     {100, 50, 200, 100},
        {101, 100, 200, 101}, {400, 300, 400, 400}, {900, 400, 400, 400},
    };
    for (const auto& [shown, below, above, slider] : kCases) {
        EXPECT_EQ(ScaleBelow(shown), below) << shown;
        EXPECT_EQ(ScaleAbove(shown), above) << shown;
        EXPECT_EQ(ScaleSliderPosition(shown), slider) << shown;
    }
}

TEST(PreviewLayout, PictureInItsSpace) {
    constexpr std::tuple<PixelSize, PixelSize, PixelRect> kCases[] = {
        {{352, 288}, {352, 288}, {0, 0, 352, 288}},
        {{352, 288}, {704, 288}, {176, 0, 352, 288}},  // strips at the sides
        {{352, 288}, {352, 388}, {0, 50, 352, 288}},   // above and below
        {{1920, 1080}, {960, 600}, {0, 30, 960, 540}},
        {{100, 50}, {0, 50}, {}},
        {{100, 50}, {-3, -3}, {}},
    };
    for (const auto& [video, space, picture] : kCases)
        EXPECT_EQ(PreviewLayout(video, kMargins).PictureIn(space), picture);
}

TEST(PreviewLayout, Limits) {
    const PreviewLayout cif({352, 288}, kMargins);
    EXPECT_EQ(cif.WindowAt(100), (PixelSize{372, 418}));
    EXPECT_EQ(cif.WindowAt(25), (PixelSize{108, 202}));
    EXPECT_EQ(cif.SmallestWindow(), (PixelSize{300, 202}));
    EXPECT_EQ(cif.LargestWindow(), (PixelSize{1428, 1282}));
    EXPECT_EQ(PreviewLayout({1921, 1081}, kMargins).SmallestWindow(), (PixelSize{500, 400}));
    EXPECT_EQ(PreviewLayout({8, 8}, kMargins).SmallestWindow(), (PixelSize{300, 200}));
    EXPECT_EQ(PreviewLayout({2000000000, 1}, kMargins).LargestWindow().width, 0x7FFFFFFF);
}

// A step must show what it set: otherwise ">" would lead back to the same window and never get further.
TEST(PreviewLayout, EveryPercentageShowsItself) {
    for (const PixelSize video : {PixelSize{1921, 1081}, {353, 287}, {101, 999}, {999, 101}, {4095, 1715}}) {
        const PreviewLayout layout(video, kMargins);
        for (int percent = kSmallestScale; percent <= kLargestScale; ++percent) {
            const PixelSize window = layout.WindowAt(percent);
            const auto [width, height] = kMargins;
            const PixelRect picture = layout.PictureIn({window.width - width, window.height - height});
            ASSERT_EQ(layout.ShownScale(picture.width), percent) << video.width;
            ASSERT_TRUE(picture.x >= 0 && picture.y >= 0) << "sticks out";
        }
    }
}

TEST(WindowSize, FitsTheScreenButNeverLessThanItNeeds) {
    constexpr std::tuple<PixelSize, PixelSize, PixelSize, PixelSize> kCases[] = {
        {{928, 555}, {867, 555}, {1272, 984}, {928, 555}},
        {{928, 555}, {867, 555}, {870, 660}, {870, 555}},
        {{928, 555}, {867, 555}, {792, 500}, {867, 555}},
        {{460, 108}, {510, 140}, {1272, 984}, {510, 140}},  // large text
    };
    for (const auto& [wanted, least, room, size] : kCases)
        EXPECT_EQ(OpeningSize(wanted, least, room), size) << room.width;
}

}  // namespace
