#include <gtest/gtest.h>

#include "app/rules/main_form.h"
#include "app/rules/progress_flow.h"
#include "app/rules/progress_text.h"
#include "app/rules/run_end.h"
#include "app/rules/run_start.h"
#include "tests/app/rules/shell_fixture.h"
#include "video/color_space.h"

namespace {

// Files of metrics of one input and of two.
TEST(PrepareRun, WhatIsMissing) {
    constexpr struct {
        const wchar_t* metric;
        bool comparative, visualize, mask;
        const wchar_t *original, *processed, *second, *maskPath;
        bool isReady;            // "Process" can be pressed
        const wchar_t* message;  // "": the run starts
    } kCases[] = {
        {L"psnr", false, false, false, L"a", L"b", L"", L"", true, L""},
        {L"psnr", false, false, false, L"", L"b", L"c", L"", false, L"Choose original file!"},
        {L"psnr", true, false, true, L"", L"", L"", L"", false, L"Choose original file!"},
        {L"psnr", true, false, true, L"a", L"", L"", L"", false, L"Choose first processed file!"},
        {L"psnr", true, false, true, L"a", L"b", L"", L"", false, L"Choose second processed file!"},
        {L"psnr", true, false, false, L"a", L"b", L"c", L"", true, L""},
        {L"psnr", false, false, true, L"a", L"b", L"", L"  ", true, L"Choose mask file!"},
        {L"psnr", false, false, true, L"   ", L"b", L"", L"m", true, L"Choose original file!"},
        {L"blocking_metric", false, true, false, L"a", L"", L"", L"", true, L""},
        {L"blocking_metric", false, false, false, L"", L"b", L"", L"", true, L""},
        {L"blocking_metric", false, false, false, L"", L"", L"c", L"", false,
         L"Choose at least original or first processed file!"},
        {L"blocking_metric", true, false, true, L"a", L"", L"", L"", false, L"Choose first processed file!"},
        {L"blocking_metric", true, false, true, L"", L"b", L"", L"", false, L"Choose second processed file!"},
        {L"blocking_metric", true, false, false, L"", L"b", L"c", L"", true, L""},
        {L"blurring_metric", false, false, false, L"", L"b", L"", L"", true, L""},
        {L"blurring_metric", false, true, false, L"", L"b", L"", L"", false, L"Choose original file!"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(&c - kCases);
        ShellState state = StateWith(c.original, c.processed, c.second, c.maskPath);
        ChooseById(state, c.metric);
        state.job.comparativeAnalysis = c.comparative;
        state.job.visualization.save = c.visualize;
        state.job.maskSlot.useMask = c.mask;
        const MainForm form = MainFormFrom(state);
        EXPECT_EQ(form.IsEnabled(Control::Process), c.isReady);
        EXPECT_EQ(form.status, c.isReady ? L"Ready" : L"Select video files and options");
        Answers answers;
        const RunStart start = PrepareRun(state, answers);
        EXPECT_EQ(start.ready, *c.message == 0);
        EXPECT_EQ(state.phase == RunPhase::Editing, !start.ready);
        EXPECT_EQ(start.refusal.value_or(BoxText()).text, c.message);
    }
}

TEST(PrepareRun, FilesAndMaskOfTheRun) {
    ShellState state = StateWith(L"/a.avi ", L"/b.avi", L"/c.mp4", L"/m.bmp  ");
    MeasurementJob& job = state.job;
    const auto names = [&] {
        std::wstring text;
        for (const FileRecord& file : job.run.inputFiles) text += file.sourceName + L";";
        return text;
    };
    ChooseById(state, L"blocking_metric");
    Answers answers;
    job.comparativeAnalysis = job.maskSlot.useMask = job.maskSlot.blackMask = true;
    const RunStart start = PrepareRun(state, answers);
    ASSERT_TRUE(start.ready);
    ASSERT_EQ(start.notes.size(), 1U);
    EXPECT_TRUE(start.notes[0].starts_with(L"\"/c.mp4\": ")) << "the advice for a file that won't open";
    EXPECT_EQ(state.phase, RunPhase::Measuring);
    EXPECT_EQ(names(), L"/a.avi;/b.avi;/c.mp4;");
    EXPECT_TRUE(job.run.useMask && job.run.blackMask);
    EXPECT_EQ(job.run.maskFile.sourceName, L"/m.bmp");

    job.run.interruption->Stop();
    job.comparativeAnalysis = job.maskSlot.useMask = false;
    SetPath(job.fileSlots[0], {});
    ASSERT_TRUE(PrepareRun(state, answers).ready);
    EXPECT_EQ(names(), L"/b.avi;");
    EXPECT_FALSE(job.run.useMask);
    EXPECT_TRUE(job.run.interruption->KeepRunning());  // a new token
}

TEST(PrepareRun, RawSettingsAreAskedForOnlyWhereTheyLack) {
    constexpr std::tuple<const char*, const wchar_t*, int, int, int, bool, bool> kCases[] = {
        {"complete", L"/a.yuv", 352, 288, IYUV, false, false},
        {"no height", L"/a.yuv", 352, 0, IYUV, false, true},
        {"negative, from settings", L"/a.yuv", -352, -288, IYUV, false, true},
        {"RGB24 is no raw layout", L"/a.yuv", 352, 288, RGB24, false, true},
        {"a layout of scripts only", L"/a.yuv", 352, 288, VYUY, false, true},
        {"the same through a script", L"/a.yuv", 352, 288, VYUY, true, false},
        {"a layout that no script reads", L"/a.yuv", 352, 288, P010, true, true},
        {"not raw", L"/a.avi", 0, 0, 0, false, false},
    };
    for (const auto& [what, path, width, height, yuvType, useAvs, asks] : kCases) {
        SCOPED_TRACE(what);
        const FileRecord record = {path, path, useAvs, false, false, 0, L"", width, height, yuvType};
        ShellState state = StateWith(L"", L"/b.avi");
        state.job.fileSlots[0] = record;
        Answers answers;
        EXPECT_TRUE(PrepareRun(state, answers).ready);
        EXPECT_EQ(!answers.asked.empty(), asks);
        EXPECT_EQ(state.job.run.inputFiles[0], state.job.fileSlots[0]);  // with the answers

        // Cancelled, for the mask as well, the attempt ends without a word.
        static_cast<FileRecord&>(state.job.maskSlot) = record;
        state.job.maskSlot.useMask = true;
        answers.acceptRaw = false;
        const RunStart start = PrepareRun(state, answers);
        EXPECT_EQ(start.ready, !asks);
        EXPECT_FALSE(start.refusal);
    }
}

// A path typed over that of a raw file leaves the size in the slot; read by it, any file would give noise.
TEST(PrepareRun, LeftOverRawSizeIsNotUsed) {
    ShellState state = StateWith(L"/a.avi", L"/b.avi");
    state.job.fileSlots[0].width = state.job.fileSlots[0].height = 352;
    EXPECT_EQ(ToOpen(state.job.fileSlots[0]).width, 0);
    Answers answers;
    ASSERT_TRUE(PrepareRun(state, answers).ready);
    EXPECT_EQ(state.job.run.inputFiles[0].width, 0);
    EXPECT_EQ(state.job.fileSlots[0].height, 0);  // bad frames and the viewer read the slots
}

TEST(LeaveRun, WhatTheViewerGets) {
    ShellState state = StateWith(L"", L"b", L"c");
    using Files = std::map<int, FileRecord>;
    const auto& slots = state.job.fileSlots;
    EXPECT_EQ(ViewerFiles(state.job), (Files{{1, slots[1]}}));
    state.job.comparativeAnalysis = true;
    EXPECT_EQ(ViewerFiles(state.job), (Files{{1, slots[1]}, {2, slots[2]}}));
}

using Next = ProgressFlow::Next;

TEST(ProgressFlow, ClosesByItself) {
    constexpr std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, bool, Next>
        kCases[] = {
            {L"a.avi", L"b.avi", L"", L"", false, Next::Wait},
            {L"a.avi", L"b.bmp", L"", L"", true, Next::ContinueAtOnce},
            {L"a.bmp", L"b.BMP", L"", L"m.avi", true, Next::ContinueAfterDelay},
            {L"a.bmp", L"b.bmp", L"", L"", false, Next::Wait},
            {L"", L"b.bmp", L"c.y4m", L"", true, Next::ContinueAtOnce},
        };
    for (const auto& [original, processed, second, mask, autoClose, next] : kCases) {
        const ShellState state = StateWith(original, processed, second, mask);
        ProgressFlow flow;
        flow.Started();  // and it fails before a frame: nobody says that the frames are over
        EXPECT_EQ(flow.Finished(autoClose, state.job), next);
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
    constexpr std::tuple<int, int, double, const wchar_t*, const wchar_t*> kCases[] = {
        {0, 300, 1, L"", L""},
        {1, 300, 0, L"", L""},
        {188, 300, 0.5, L"376 frames/s", L"less than a second left"},
        {10, 30, 1, L"10.0 frames/s", L"2 s left"},
        {1, 61, 1, L"1.00 frames/s", L"1 min 0 s left"},
        {1, 3722, 1, L"1.00 frames/s", L"1 h 2 min left"},
        {1, 1000000, 1000, L"0.00 frames/s", L"99 h 59 min left"},
    };
    for (const auto& [done, length, seconds, rate, left] : kCases) {
        const ProgressTexts texts = ProgressTextsOf(done, length, seconds);
        EXPECT_EQ(texts.rate, rate);
        EXPECT_EQ(texts.left, left);
    }
    EXPECT_EQ(ProgressTextsOf(188, 300, 1).frame, L"Frame 188 of 300");
}

}  // namespace
