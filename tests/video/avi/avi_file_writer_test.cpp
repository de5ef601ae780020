#include "video/avi/avi_file_writer.h"

#include <filesystem>

#include "platform/text.h"
#include "platform/vfw/surface_format.h"
#include "tests/file_size_limit.h"
#include "tests/video/packed_frame.h"
#include "tests/video/sources/source_files.h"
#include "video/color_space.h"
#include "video/sources/avi_source.h"
#include "video/video_image.h"

namespace {

class AviFileWriter : public SourceFiles {
protected:
    void SetSize(int width, int height) {
        format = FormatOf(Surface::RGB24, width, height);
        info.fccType = FourCC('v', 'i', 'd', 's');
        info.dwScale = 2;
        info.dwRate = 50;
        info.dwStart = 3;
        info.rcFrame = {0, 0, width, height};
    }
    const std::wstring name = directory + L"/a.avi";
    BITMAPINFOHEADER format = {};
    AVISTREAMINFOW info = {};
    rkAviFileWriter writer;
};

std::uint32_t chosen;  // what the user answers the question for a compressor; 0: nothing

TEST_F(AviFileWriter, FramesComeBack) {
    const struct {
        std::uint32_t handler;
        int width, height;
        const wchar_t* description;
    } kCases[] = {{0, 16, 16, L"uncompressed"},
                  {0, 1, 1, L"uncompressed"},
                  {FourCC('n', 'o', 'n', 'e'), 19, 7, L"uncompressed"},
                  {FourCC('U', 'L', 'R', 'G'), 32, 16, L"decompressor Ut Video RGB, lossless"},
                  {FourCC('F', 'F', 'V', '1'), 19, 7, L"decompressor FFV1, lossless"}};
    SetCompressorChooser([](COMPVARS& choice, const BITMAPINFOHEADER&, const wchar_t*) {
        choice.fccType = kFccVideoCodec;
        choice.fccHandler = chosen;
        return chosen != 0;
    });
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.description << " " << c.width);
        chosen = c.handler;
        SetSize(c.width, c.height);
        ASSERT_EQ(0, writer.Open(name, &format, &info, true));
        wchar_t text[300];
        writer.GetDescription(text, 300);
        EXPECT_EQ(L"file \"" + name + L"\" " + c.description, text);

        Bytes first = RandomFrame(RGB24, c.width, c.height);
        Bytes second(first.rbegin(), first.rend());
        rkVideoImage image;
        image.Create(c.width, c.height, RGB24, 0);
        image.LoadFrame(second.data());
        EXPECT_EQ(0, writer.WriteFrame(first.data()));
        EXPECT_EQ(0, writer.WriteFrameImage(image));
        ASSERT_EQ(0, writer.Close());

        rkAviSource source;
        ASSERT_EQ(0, source.Open(name, true, false));
        EXPECT_EQ(2, source.GetFrameCount());
        EXPECT_EQ(50, source.GetRate());
        EXPECT_EQ(2, source.GetScale());
        for (Bytes* frame : {&first, &second}) {
            rkVideoImage read;
            image.LoadFrame(frame->data());
            ASSERT_EQ(0, source.ReadNextFrameImage(read));
            for (int y = 0; y < c.height; ++y)
                EXPECT_TRUE(std::equal(image.Row(0, y), image.Row(0, y) + 3 * c.width, read.Row(0, y)));
        }
    }
    SetCompressorChooser(nullptr);
}

