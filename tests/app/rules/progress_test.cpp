#include <gtest/gtest.h>

#include "app/rules/progress_flow.h"
#include "app/rules/progress_text.h"
#include "tests/app/rules/shell_fixture.h"

namespace {

using Next = ProgressFlow::Next;

TEST(ProgressFlow, ClosesByItself) {
    constexpr struct {
        const wchar_t *original, *processed, *second, *mask;
        bool autoClose;
        Next next;
    } kCases[] = {
        {L"a.avi", L"b.avi", L"", L"", false, Next::Wait},
        {L"a.avi", L"b.bmp", L"", L"", true, Next::ContinueAtOnce},
        {L"a.bmp", L"b.BMP", L"", L"m.avi", true, Next::ContinueAfterDelay},
        {L"a.bmp", L"b.bmp", L"", L"", false, Next::Wait},
        {L"", L"b.bmp", L"c.y4m", L"", true, Next::ContinueAtOnce},
    };
    for (const auto& c : kCases) {
        const ShellState state = StateWith(c.original, c.processed, c.second, c.mask);
        ProgressFlow flow;
        flow.Started();  // and it fails before a frame: nobody says that the frames are over
        EXPECT_EQ(flow.Finished(c.autoClose, state.job), c.next);
        EXPECT_TRUE(flow.CanContinue());
    }
}

TEST(ProgressFlow, ButtonsAndLateCalls) {
    const ShellState images = StateWith(L"a.bmp", L"b.bmp");
    ProgressFlow flow;
    flow.Started();
    EXPECT_TRUE(flow.CanStop());
    EXPECT_FALSE(flow.Continue());
    flow.FramesOver();
    EXPECT_FALSE(flow.CanStop() || flow.CanContinue());
    EXPECT_EQ(flow.Finished(true, images.job), Next::ContinueAfterDelay);
    EXPECT_TRUE(flow.Continue());   // the user is faster than the timer
    EXPECT_FALSE(flow.Continue());  // which then comes to a dialog that is gone
    EXPECT_FALSE(flow.CanStop() || flow.CanContinue());
}

TEST(ProgressTexts, RateAndTimeLeft) {
    constexpr struct {
        int done, length;
        double seconds;
        const wchar_t *rate, *left;
    } kCases[] = {
        {0, 300, 1, L"", L""},
        {1, 300, 0, L"", L""},
        {188, 300, 0.5, L"376 frames/s", L"less than a second left"},
        {10, 30, 1, L"10.0 frames/s", L"2 s left"},
        {1, 61, 1, L"1.00 frames/s", L"1 min 0 s left"},
        {1, 3722, 1, L"1.00 frames/s", L"1 h 2 min left"},
        {1, 1000000, 1000, L"0.00 frames/s", L"99 h 59 min left"},
    };
    for (const auto& c : kCases) {
        const ProgressTexts texts = ProgressTextsOf(c.done, c.length, c.seconds);
        EXPECT_EQ(texts.rate, c.rate);
        EXPECT_EQ(texts.left, c.left);
    }
    EXPECT_EQ(ProgressTextsOf(188, 300, 1).frame, L"Frame 188 of 300");
}

}  // namespace
