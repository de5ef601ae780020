#include <gtest/gtest.h>

#include "app/rules/run_end.h"
#include "app/rules/run_start.h"
#include "tests/app/rules/shell_fixture.h"
#include "video/color_space.h"

namespace {

TEST(PrepareRun, WhatIsMissing) {
    constexpr struct {
        const wchar_t* metric;
        bool comparative, mask;
        const wchar_t *original, *processed, *second, *maskPath;
        const wchar_t* message;
    } kCases[] = {
        {L"psnr", true, true, L"", L"", L"", L"", L"Choose original file!"},
        {L"psnr", true, true, L"a", L"", L"", L"", L"Choose first processed file!"},
        {L"psnr", true, true, L"a", L"b", L"", L"", L"Choose second processed file!"},
        {L"psnr", false, true, L"a", L"b", L"", L"  ", L"Choose mask file!"},
        {L"psnr", false, true, L"   ", L"b", L"", L"m", L"Choose original file!"},
        {L"blocking_metric", false, false, L"", L"", L"c", L"",
         L"Choose at least original or first processed file!"},
        {L"blocking_metric", true, true, L"a", L"", L"", L"", L"Choose first processed file!"},
        {L"blocking_metric", true, true, L"", L"b", L"", L"", L"Choose second processed file!"},
    };
    for (const auto& c : kCases) {
        ShellState state = StateWith(c.original, c.processed, c.second, c.maskPath);
        ChooseById(state, c.metric);
        state.job.comparativeAnalysis = c.comparative;
        state.job.maskSlot.useMask = c.mask;
        Answers answers;
        const RunStart start = PrepareRun(state, answers);
        EXPECT_FALSE(start.ready);
        EXPECT_EQ(state.phase, RunPhase::Editing);
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
    constexpr struct {
        const char* what;
        const wchar_t* path;
        int width, height, yuvType;
        bool useAvs, asks;
    } kCases[] = {
        {"complete", L"/a.yuv", 352, 288, IYUV, false, false},
        {"no height", L"/a.yuv", 352, 0, IYUV, false, true},
        {"negative, from settings", L"/a.yuv", -352, -288, IYUV, false, true},
        {"RGB24 is no raw layout", L"/a.yuv", 352, 288, RGB24, false, true},
        {"a layout of scripts only", L"/a.yuv", 352, 288, VYUY, false, true},
        {"the same through a script", L"/a.yuv", 352, 288, VYUY, true, false},
        {"a layout that no script reads", L"/a.yuv", 352, 288, P010, true, true},
        {"not raw", L"/a.avi", 0, 0, 0, false, false},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const FileRecord record = {c.path, c.path, c.useAvs, false,    false,
                                   0,      L"",    c.width,  c.height, c.yuvType};
        ShellState state = StateWith(L"", L"/b.avi");
        state.job.fileSlots[0] = record;
        Answers answers;
        EXPECT_TRUE(PrepareRun(state, answers).ready);
        EXPECT_EQ(!answers.asked.empty(), c.asks);
        EXPECT_EQ(state.job.run.inputFiles[0], state.job.fileSlots[0]);  // with the answers

        // Cancelled, for the mask as well, the attempt ends without a word.
        static_cast<FileRecord&>(state.job.maskSlot) = record;
        state.job.maskSlot.useMask = true;
        answers.acceptRaw = false;
        const RunStart start = PrepareRun(state, answers);
        EXPECT_EQ(start.ready, !c.asks);
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
    for (const int measurement : {CompletionNothing, CompletionPartial, CompletionAll}) {
        for (const bool show : {false, true}) {
            state.showResults = show;
            LeaveRun(state, {measurement, CompletionAll});
            EXPECT_EQ(state.phase == RunPhase::Viewing, show && measurement == CompletionAll);
        }
    }
    using Files = std::map<int, FileRecord>;
    const auto& slots = state.job.fileSlots;
    EXPECT_EQ(ViewerFiles(state.job), (Files{{1, slots[1]}}));
    state.job.comparativeAnalysis = true;
    EXPECT_EQ(ViewerFiles(state.job), (Files{{1, slots[1]}, {2, slots[2]}}));
}

}  // namespace
