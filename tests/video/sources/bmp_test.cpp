#include <sys/stat.h>

#include "tests/video/packed_frame.h"
#include "tests/video/sources/source_files.h"
#include "video/color_space.h"
#include "video/sources/bmp_source.h"
#include "video/sources/bmp_writer.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

using Bmp = SourceFiles;

/// The file of a picture of 2 by 2, written by hand: blue and green below, red and white above.
std::string HandMade() {
    using namespace std::string_literals;
    return "BM\x46\0\0\0\0\0\0\0\x36\0\0\0"
           "\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0\0\0\0\0\x10\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
           "\xff\0\0\0\xff\0\0\0"
           "\0\0\xff\xff\xff\xff\0\0"s;
}

Bytes Pixels(const std::string& file) {
    return Bytes(file.begin() + 54, file.end());
}

std::string With(std::string file, std::size_t at, const std::string& bytes) {
    return file.replace(at, bytes.size(), bytes);
}

int ReadFrame(rkBmpSource& source, Bytes& frame) {
    frame.assign(static_cast<std::size_t>(PackedFrameBytes(RGB24, source.GetWidth(), source.GetHeight())), 0);
    return source.ReadFrame(frame.data(), 0);
}

TEST_F(Bmp, FileOfAWrittenFrame) {
    const std::wstring name = directory + L"/a.bmp";
    Bytes frame = Pixels(HandMade());
    rkBmpWriter writer;
    ASSERT_EQ(0, writer.Open(name, 2, 2));
    EXPECT_FALSE(std::filesystem::exists(ToUtf8(name)));
    Bytes other(frame.size(), 7);
    EXPECT_EQ(0, writer.WriteFrame(other.data()));
    EXPECT_EQ(0, writer.WriteFrame(frame.data()));
    EXPECT_EQ(HandMade(), ReadWhole(ToUtf8(name))) << "the last frame stays, and no other file";
}

TEST_F(Bmp, FramesAndImagesComeBack) {
    constexpr struct {
        int width, height, rowBytes;
    } kCases[] = {{1, 1, 4}, {6, 5, 20}, {16, 16, 48}, {722, 3, 2168}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.width);
        const std::wstring name = directory + L"/a.bmp";
        Bytes frame = RandomFrame(RGB24, c.width, c.height);
        ASSERT_EQ(static_cast<std::size_t>(c.rowBytes * c.height), frame.size());
        rkBmpWriter writer;
        ASSERT_EQ(0, writer.Open(name, c.width, c.height));
        ASSERT_EQ(0, writer.WriteFrame(frame.data()));

        rkBmpSource source;
        rkVideoImage image;
        Bytes read;
        ASSERT_EQ(0, source.Open(name));
        EXPECT_EQ(0, ReadFrame(source, read));
        EXPECT_EQ(frame, read);
        ASSERT_EQ(0, source.ReadFrameImage(image, 0));
        for (int y = 0; y < c.height; ++y) {
            const auto row = frame.begin() + y * c.rowBytes;
            EXPECT_TRUE(std::equal(row, row + 3 * c.width, image.Row(0, y))) << y;
        }
        ASSERT_EQ(0, writer.WriteFrameImage(image));
        rkVideoImage again;
        ASSERT_EQ(0, source.Open(name));
        ASSERT_EQ(0, source.ReadNextFrameImage(again));
        EXPECT_TRUE(std::equal(image.Data(), image.Data() + image.Capacity(), again.Data()));
    }
}

