#include "report/rules/frame_range.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <tuple>

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
    const std::tuple<int, int, View> kCases[] = {
        {0, 0, {0, 0, 0}},
        {0, 1, {0, 0, 0}},  // half of one step is nothing
        {0, 2, {1, 2, 1}},  // half a frame to each side: 0.5 and 1.5, cut, then centred
        {0, 99, {25, 74, 49}},
        {0, 299, {75, 224, 149}},
        {0, 4999, {1999, 2999, 2499}},  // 1000 frames and no more
        {0, 499'999, {249'499, 250'499, 249'999}},
        {32, 131, {57, 106, 81}},
    };
    for (const auto& [first, last, view] : kCases) EXPECT_EQ(view, ViewOf(FrameRange(first, last))) << last;
}

TEST(FrameRange, RecentringStaysInside) {
    const std::pair<int, View> kCases[] = {
        {40, {16, 65, 40}},
        {10, {0, 49, 10}},
        {95, {50, 99, 95}},
        {-1, {0, 49, 0}},
        {100, {50, 99, 99}},
        {std::numeric_limits<int>::min(), {0, 49, 0}},
        {std::numeric_limits<int>::max(), {50, 99, 99}},
    };
    for (const auto& [frame, view] : kCases) {
        FrameRange range(0, 99);
        range.Recentre(frame);
        EXPECT_EQ(view, ViewOf(range)) << frame;
    }
}

TEST(FrameRange, Width) {
    const std::tuple<int, int, View> kCases[] = {
        {99, 51, {24, 75, 49}}, {99, 50, {24, 74, 49}}, {99, 99, {0, 99, 49}},
        {99, 101, {0, 99, 49}}, {99, 1, {48, 50, 49}},  // 2 at least
        {99, -7, {48, 50, 49}}, {0, 2, {0, 0, 0}},      // one frame has no width
        {1, 2, {0, 1, 0}},
    };
    for (const auto& [last, width, view] : kCases) {
        FrameRange range(0, last);
        range.SetWidth(width);
        EXPECT_EQ(view, ViewOf(range)) << width;
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
            const int operation = draw(0, 3);
            if (operation == 0) range.SetCurrent(draw(-10, last + 20));
            if (operation == 1) range.Recentre(draw(-10, last + 20));
            if (operation >= 2) range.SetWidth(range.Width() + draw(-3, 3));
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

}  // namespace

}  // namespace Report
