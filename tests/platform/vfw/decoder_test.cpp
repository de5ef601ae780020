#include <random>

#include "tests/platform/vfw/streams.h"

namespace {

constexpr std::uint32_t kFmp4 = FourCC('F', 'M', 'P', '4');
constexpr std::uint32_t kH264 = FourCC('H', '2', '6', '4');
constexpr std::uint32_t kHfyu = FourCC('H', 'F', 'Y', 'U');
constexpr std::uint32_t kUly0 = FourCC('U', 'L', 'Y', '0');
constexpr std::uint32_t kMjpg = FourCC('M', 'J', 'P', 'G');

TestStream MakeMjpeg(int count, AVPixelFormat pixels = AV_PIX_FMT_YUVJ420P) {
    return MakeStream("mjpeg", pixels, kMjpg, count);
}

TEST(Decoder, SurvivesAnyBytes) {
    std::mt19937 random(1);
    for (const TestStream& good :
         {MakeMjpeg(8), MakeGroups("mpeg4", kFmp4, 8, 2, 4), MakeGroups("libx264", kH264, 8, 2, 4),
          MakeStream("huffyuv", AV_PIX_FMT_RGB24, kHfyu, 8),
          MakeStream("utvideo", AV_PIX_FMT_YUV420P, kUly0, 8),
          MakeStream("ffv1", AV_PIX_FMT_BGR0, FourCC('F', 'F', 'V', '1'), 8)}) {
        for (int round = 0; round < 30; ++round) {
            TestStream stream = good;
            for (auto& sample : stream.samples) {
                for (auto& byte : sample.bytes)
                    if (random() % 30 == 0) byte = static_cast<std::uint8_t>(random());
                if (random() % 4 == 0) sample.bytes.resize(random() % (sample.bytes.size() + 1));
            }
            TestDecoder decoder(stream, Surface::RGB24);
            EXPECT_TRUE(!decoder.handle || decoder.Run().size() == 8) << "a turn a sample";
        }
    }
}

TEST(Decoder, LearnsTheFormOfThePictures) {
    const auto constantRate = [](AVCodecContext& encoder) { encoder.flags &= ~AV_CODEC_FLAG_QSCALE; };
    std::tuple<TestStream, Surface, bool, const wchar_t*> cases[] = {
        {MakeMjpeg(1), Surface::YV12, false, L"MJPEG (Motion JPEG), full range converted to video range"},
        {MakeMjpeg(1, AV_PIX_FMT_YUVJ444P), Surface::RGB24, false,
         L"MJPEG (Motion JPEG), 4:4:4 converted to RGB"},
        {MakeGroups("libx264", kH264, 3, 2, 8), Surface::YV12, false,
         L"H264 (H.264 / AVC / MPEG-4 AVC / MPEG-4 part 10)"},
        {MakeStream("libx264", AV_PIX_FMT_YUV422P10LE, kH264, 1, constantRate), Surface::YUY2, false,
         L"H264 (H.264 / AVC / MPEG-4 AVC / MPEG-4 part 10), 10-bit 4:2:2 rounded to 8 bits"},
        {MakeStream("huffyuv", AV_PIX_FMT_YUV422P, kHfyu, 1), Surface::YUY2, true, L"HUFFYUV (HuffYUV)"},
        {MakeStream("utvideo", AV_PIX_FMT_YUV420P, kUly0, 1), Surface::YV12, true, L"UTVIDEO (Ut Video)"},
    };
    for (const auto& [stream, natural, isInFormat, description] : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(description)));
        EXPECT_EQ(description, TestDecoder(stream, natural).Description());
        for (const Surface surface : {Surface::YV12, Surface::YUY2, Surface::RGB24}) {
            const TestDecoder decoder(stream, surface);
            const bool offered = surface == natural || surface == Surface::RGB24;
            EXPECT_EQ(offered, decoder.handle != nullptr);
            EXPECT_EQ(surface == Surface::RGB24 || (offered && isInFormat), decoder.Locate({}) != nullptr);
        }
    }
}

TEST(Decoder, RefusesWhatItCanNotKeep) {
    const TestStream stream = MakeMjpeg(1);
    constexpr std::uint32_t kYv12 = FourCC('Y', 'V', '1', '2'), kNone = FourCC('?', '?', '?', '?');
    using Bytes = std::vector<std::uint8_t>;
    const auto locate = [&](std::uint32_t handler, const Bytes& input, const Bytes& output,
                            std::uint32_t type = kFccVideoCodec) {
        return ICLocate(type, handler, {input.data(), static_cast<int>(input.size())},
                        {output.data(), static_cast<int>(output.size())}, IcMode::Decompress,
                        stream.Input(0));
    };
    const Bytes output = MakeFormat(kYv12, 12, 32, 16);
    EXPECT_TRUE(locate(kNone, stream.format, output)) << "the format has it";
    EXPECT_TRUE(locate(kMjpg, MakeFormat(0, 24, 0, 0), output)) << "the handler, and no size";

    EXPECT_FALSE(locate(kMjpg, stream.format, output, FourCC('a', 'u', 'd', 'c')));
    EXPECT_FALSE(locate(1, MakeFormat(kNone, 24, 32, 16), output));
    const Bytes wide = MakeFormat(kYv12, 12, 64, 16);
    const std::pair<Bytes, Bytes> kRefused[] = {
        {stream.format, MakeFormat(kYv12, 16, 32, 16)},
        {stream.format, wide},
        {MakeFormat(kMjpg, 24, 64, 16), wide},  // pictures of another size than the format's
        {MakeFormat(kMjpg, 24, 1 << 30, 1 << 30), MakeFormat(0, 24, 1 << 30, 1 << 30)},
        {{stream.format.begin(), stream.format.begin() + 39}, output}};
    for (const auto& [from, to] : kRefused) EXPECT_FALSE(locate(kMjpg, from, to));
}

TEST(Decoder, TakesColoursFromThePaletteBehindTheFormat) {
    TestStream stream;
    // Run-length coded rows from the bottom: three of colour 1, one of 2; then two of 2, two of 0.
    stream.samples = {{{3, 1, 1, 2, 0, 0, 2, 2, 2, 0, 0, 1}, 0, true}};
    stream.format = MakeFormat(1, 8, 4, 2, {0, 0, 0, 0, 10, 20, 30, 0, 200, 150, 100, 0});
    TestDecoder decoder(stream, Surface::RGB24, 4, 2);
    ASSERT_TRUE(decoder.handle);
    const std::vector<std::uint8_t> kExpected = {10,  20,  30,  10,  20,  30,  10, 20, 30, 200, 150, 100,
                                                 200, 150, 100, 200, 150, 100, 0,  0,  0,  0,   0,   0};
    for (int start = 0; start < 2; ++start) EXPECT_EQ(kExpected, decoder.Run().at(0).picture);
}

}  // namespace
