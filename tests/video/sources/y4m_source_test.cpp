#include "video/sources/y4m_source.h"

#include "tests/video/sources/source_files.h"
#include "video/color_space.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

using Y4mSource = SourceFiles;

std::string Y4m(const std::string& parameters, const std::string& frameLine, int frames, int storedBytes) {
    std::string file = "YUV4MPEG2" + parameters + "\n";
    for (int i = 0; i < frames; ++i) file += frameLine + FrameBytes(i, storedBytes);
    return file;
}

std::vector<std::string> ReadAll(rkIVideoSource& source) {
    std::vector<std::string> frames;
    for (std::string frame; !(frame = ReadBytes(source)).empty();) frames.push_back(frame);
    return frames;
}

TEST_F(Y4mSource, LayoutByTheDistanceOfTheFirstTwoFrames) {
    const std::wstring roundedUp = L", chroma sides rounded up in the file";
    const std::wstring scaled = L", 12-bit samples scaled to 14 bits";
    const struct {
        const char* what;
        const char* parameters;
        int storedBytes, frames;
        std::wstring description;
    } kCases[] = {
        {"8 bits", " W4 H2 C422", 16, 3, L"width 4 height 2 colorspace YV16"},
        {"cut", " W5 H3", 21, 2, L"width 5 height 3 colorspace IYUV"},
        {"rounded up", " W5 H3", 27, 2, L"width 5 height 3 colorspace YUV" + roundedUp},
        {"decided by the end", " W5 H3", 27, 1, L"width 5 height 3 colorspace YUV" + roundedUp},
        {"10 bits", " W4 H2 C420p10", 24, 3, L"width 4 height 2 colorspace P010"},
        {"only the word is deep", " W4 H2 C420p10", 12, 3, L"width 4 height 2 colorspace IYUV"},
        {"both", " W5 H3 C420p12", 54, 2, L"width 5 height 3 colorspace P414" + roundedUp + scaled},
        {"none fits", " W5 H3 C420p10", 30, 1, L"width 5 height 3 colorspace IYUV"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const std::wstring file = Write(L"a.Y4M", Y4m(c.parameters, "FRAME\n", c.frames, c.storedBytes));
        const auto source = rkCreateVideoSource(file, true), byNumber = rkCreateVideoSource(file, true);
        ASSERT_TRUE(source && byNumber);
        EXPECT_EQ(L"file \"" + file + L"\" " + c.description, FullDescription(*source));
        const std::vector<std::string> frames = ReadAll(*source);
        ASSERT_EQ(c.frames, static_cast<int>(frames.size()));
        for (int i = c.frames; i-- > 0;) {
            const std::string& frame = frames[static_cast<std::size_t>(i)];
            const int shift = c.description.ends_with(scaled) ? 2 : 0;  // luma comes first in every layout
            EXPECT_EQ(static_cast<char>(FrameBytes(i, 1)[0] << shift), frame[0]);
            EXPECT_EQ(frame, ReadBytes(*source, i));
            EXPECT_EQ(frame, ReadBytes(*byNumber, i)) << "before it was ever read";
        }
    }
}

TEST_F(Y4mSource, FrameLines) {
    const std::string longest = "FRAME X" + std::string(77, 'b') + "\n";  // 80 bytes behind the mark
    const struct {
        std::string line;
        std::wstring comment;
    } kCases[] = {{"FRAME\n", L"a"},
                  {"FRAME Ip Xhello\n", L"hello"},
                  {"FRAME Im\n", L"a"},
                  {"FRAMEzq X\n", L"a"},
                  {"frame", L"a"},
                  {longest, std::wstring(77, L'b')},
                  {longest.substr(0, 84) + "c", std::wstring(77, L'b') + L"c"}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.line);
        rkY4mSource source, byNumber;
        const std::wstring file = Write(L"a.y4m", Y4m(" W4 H2 Xa", c.line, 30, 12));
        ASSERT_EQ(0, source.Open(file));
        ASSERT_EQ(0, byNumber.Open(file));
        EXPECT_EQ(FrameBytes(9, 12), ReadBytes(byNumber, 9));
        EXPECT_EQ(30u, ReadAll(source).size());
        EXPECT_EQ(30, source.GetFrameCount());
        EXPECT_EQ(FrameBytes(29, 12), ReadBytes(source, 29));
        EXPECT_EQ(c.comment, source.GetHeader().comment);
        EXPECT_EQ(rkY4mSource::BadFrameNumber, source.ReadFrame(nullptr, source.GetFrameCount()));
    }
}

