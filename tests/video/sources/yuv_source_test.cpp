#include "video/sources/yuv_source.h"

#include <unistd.h>

#include <algorithm>

#include "platform/file.h"
#include "tests/video/sources/source_files.h"
#include "video/video_image.h"

namespace {

using YuvSource = SourceFiles;

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

TEST_F(YuvSource, LeavesChromaInItsFile) {
    constexpr struct {
        int layout, frameBytes, lumaBytes;
    } kLayouts[] = {{IYUV, 12, 8},  {YV16, 16, 8},  {YUV, 24, 8},
                    {P010, 24, 16}, {YUY2, 16, 16}, {P410_RGB, 48, 48}};
    for (const auto& [layout, frameBytes, lumaBytes] : kLayouts) {
        SCOPED_TRACE(layout);
        const std::string frame = FrameBytes(1, frameBytes);
        rkYuvSource source;
        ASSERT_EQ(0, source.Open(Write(L"a.yuv", frame + frame), layout, 4, 2));
        source.ReadLumaOnly();
        const std::string rest(static_cast<std::size_t>(frameBytes - lumaBytes), '#');
        EXPECT_EQ(frame.substr(0, static_cast<std::size_t>(lumaBytes)) + rest, ReadBytes(source));
        rkVideoImage luma, whole;
        EXPECT_EQ(0, source.ReadFrameImage(luma, 1));
        ASSERT_EQ(0, source.Open(directory + L"/a.yuv", layout, 4, 2));
        EXPECT_EQ(0, source.ReadFrameImage(whole, 1)) << "everything again";
        const int bytes = rkSampleBits(layout) > 8 ? lumaBytes : luma.Stride() * luma.Height();
        EXPECT_TRUE(std::equal(luma.Data(), luma.Data() + bytes, whole.Data()));
    }
}

TEST_F(YuvSource, RefusesWhatItCannotRead) {
    const std::wstring file = Write(L"a.yuv", FrameBytes(0, 100));
    const struct {
        const char* what;
        std::wstring name;
        int layout, width, height;
    } kCases[] = {{"script readers' layout", file, VYUY, 4, 2},
                  {"no tag", file, 99, 4, 2},
                  {"no width", file, Y, 0, 2},
                  {"2^31 bytes", file, Y, 65536, 32768},
                  {"a line beyond an int", file, P416, 0x7FFFFFFF, 1},
                  {"missing file", directory + L"/b", Y, 4, 2},
                  {"directory", directory, Y, 4, 2}};
    rkYuvSource source;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        ASSERT_EQ(0, source.Open(file, Y, 4, 2));
        EXPECT_EQ(rkYuvSource::OpenFailed, source.Open(c.name, c.layout, c.width, c.height));
        EXPECT_EQ(0, source.GetWidth() + source.GetHeight() + source.GetFrameCount());
        EXPECT_EQ("", ReadBytes(source, 0));
    }
    EXPECT_EQ(
        L"Error when reading file \"" + directory + L"\": Failed to open file! File is missed or corrupted.",
        ErrorText(source, rkYuvSource::OpenFailed));
    source.Close();
    EXPECT_EQ(L"Unrecognized error!", ErrorText(source, 5));
}

TEST_F(YuvSource, ReadsIntoImages) {
    const std::string file = FrameBytes(0, 768);  // two frames of 18 by 14, or one of 16 by 16 in words
    rkYuvSource source;
    ASSERT_EQ(0, source.Open(Write(L"a.yuv", file), YV12, 18, 14));
    rkVideoImage image;
    ASSERT_EQ(0, source.ReadFrameImage(image, 1));
    ASSERT_EQ(32, image.Width());
    const auto lastPixel = static_cast<std::uint8_t>(file[378 + 18 * 14 - 1]);
    EXPECT_EQ(lastPixel, image.Data()[13 * image.Stride() + 17]);
    EXPECT_EQ(lastPixel, image.Data()[15 * image.Stride() + 31]) << "padding";

    ASSERT_EQ(0, source.Open(directory + L"/a.yuv", P010, 16, 16));
    ASSERT_EQ(0, source.ReadNextFrameImage(image)) << "straight into the image";
    EXPECT_EQ(file, std::string(reinterpret_cast<char*>(image.Data()), 768));
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

}  // namespace
