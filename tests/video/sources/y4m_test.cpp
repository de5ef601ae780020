#include <array>
#include <sstream>

#include "tests/video/packed_frame.h"
#include "tests/video/sources/source_files.h"
#include "video/sources/create_source.h"
#include "video/sources/y4m_header.h"
#include "video/sources/y4m_layout.h"
#include "video/sources/y4m_source.h"

namespace {

TEST(Y4mHeader, Parameters) {
    // Colour space and bits; rate, aspect and interlacing; comment.
    const std::tuple<std::string, std::array<int, 2>, std::array<int, 5>, std::wstring> kCases[] = {
        {"", {IYUV, 8}, {25, 1, 1, 1, 0}, L""},
        {" F25:1 Ip A1:1 C420jpeg", {IYUV, 8}, {25, 1, 1, 1, 0}, L""},
        {" C420paldv It Ib I?", {IYUV, 8}, {25, 1, 1, 1, 2}, L""},
        {" C420p10 XYSCSS=420P10", {IYUV, 10}, {25, 1, 1, 1, 0}, L"YSCSS=420P10"},
        {" C420p17 Fx A", {IYUV, 8}, {25, 1, 1, 1, 0}, L""},
        {" C420p10x", {IYUV, 8}, {25, 1, 1, 1, 0}, L""},
        {" F30000:1001 A10:11 It Xa Xb\xFF", {IYUV, 8}, {30000, 1001, 10, 11, 1}, L"b\u00FF"},
        {" F0:0 A0:1 Ib", {IYUV, 8}, {25, 1, 1, 1, 2}, L""},
        {" F50 A4:-3 Ip", {IYUV, 8}, {50, 0, 1, 1, 0}, L""},
        {" F99999999999:1 A1:99999999999", {IYUV, 8}, {25, 1, 1, 1, 0}, L""},
    };
    for (const auto& [text, format, numbers, comment] : kCases) {
        SCOPED_TRACE(text);
        const auto header = ParseY4mParameters(" H576 W720" + text);
        ASSERT_TRUE(header);
        EXPECT_EQ(format, (std::array{header->colorSpace, header->sampleBits}));
        EXPECT_TRUE(header->width == 720 && header->height == 576);
        EXPECT_EQ(numbers,
                  (std::array{header->rateNumerator, header->rateDenominator, header->aspectNumerator,
                              header->aspectDenominator, header->interlacing}));
        EXPECT_EQ(comment, header->comment);
    }
    EXPECT_EQ(std::wstring(89, L'c'), ParseY4mParameters(" W4 H2 X" + std::string(200, 'c'))->comment);
}

TEST(Y4mHeader, RefusedParameters) {
    std::istringstream refused(
        "| H2| W4|W4 H2| W4  H2| W4 H2 | W4 H2\r| W4H2| W4 H2 w5| W0 H2| W4 H-2| W H2| W4x H2| W4 H2 C|"
        " W4294967300 H2| W4 H2 C411| W4 H2 C444alpha| W4 H2 Cmono| W4 H2 C41| W4 H2 Im| W4 H2 Ipt| W4 H2 I");
    for (std::string text; std::getline(refused, text, '|');) EXPECT_FALSE(ParseY4mParameters(text)) << text;
}

void ExpectUnpacked(int colorSpace, int sampleBits, std::size_t candidate, const Bytes& picture,
                    const Bytes& expected) {
    Y4mHeader header;
    header.colorSpace = colorSpace;
    header.sampleBits = sampleBits;
    header.width = header.height = 3;
    const Y4mLayout layout = Y4mLayouts(header).at(candidate);
    ASSERT_EQ(picture.size(), static_cast<std::size_t>(layout.storedBytes));
    Bytes frame(static_cast<std::size_t>(layout.frameBytes));
    UnpackY4mPicture(layout, picture.data(), frame.data());
    EXPECT_EQ(expected, frame) << colorSpace << " " << sampleBits;
}

// 3 by 3 pixels: luma, then chroma as stored and as it must be handed over.
TEST(Y4mLayout, UnpacksPictures) {
    const Bytes stored420 = {10, 20, 30, 40, 50, 60, 70, 80};
    const Bytes full420 = {10, 10, 20, 10, 10, 20, 30, 30, 40, 50, 50, 60, 50, 50, 60, 70, 70, 80};
    const Bytes stored422 = {10, 20, 30, 40, 50, 60, 15, 25, 35, 45, 55, 65};
    const Bytes full422 = {10, 10, 20, 30, 30, 40, 50, 50, 60, 15, 15, 25, 35, 35, 45, 55, 55, 65};
    const std::tuple<int, int, std::size_t, Bytes, Bytes, int> kCases[] = {
        {IYUV, 8, 1, stored420, full420, 1},
        {YV16, 8, 1, stored422, full422, 1},
        {IYUV, 10, 3, stored420, full420, 1},
        {YV16, 11, 3, stored422, full422, 8},
        {YUV, 12, 1, full420, full420, 4}};
    const auto bytes = [](Bytes samples, bool inWords, int factor) {
        samples.insert(samples.begin(), {1, 2, 3, 4, 5, 6, 7, 8, 9});
        Bytes all;
        for (const int sample : samples) {
            all.push_back(static_cast<std::uint8_t>(sample * factor));
            if (inWords) all.push_back(static_cast<std::uint8_t>(sample * factor >> 8));
        }
        return all;
    };
    for (const auto& [colorSpace, bits, candidate, stored, handedOver, factor] : kCases)
        ExpectUnpacked(colorSpace, bits, candidate, bytes(stored, bits > 8, 1),
                       bytes(handedOver, bits > 8, factor));
    // Rows that end within a sample, as measured on files of ffmpeg 5.1.9: 1.5 chroma samples of 2 bytes.
    Bytes picture = {0, 0, 2, 0, 4, 0, 6, 0, 8, 0, 10, 0, 12, 0, 14, 0, 16, 0}, expected = picture;
    picture.insert(picture.end(), {10, 1, 99, 30, 1, 99, 50, 1, 99, 70, 1, 99});
    for (const std::uint8_t sample : Bytes{10, 10, 30, 50, 50, 70})
        expected.insert(expected.end(), {sample, 1, sample, 1, sample, 1});
    ExpectUnpacked(IYUV, 10, 2, picture, expected);
}

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

// Sizes by hand. 5 by 3 has 15 pixels, 6 chroma samples a plane at 4:2:0 and 9 at 4:2:2 with sides rounded up;
// lines of 7, 10 and 15 bytes at 8 bits when they are cut. In words, a cut chroma row has 5 bytes.
TEST_F(Y4mSource, LayoutByTheDistanceOfTheFirstTwoFrames) {
    const std::wstring roundedUp = L", chroma sides rounded up in the file";
    const std::wstring cut = L", chroma rows cut in the file";
    const std::wstring by1 = L", 9-bit samples scaled to 10 bits",
                       by2 = L", 12-bit samples scaled to 14 bits";
    const std::tuple<const char*, int, int, std::wstring> kCases[] = {
        {" W4 H2", 12, 3, L"width 4 height 2 colorspace IYUV"},
        {" W4 H2 C422", 16, 3, L"width 4 height 2 colorspace YV16"},
        {" W1 H1", 1, 2, L"width 1 height 1 colorspace IYUV"},
        {" W1 H1", 3, 2, L"width 1 height 1 colorspace YUV" + roundedUp},
        {" W4 H3", 20, 2, L"width 4 height 3 colorspace YUV" + roundedUp},
        {" W5 H3", 21, 2, L"width 5 height 3 colorspace IYUV"},
        {" W5 H3", 27, 2, L"width 5 height 3 colorspace YUV" + roundedUp},
        {" W5 H3", 27, 1, L"width 5 height 3 colorspace YUV" + roundedUp},  // the file's end decides
        {" W5 H3 C422", 33, 2, L"width 5 height 3 colorspace YUV" + roundedUp},
        {" W5 H3 C444", 45, 2, L"width 5 height 3 colorspace YUV"},
        {" W4 H2 C420p10", 24, 3, L"width 4 height 2 colorspace P010"},
        {" W4 H2 C420p10", 12, 3, L"width 4 height 2 colorspace IYUV"},  // deep by its word alone
        {" W5 H3 C420p12", 50, 2, L"width 5 height 3 colorspace P414" + cut + by2},
        {" W5 H3 C420p12", 54, 2, L"width 5 height 3 colorspace P414" + roundedUp + by2},
        {" W5 H3 C422p9", 60, 2, L"width 5 height 3 colorspace P410" + cut + by1},
        {" W5 H3 C422p9", 66, 2, L"width 5 height 3 colorspace P410" + roundedUp + by1},
        {" W4 H2 C422p15", 32, 2, L"width 4 height 2 colorspace P216, 15-bit samples scaled to 16 bits"},
        {" W5 H3 C444p16", 90, 2, L"width 5 height 3 colorspace P416"},
        {" W5 H3 C420p10", 30, 1, L"width 5 height 3 colorspace IYUV"},  // nothing fits
    };
    for (const auto& [parameters, storedBytes, count, description] : kCases) {
        SCOPED_TRACE(testing::Message() << parameters << ": " << storedBytes);
        const std::wstring file = Write(L"a.Y4M", Y4m(parameters, "FRAME\n", count, storedBytes));
        const auto source = rkCreateVideoSource(file, true), byNumber = rkCreateVideoSource(file, true);
        ASSERT_TRUE(source && byNumber);
        EXPECT_EQ(L"file \"" + file + L"\" " + description, FullDescription(*source));
        const std::vector<std::string> frames = ReadAll(*source);
        ASSERT_EQ(count, static_cast<int>(frames.size()));
        for (int i = count; i-- > 0;) {
            const std::string& frame = frames[static_cast<std::size_t>(i)];
            const int shift = description.ends_with(by2) ? 2 : description.ends_with(L" bits") ? 1 : 0;
            EXPECT_EQ(static_cast<char>(FrameBytes(i, 1)[0] << shift), frame[0]) << "luma is first in all";
            EXPECT_EQ(frame, ReadBytes(*source, i));
            EXPECT_EQ(frame, ReadBytes(*byNumber, i)) << "before it was ever read";
        }
    }
}

TEST_F(Y4mSource, FrameLines) {
    const std::string longest = "FRAME X" + std::string(77, 'b') + "\n";  // 80 bytes behind the mark
    const std::pair<std::string, std::wstring> kLines[] = {
        {"FRAME\n", L"a"},
        {"FRAME Ip Xhello\n", L"hello"},
        {"FRAME Im\n", L"a"},
        {"FRAMEzq X\n", L"a"},
        {"frame", L"a"},
        {longest, std::wstring(77, L'b')},
        {longest.substr(0, 84) + "c", std::wstring(77, L'b') + L"c"}};
    for (const auto& [line, comment] : kLines) {
        SCOPED_TRACE(line);
        rkY4mSource source, byNumber;
        const std::wstring file = Write(L"a.y4m", Y4m(" W4 H2 Xa", line, 30, 12));
        ASSERT_EQ(0, source.Open(file) + byNumber.Open(file));
        EXPECT_EQ(FrameBytes(9, 12), ReadBytes(byNumber, 9));
        EXPECT_EQ(30u, ReadAll(source).size());
        EXPECT_EQ(30, source.GetFrameCount());
        EXPECT_EQ(FrameBytes(29, 12), ReadBytes(source, 29));
        EXPECT_EQ(comment, source.GetHeader().comment);
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
    const auto padded = [](std::size_t bytes) { return " W4 H2 X" + std::string(bytes - 9, 'a') + "\n"; };
    const std::tuple<const char*, std::string, int> kCases[] = {{"no line feed", " W4 H2", 5},
                                                                {"huge sides", " W999999999 H999999999\n", 5},
                                                                {"2^31 bytes", " W65536 H32768 C444\n", 5},
                                                                {"line of 80", padded(80), 0},
                                                                {"line of 81", padded(81), 0},
                                                                {"line of 1024", padded(1024), 0},
                                                                {"line of 1025", padded(1025), 5},
                                                                {"1.5 GiB a frame", " W32768 H32768\n", 0}};
    rkY4mSource source;
    for (const auto& [what, header, code] : kCases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(code, source.Open(Write(L"a", "YUV4MPEG2" + header)));
        EXPECT_EQ(0, source.GetFrameCount());
        rkVideoImage image;
        EXPECT_EQ(rkY4mSource::ReadFailed, source.ReadNextFrameImage(image));
        EXPECT_EQ(nullptr, image.Data()) << "no memory for a frame that the file can't hold";
    }
    EXPECT_EQ(5, source.Open(Write(L"a.y4m", "YUV4MPEG1 W4 H2\n"))) << "another signature";
    EXPECT_EQ(L"Error when reading file \"" + directory + L"/a.y4m\": Cannot poarse y4m header!",
              ErrorText(source, 5));
    EXPECT_EQ(nullptr, rkCreateVideoSource(directory + L"/a.y4m", false));
    EXPECT_EQ(rkY4mSource::OpenFailed, source.Open(directory));
}

}  // namespace
