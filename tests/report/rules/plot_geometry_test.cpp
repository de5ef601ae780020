#include "report/rules/plot_geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace Report {

namespace {

PlotScale Scale(int width, int height, int first, int last, ValueRange values) {
    PlotScale scale;
    scale.plot = {50, 10 + height, width, height};
    scale.rangeFirst = first;
    scale.rangeLast = last;
    scale.values = values;
    return scale;
}

TEST(PlotGeometry, FollowsWindowAndFont) {
    const PlotGeometry plot = PlotGeometry::In(840, 298, 6, 15);
    EXPECT_EQ(59, plot.left);     // 42 + 15 + 2
    EXPECT_EQ(263, plot.bottom);  // 298 - 30 - 5
    EXPECT_EQ(739, plot.width);   // 840 - 59 - 42
    EXPECT_EQ(248, plot.height);
    EXPECT_EQ(15, plot.Top());

    const PlotGeometry tiny = PlotGeometry::In(90, 20, 6, 15);
    EXPECT_EQ(0, tiny.width);
    EXPECT_EQ(0, tiny.height);
}

TEST(PlotScale, FramesAndValues) {
    // 100 pixels for 0 to 40 frames: 2.5 each. 50 pixels for 30 to 40: 5 for a unit.
    const PlotScale scale = Scale(100, 50, 200, 240, {30, 40});
    const struct {
        int frame, x;
    } kFrames[] = {{200, 0}, {201, 2}, {202, 5}, {239, 97}, {240, 100}, {241, 100}, {199, 0}};
    for (const auto& c : kFrames) {
        SCOPED_TRACE(c.frame);
        EXPECT_EQ(c.x, scale.CurveX(c.frame));
        EXPECT_EQ(50 + c.x, scale.FrameX(c.frame));
    }
    // Axis and curve cut to whole pixels from opposite ends: 33.33 lies 16.65 above the bottom, 33.35 below
    // the top.
    const struct {
        float value;
        int axisY, curveY;
    } kValues[] = {
        {30, 60, 50},
        {33.33F, 44, 33},
        {40, 10, 0},
        {41, 10, 0},
        {29, 60, 50},
        {std::numeric_limits<float>::infinity(), 10, 0},
        {std::numeric_limits<float>::quiet_NaN(), 60, 0},
    };
    for (const auto& c : kValues) {
        SCOPED_TRACE(c.value);
        EXPECT_EQ(c.axisY, scale.ValueY(c.value));
        EXPECT_EQ(c.curveY, scale.CurveY(c.value));
    }
}

TEST(PlotScale, FrameUnderThePointer) {
    const PlotScale scale = Scale(100, 50, 200, 240, {30, 40});
    const struct {
        int x, frame;
    } kCases[] = {{50, 200},  {52, 200}, {53, 201}, {55, 202}, {150, 240},
                  {149, 239}, {48, 200}, {40, 196}, {160, 244}};
    for (const auto& c : kCases) EXPECT_EQ(c.frame, scale.FrameAt(c.x)) << c.x;
    EXPECT_FALSE(scale.HasX(49));
    EXPECT_TRUE(scale.HasX(50));
    EXPECT_TRUE(scale.HasX(150));
    EXPECT_FALSE(scale.HasX(151));
}

TEST(PlotScale, WithoutExtent) {
    const PlotScale oneFrame = Scale(100, 50, 7, 7, {30, 40});
    EXPECT_EQ(50, oneFrame.FrameX(7)) << "the cursor of a single frame stands at the left";
    EXPECT_EQ(7, oneFrame.FrameAt(120));
    const PlotScale noRoom = Scale(0, 0, 0, 40, {30, 40});
    EXPECT_EQ(50, noRoom.FrameX(40));
    EXPECT_EQ(10, noRoom.ValueY(35));
    EXPECT_EQ(0, noRoom.CurveY(35));
    EXPECT_EQ(0, noRoom.FrameAt(60));
}

TEST(BandDrag, IsGrabbed) {
    const struct {
        const char* what;
        int last, bandFirst, bandLast;  // of 300 pixels for the frames from 0 on
        int firstX, lastX;              // where the band can be grabbed
    } kCases[] = {
        {"half a pixel a frame", 600, 200, 300, 100, 149},
        {"thin", 600, 200, 206, 98, 104},
        {"no wider than a pixel", 500'000, 249'500, 250'500, 146, 152},
        {"at the start", 500'000, 0, 1000, -3, 3},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const PlotScale scale = Scale(300, 50, 0, c.last, {30, 40});
        for (const int x : {c.firstX, c.lastX}) {
            BandDrag drag;
            EXPECT_TRUE(drag.Start(scale, c.bandFirst, c.bandLast, 50 + x));
            const int middle = drag.CentreAt(scale, c.bandFirst, c.bandLast, 50 + x);
            EXPECT_NEAR((c.bandFirst + c.bandLast) / 2, middle, c.last / 300 + 1) << "it stays where it is";
        }
        for (const int x : {c.firstX - 1, c.lastX + 1})
            EXPECT_FALSE(BandDrag().Start(scale, c.bandFirst, c.bandLast, 50 + x));
    }
}

TEST(BandDrag, FollowsThePointer) {
    for (const int first : {0, 1000}) {
        const PlotScale scale = Scale(300, 50, first, first + 600, {30, 40});
        BandDrag drag;
        ASSERT_TRUE(drag.Start(scale, first + 200, first + 300, 50 + 110));
        EXPECT_EQ(first + 250, drag.CentreAt(scale, first + 200, first + 300, 50 + 110));
        EXPECT_EQ(first + 290, drag.CentreAt(scale, first + 200, first + 300, 50 + 130));
        EXPECT_EQ(first + 30, drag.CentreAt(scale, first + 200, first + 300, 50));
    }
}

}  // namespace

}  // namespace Report
