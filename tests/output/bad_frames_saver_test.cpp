#include "output/bad_frames_saver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>

#include "platform/text.h"
#include "tests/file_size_limit.h"
#include "tests/output/results.h"
#include "tests/temporary_directory.h"
#include "video/sources/create_source.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

struct RecordingLog : ILog {
    bool Log(const std::wstring& line) override { return lines.push_back(line), true; }
    std::vector<std::wstring> lines;
};

/// Grey clips, and a PSNR of original and processed that gets worse from frame to frame.
struct BadFrames : testing::Test {
    static constexpr int kWidth = 96, kHeight = 64;

    /// A clip whose frame n is flat with the luma `first` + n, but for a bright bottom row.
    FileRecord Clip(const std::string& name, int frames, int first) {
        std::string bytes;
        for (int n = 0; n < frames; ++n)
            bytes += std::string(kWidth * (kHeight - 1), static_cast<char>(first + n)) +
                     std::string(kWidth, '\xEB') + std::string(kWidth * kHeight / 2, '\x80');
        fs::create_directories(fs::path(temporary.Path(name)).parent_path());
        const std::wstring path = FromUtf8(temporary.Write(name, bytes));
        return {path, path, false, false, false, 0, L"", kWidth, kHeight, IYUV};
    }

    void Measure(const FileRecord& original, const FileRecord& processed) {
        AddResult(store, 5,
                  {L"psnr", {original.name, processed.name}, {12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1}});
        settings.original = original;
        settings.firstProcessed = processed;
        settings.count = 2;
        settings.outputDir = FromUtf8(temporary.Path("out"));
        fs::create_directory(temporary.Path("out"));
        log.lines.clear();
        records = {{original.name, original}, {processed.name, processed}};
    }

    std::vector<int> Save() {
        BadFramesSaver saver(settings, &log);
        const std::vector<int> selected = saver.Save(store, records, 0);
        complete = saver.IsComplete();
        names.clear();
        for (const std::wstring& path : saver.GetPaths())
            names.push_back(fs::relative(ToUtf8(path), temporary.Path("out")));
        return selected;
    }

    std::wstring Quoted(const std::string& name) const {
        return L'"' + FromUtf8(temporary.Path(name)) + L'"';
    }

    TemporaryDirectory temporary;
    CResultsStore store;
    std::map<std::wstring, FileRecord> records;
    BadFramesSettings settings;
    RecordingLog log;
    bool complete = false;
    Names names;
};

}  // namespace

TEST_F(BadFrames, APictureForEachFrameAndFile) {
    Measure(Clip("orig.y", 12, 16), Clip("proc.y", 12, 116));
    EXPECT_EQ((std::vector{11, 10}), Save());
    EXPECT_TRUE(complete);
    EXPECT_EQ((Names{"orig_fr_00.bmp", "proc_fr_00.bmp", "orig_fr_01.bmp", "proc_fr_01.bmp"}), names);
    EXPECT_TRUE(log.lines.empty());

    // Frame 10 of the second file: 1.164 * (126 - 16) = 128.04, its last row 1.164 * (235 - 16) = 254.9.
    const auto source = rkCreateVideoSource(FromUtf8(temporary.Path("out/proc_fr_01.bmp")), false);
    ASSERT_NE(nullptr, source);
    rkVideoImage picture;
    ASSERT_EQ(0, source->ReadFrameImage(picture, 0));
    EXPECT_EQ(254, *picture.Row(0, 0));
    EXPECT_EQ(128, *picture.Row(0, 1));
    EXPECT_NE(std::count(picture.Row(0, kHeight - 20), picture.Row(0, kHeight - 19), 128), picture.Stride())
        << "the caption is at the top";
}

TEST_F(BadFrames, NothingIsWrittenOver) {
    // Equal names, and an original that has the name of a picture.
    const FileRecord original = Clip("out/clip_fr_00.bmp", 12, 16);
    Measure(original, Clip("b/clip.y", 12, 116));
    const FileRecord second = settings.secondProcessed = Clip("c/clip.y", 12, 16);
    AddResult(store, 6, {L"psnr", {original.name, second.name}, std::vector<float>(12, 50)});
    records.emplace(second.name, second);
    settings.count = 1;
    const std::string before = ReadWhole(temporary.Path("out/clip_fr_00.bmp"));

    Save();
    EXPECT_TRUE(complete);
    EXPECT_EQ(before, ReadWhole(temporary.Path("out/clip_fr_00.bmp")));
    EXPECT_EQ((Names{"clip_fr_00_fr_00.bmp", "clip_2_fr_00.bmp", "clip_3_fr_00.bmp"}), names);
    const auto line = [&](const char* file, const wchar_t* name) {
        return L"Bad frames of " + Quoted(file) + L" are saved as \"" + name + L"\", its own name is taken";
    };
    EXPECT_EQ((std::vector{line("b/clip.y", L"clip_2"), line("c/clip.y", L"clip_3")}), log.lines);
}

TEST_F(BadFrames, WhatCantBeHadIsLeftOutAndThePicturesOfAnEarlierRunStay) {
    const std::string out = temporary.Path("out"), picture = temporary.Path("out/proc_fr_00.bmp");
    std::optional<FileSizeLimit> fullDisk;
    const std::wstring noWrite = L"Failed to write " + Quoted("out/orig_fr_00.bmp");
    const std::wstring noFile = L"Failed to open file " + Quoted("proc.y");
    const std::wstring noFrame = L"Failed to read frame 11 from " + Quoted("proc.y");
    const std::tuple<std::function<void()>, std::wstring, std::size_t, std::size_t> kCases[] = {
        {[&] { fs::remove(temporary.Path("proc.y")); }, noFile, 2, 1},
        {[&] { Clip("proc.y", 11, 116); }, noFrame, 3, 1},
        {[&] { fullDisk.emplace(1000); }, noWrite, 0, 2},
        {[&] { fs::remove_all(out); }, noWrite, 0, 2},
    };
    for (const auto& [damage, line, saved, lines] : kCases) {
        SCOPED_TRACE(ToUtf8(line));
        store = {};
        Measure(Clip("orig.y", 12, 16), Clip("proc.y", 12, 116));
        Save();
        const std::string before = ReadWhole(picture);
        damage();
        EXPECT_EQ((std::vector{11, 10}), Save());
        fullDisk.reset();
        EXPECT_FALSE(complete);
        EXPECT_EQ(saved, names.size());
        ASSERT_EQ(lines, log.lines.size()) << "one for each file";
        EXPECT_EQ(line, log.lines[0]);
        EXPECT_TRUE(!fs::exists(out) || before == ReadWhole(picture));
        EXPECT_FALSE(fs::exists(picture + ".part.bmp"));
    }
}
