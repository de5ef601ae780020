#include "report/rules/child_layout.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace Report {

namespace {

TEST(PlacedChild, FollowsItsWindow) {
    const struct {
        const char* what;
        unsigned flags;
        PixelRect rect;  // from 10, 20, 100 by 50, by a window that grows by 7 and 9; centred ones move by 3
    } kCases[] = {
        {"nothing", 0, {10, 20, 100, 50}},
        {"right", kMoveRight, {17, 20, 100, 50}},
        {"down", kMoveDown, {10, 29, 100, 50}},
        {"wider", kStretchWidth, {10, 20, 107, 50}},
        {"higher", kStretchHeight, {10, 20, 100, 59}},
        {"centred", kCentreHorizontally, {13, 20, 100, 50}},
        {"centred comes before right", kCentreHorizontally | kMoveRight, {13, 20, 100, 50}},
        {"right comes before wider", kMoveRight | kStretchWidth, {17, 20, 100, 50}},
        {"down comes before higher", kMoveDown | kStretchHeight, {10, 29, 100, 50}},
        {"both ways", kStretchWidth | kStretchHeight, {10, 20, 107, 59}},
        {"the row of controls", kCentreHorizontally | kMoveDown, {13, 29, 100, 50}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        PlacedChild child({10, 20, 100, 50}, c.flags);
        child.Follow(7, 9, 3);
        EXPECT_EQ(c.rect, child.Rect());
    }
}

TEST(PlacedChild, NoSizeBelow0AndBackAgain) {
    PlacedChild child({0, 0, 100, 40}, kStretchWidth | kStretchHeight);
    const struct {
        int dW, dH, width, height;
    } kSteps[] = {{-80, -30, 20, 10}, {-50, -30, 0, 0}, {-10, 5, 0, 0},
                  {30, 5, 0, 0},      {20, 20, 10, 10}, {90, 30, 100, 40}};
    for (const auto& step : kSteps) {
        child.Follow(step.dW, step.dH, 0);
        EXPECT_EQ((PixelRect{0, 0, step.width, step.height}), child.Rect());
    }
}

TEST(OddPixels, AreShared) {
    // The moves worked by hand from the table of states: 0, 1, 2, 1, -1, -2, ...
    OddPixels pixels;
    const struct {
        int dW, move;
    } kSteps[] = {{1, 1}, {1, 0}, {1, 1}, {-1, -1}, {-1, 0}, {-1, -1}, {4, 2}, {-6, -3}, {3, 2}, {-3, -2}};
    for (const auto& step : kSteps) EXPECT_EQ(step.move, pixels.MoveFor(step.dW)) << step.dW;
}

TEST(OddPixels, KeepARowInTheMiddle) {
    unsigned seed = 3;
    OddPixels pixels;
    int width = 0;
    int x = 0;
    for (int i = 0; i < 5000; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const int dW = static_cast<int>((seed >> 10) % 41) - 20;
        x += pixels.MoveFor(dW);
        width += dW;
        ASSERT_LE(std::abs(2 * x - width), 2) << "behind step " << i;
        if (i % 97 == 0) {
            x += pixels.MoveFor(-width);
            width = 0;
            ASSERT_EQ(0, x) << "behind step " << i;
        }
    }
}

}  // namespace

}  // namespace Report
