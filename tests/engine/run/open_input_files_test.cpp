#include "engine/run/open_input_files.h"

#include "tests/engine/run/fake_run.h"

namespace {

/// The line of a file that takes part.
std::wstring Kept(const std::wstring& name) {
    return L"Opened file \"" + name + L"\", width 16 height 16 colorspace Y";
}

struct OpenInputFilesTest : RunTest {
    /// The indices of the files that were opened.
    std::vector<int> Open(const RunParameters& run) {
        OpenedFiles opened;
        outcome = {};
        OpenInputFiles(opened, run, &outcome, width, height, length, originalOpened);
        std::vector<int> files;
        for (const auto& [index, file] : opened) {
            EXPECT_EQ(index == kMaskFile, file.isMask);
            files.push_back(index);
        }
        return files;
    }

    int width = -1, height = -1, length = -1;
    bool originalOpened = true;
};

TEST_F(OpenInputFilesTest, TheShortestFileSetsTheLength) {
    const auto run = Recorded({Clip(L"a", 5, 0), Clip(L"b", 2, 0), Clip(L"c", 3, 0)});
    EXPECT_EQ((std::vector<int>{0, 1, 2}), Open(run));
    EXPECT_EQ(2, length);
    EXPECT_EQ((RunOutcome{2, 2}), outcome);
    EXPECT_EQ(
        (Lines{L"Opening \"a\"", L"Files default resolution is set to 16x16, default length is set to 5",
               Kept(L"a"), L"Opening \"b\"", L"Default length is set to 2", Kept(L"b"), L"Opening \"c\"",
               L"Default length is set to 2", Kept(L"c")}),
        lines);
}

TEST_F(OpenInputFilesTest, FilesThatDontTakePart) {
    const auto run = Recorded({Raw(L"gone"), Clip(L"b", 2, 0), Clip(L"small", 1, 0, 8)});
    EXPECT_EQ((std::vector<int>{1}), Open(run));
    EXPECT_EQ(2, length) << "a file of another size doesn't shorten the run";
    EXPECT_FALSE(originalOpened);
    EXPECT_EQ((RunOutcome{1, 1}), outcome) << "for the one that failed";
    EXPECT_EQ((Lines{L"Opening \"gone\"", L"Failed to open file \"gone\"", L"Opening \"b\"",
                     L"Files default resolution is set to 16x16, default length is set to 2", Kept(L"b"),
                     L"Opening \"small\"",
                     L"Resolution of \"small\" (8x8) is different from default, skipping file."}),
              lines);
}

TEST_F(OpenInputFilesTest, Mask) {
    const struct {
        FileRecord mask;
        bool used;
        RunOutcome outcome;
        std::wstring line;  // behind "Opening file with a mask"
    } cases[] = {
        {Clip(L"m", 2, 0), true, {2, 2}, Kept(L"m")},
        {Clip(L"short", 1, 0),
         false,
         {2, 2},
         L"Default length is 2, mask file length is 1. Not using the mask."},
        {Clip(L"small", 8, 0, 8),
         false,
         {2, 2},
         L"Resolution of \"small\" (8x8) is different from default, not using the mask."},
        {Raw(L"gone"), false, {1, 1}, L"Failed to open file with a mask\"gone\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(ToUtf8(c.mask.name));
        const auto run = Recorded({Clip(L"a", 2, 0)}, c.mask);
        EXPECT_EQ(c.used ? (std::vector<int>{-1, 0}) : (std::vector<int>{0}), Open(run));
        EXPECT_EQ(c.outcome, outcome);
        EXPECT_EQ(2, length);
        EXPECT_EQ((Lines{L"Opening file with a mask\"" + c.mask.name + L"\"", c.line}),
                  Lines(lines.begin() + 3, lines.end()));
    }
    EXPECT_TRUE(Open(Recorded({Raw(L"gone")}, cases[0].mask)).empty());
    EXPECT_EQ(2u, lines.size()) << "without an input the mask isn't even tried";
}

}  // namespace
