#include "video/avi/video_file.h"

#include "tests/file_size_limit.h"
#include "tests/video/avi/riff_builder.h"
#include "tests/video/packed_frame.h"
#include "tests/video/sources/source_files.h"
#include "video/avi/avi_file_writer.h"
#include "video/sources/create_source.h"

namespace {

struct VideoFile : SourceFiles {
    bool Open(const std::wstring& path, int width, int height, unsigned handler = 0, int scale = 1,
              int rate = 25) {
        rkCompressorSettings settings;
        settings.fccType = kFccVideoCodec;
        settings.fccHandler = handler;
        return file.OpenWriterWithSettings(path, width, height, scale, rate, settings);
    }

    const std::wstring name = directory + L"/a.avi";
    rkVideoFile file;
    rkVideoImage image;
};

TEST_F(VideoFile, FramesComeBack) {
    const struct {
        const wchar_t* name;
        std::uint32_t handler;
        int width, height, frames, rate, scale;
        const wchar_t* description;
    } kCases[] = {
        {L"/a.bmp", 0, 18, 6, 1, 0, 1, L"width 18 height 6"},
        {L"/a.avi", 0, 16, 16, 2, 2997, 100, L"reading RGB24, raw stream"},
        {L"/a.avi", 0, 1, 1, 2, 2997, 100, L"reading RGB24, raw stream"},
        {L"/a.avi", FourCC('n', 'o', 'n', 'e'), 19, 7, 2, 50, 2, L"reading RGB24, raw stream"},
        {L"/a.avi", FourCC('U', 'L', 'R', 'G'), 32, 16, 2, 50, 2, L"reading RGB24, decompressor UTVIDEO"},
        {L"/a.avi", FourCC('H', 'F', 'Y', 'U'), 18, 6, 2, 50, 2, L"reading RGB24, decompressor HUFFYUV"},
        {L"/a.avi", FourCC('F', 'F', 'V', '1'), 19, 7, 2, 50, 2, L"reading RGB24, decompressor FFV1"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.description << " " << c.width);
        ASSERT_TRUE(c.handler == 0 ? file.OpenWriter(directory + c.name, c.width, c.height)
                                   : Open(directory + c.name, c.width, c.height, c.handler, c.scale, c.rate));
        const Bytes frame = RandomFrame(RGB24, c.width, c.height), last(frame.rbegin(), frame.rend());
        for (const Bytes& bytes : {frame, last}) {
            Load(image, c.width, c.height, RGB24, bytes);
            ASSERT_TRUE(file.WriteImage(image)) << file.WriterResult();
        }
        EXPECT_EQ(2, file.FramesWritten());
        ASSERT_TRUE(file.CloseWriter());

        const auto source = rkCreateVideoSource(directory + c.name, true);
        ASSERT_NE(nullptr, source);
        const std::wstring description = FullDescription(*source);
        EXPECT_NE(description.npos, description.find(c.description)) << ToUtf8(description);
        EXPECT_EQ(c.frames, source->GetFrameCount());
        EXPECT_EQ(c.rate, source->GetRate());
        EXPECT_EQ(c.scale, source->GetScale());
        rkVideoImage read;
        ASSERT_EQ(0, source->ReadFrameImage(read, c.frames - 1));
        EXPECT_EQ(Packed(image), Packed(read)) << "the last frame, which stays in a bitmap";
        ASSERT_EQ(0, source->ReadFrameImage(read, 0));
        if (c.frames == 2) Load(image, c.width, c.height, RGB24, frame);
        EXPECT_EQ(Packed(image), Packed(read));
    }
}

TEST_F(VideoFile, RefusesWhatItCannotWrite) {
    EXPECT_FALSE(file.WriteImage(image));
    EXPECT_EQ(rkVideoFile::NotOpen, file.LastError());
    for (const auto& [width, height, scale, rate] :
         {std::array{0, 8, 1, 25}, {8, -1, 1, 25}, {8, 8, 0, 25}, {8, 8, 1, 0}}) {
        EXPECT_FALSE(Open(name, width, height, 0, scale, rate));
        EXPECT_EQ(rkVideoFile::BadSize, file.LastError());
    }
    EXPECT_FALSE(Open(directory + L"/none/a.avi", 18, 6));
    EXPECT_FALSE(Open(name, 1 << 15, 1 << 15)) << "3 GiB a frame";
    EXPECT_EQ(rkVideoFile::WriterFailed, file.LastError());

    ASSERT_TRUE(Open(name, 18, 6));
    EXPECT_FALSE(file.OpenWriter(directory + L"/b.bmp", 18, 6));
    EXPECT_EQ(rkVideoFile::AlreadyOpen, file.LastError());
    for (const auto& [width, colorSpace] : {std::pair(19, RGB24), {18, YUV}}) {
        image.Create(width, 6, colorSpace, 0);
        EXPECT_FALSE(file.WriteImage(image));
    }
    EXPECT_EQ(0, file.FramesWritten());
    rkAviFileWriter writer;
    EXPECT_EQ(L"Null poiter occured!", ErrorText(writer, file.WriterResult()));
}

TEST_F(VideoFile, ACompressorThatRefusesTheFramesLeavesAnOlderFileAlone) {
    Load(image, 16, 16, RGB24, RandomFrame(RGB24, 16, 16));
    ASSERT_TRUE(Open(name, 16, 16) && file.WriteImage(image) && file.CloseWriter());
    for (const std::wstring& path : {name, directory + L"/new.avi"}) {
        EXPECT_FALSE(Open(path, 1, 1, FourCC('F', 'F', 'V', '1')));
        EXPECT_EQ(rkAviFileWriter::FormatFailed, file.WriterResult());
    }
    EXPECT_NE(nullptr, rkCreateVideoSource(name, true));
    EXPECT_FALSE(std::filesystem::exists(ToUtf8(directory + L"/new.avi")));
}

/// Of the bytes missing at the end the last ones belong to the index, which comes when the file is completed,
/// and 3000 reach into the five frames of 776.
TEST_F(VideoFile, AFullDiskOrADeletedFileIsToldAtTheLatestByClose) {
    Load(image, 16, 16, RGB24, RandomFrame(RGB24, 16, 16));
    rlim_t fileBytes = 1 << 20;
    for (const rlim_t missing : {0u, 1u, 3000u}) {
        SCOPED_TRACE(missing);
        ASSERT_TRUE(Open(name, 16, 16));
        const FileSizeLimit limit(fileBytes - missing);
        bool isWritten = true;
        for (int i = 0; i < 5 && isWritten; ++i) isWritten = file.WriteImage(image);
        EXPECT_EQ(missing < 3000, isWritten);
        EXPECT_EQ(missing == 0, file.CloseWriter());
        EXPECT_EQ(missing == 0 ? 0 : rkAviFileWriter::WriteFailed, file.WriterResult());
        if (missing == 0) fileBytes = std::filesystem::file_size(ToUtf8(name));
    }
    ASSERT_TRUE(Open(name, 16, 16) && file.WriteImage(image));
    ASSERT_TRUE(std::filesystem::remove(ToUtf8(name)));
    EXPECT_FALSE(file.CloseWriter());
    EXPECT_TRUE(file.CloseWriter()) << "nothing is open";
}

std::string Record(std::uint64_t size, std::uint64_t stateSize, const std::string& state) {
    return Word(size) + "vidcMJPG" + Word(7500) + Word(0xFFFFFFFE) + Word(stateSize) + state;
}

TEST(CompressorSettings, RecordsAreReadOrRefusedWhole) {
    const std::tuple<const char*, std::string, std::string, bool> kCases[] = {
        {"three bytes of state", Record(23, 3, "abc"), "abc", true},
        {"bytes behind it", Record(23, 3, "abc") + "more", "abc", true},
        {"no state", Record(20, 0, ""), "", true},
        {"a state of less than nothing", Record(20, 0xFFFFFFFF, ""), "", true},
        {"record beyond the bytes", Record(24, 3, "abc"), "", false},
        {"record of almost 4 GiB", Record(0xFFFFFFFF, 3, "abc"), "", false},
        {"record too small for its fields", Record(19, 0, ""), "", false},
        {"state beyond the record", Record(20, 3, "abc"), "", false},
        {"state of 2 GiB", Record(23, 0x7FFFFFFF, "abc"), "", false},
        {"cut in a field", Record(20, 0, "").substr(0, 23), "", false},
        {"nothing", "", "", false},
    };
    for (const auto& [what, record, state, isSound] : kCases) {
        SCOPED_TRACE(what);
        rkCompressorSettings settings, expected;
        if (isSound)
            expected = {kFccVideoCodec, FourCC('M', 'J', 'P', 'G'), 7500, -2, {state.begin(), state.end()}};
        EXPECT_EQ(isSound, settings.FromRecord(Bytes(record.begin(), record.end())));
        EXPECT_EQ(expected, settings);
        const std::string stored = Record(20 + state.size(), state.size(), state);
        EXPECT_TRUE(!isSound || Bytes(stored.begin(), stored.end()) == settings.ToRecord());
    }
}

TEST(CompressorSettings, ChoiceIsOpenedAgainWithItsState) {
    static bool refuses = true;
    SetCompressorChooser([](COMPVARS& choice, const BITMAPINFOHEADER&, const wchar_t* title) {
        EXPECT_STREQ(L"Choose compressor:", title);
        choice = {kFccVideoCodec, FourCC('M', 'J', 'P', 'G'), 4200, 7, 33, nullptr};
        choice.hic = ICOpen(choice.fccType, choice.fccHandler, IcMode::Compress);
        ICSetRate(choice.hic, {.keyFrameRate = choice.lKey});
        return !refuses;
    });
    rkCompressorSettings settings;
    EXPECT_FALSE(settings.Choose({}));
    EXPECT_EQ(rkCompressorSettings(), settings);
    EXPECT_EQ(L"Uncompressed RGB", settings.Description());
    refuses = false;
    EXPECT_TRUE(settings.Choose({}));
    SetCompressorChooser(nullptr);
    EXPECT_EQ(4200, settings.quality);
    EXPECT_EQ(7, settings.dataRate);

    rkCompressorSettings stored;
    ASSERT_TRUE(stored.FromRecord(settings.ToRecord()));
    EXPECT_EQ(settings.state, ICGetState(stored.OpenCompressor()));
    EXPECT_NE(ICGetState(ICOpen(stored.fccType, stored.fccHandler, IcMode::Compress)), stored.state);
    wchar_t text[12];
    stored.Describe(text, 12);
    EXPECT_STREQ(L"Motion JPEG", text);
    stored.state = {1, 2, 3};
    EXPECT_NE(nullptr, stored.OpenCompressor()) << "another version's state leaves the defaults";
}

}  // namespace
