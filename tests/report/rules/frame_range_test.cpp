#include "report/rules/frame_range.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace Report {

namespace {

struct View {
    int first, last, current;
    friend bool operator==(const View&, const View&) = default;
    friend std::ostream& operator<<(std::ostream& out, const View& view) {
        return out << view.first << ".." << view.last << " at " << view.current;
    }
};

View ViewOf(const FrameRange& range) {
    return {range.VisibleFirst(), range.VisibleLast(), range.Current()};
}

TEST(FrameRange, Opening) {
    const struct {
        const char* what;
        int first, last;
        View view;
    } kCases[] = {
        {"one frame", 0, 0, {0, 0, 0}},
        {"two frames: half of one step is nothing", 0, 1, {0, 0, 0}},
        {"three", 0, 2, {1, 2, 1}},  // half a frame to each side: 0.5 and 1.5, cut, then centred
        {"100: 49 frames", 0, 99, {25, 74, 49}},
        {"300", 0, 299, {75, 224, 149}},
        {"5000: 1000 and no more", 0, 4999, {1999, 2999, 2499}},
        {"half a million", 0, 499'999, {249'499, 250'499, 249'999}},
        {"not from 0 on", 32, 131, {57, 106, 81}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.view, ViewOf(FrameRange(c.first, c.last)));
    }
}

TEST(FrameRange, Recentring) {
    const struct {
        const char* what;
        int frame;
        View view;
    } kCases[] = {
        {"inside", 40, {16, 65, 40}},
        {"near the start the range stays inside", 10, {0, 49, 10}},
        {"near the end", 95, {50, 99, 95}},
        {"before the first frame", -1, {0, 49, 0}},
        {"behind the last frame", 100, {50, 99, 99}},
        {"far away", std::numeric_limits<int>::min(), {0, 49, 0}},
        {"far away on the other side", std::numeric_limits<int>::max(), {50, 99, 99}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        FrameRange range(0, 99);
        range.Recentre(c.frame);
        EXPECT_EQ(c.view, ViewOf(range));
    }
}

TEST(FrameRange, Width) {
    const struct {
        const char* what;
        int last, width;
        View view;
    } kCases[] = {
        {"wider", 99, 51, {24, 75, 49}},
        {"odd width", 99, 50, {24, 74, 49}},
        {"the whole range", 99, 99, {0, 99, 49}},
        {"not more than that", 99, 101, {0, 99, 49}},
        {"2 at least", 99, 1, {48, 50, 49}},
        {"below 0", 99, -7, {48, 50, 49}},
        {"one frame has no width", 0, 2, {0, 0, 0}},
        {"two frames get both", 1, 2, {0, 1, 0}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        FrameRange range(0, c.last);
        range.SetWidth(c.width);
        EXPECT_EQ(c.view, ViewOf(range));
    }
}

// A walk by every operation from a fixed seed; what always holds is looked at behind each step.
TEST(FrameRange, StaysInOrder) {
    unsigned seed = 1;
    const auto draw = [&seed](int from, int to) {
        seed = seed * 1664525u + 1013904223u;
        return from + static_cast<int>((seed >> 8) % static_cast<unsigned>(to - from + 1));
    };
    for (const int last : {0, 1, 2, 3, 10, 999, 2001}) {
        FrameRange range(5, 5 + last);
        for (int step = 0; step < 2000; ++step) {
            switch (draw(0, 3)) {
                case 0:
                    range.SetCurrent(draw(-10, last + 20));
                    break;
                case 1:
                    range.Recentre(draw(-10, last + 20));
                    break;
                default:
                    range.SetWidth(range.Width() + draw(-3, 3));
            }
            ASSERT_LE(range.FirstFrame(), range.VisibleFirst());
            ASSERT_LE(range.VisibleFirst(), range.Current());
            ASSERT_LE(range.Current(), range.VisibleLast());
            ASSERT_LE(range.VisibleLast(), range.LastFrame());
        }
    }
}

TEST(WheelSteps, CountsWholeNotches) {
    WheelSteps wheel;
    const std::array<std::array<int, 2>, 9> kTurns = {
        {{120, 1}, {-120, -1}, {360, 3}, {60, 0}, {60, 1}, {-119, 0}, {-1, -1}, {100, 0}, {-20, 0}}};
    for (const auto& [delta, steps] : kTurns) EXPECT_EQ(steps, wheel.Take(delta)) << delta;
    EXPECT_EQ(-1, wheel.Take(-100)) << "what was left of the other direction is gone";
}

TEST(HoldPace, GetsFasterToAMillisecond) {
    HoldPace pace;
    EXPECT_EQ(100, pace.DelayMs());
    pace.Repeat();
    EXPECT_EQ(95, pace.DelayMs());
    for (int i = 0; i < 18; ++i) pace.Repeat();
    EXPECT_EQ(5, pace.DelayMs());
    for (int i = 0; i < 5; ++i) pace.Repeat();
    EXPECT_EQ(1, pace.DelayMs());
    pace.Restart();
    EXPECT_EQ(100, pace.DelayMs());
}

}  // namespace

}  // namespace Report
