#include "report/rules/child_layout.h"

#include <gtest/gtest.h>

namespace Report {

namespace {

TEST(PlacedChild, FollowsItsWindow) {
    const struct {
        const char* what;
        unsigned flags;
        PixelRect rect;  // from 10, 20, 100 by 50, by a window that grows by 7 and 9; centred ones move by 3
    } kCases[] = {
        {"nothing", 0, {10, 20, 100, 50}},
        {"centred comes before right", kCentreHorizontally | kMoveRight, {13, 20, 100, 50}},
        {"right comes before wider", kMoveRight | kStretchWidth, {17, 20, 100, 50}},
        {"down comes before higher", kMoveDown | kStretchHeight, {10, 29, 100, 50}},
        {"both ways", kStretchWidth | kStretchHeight, {10, 20, 107, 59}},
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

}  // namespace

}  // namespace Report
