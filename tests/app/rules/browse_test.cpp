#include <gtest/gtest.h>

#include "app/rules/drop.h"
#include "tests/app/rules/shell_fixture.h"
#include "video/color_space.h"

namespace {

TEST(Browse, FilterAndQuestionsByTheName) {
    constexpr struct {
        const wchar_t* path;
        bool installed, useAvs, yes;
        int filter;
        const wchar_t* parameters;
        const char* asked;
        bool useAvsAfter;
    } kCases[] = {
        {L"/v/a.avi", true, false, true, 0, L"audio = false, pixel_type = \"RGB24\"", "file ", false},
        {L"/v/a.AVS", true, false, true, 4, L"", "file ", false},
        {L"/v/a.bmp", true, false, true, 4, L"", "file ", false},
        {L"/v/a.y4m", true, true, true, 4, L"", "file ", true},
        {L"/v/a.mov", true, true, true, 6, L"color = 2, quality = 100, audio = false, mode = 0", "file ",
         true},
        {L"/v/a.mkv", true, false, true, 4, L"", "file script ", true},
        {L"/v/a.mkv", true, false, false, 4, L"", "file script ", false},
        {L"/v/a.mkv", false, false, true, 4, L"", "file ", false},
        {L"/v/a.yuv", true, false, true, 7, L"352, 288, \"I420\"", "file raw ", false},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(&c - kCases);
        ShellState state = StateWith();
        state.capabilities.aviSynth = c.installed;
        FileRecord& slot = state.job.fileSlots[0];
        slot.useAvs = c.useAvs;
        state.job.fileSlots[1].width = 720;  // without a height it's no size to lend
        state.job.fileSlots[2] = {L"", L"", false, false, false, 0, L"", 352, 288, IYUV};
        Answers answers;
        answers.file = c.path;
        answers.openWithAviSynth = c.yes;
        EXPECT_TRUE(BrowseFile(state, RowOriginal, answers));
        EXPECT_EQ(slot.name + slot.sourceName, std::wstring(c.path) + c.path);
        EXPECT_EQ(slot.filter, c.filter);
        EXPECT_EQ(slot.parameters, c.parameters);
        EXPECT_EQ(slot.useAvs, c.useAvsAfter);
        EXPECT_EQ(answers.asked, c.asked);
    }
}

TEST(Browse, KeepsWhatWasThere) {
    ShellState state = StateWith(L"", L"/v/a.yuv");
    FileRecord& slot = state.job.fileSlots[1];
    slot.width = slot.height = 16;
    state.job.fileSlots[0].width = state.job.fileSlots[0].height = 64;
    state.job.csv.outputDir = L"/results/";
    const FileRecord before = slot;
    Answers answers;
    EXPECT_FALSE(BrowseFile(state, RowProcessed, answers));
    EXPECT_EQ(slot, before);

    answers.acceptRaw = false;
    EXPECT_FALSE(TakeFile(state, RowProcessed, L"/v/b.yuv", answers));
    EXPECT_EQ(answers.shownRaw.width, 16);  // a size of its own isn't replaced by another slot's
    EXPECT_EQ(slot.name + slot.sourceName, L"");
    EXPECT_EQ(slot.filter, 4);  // an empty name is neither raw, AVI nor MOV
    EXPECT_EQ(slot.width, 0);
    EXPECT_EQ(state.job.csv.outputDir, L"/results/");

    // What the user wrote is left.
    answers.acceptRaw = true;
    for (const wchar_t* path : {L"/v/b.mkv", L"/v/b.yuv"}) {
        slot = {L"/v/a.avi", L"/v/a.avi", true, false, true, 5, L"mine", 0, 0, 0};
        EXPECT_TRUE(TakeFile(state, RowProcessed, path, answers));
        EXPECT_EQ(slot.filter, 5);
        EXPECT_EQ(slot.parameters, L"mine");
    }
}

TEST(Browse, ResultsGoBesideAProcessedFile) {
    constexpr std::tuple<FileRow, const wchar_t*, const wchar_t*> kCases[] = {
        {RowOriginal, L"/v/a.avi", L"before"},  {RowProcessed, L"/v/w/a.avi", L"/v/w"},
        {RowSecond, L"C:\\v\\a.avi", L"C:\\v"}, {RowMask, L"/v/a.avi", L"before"},
        {RowProcessed, L"a.avi", L"a.avi"},     {RowProcessed, L"/a.avi", L"/"},
    };
    for (const auto& [row, path, beside] : kCases) {
        ShellState state = StateWith();
        MeasurementJob& job = state.job;
        job.csv.outputDir = job.visualization.outputDir = job.badFrames.outputDir = L"before";
        Answers answers;
        TakeFile(state, row, path, answers);
        EXPECT_EQ(job.csv.outputDir, beside);
        EXPECT_EQ(job.visualization.outputDir, beside);
        EXPECT_EQ(job.badFrames.outputDir, L"before");
    }
}

TEST(Browse, AdviceForWhatOnlyAScriptOpens) {
    // Path, "Open with AVISynth", whether that is installed, and a part of the advice; "": there is none.
    constexpr std::tuple<const wchar_t*, bool, bool, const wchar_t*> kCases[] = {
        {L"/v/a.MKV", false, true, L"needs \"Open with AVISynth\""},
        {L"/v/a", false, true, L"needs \"Open with AVISynth\""},
        {L"/v/a.mkv", false, false, L"which isn't there"},
        {L"/v/a.mkv", true, true, L""},
        {L"/v/a.y4m", false, true, L""},
        {L"/v/a.yuv", false, true, L""},
        {L"", false, true, L""},
    };
    for (const auto& [path, useAvs, isInstalled, said] : kCases) {
        ShellState state = StateWith(path);
        state.job.fileSlots[0].useAvs = useAvs;
        state.capabilities.aviSynth = isInstalled;
        const std::wstring advice = OpeningAdvice(state.job.fileSlots[0], state.capabilities);
        EXPECT_EQ(advice.empty(), *said == 0);
        EXPECT_NE(advice.find(said), std::wstring::npos);
    }
}

TEST(Drop, RowsAndCounts) {
    constexpr int kWindow = -1;
    constexpr struct {
        const wchar_t *original, *processed, *second;
        bool comparative, useMask;
        int target;
        std::size_t files;
        const wchar_t* routed;  // rows and the files that they get; files are named 1, 2, 3
    } kCases[] = {
        {L"a", L"", L"", false, false, RowOriginal, 1, L"0<1 "},  // also over a path
        {L"", L"", L"", false, false, RowOriginal, 2, L""},
        {L"", L"", L"", false, true, RowSecond, 1, L""},  // a closed row
        {L"", L"", L"", true, false, RowMask, 1, L""},
        {L"", L"", L"", false, true, RowMask, 1, L"3<1 "},
        {L"", L"b", L"", false, false, kWindow, 1, L"0<1 "},
        {L"a", L"b", L"", false, true, kWindow, 1, L""},  // the mask is no choice
        {L"a", L"b", L"", true, false, kWindow, 1, L"2<1 "},
        {L"a", L"b", L"", false, false, kWindow, 2, L"0<1 1<2 "},
        {L"", L"b", L"", true, false, kWindow, 3, L"0<1 1<2 2<3 "},
        {L"", L"", L"", false, true, kWindow, 3, L""},
        {L"", L"", L"", true, true, kWindow, 0, L""},
    };
    for (const auto& c : kCases) {
        ShellState state = StateWith(c.original, c.processed, c.second);
        state.job.comparativeAnalysis = c.comparative;
        state.job.maskSlot.useMask = c.useMask;
        std::vector<std::wstring> files = {L"1", L"2", L"3"};
        files.resize(c.files);
        const auto target = c.target == kWindow ? std::nullopt : std::optional(FileRow(c.target));
        std::wstring routed;
        for (const RoutedFile& file : RouteDrop(files, target, state.job))
            routed += std::to_wstring(file.row) + L"<" + file.path + L" ";
        EXPECT_EQ(routed, c.routed) << &c - kCases;
    }
}

}  // namespace
