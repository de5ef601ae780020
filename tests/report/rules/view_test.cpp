#include "report/rules/child_layout.h"
#include "report/rules/frame_range.h"
#include "report/rules/picture_view.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <tuple>

using namespace Report;

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

using Placement = PictureView::Placement;

TEST(Zoom, Steps) {
    constexpr std::array<int, 3> kButtons[] = {{100, 200, 100},  {101, 200, 100}, {250, 300, 200},
                                               {199, 200, 100},  {200, 300, 100}, {800, 900, 700},
                                               {900, 1000, 800}, {333, 400, 300}};
    for (const auto& [percent, above, below] : kButtons) {
        EXPECT_EQ(above, ZoomAbove(percent)) << percent;
        EXPECT_EQ(below, ZoomBelow(percent)) << percent;
    }
    int percent = 800;
    for (int i = 0; i < 20'000; ++i) percent = ZoomAbove(percent);
    EXPECT_EQ(1'000'000, percent) << "it ends before numbers do";
    constexpr std::array<int, 3> kWheel[] = {{100, 1, 125}, {125, -1, 100}, {100, -1, 100}, {100, 3, 175},
                                             {790, 1, 800}, {900, 1, 900},  {900, -1, 875}, {850, 2, 850}};
    for (const auto& [before, notches, after] : kWheel)
        EXPECT_EQ(after, ZoomByWheel(before, notches)) << before;
}

TEST(PictureView, Placement) {
    const std::tuple<const char*, int, float, float, int, int, Placement> kCases[] = {
        {"it fits exactly", 100, 0, 0, 352, 288, {{0, 0, 352, 288}, {0, 0, 352, 288}}},
        {"a larger window: in the middle", 100, 0, 0, 620, 300, {{0, 0, 352, 288}, {134, 6, 352, 288}}},
        {"a smaller window: its part", 100, 0, 0, 200, 100, {{0, 0, 200, 100}, {0, 0, 200, 100}}},
        {"panned", 100, 0.25F, 0.5F, 200, 100, {{88, 144, 200, 100}, {0, 0, 200, 100}}},
        {"panned beyond the end", 100, 0.9F, 7, 200, 100, {{152, 188, 200, 100}, {0, 0, 200, 100}}},
        {"panned before the start", 100, -3, -0.1F, 200, 100, {{0, 0, 200, 100}, {0, 0, 200, 100}}},
        {"in the frame's size", 250, 0, 0, 352, 288, {{0, 0, 140, 115}, {0, 0, 352, 288}}},
        {"larger in one direction only", 200, 0, 0, 500, 600, {{0, 0, 250, 288}, {0, 12, 500, 576}}},
        {"not all of its last pixels", 300, 0, 0, 620, 900, {{0, 0, 206, 288}, {1, 18, 618, 864}}},
        {"less than a pixel of the frame", 800, 0.5F, 0.5F, 5, 5, {{176, 144, 1, 1}, {0, 0, 5, 5}}},
        {"no window", 100, 0, 0, 352, 0, {}},
    };
    for (const auto& [what, percent, panX, panY, width, height, placement] : kCases) {
        const PictureView view = {352, 288, percent, panX, panY};
        EXPECT_EQ(placement, view.In(width, height)) << what;
    }
    EXPECT_EQ(Placement(), PictureView().In(100, 100));
}

TEST(PictureView, DraggingBeyondTheEdgeHasToComeBack) {
    PictureView view = {400, 400, 200, 0, 0};
    const auto x = [&view] { return view.In(200, 200).part.x; };
    view.Drag(-100, 0);  // 50 pixels of the frame
    EXPECT_EQ(50, x());
    view.Drag(-1000, 0);
    EXPECT_EQ(300, x());
    view.Drag(500, 0);  // back at 300
    EXPECT_EQ(300, x());
    view.Drag(20, 0);
    EXPECT_EQ(290, x());
}

TEST(PictureView, ZoomKeepsWhatIsUnderThePointer) {
    // For windows whose part is whole, the pixel under the pointer stays within one of the frame's pixels.
    PictureView view = {1000, 1000, 100, 0, 0};
    const auto under = [&view](int x, int y) {
        const Placement at = view.In(400, 400);
        return std::pair(at.part.x + x * 100 / view.percent, at.part.y + y * 100 / view.percent);
    };
    for (const int percent : {200, 400, 200}) {
        view.ZoomAt(percent, 300, 100, 400, 400);
        EXPECT_EQ(std::pair(300, 100), under(300, 100));
    }
    view.ZoomAt(100, 0, 0, 400, 400);
    EXPECT_EQ(100, view.percent);
    view.panX = 2;  // dragged beyond the end: it counts as shown
    view.ZoomAt(200, 399, 0, 400, 400);
    EXPECT_NEAR(999, under(399, 0).first, 1);
}

TEST(PlacedChild, FollowsItsWindow) {
    // From 10, 20, 100 by 50, by a window that grows by 7 and 9; centred ones move by 3.
    constexpr std::pair<unsigned, PixelRect> kCases[] = {
        {0, {10, 20, 100, 50}},
        {kCentreHorizontally | kMoveRight, {13, 20, 100, 50}},  // in this order of precedence
        {kMoveRight | kStretchWidth, {17, 20, 100, 50}},
        {kMoveDown | kStretchHeight, {10, 29, 100, 50}},
        {kStretchWidth | kStretchHeight, {10, 20, 107, 59}},
    };
    for (const auto& [flags, rect] : kCases) {
        PlacedChild child({10, 20, 100, 50}, flags);
        child.Follow(7, 9, 3);
        EXPECT_EQ(rect, child.Rect()) << flags;
    }
}

TEST(PlacedChild, NoSizeBelow0AndBackAgain) {
    PlacedChild child({0, 0, 100, 40}, kStretchWidth | kStretchHeight);
    constexpr std::array<int, 4> kSteps[] = {{-80, -30, 20, 10}, {-50, -30, 0, 0}, {-10, 5, 0, 0},
                                             {30, 5, 0, 0},      {20, 20, 10, 10}, {90, 30, 100, 40}};
    for (const auto& [dW, dH, width, height] : kSteps) {
        child.Follow(dW, dH, 0);
        EXPECT_EQ((PixelRect{0, 0, width, height}), child.Rect());
    }
}

TEST(OddPixels, AreShared) {
    // The moves worked by hand from the table of states: 0, 1, 2, 1, -1, -2, ...
    OddPixels pixels;
    for (const auto& [dW, move] :
         {std::pair(1, 1), {1, 0}, {1, 1}, {-1, -1}, {-1, 0}, {-1, -1}, {4, 2}, {-6, -3}, {3, 2}, {-3, -2}})
        EXPECT_EQ(move, pixels.MoveFor(dW)) << dW;
}

}  // namespace