TEST_F(Bmp, WhatIsRead) {
    const std::string file = HandMade();
    const Bytes pixels = Pixels(file);
    const Bytes turned = {0, 0, 255, 255, 255, 255, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0};
    const struct {
        const char* what;
        std::string file;
        int code;
        Bytes pixels;
    } kCases[] = {
        {"as written", file, 0, pixels},
        {"without a signature", With(file, 0, "XY"), 0, pixels},
        {"another offset of the pixels", With(file, 10, "\x40"), 0, pixels},
        {"top-down", With(file, 22, "\xfe\xff\xff\xff"), 0, turned},
        {"32 bits", With(file, 28, "\x20"), 4, {}},
        {"compressed", With(file, 30, "\x01"), 4, {}},
        {"another header", With(file, 14, "\x6c"), 4, {}},
        {"negative width", With(file, 18, "\xfe\xff\xff\xff"), 4, {}},
        {"height 0", With(file, 22, std::string(1, '\0')), 4, {}},
        {"the lowest height", With(file, 22, std::string("\0\0\0\x80", 4)), 4, {}},
        {"a byte less", file.substr(0, file.size() - 1), 4, {}},
        {"2^31 bytes of pixels", With(With(file, 20, "\1"), 24, "\1"), 4, {}},
        {"1 GiB of pixels", With(With(file, 20, "\1"), 23, "\x14"), 4, {}},
        {"half a header", file.substr(0, 53), 4, {}},
    };
    rkBmpSource source;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        Bytes frame;
        ASSERT_EQ(c.code, source.Open(Write(L"a.bmp", c.file)));
        EXPECT_EQ(c.code == 0 ? 0 : 1, ReadFrame(source, frame));
        EXPECT_EQ(c.pixels, frame);
    }
    EXPECT_EQ(rkBmpSource::OpenFailed, source.Open(directory));
    EXPECT_EQ(L"Error when reading file \"" + directory + L"\": Bad frame number occured!",
              ErrorText(source, 5));
    EXPECT_EQ(nullptr, rkCreateVideoSource(Write(L"b.bmp", "BM"), false));
}

TEST_F(Bmp, OnceInSequenceAndOftenByNumber) {
    const auto source = rkCreateVideoSource(Write(L"a.BMP", HandMade()), false);
    ASSERT_NE(nullptr, source);
    EXPECT_EQ(L"file \"" + directory + L"/a.BMP\" width 2 height 2", FullDescription(*source));
    rkVideoImage image;
    EXPECT_FALSE(source->IsEndOfVideo());
    EXPECT_EQ(0, source->ReadNextFrameImage(image));
    EXPECT_TRUE(source->IsEndOfVideo());
    EXPECT_EQ(rkBmpSource::ReaderError, source->ReadNextFrameImage(image));
    EXPECT_EQ(rkBmpSource::BadFrameNumber, source->ReadFrameImage(image, 1));
    EXPECT_EQ(0, source->ReadFrameImage(image, 0));
    EXPECT_EQ(0, source->ReadFrameImage(image, 0));
}

TEST_F(Bmp, WriterRefuses) {
    rkBmpWriter writer;
    EXPECT_EQ(rkBmpWriter::OpenFailed, writer.Open(L"", 2, 2));
    EXPECT_EQ(rkBmpWriter::BadDimensions, writer.Open(L"a.bmp", 0, 2));
    Bytes frame = Pixels(HandMade());
    EXPECT_EQ(rkBmpWriter::BadDimensions, writer.WriteFrame(frame.data())) << "closed";
    EXPECT_EQ(0, writer.Open(directory, 2, 2));
    EXPECT_EQ(rkBmpWriter::OpenFailed, writer.WriteFrame(frame.data()));
    EXPECT_EQ(0, writer.Open(L"/dev/full", 2, 2));
    EXPECT_EQ(rkBmpWriter::WriteFailed, writer.WriteFrame(frame.data()));
    const std::wstring pipe = directory + L"/pipe.bmp";
    ASSERT_EQ(0, mkfifo(ToUtf8(pipe).c_str(), 0600));
    EXPECT_EQ(0, writer.Open(pipe, 2, 2));
    EXPECT_EQ(rkBmpWriter::OpenFailed, writer.WriteFrame(frame.data())) << "and doesn't wait for a reader";
    EXPECT_EQ(0, writer.Open(L"/dev/full", 2, 2));

    rkVideoImage image;
    image.Create(2, 2, YUV, 0);
    EXPECT_EQ(rkBmpWriter::BadDimensions, writer.WriteFrameImage(image));
    image.Create(2, 3, RGB24, 0);
    EXPECT_EQ(rkBmpWriter::BadDimensions, writer.WriteFrameImage(image));
    wchar_t text[100];
    writer.GetErrorText(1, text, 100);
    EXPECT_STREQ(
        L"Error when writing file \"/dev/full\": Failed to create BMP file with incorrect dimensions!", text);
}

}  // namespace
