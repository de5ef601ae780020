#include <omp.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file.h"
#include "tests/video/packed_frame.h"
#include "tests/video/sources/source_files.h"
#include "video/frame_bytes.h"
#include "video/sources/bmp_source.h"
#include "video/sources/bmp_writer.h"
#include "video/sources/create_source.h"
#include "video/sources/yuv_source.h"

namespace {

using Bmp = SourceFiles;
using YuvSource = SourceFiles;

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

TEST_F(Bmp, OfTheWrittenFramesTheLastStays) {
    Bytes frame = Pixels(HandMade()), other(frame.size(), 7);
    const std::wstring name = directory + L"/a.bmp", pipe = directory + L"/pipe.bmp";
    rkBmpWriter writer;
    EXPECT_EQ(rkBmpWriter::BadDimensions, writer.Open(name, 0, 2));
    EXPECT_EQ(rkBmpWriter::BadDimensions, writer.WriteFrame(frame.data())) << "closed";
    ASSERT_EQ(0, writer.Open(name, 2, 2));
    EXPECT_FALSE(std::filesystem::exists(ToUtf8(name)));
    EXPECT_EQ(0, writer.WriteFrame(other.data()));
    EXPECT_EQ(0, writer.WriteFrame(frame.data()));
    EXPECT_EQ(HandMade(), ReadWhole(ToUtf8(name))) << "and no other file";

    rkVideoImage image;
    for (const auto& [height, colorSpace] : {std::pair(2, YUV), {3, RGB24}}) {
        image.Create(2, height, colorSpace, 0);
        EXPECT_EQ(rkBmpWriter::BadDimensions, writer.WriteFrameImage(image));
    }
    ASSERT_EQ(0, mkfifo(ToUtf8(pipe).c_str(), 0600));
    for (const auto& [path, code] : {std::pair(directory, rkBmpWriter::OpenFailed),
                                     {pipe, rkBmpWriter::OpenFailed},
                                     {L"/dev/full", rkBmpWriter::WriteFailed}}) {
        EXPECT_EQ(0, writer.Open(path, 2, 2));
        EXPECT_EQ(code, writer.WriteFrame(frame.data())) << ToUtf8(path) << ", without waiting";
    }
    EXPECT_EQ(L"Error when writing file \"/dev/full\": Failed to create BMP file with incorrect dimensions!",
              ErrorText(writer, rkBmpWriter::BadDimensions));
}

TEST_F(Bmp, WhatIsRead) {
    const std::string file = HandMade();
    const Bytes pixels = Pixels(file);
    const Bytes turned = {0, 0, 255, 255, 255, 255, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0};
    const std::tuple<const char*, std::string, Bytes> kCases[] = {
        {"as written", file, pixels},
        {"without a signature", With(file, 0, "XY"), pixels},
        {"another offset of the pixels", With(file, 10, "\x40"), pixels},
        {"top-down", With(file, 22, "\xfe\xff\xff\xff"), turned},
        {"32 bits", With(file, 28, "\x20"), {}},
        {"compressed", With(file, 30, "\x01"), {}},
        {"another header", With(file, 14, "\x6c"), {}},
        {"negative width", With(file, 18, "\xfe\xff\xff\xff"), {}},
        {"height 0", With(file, 22, std::string(1, '\0')), {}},
        {"the lowest height", With(file, 22, std::string("\0\0\0\x80", 4)), {}},
        {"a byte less", file.substr(0, file.size() - 1), {}},
        {"2^31 bytes of pixels", With(With(file, 20, "\1"), 24, "\1"), {}},
        {"1 GiB of pixels", With(With(file, 20, "\1"), 23, "\x14"), {}},
        {"half a header", file.substr(0, 53), {}},
    };
    rkBmpSource source;
    for (const auto& [what, bytes, expected] : kCases) {
        SCOPED_TRACE(what);
        const bool isRefused = expected.empty();
        Bytes frame(expected.size());
        ASSERT_EQ(isRefused ? rkBmpSource::BadFile : 0, source.Open(Write(L"a.bmp", bytes)));
        EXPECT_EQ(isRefused ? rkBmpSource::ReaderError : 0, source.ReadFrame(frame.data(), 0));
        EXPECT_EQ(expected, frame);
    }
    EXPECT_EQ(nullptr, rkCreateVideoSource(directory + L"/a.bmp", false));
    EXPECT_EQ(rkBmpSource::OpenFailed, source.Open(directory));
    EXPECT_EQ(L"Error when reading file \"" + directory + L"\": Bad frame number occured!",
              ErrorText(source, 5));
}

TEST_F(Bmp, OnceInSequenceAndOftenByNumber) {
    const auto source = rkCreateVideoSource(Write(L"a.BMP", HandMade()), false);
    ASSERT_NE(nullptr, source);
    EXPECT_EQ(L"file \"" + directory + L"/a.BMP\" width 2 height 2", FullDescription(*source));
    rkVideoImage image;
    EXPECT_EQ(0, source->ReadNextFrameImage(image));
    EXPECT_TRUE(source->IsEndOfVideo());
    EXPECT_EQ(rkBmpSource::ReaderError, source->ReadNextFrameImage(image));
    EXPECT_EQ(rkBmpSource::BadFrameNumber, source->ReadFrameImage(image, 1));
    for (int time = 0; time < 2; ++time) EXPECT_EQ(0, source->ReadFrameImage(image, 0));
}

TEST_F(YuvSource, CountsWholeFrames) {
    for (const int bytes : {0, 11, 12, 30, 36}) {  // a frame of 4 by 2 has 12
        SCOPED_TRACE(bytes);
        rkYuvSource source;
        ASSERT_EQ(0, source.Open(Write(L"a.yuv", FrameBytes(0, bytes)), IYUV, 4, 2));
        const int frames = bytes / 12;
        EXPECT_EQ(frames, source.GetFrameCount());
        for (int i = 0; i < frames; ++i)
            EXPECT_EQ(FrameBytes(0, bytes).substr(static_cast<std::size_t>(12 * i), 12), ReadBytes(source));
        EXPECT_TRUE(source.IsEndOfVideo());
        EXPECT_EQ(std::string(12, '#'), ReadBytes(source)) << "behind the end the buffer stays";
        rkVideoImage image;
        EXPECT_EQ(rkYuvSource::BadFrameNumber, source.ReadFrameImage(image, frames));
        EXPECT_EQ(0, source.ReadNextFrameImage(image));
        EXPECT_EQ(frames == 0, image.Data() == nullptr) << "no memory for a frame that the file can't hold";
    }
}

TEST_F(YuvSource, ReadsByNumber) {
    std::string file;
    for (int i = 0; i < 8; ++i) file += FrameBytes(i, 16);
    rkYuvSource source;
    ASSERT_EQ(0, source.Open(Write(L"a.yuv", file), UYVY, 4, 2));
    for (const int frame : {5, 7, 6}) EXPECT_EQ(FrameBytes(frame, 16), ReadBytes(source, frame));
    EXPECT_EQ(rkYuvSource::BadFrameNumber, source.ReadFrame(nullptr, -1));
    EXPECT_EQ(FrameBytes(7, 16), ReadBytes(source)) << "a bad number moves nothing";
    EXPECT_EQ(L"file \"" + directory + L"/a.yuv\" width 4 height 2 colorspace UYVY", FullDescription(source));

    Write(L"a.yuv", file.substr(0, 40));
    EXPECT_EQ("", ReadBytes(source, 2)) << "cut while open";
    EXPECT_EQ(FrameBytes(1, 16), ReadBytes(source, 1));
}

TEST_F(YuvSource, RefusesWhatItCannotRead) {
    const std::wstring file = Write(L"a.yuv", FrameBytes(0, 100));
    rkYuvSource source;
    const auto expectRefused = [&](const std::wstring& name, int layout, int width, int height) {
        SCOPED_TRACE(testing::Message() << ToUtf8(name) << " " << layout << " " << width);
        ASSERT_EQ(0, source.Open(file, Y, 4, 2));
        EXPECT_EQ(rkYuvSource::OpenFailed, source.Open(name, layout, width, height));
        EXPECT_EQ(0, source.GetWidth() + source.GetHeight() + source.GetFrameCount());
        EXPECT_EQ("", ReadBytes(source, 0));
    };
    constexpr int kBad[][3] = {{VYUY, 4, 2}, {99, 4, 2}, {Y, 0, 2}, {Y, 65536, 32768}, {P416, 0x7FFFFFFF, 1}};
    for (const auto& [layout, width, height] : kBad) expectRefused(file, layout, width, height);
    for (const wchar_t* none : {L"/none", L""}) expectRefused(directory + none, Y, 4, 2);
    EXPECT_EQ(
        L"Error when reading file \"" + directory + L"\": Failed to open file! File is missed or corrupted.",
        ErrorText(source, rkYuvSource::OpenFailed));
    source.Close();
    EXPECT_EQ(L"Unrecognized error!", ErrorText(source, 5));
}

TEST_F(YuvSource, ReadsBeyondFourGibibytes) {
    constexpr int kFrame = 1920 * 1080 * 3 / 2;
    const std::wstring path = Write(L"a.yuv", "");
    ASSERT_EQ(0, truncate(ToUtf8(path).c_str(), off_t{kFrame} * 2000));  // 6.2 GB, all of it a hole
    AppendFile tail;
    ASSERT_TRUE(tail.Open(path) && tail.Append(FrameBytes(1, kFrame)));
    rkYuvSource source;
    ASSERT_EQ(0, source.Open(path, IYUV, 1920, 1080));
    EXPECT_EQ(2001, source.GetFrameCount());
    EXPECT_TRUE(FrameBytes(1, kFrame) == ReadBytes(source, 2000));
}

// A file is read to its end and no further, however it is shared out among threads.
TEST(ReadFrameBytes, FindsWhatThereIs) {
    constexpr std::size_t kFileBytes = 3'000'001;
    std::string content(kFileBytes, '\0');
    for (std::size_t i = 0; i < kFileBytes; ++i) content[i] = static_cast<char>(i * 2654435761u >> 24);
    TemporaryDirectory directory;
    ReadOnlyFile file;
    ASSERT_TRUE(file.Open(FromUtf8(directory.Write("frames", content))));

    constexpr std::tuple<const char*, std::size_t, std::size_t, std::size_t> kCases[] = {
        {"nothing", 5, 0, 0},
        {"a small frame", 1, 1000, 1000},
        {"a large one", 77, 2'500'003, 2'500'003},
        {"to the last byte", kFileBytes - 1'000'000, 1'000'000, 1'000'000},
        {"cut in the last part", kFileBytes - 1'000'000, 1'000'001, 1'000'000},
        {"cut in the first part", kFileBytes - 10, 1'000'000, 10},
        {"cut in the middle", 2'000'000, 2'000'000, kFileBytes - 2'000'000},
        {"behind the end", kFileBytes + 5, 1'000'000, 0},
    };
    const int threadsBefore = omp_get_max_threads();
    for (const int threads : {1, 2, 8}) {
        omp_set_num_threads(threads);
        for (const auto& [what, offset, bytes, found] : kCases) {
            SCOPED_TRACE(std::to_string(threads) + " threads, " + what);
            Bytes buffer(bytes + 1, 0xAA);
            ASSERT_EQ(found, ReadFrameBytes(file, offset, buffer.data(), bytes));
            const std::string_view read(reinterpret_cast<const char*>(buffer.data()), found);
            EXPECT_TRUE(found == 0 || read == std::string_view(content).substr(offset, found));
            EXPECT_EQ(0xAA, buffer[bytes]);
        }
    }
    omp_set_num_threads(threadsBefore);
}

}  // namespace
