#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "tests/platform/vfw/streams.h"

namespace {

constexpr std::uint32_t kFmp4 = FourCC('F', 'M', 'P', '4');
constexpr std::uint32_t kH264 = FourCC('H', '2', '6', '4');
constexpr std::uint32_t kHfyu = FourCC('H', 'F', 'Y', 'U');
constexpr std::uint32_t kUly0 = FourCC('U', 'L', 'Y', '0');
constexpr std::uint32_t kMjpg = FourCC('M', 'J', 'P', 'G');

TestStream MakeMpeg4(int count, int bFrames, int keyDistance) {
    return MakeStream("mpeg4", AV_PIX_FMT_YUV420P, kFmp4, count, [=](AVCodecContext& encoder) {
        encoder.max_b_frames = bFrames;
        encoder.gop_size = keyDistance;
        av_opt_set_int(encoder.priv_data, "sc_threshold", 1000000000, 0);  // no key frame of its own will
    });
}

TestStream MakeH264(int count, int bFrames, int keyDistance, const char* x264 = "") {
    const std::string parameters = std::string("scenecut=0:b-adapt=0:") + x264;
    return MakeStream("libx264", AV_PIX_FMT_YUV420P, kH264, count, [=](AVCodecContext& encoder) {
        encoder.flags &= ~AV_CODEC_FLAG_QSCALE;
        encoder.gop_size = keyDistance;
        encoder.max_b_frames = bFrames;
        av_opt_set(encoder.priv_data, "crf", "4", 0);
        av_opt_set(encoder.priv_data, "x264-params", parameters.c_str(), 0);
    });
}

TestStream MakeMjpeg(int count, AVPixelFormat pixels = AV_PIX_FMT_YUVJ420P) {
    return MakeStream("mjpeg", pixels, kMjpg, count);
}

double MeanLuma(const std::vector<std::uint8_t>& yv12) {
    const auto samples = static_cast<std::ptrdiff_t>(yv12.size() / 3 * 2);
    return std::accumulate(yv12.begin(), yv12.begin() + samples, 0.0) / static_cast<double>(samples);
}

std::vector<int> SamplesInDisplayOrder(const TestStream& stream) {
    std::vector<int> order(stream.samples.size());
    int number = 0;
    for (const auto& sample : stream.samples) order[static_cast<std::size_t>(sample.picture)] = number++;
    return order;
}

TEST(Decoder, PutsPicturesInDisplayOrder) {
    struct {
        const char* what;
        TestStream stream;
        bool fullRange;
        bool reordered;
    } cases[] = {
        {"Motion JPEG", MakeMjpeg(20), true, false},
        {"MPEG-4", MakeMpeg4(20, 0, 6), false, false},
        {"MPEG-4 with B-frames", MakeMpeg4(20, 2, 6), false, true},
        {"H.264 with B-frames", MakeH264(20, 3, 8), false, true},
        {"H.264, pyramid and open groups", MakeH264(20, 3, 8, "b-pyramid=normal:open-gop=1"), false, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const std::vector<int> order = SamplesInDisplayOrder(c.stream);
        EXPECT_EQ(c.reordered, !std::is_sorted(order.begin(), order.end()));

        TestDecoder decoder(c.stream, Surface::YV12);
        ASSERT_TRUE(decoder.handle);
        const std::vector<Turn> turns = decoder.Run();
        ASSERT_EQ(20u, turns.size());
        for (std::size_t i = 0; i < turns.size(); ++i) {
            EXPECT_TRUE(turns[i].isSound);
            EXPECT_EQ(order[i], turns[i].sample);
            const int brightness = Brightness(static_cast<int>(i));
            const int expected = c.fullRange ? 16 + 219 * brightness / 255 : brightness;
            EXPECT_NEAR(expected, MeanLuma(turns[i].picture), 3) << "but for the quantizer";
        }
    }
}

TEST(Decoder, RepeatsThePictureBeforeAnEmptySample) {
    TestStream stream = MakeMpeg4(4, 0, 6);
    TestDecoder decoder(stream, Surface::YV12);
    const std::vector<Turn> plain = decoder.Run();
    for (const int place : {4, 2, 0})
        stream.samples.insert(stream.samples.begin() + place, TestStream::Sample{});
    const std::vector<Turn> turns = decoder.Run();
    ASSERT_EQ(7u, turns.size());
    EXPECT_FALSE(turns[0].isSound) << "nothing to repeat";
    const std::size_t kPlain[] = {0, 0, 1, 1, 2, 3, 3};
    for (std::size_t i = 1; i < 7; ++i)
        EXPECT_TRUE(turns[i].isSound && plain[kPlain[i]].picture == turns[i].picture) << i;
}

TEST(Decoder, TellsADamagedSampleAndWhatRefersToIt) {
    const std::function<void(std::vector<std::uint8_t>&)> kDamages[] = {
        [](auto& bytes) { std::fill(bytes.begin(), bytes.end(), std::uint8_t{0x55}); },
        [](auto& bytes) { bytes.resize(1); }, [](auto& bytes) { bytes.resize(bytes.size() / 2); }};
    // In the arithmetic code of H.264 the zeros behind half a sample can be sound, in its other code they
    // hardly are.
    const struct {
        TestStream stream;
        std::size_t damages;
        bool isTrusted;  // after damage
    } kCases[] = {{MakeMjpeg(12), 3, true},       {MakeMpeg4(12, 0, 6), 3, true},
                  {MakeMpeg4(12, 2, 3), 3, true}, {MakeH264(12, 0, 6), 2, true},
                  {MakeH264(12, 2, 6), 2, true},  {MakeH264(12, 3, 6, "cabac=0:b-pyramid=normal"), 3, false}};
    for (const auto& c : kCases) {
        for (std::size_t i = 0; i < c.stream.samples.size() * c.damages; ++i) {
            SCOPED_TRACE(testing::Message() << (&c - kCases) << ", sample and damage " << i);
            TestStream stream = c.stream;
            TestDecoder decoder(stream, Surface::YV12);
            const std::vector<Turn> sound = decoder.Run();
            kDamages[i % c.damages](stream.samples[i / c.damages].bytes);

            const std::vector<Turn> turns = decoder.Run();
            ASSERT_EQ(12u, turns.size());
            int failures = 0;
            for (std::size_t turn = 0; turn < turns.size(); ++turn) {
                failures += turns[turn].isSound ? 0 : 1;
                EXPECT_TRUE(!turns[turn].isSound || sound[turn].picture == turns[turn].picture) << turn;
            }
            EXPECT_GE(failures, 1);
            EXPECT_LE(failures, c.isTrusted ? 9 : 11) << "a key frame behind it ends it";
        }
    }
}

TEST(Decoder, SurvivesAnyBytes) {
    std::mt19937 random(1);
    for (const TestStream& good : {MakeMjpeg(8), MakeMpeg4(8, 2, 4), MakeH264(8, 2, 4),
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
    struct {
        TestStream stream;
        Surface natural;
        bool isInFormat;  // known without a sample
        const wchar_t* description;
    } cases[] = {
        {MakeMjpeg(1), Surface::YV12, false, L"MJPEG (Motion JPEG), full range converted to video range"},
        {MakeMjpeg(1, AV_PIX_FMT_YUVJ444P), Surface::RGB24, false,
         L"MJPEG (Motion JPEG), 4:4:4 converted to RGB"},
        {MakeH264(3, 2, 8), Surface::YV12, false, L"H264 (H.264 / AVC / MPEG-4 AVC / MPEG-4 part 10)"},
        {MakeStream("libx264", AV_PIX_FMT_YUV422P10LE, kH264, 1, constantRate), Surface::YUY2, false,
         L"H264 (H.264 / AVC / MPEG-4 AVC / MPEG-4 part 10), 10-bit 4:2:2 rounded to 8 bits"},
        {MakeStream("huffyuv", AV_PIX_FMT_YUV422P, kHfyu, 1), Surface::YUY2, true, L"HUFFYUV (HuffYUV)"},
        {MakeStream("utvideo", AV_PIX_FMT_YUV420P, kUly0, 1), Surface::YV12, true, L"UTVIDEO (Ut Video)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.description)));
        EXPECT_EQ(c.description, TestDecoder(c.stream, c.natural).Description());
        for (const Surface surface : {Surface::YV12, Surface::YUY2, Surface::RGB24}) {
            const TestDecoder decoder(c.stream, surface);
            const bool offered = surface == c.natural || surface == Surface::RGB24;
            EXPECT_EQ(offered, decoder.handle != nullptr);
            EXPECT_EQ(surface == Surface::RGB24 || (offered && c.isInFormat), decoder.Locate({}) != nullptr);
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