TEST_F(Y4mSource, EveryPrefixReadsWhatIsWhole) {
    const std::size_t header = std::string("YUV4MPEG2 W4 H2\n").size();
    for (const std::string line : {"FRAME\n", "FRAME Ip\n"}) {
        const std::string file = Y4m(" W4 H2", line, 3, 12);
        for (std::size_t size = 0; size <= file.size(); ++size) {
            SCOPED_TRACE(size);
            rkY4mSource source;
            ASSERT_EQ(size < header ? rkY4mSource::BadHeader : 0,
                      source.Open(Write(L"a", file.substr(0, size))));
            const std::size_t whole = size < header ? 0 : (size - header) / (line.size() + 12);
            EXPECT_EQ(whole, ReadAll(source).size());
            EXPECT_LE(whole, static_cast<std::size_t>(source.GetFrameCount()));
            EXPECT_EQ(whole > 0 ? FrameBytes(0, 12) : "", ReadBytes(source, 0));
        }
    }
}

TEST_F(Y4mSource, FilesWithoutFrames) {
    const auto padded = [](std::size_t bytes) {
        return "YUV4MPEG2 W4 H2 X" + std::string(bytes - 9, 'a') + "\n";
    };
    const struct {
        const char* what;
        std::string file;
        int code;
    } kCases[] = {{"no line feed", "YUV4MPEG2 W4 H2", 5},
                  {"other signature", "YUV4MPEG1 W4 H2\n", 5},
                  {"huge sides", "YUV4MPEG2 W999999999 H999999999\n", 5},
                  {"2^31 bytes", "YUV4MPEG2 W65536 H32768 C444\n", 5},
                  {"line of 80", padded(80), 0},
                  {"line of 81", padded(81), 0},
                  {"line of 1024", padded(1024), 0},
                  {"line of 1025", padded(1025), 5},
                  {"1.5 GiB a frame", "YUV4MPEG2 W32768 H32768\n", 0}};
    rkY4mSource source;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.code, source.Open(Write(L"a", c.file)));
        EXPECT_EQ(0, source.GetFrameCount());
        rkVideoImage image;
        EXPECT_EQ(rkY4mSource::ReadFailed, source.ReadNextFrameImage(image));
        EXPECT_EQ(nullptr, image.Data()) << "no memory for a frame that the file can't hold";
    }
    EXPECT_EQ(rkY4mSource::OpenFailed, source.Open(directory));
    EXPECT_EQ(L"Error when reading file \"" + directory + L"\": Cannot poarse y4m header!",
              ErrorText(source, 5));
}

TEST_F(Y4mSource, FactoriesGiveOpenSourcesOrNull) {
    const std::wstring file = Write(L"a.yuv", Y4m(" W4 H2", "FRAME\n", 1, 12));
    EXPECT_EQ(nullptr, rkCreateVideoSource(file, false)) << "by the name alone";
    EXPECT_EQ(nullptr, rkCreateVideoSource(Write(L"a.y4m", "YUV4MPEG2\n"), false));
    EXPECT_EQ(nullptr, rkCreateYuvSource(file, 0, 4, IYUV));
    const auto raw = rkCreateYuvSource(file, 6, 4, Y);
    ASSERT_NE(nullptr, raw);
    EXPECT_EQ(6, raw->GetWidth());
}

}  // namespace
