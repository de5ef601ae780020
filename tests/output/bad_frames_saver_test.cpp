#include "output/bad_frames_saver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "platform/text.h"
#include "tests/file_size_limit.h"
#include "tests/temporary_directory.h"
#include "video/sources/create_source.h"

namespace {

struct RecordingLog : ILog {
    bool Log(const std::wstring& line) override { return lines.push_back(line), true; }
    std::vector<std::wstring> lines;
};

/// Grey clips, and a PSNR of original and processed that gets worse from frame to frame.
struct BadFrames : testing::Test {
    static constexpr int kWidth = 96;
    static constexpr int kHeight = 64;

    /// A clip whose frame n is flat with the luma `first` + n, but for a bright bottom row.
    FileRecord Clip(const std::string& name, int frames, int first) {
        std::string bytes;
        for (int n = 0; n < frames; ++n)
            bytes += std::string(kWidth * (kHeight - 1), static_cast<char>(first + n)) +
                     std::string(kWidth, '\xEB') + std::string(kWidth * kHeight / 2, '\x80');
        FileRecord record;
        std::filesystem::create_directories(std::filesystem::path(temporary.Path(name)).parent_path());
        record.name = record.sourceName = FromUtf8(temporary.Write(name, bytes));
        record.width = kWidth;
        record.height = kHeight;
        record.yuvType = IYUV;
        return record;
    }

    void Measure(const FileRecord& original, const FileRecord& processed) {
        ResultRecord record;
        record.files = {original, processed};
        store.SetResultRecord(5, record);
        for (int n = 0; n < 12; ++n) store.AddValue(5, n, static_cast<float>(50 - n));
        settings.original = original;
        settings.firstProcessed = processed;
        settings.count = 2;
        settings.outputDir = FromUtf8(temporary.Path("out"));
        std::filesystem::create_directory(temporary.Path("out"));
        records = {{original.name, original}, {processed.name, processed}};
    }

    std::vector<int> Save() {
        BadFramesSaver saver(settings, &log);
        const std::vector<int> selected = saver.Save(store, records, 0);
        complete = saver.IsComplete();
        names.clear();
        for (const std::wstring& path : saver.GetPaths())
            names.push_back(std::filesystem::relative(ToUtf8(path), temporary.Path("out")));
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
    std::vector<std::string> names;
};

}  // namespace

TEST_F(BadFrames, APictureForEachFrameAndFile) {
    Measure(Clip("orig.y", 12, 16), Clip("proc.y", 12, 116));
    EXPECT_EQ((std::vector<int>{11, 10}), Save());
    EXPECT_TRUE(complete);
    EXPECT_EQ(
        (std::vector<std::string>{"orig_fr_00.bmp", "proc_fr_00.bmp", "orig_fr_01.bmp", "proc_fr_01.bmp"}),
        names);
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
    ResultRecord record;
    record.files = {original, Clip("c/clip.y", 12, 16)};
    store.SetResultRecord(6, record);
    for (int n = 0; n < 12; ++n) store.AddValue(6, n, 50);
    settings.secondProcessed = record.files[1];
    records.emplace(record.files[1].name, record.files[1]);
    settings.count = 1;
    const std::string before = ReadWhole(temporary.Path("out/clip_fr_00.bmp"));

    Save();
    EXPECT_TRUE(complete);
    EXPECT_EQ(before, ReadWhole(temporary.Path("out/clip_fr_00.bmp")));
    EXPECT_EQ((std::vector<std::string>{"clip_fr_00_fr_00.bmp", "clip_2_fr_00.bmp", "clip_3_fr_00.bmp"}),
              names);
    EXPECT_EQ(
        (std::vector<std::wstring>{
            L"Bad frames of " + Quoted("b/clip.y") + L" are saved as \"clip_2\", its own name is taken",
            L"Bad frames of " + Quoted("c/clip.y") + L" are saved as \"clip_3\", its own name is taken"}),
        log.lines);
}

TEST_F(BadFrames, WhatCantBeHadIsLeftOut) {
    const FileRecord original = Clip("orig.y", 12, 16);
    const FileRecord processed = Clip("proc.y", 12, 116);
    const struct {
        const char* what;
        std::function<void()> damage;
        std::wstring line;
        std::size_t saved;
    } kCases[] = {
        {"a file that is gone", [&] { std::filesystem::remove(temporary.Path("proc.y")); },
         L"Failed to open file " + Quoted("proc.y"), 2},
        {"a file that got shorter", [&] { Clip("proc.y", 11, 116); },
         L"Failed to read frame 11 from " + Quoted("proc.y"), 3},
        {"no directory",
         [&] {
             Clip("proc.y", 12, 116);
             std::filesystem::remove_all(temporary.Path("out"));
         },
         L"Failed to write " + Quoted("out/orig_fr_00.bmp"), 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        Measure(original, processed);
        store = {};
        Measure(original, processed);
        log.lines.clear();
        c.damage();
        EXPECT_EQ((std::vector<int>{11, 10}), Save());
        EXPECT_FALSE(complete);
        EXPECT_EQ(c.saved, names.size());
        ASSERT_FALSE(log.lines.empty());
        EXPECT_EQ(c.line, log.lines[0]);
        EXPECT_EQ(c.saved == 0 ? 2u : 1u, log.lines.size()) << "a line for each file";
    }
}

TEST_F(BadFrames, AFullDiskLeavesThePicturesOfAnEarlierRun) {
    Measure(Clip("orig.y", 12, 16), Clip("proc.y", 12, 116));
    Save();
    const std::string before = ReadWhole(temporary.Path("out/proc_fr_00.bmp"));
    const FileSizeLimit limit(1000);
    Save();
    EXPECT_FALSE(complete);
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(before, ReadWhole(temporary.Path("out/proc_fr_00.bmp")));
    EXPECT_FALSE(std::filesystem::exists(temporary.Path("out/proc_fr_00.bmp.part.bmp")));
}