TEST_F(AviFileWriter, RefusesWhatItCannotWrite) {
    SetSize(16, 16);
    const auto open = [&](const std::wstring& path) { return writer.Open(path, &format, &info, false); };
    EXPECT_EQ(rkAviFileWriter::NullPointer, open(L""));
    EXPECT_EQ(rkAviFileWriter::NullPointer, writer.Open(name, nullptr, &info, false));
    EXPECT_EQ(rkAviFileWriter::NullPointer, writer.Open(name, &format, nullptr, false));
    EXPECT_EQ(rkAviFileWriter::CreateFailed, open(directory + L"/none/a.avi"));
    info.dwRate = 0;
    EXPECT_EQ(rkAviFileWriter::CreateStreamFailed, open(name));
    for (const int side : {-16, 1 << 15}) {  // rows from the top; a frame of 3 GiB
        SetSize(side, side);
        EXPECT_EQ(rkAviFileWriter::FormatFailed, open(name));
    }
    SetSize(16, 16);
    format.biBitCount = 32;
    EXPECT_EQ(rkAviFileWriter::FormatFailed, open(name));
    Bytes frame = RandomFrame(RGB24, 16, 16);
    EXPECT_EQ(rkAviFileWriter::BadFrameNumber, writer.WriteFrame(frame.data())) << "closed";

    format.biBitCount = 24;
    ASSERT_EQ(0, open(name));
    rkVideoImage image;
    image.Create(16, 16, YUV, 0);
    EXPECT_EQ(rkAviFileWriter::NullPointer, writer.WriteFrameImage(image));
    EXPECT_EQ(rkAviFileWriter::NullPointer, writer.WriteFrame(nullptr));
    wchar_t text[300];
    writer.GetErrorText(rkAviFileWriter::NullPointer, text, 300);
    EXPECT_EQ(L"Error when writing file \"" + name + L"\": Null poiter occured!", text);
}

TEST_F(AviFileWriter, ACompressorThatRefusesTheFramesLeavesAnOlderFileAlone) {
    SetSize(16, 16);
    Bytes frame = RandomFrame(RGB24, 16, 16);
    ASSERT_EQ(0, writer.Open(name, &format, &info, false));
    ASSERT_EQ(0, writer.WriteFrame(frame.data()));
    ASSERT_EQ(0, writer.Close());

    SetSize(1, 1);
    rkCompressorSettings settings;
    settings.fccType = kFccVideoCodec;
    settings.fccHandler = FourCC('F', 'F', 'V', '1');
    for (const std::wstring& path : {name, directory + L"/new.avi"}) {
        EXPECT_EQ(rkAviFileWriter::FormatFailed, writer.OpenWithSettings(path, &format, &info, settings));
    }
    rkAviSource source;
    EXPECT_EQ(0, source.Open(name, true, false));
    EXPECT_FALSE(std::filesystem::exists(ToUtf8(directory + L"/new.avi")));
}

TEST_F(AviFileWriter, AFileThatWasDeletedMeanwhileIsToldByClose) {
    SetSize(16, 16);
    Bytes frame = RandomFrame(RGB24, 16, 16);
    ASSERT_EQ(0, writer.Open(name, &format, &info, false));
    ASSERT_EQ(0, writer.WriteFrame(frame.data()));
    ASSERT_TRUE(std::filesystem::remove(ToUtf8(name)));
    EXPECT_EQ(rkAviFileWriter::WriteFailed, writer.Close());
}

/// Of the bytes missing at the end the last ones belong to the index, which comes when the file is completed,
/// and 3000 reach into the five frames of 776.
TEST_F(AviFileWriter, AFullDiskIsToldAtTheLatestByClose) {
    SetSize(16, 16);
    Bytes frame = RandomFrame(RGB24, 16, 16);
    rlim_t fileBytes = 1 << 20;
    for (const rlim_t missing : {0u, 1u, 3000u}) {
        SCOPED_TRACE(missing);
        ASSERT_EQ(0, writer.OpenWithSettings(name, &format, &info, {}));
        const FileSizeLimit limit(fileBytes - missing);
        int written = 0;
        for (int i = 0; i < 5 && written == 0; ++i) written = writer.WriteFrame(frame.data());
        EXPECT_EQ(missing == 3000 ? rkAviFileWriter::WriteFailed : 0, written);
        EXPECT_EQ(missing == 0 ? 0 : rkAviFileWriter::WriteFailed, writer.Close());
        if (missing == 0) fileBytes = std::filesystem::file_size(ToUtf8(name));
    }
}

}  // namespace
