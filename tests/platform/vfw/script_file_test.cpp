#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "platform/vfw/avi_file.h"
#include "tests/platform/vfw/streams.h"
#include "tests/temporary_directory.h"

namespace {

class Scripts : public testing::Test {
protected:
    int Open(const std::string& name, const std::string& text) {
        return AVIFileOpenW(file, FromUtf8(directory.Write(name, text)), 0);
    }
    /// An AVI file of flat pictures, 32 by 16.
    void WriteAvi(const TestStream& stream, std::uint32_t handler) {
        AVISTREAMINFOW info = {};
        info.fccType = FourCC('v', 'i', 'd', 's');
        info.fccHandler = handler;
        info.dwScale = 1001;
        info.dwRate = 30000;
        info.rcFrame = {0, 0, 32, 16};
        std::shared_ptr<AviFile> out;
        std::shared_ptr<AviStream> video;
        ASSERT_EQ(0, AVIFileOpenW(out, FromUtf8(directory.Path("clip.avi")), OF_WRITE | OF_CREATE));
        ASSERT_EQ(0, AVIFileCreateStreamW(out, video, info));
        ASSERT_EQ(
            0, AVIStreamSetFormat(*video, 0, stream.format.data(), static_cast<int>(stream.format.size())));
        for (std::size_t i = 0; i < stream.samples.size(); ++i) {
            const auto& bytes = stream.samples[i].bytes;
            ASSERT_EQ(0, AVIStreamWrite(*video, static_cast<int>(i), bytes.data(), bytes.size(),
                                        stream.samples[i].isKey ? AVIIF_KEYFRAME : 0));
        }
        AVIStreamRelease(video);
        ASSERT_EQ(0, AVIFileRelease(out));
    }

    TemporaryDirectory directory;
    std::shared_ptr<AviFile> file;
    std::shared_ptr<AviStream> stream;
};

TEST_F(Scripts, ShowTheirClipAsAStreamOfFrames) {
    const TestStream pictures = MakeStream("mjpeg", AV_PIX_FMT_YUVJ420P, FourCC('M', 'J', 'P', 'G'), 7);
    WriteAvi(pictures, FourCC('M', 'J', 'P', 'G'));
    ASSERT_EQ(0, Open("a.AVS", "AviSource(\"" + directory.Path("clip.avi") + "\")"));
    ASSERT_EQ(0, ScriptClipError(*file, nullptr));
    AVIFILEINFOW fileInfo = {};
    ASSERT_EQ(0, AVIFileInfoW(*file, fileInfo));
    EXPECT_EQ(1u, fileInfo.dwStreams);
    EXPECT_NE(0, AVIFileGetStream(file, stream, 1));
    ASSERT_EQ(0, AVIFileGetStream(file, stream, 0));
    AVIFileRelease(file);

    AVISTREAMINFOW info = {};
    ASSERT_EQ(0, AVIStreamInfoW(*stream, info));
    EXPECT_EQ(FourCC('Y', 'V', '1', '2'), info.fccHandler);
    EXPECT_EQ(30000u, info.dwRate);
    EXPECT_EQ(1001u, info.dwScale);
    EXPECT_EQ(7u, info.dwLength);
    EXPECT_EQ(32, info.rcFrame.right);
    EXPECT_NE(std::wstring::npos, std::wstring(info.szName).find(L"full range converted to video range"));

    int size = 0;
    ASSERT_EQ(0, AVIStreamReadFormat(*stream, 0, nullptr, size));
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    ASSERT_EQ(0, AVIStreamReadFormat(*stream, 0, bytes.data(), size));
    const BITMAPINFOHEADER format = LoadBitmapFormat(bytes.data());
    EXPECT_EQ(FourCC('Y', 'V', '1', '2'), format.biCompression);
    EXPECT_EQ(12, format.biBitCount);
    EXPECT_EQ(32u * 16 * 3 / 2, format.biSizeImage);

    const std::vector<Turn> turns = TestDecoder(pictures, Surface::YV12).Run();
    std::vector<std::uint8_t> frame(format.biSizeImage);
    for (const int n : {6, 0, 3}) {
        int used = 0;
        EXPECT_NE(0, AVIStreamRead(*stream, n, frame.data(), 100, used));
        EXPECT_EQ(768, used) << "what it would take";
        ASSERT_EQ(0, AVIStreamRead(*stream, n, frame.data(), 768, used));
        EXPECT_EQ(turns[static_cast<std::size_t>(n)].picture, frame);
        EXPECT_EQ(n, AVIStreamFindSample(*stream, n, FIND_PREV | FIND_KEY));
    }
    int used = -1;
    EXPECT_NE(0, AVIStreamRead(*stream, 7, frame.data(), 768, used));
    EXPECT_EQ(0, used);
    EXPECT_EQ(-1, AVIStreamFindSample(*stream, -1, FIND_PREV | FIND_KEY));
}

TEST_F(Scripts, SayWhyTheyFailed) {
    ASSERT_EQ(0, Open("wrong.avs", "AviSource(\"missing.avi\")"));
    std::string message;
    EXPECT_NE(0, ScriptClipError(*file, &message));
    EXPECT_FALSE(message.empty());
    AVIFILEINFOW info = {9};
    ASSERT_EQ(0, AVIFileInfoW(*file, info));
    EXPECT_EQ(0u, info.dwStreams);
    EXPECT_NE(0, AVIFileGetStream(file, stream, 0));
}

TEST_F(Scripts, OpenOnlyFromScriptFiles) {
    EXPECT_NE(0, Open("a.txt", "AviSource(\"clip.avi\")"));
    EXPECT_NE(0, AVIFileOpenW(file, FromUtf8(directory.Path("missing.avs")), 0));
    std::filesystem::create_directory(directory.Path("folder.avs"));
    EXPECT_NE(0, AVIFileOpenW(file, FromUtf8(directory.Path("folder.avs")), 0));
    EXPECT_FALSE(file);
}

}  // namespace
