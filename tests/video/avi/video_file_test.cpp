#include "video/avi/video_file.h"

#include "tests/file_size_limit.h"
#include "tests/video/sources/source_files.h"
#include "video/color_space.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

using VideoFile = SourceFiles;

TEST_F(VideoFile, NameAndSettingsDecideWhatIsWritten) {
    rkCompressorSettings lossless;
    lossless.fccType = kFccVideoCodec;
    lossless.fccHandler = FourCC('H', 'F', 'Y', 'U');
    const struct {
        const wchar_t* name;
        bool compressed;
        int frames, rate, scale;
        const wchar_t* description;
    } kCases[] = {{L"a.bmp", false, 1, 0, 1, L"width 18 height 6"},
                  {L"a.avi", false, 3, 2997, 100, L"reading RGB24, raw stream"},
                  {L"b.avi", true, 3, 25, 1, L"reading RGB24, decompressor HUFFYUV"}};
    rkVideoImage image, read;
    image.Create(18, 6, RGB24, 0);
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.name);
        const std::wstring name = directory + L"/" + c.name;
        rkVideoFile file;
        ASSERT_TRUE(c.compressed ? file.OpenWriterWithSettings(name, 18, 6, 1, 25, lossless)
                                 : file.OpenWriter(name, 18, 6));
        for (int i = 0; i < 3; ++i) {
            image.Row(0, 5)[53] = static_cast<std::uint8_t>(i);
            ASSERT_TRUE(file.WriteImage(image)) << file.WriterResult();
        }
        EXPECT_EQ(3, file.FramesWritten());
        ASSERT_TRUE(file.CloseWriter());

        const auto source = rkCreateVideoSource(name, true);
        ASSERT_NE(nullptr, source);
        EXPECT_NE(std::wstring::npos, FullDescription(*source).find(c.description));
        EXPECT_EQ(c.frames, source->GetFrameCount());
        EXPECT_EQ(c.rate, source->GetRate());
        EXPECT_EQ(c.scale, source->GetScale());
        ASSERT_EQ(0, source->ReadFrameImage(read, c.frames - 1));
        EXPECT_EQ(2, read.Row(0, 5)[53]) << "the last frame, which stays in a bitmap";
    }
}

TEST_F(VideoFile, KeepsItsLastError) {
    const std::wstring name = directory + L"/a.avi";
    rkVideoFile file;
    rkVideoImage image;
    EXPECT_FALSE(file.WriteImage(image));
    EXPECT_EQ(rkVideoFile::NotOpen, file.LastError());
    for (const auto& [width, height, scale, rate] :
         {std::array{0, 8, 1, 25}, {8, -1, 1, 25}, {8, 8, 0, 25}, {8, 8, 1, 0}}) {
        EXPECT_FALSE(file.OpenWriterWithSettings(name, width, height, scale, rate, {}));
        EXPECT_EQ(rkVideoFile::BadSize, file.LastError());
    }
    EXPECT_FALSE(file.OpenWriter(directory + L"/none/a.avi", 18, 6));
    EXPECT_EQ(rkVideoFile::WriterFailed, file.LastError());

    ASSERT_TRUE(file.OpenWriter(name, 18, 6));
    EXPECT_FALSE(file.OpenWriter(directory + L"/b.bmp", 18, 6));
    EXPECT_EQ(rkVideoFile::AlreadyOpen, file.LastError());
    image.Create(19, 6, RGB24, 0);
    EXPECT_FALSE(file.WriteImage(image));
    EXPECT_EQ(rkVideoFile::WriterFailed, file.LastError());
    EXPECT_EQ(10, file.WriterResult());
    EXPECT_EQ(0, file.FramesWritten());

    const FileSizeLimit fullDisk(100);
    EXPECT_FALSE(file.CloseWriter());
    EXPECT_EQ(9, file.WriterResult());
    EXPECT_TRUE(file.CloseWriter()) << "nothing is open";
}

}  // namespace
