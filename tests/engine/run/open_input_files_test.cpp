#include "engine/run/open_input_files.h"

#include "tests/engine/run/fake_run.h"

namespace {

struct OpenInputFilesTest : RunTest {
    struct Opened {
        std::vector<int> files;
        RunOutcome outcome;
        int width = -1, height = -1, length = -1;
        bool originalOpened = true;
    };

    Opened Open(RunParameters& run) {
        Opened result;
        OpenedFiles files;
        OpenInputFiles(files, run, &result.outcome, result.width, result.height, result.length,
                       result.originalOpened);
        for (const auto& [index, file] : files) {
            EXPECT_EQ(index == -1, file.isMask);
            result.files.push_back(index);
        }
        return result;
    }
};

TEST_F(OpenInputFilesTest, TheShortestFileSetsTheLength) {
    RunParameters run = Recorded({Clip(L"a.yuv", 5, 0), Clip(L"b.yuv", 2, 0), Clip(L"c.yuv", 3, 0)});
    const Opened opened = Open(run);
    EXPECT_EQ((std::vector<int>{0, 1, 2}), opened.files);
    EXPECT_EQ(2, opened.length);
    EXPECT_EQ((RunOutcome{2, 2}), opened.outcome);
    EXPECT_EQ(
        (Lines{L"Opening \"a.yuv\"", L"Files default resolution is set to 16x16, default length is set to 5",
               L"Opened file \"a.yuv\", width 16 height 16 colorspace Y", L"Opening \"b.yuv\"",
               L"Default length is set to 2", L"Opened file \"b.yuv\", width 16 height 16 colorspace Y",
               L"Opening \"c.yuv\"", L"Default length is set to 2",
               L"Opened file \"c.yuv\", width 16 height 16 colorspace Y"}),
        lines);
}

TEST_F(OpenInputFilesTest, FilesThatDontTakePart) {
    RunParameters run =
        Recorded({RawRecord(L"gone.yuv", 16, 0), Clip(L"b.yuv", 2, 0), Clip(L"small.yuv", 1, 0, 8)});
    const Opened opened = Open(run);
    EXPECT_EQ((std::vector<int>{1}), opened.files);
    EXPECT_EQ(2, opened.length) << "a file of another size doesn't shorten the run";
    EXPECT_FALSE(opened.originalOpened);
    EXPECT_EQ((RunOutcome{1, 1}), opened.outcome) << "for the one that failed";
    EXPECT_EQ((Lines{L"Opening \"gone.yuv\"", L"Failed to open file \"gone.yuv\"", L"Opening \"b.yuv\"",
                     L"Files default resolution is set to 16x16, default length is set to 2",
                     L"Opened file \"b.yuv\", width 16 height 16 colorspace Y", L"Opening \"small.yuv\"",
                     L"Resolution of \"small.yuv\" (8x8) is different from default, skipping file."}),
              lines);
}

TEST_F(OpenInputFilesTest, Mask) {
    const struct {
        const char* what;
        FileRecord mask;
        bool used;
        RunOutcome outcome;
        Lines lines;  // behind "Opening file with a mask"
    } cases[] = {
        {"as long as the run",
         Clip(L"m.yuv", 2, 0),
         true,
         {2, 2},
         {L"Opened file \"m.yuv\", width 16 height 16 colorspace Y"}},
        {"too short",
         Clip(L"short.yuv", 1, 0),
         false,
         {2, 2},
         {L"Default length is 2, mask file length is 1. Not using the mask."}},
        {"of another size",
         Clip(L"small.yuv", 8, 0, 8),
         false,
         {2, 2},
         {L"Resolution of \"small.yuv\" (8x8) is different from default, not using the mask."}},
        {"missing",
         RawRecord(L"gone.yuv", 16, 16),
         false,
         {1, 1},
         {L"Failed to open file with a mask\"gone.yuv\""}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        lines.clear();
        RunParameters run = Recorded({Clip(L"a.yuv", 2, 0)});
        run.useMask = true;
        run.maskFile = c.mask;
        const Opened opened = Open(run);
        EXPECT_EQ(c.used ? (std::vector<int>{-1, 0}) : (std::vector<int>{0}), opened.files);
        EXPECT_EQ(c.outcome, opened.outcome);
        EXPECT_EQ(2, opened.length);

        Lines expected = {L"Opening file with a mask\"" + c.mask.name + L"\""};
        expected.insert(expected.end(), c.lines.begin(), c.lines.end());
        ASSERT_EQ(3 + expected.size(), lines.size());
        EXPECT_EQ(expected, Lines(lines.begin() + 3, lines.end()));
    }

    RunParameters run = Recorded({RawRecord(L"gone.yuv", 16, 16)});
    run.useMask = true;
    run.maskFile = cases[0].mask;
    lines.clear();
    EXPECT_TRUE(Open(run).files.empty());
    EXPECT_EQ(2u, lines.size()) << "without an input the mask isn't even tried";
}

}  // namespace
