#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "tests/platform/vfw/streams.h"

namespace {

constexpr std::uint32_t kFmp4 = FourCC('F', 'M', 'P', '4');
constexpr std::uint32_t kH264 = FourCC('H', '2', '6', '4');
constexpr std::uint32_t kMjpg = FourCC('M', 'J', 'P', 'G');

TestStream MakeMpeg4(int count, int bFrames, int keyDistance) {
    return MakeStream("mpeg4", AV_PIX_FMT_YUV420P, kFmp4, count, [=](AVCodecContext& encoder) {
        encoder.max_b_frames = bFrames;
        encoder.gop_size = keyDistance;
        av_opt_set_int(encoder.priv_data, "sc_threshold", 1000000000, 0);  // no key frame of its own will
    });
}

TestStream MakeH264(int count, int bFrames, int keyDistance, const char* x264 = "") {
    return MakeStream("libx264", AV_PIX_FMT_YUV420P, kH264, count, [=](AVCodecContext& encoder) {
        encoder.flags &= ~AV_CODEC_FLAG_QSCALE;
        encoder.gop_size = keyDistance;
        encoder.max_b_frames = bFrames;
        av_opt_set(encoder.priv_data, "crf", "4", 0);
        av_opt_set(encoder.priv_data, "x264-params", (std::string("scenecut=0:b-adapt=0:") + x264).c_str(),
                   0);
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
    for (int i = 0; i < static_cast<int>(order.size()); ++i) {
        order[static_cast<std::size_t>(stream.samples[static_cast<std::size_t>(i)].picture)] = i;
    }
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
        {"H.264, pyramid and open groups", MakeH264(20, 3, 8, "b-pyramid=normal:open-gop=1"), false, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        if (c.stream.samples.empty()) continue;  // that encoder isn't installed
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

TEST(Decoder, StartsAgainAtAKeySample) {
    for (const TestStream& stream :
         {MakeMpeg4(20, 2, 6), MakeH264(20, 3, 8, "open-gop=1"), MakeH264(20, 2, 8)}) {
        if (stream.samples.empty()) continue;
        TestDecoder decoder(stream, Surface::YV12);
        const std::vector<Turn> whole = decoder.Run();
        for (std::size_t key = 1; key < stream.samples.size(); ++key) {
            const auto& sample = stream.samples[key];
            if (!sample.isKey) continue;
            SCOPED_TRACE(key);
            const std::vector<Turn> turns = decoder.Run(static_cast<int>(key));
            ASSERT_EQ(whole.size() - key, turns.size()) << "a turn a sample";
            for (std::size_t i = 0; i < turns.size(); ++i) {
                // What is displayed before the key may need what was before it.
                const bool lost = static_cast<int>(key + i) < sample.picture;
                EXPECT_EQ(!lost, turns[i].isSound) << i;
                if (!lost) {
                    EXPECT_EQ(whole[key + i].picture, turns[i].picture) << i;
                }
            }
        }
    }
}

TEST(Decoder, RefusesPicturesBeforeTheFirstKey) {
    const TestStream stream = MakeMpeg4(12, 0, 6);
    const std::vector<Turn> turns = TestDecoder(stream, Surface::YV12).Run(3);
    ASSERT_EQ(9u, turns.size());
    for (std::size_t i = 0; i < turns.size(); ++i) EXPECT_EQ(i >= 3, turns[i].isSound) << i;
}

TEST(Decoder, RepeatsThePictureBeforeAnEmptySample) {
    for (TestStream stream : {MakeMjpeg(6), MakeMpeg4(6, 0, 6), MakeMpeg4(6, 2, 3), MakeH264(6, 2, 6)}) {
        if (stream.samples.empty()) continue;
        TestDecoder decoder(stream, Surface::YV12);
        const std::vector<Turn> plain = decoder.Run();
        for (const int place : {4, 4, 2})
            stream.samples.insert(stream.samples.begin() + place, TestStream::Sample{});

        const std::vector<Turn> turns = decoder.Run();
        ASSERT_EQ(9u, turns.size());
        const std::size_t kPlain[] = {0, 1, 1, 2, 3, 3, 3, 4, 5};  // empty ones at 2, 5 and 6
        for (std::size_t i = 0; i < turns.size(); ++i) {
            EXPECT_TRUE(turns[i].isSound) << i;
            EXPECT_EQ(plain[kPlain[i]].picture, turns[i].picture) << i;
        }
    }
    TestStream stream = MakeMjpeg(1);
    TestDecoder decoder(stream, Surface::YV12);
    stream.samples.insert(stream.samples.begin(), TestStream::Sample{});
    const std::vector<Turn> turns = decoder.Run();
    ASSERT_EQ(2u, turns.size());
    EXPECT_FALSE(turns[0].isSound) << "nothing to repeat";
    EXPECT_TRUE(turns[1].isSound);
}

TEST(Decoder, TellsADamagedSampleAndWhatRefersToIt) {
    const std::function<void(std::vector<std::uint8_t>&)> kDamages[] = {
        [](auto& bytes) { std::fill(bytes.begin(), bytes.end(), std::uint8_t{0x55}); },
        [](auto& bytes) { bytes.resize(1); },
        [](auto& bytes) { bytes.resize(bytes.size() / 2); },
    };
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
                if (!turns[turn].isSound) {
                    ++failures;
                } else {
                    EXPECT_EQ(sound[turn].picture, turns[turn].picture) << turn;
                }
            }
            EXPECT_GE(failures, 1);
            EXPECT_LE(failures, c.isTrusted ? 9 : 11) << "a key frame behind it ends it";
        }
    }
}

TEST(Decoder, SurvivesAnyBytes) {
    std::mt19937 random(1);
    TestStream streams[] = {MakeMjpeg(8),
                            MakeMpeg4(8, 2, 4),
                            MakeH264(8, 2, 4),
                            MakeStream("huffyuv", AV_PIX_FMT_RGB24, FourCC('H', 'F', 'Y', 'U'), 8),
                            MakeStream("utvideo", AV_PIX_FMT_YUV422P, FourCC('U', 'L', 'Y', '2'), 8),
                            MakeStream("ffv1", AV_PIX_FMT_BGR0, FourCC('F', 'F', 'V', '1'), 8)};
    for (TestStream& stream : streams) {
        if (stream.samples.empty()) continue;
        const TestStream good = stream;
        for (int round = 0; round < 30; ++round) {
            stream = good;
            for (auto& sample : stream.samples) {
                for (auto& byte : sample.bytes) {
                    if (random() % 30 == 0) byte = static_cast<std::uint8_t>(random());
                }
                if (random() % 4 == 0) sample.bytes.resize(random() % (sample.bytes.size() + 1));
            }
            TestDecoder decoder(stream, Surface::RGB24);
            if (decoder.handle) {
                EXPECT_EQ(8u, decoder.Run().size()) << "a turn a sample";
            }
        }
    }
}

TEST(Decoder, LearnsTheFormOfThePictures) {
    struct {
        TestStream stream;
        Surface natural;
        bool isInFormat;  // known without a sample
        const wchar_t* description;
    } cases[] = {
        {MakeMjpeg(1), Surface::YV12, false, L"MJPEG (Motion JPEG), full range converted to video range"},
        {MakeMjpeg(1, AV_PIX_FMT_YUVJ422P), Surface::YUY2, false,
         L"MJPEG (Motion JPEG), full range converted to video range"},
        {MakeMjpeg(1, AV_PIX_FMT_YUVJ444P), Surface::RGB24, false,
         L"MJPEG (Motion JPEG), 4:4:4 converted to RGB"},
        {MakeH264(3, 2, 8), Surface::YV12, false, L"H264 (H.264 / AVC / MPEG-4 AVC / MPEG-4 part 10)"},
        {MakeStream("libx264", AV_PIX_FMT_YUV422P10LE, kH264, 1,
                    [](AVCodecContext& encoder) { encoder.flags &= ~AV_CODEC_FLAG_QSCALE; }),
         Surface::YUY2, false,
         L"H264 (H.264 / AVC / MPEG-4 AVC / MPEG-4 part 10), 10-bit 4:2:2 rounded to 8 bits"},
        {MakeStream("huffyuv", AV_PIX_FMT_YUV422P, FourCC('H', 'F', 'Y', 'U'), 1), Surface::YUY2, true,
         L"HUFFYUV (HuffYUV)"},
        {MakeStream("utvideo", AV_PIX_FMT_YUV420P, FourCC('U', 'L', 'Y', '0'), 1), Surface::YV12, true,
         L"UTVIDEO (Ut Video)"},
        {MakeStream("utvideo", AV_PIX_FMT_GBRP, FourCC('U', 'L', 'R', 'G'), 1), Surface::RGB24, true,
         L"UTVIDEO (Ut Video)"},
    };
    for (const auto& c : cases) {
        if (c.stream.samples.empty()) continue;
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.description)));
        for (const Surface surface : {Surface::YV12, Surface::YUY2, Surface::RGB24}) {
            const TestDecoder decoder(c.stream, surface);
            const bool offered = surface == c.natural || surface == Surface::RGB24;
            EXPECT_EQ(offered, decoder.handle != nullptr);
            EXPECT_EQ(surface == Surface::RGB24 || (offered && c.isInFormat), decoder.Locate({}) != nullptr);
            if (surface == c.natural) {
                EXPECT_EQ(c.description, decoder.Description());
            }
        }
    }
}

TEST(Decoder, RefusesWhatItCanNotKeep) {
    const TestStream stream = MakeMjpeg(1);
    const auto locate = [&](std::uint32_t type, std::uint32_t handler, const std::vector<std::uint8_t>& input,
                            const std::vector<std::uint8_t>& output) {
        return ICLocate(type, handler, {input.data(), static_cast<int>(input.size())},
                        {output.data(), static_cast<int>(output.size())}, IcMode::Decompress,
                        stream.Input(0));
    };
    constexpr std::uint32_t kYv12 = FourCC('Y', 'V', '1', '2');
    const auto output = MakeFormat(kYv12, 12, 32, 16);
    ASSERT_TRUE(locate(kFccVideoCodec, kMjpg, stream.format, output));
    EXPECT_TRUE(locate(kFccVideoCodec, FourCC('?', '?', '?', '?'), stream.format, output))
        << "the format has it";
    EXPECT_TRUE(locate(kFccVideoCodec, kMjpg, MakeFormat(0, 24, 0, 0), output)) << "the handler, and no size";

    EXPECT_FALSE(locate(FourCC('a', 'u', 'd', 'c'), kMjpg, stream.format, output));
    EXPECT_FALSE(locate(kFccVideoCodec, 1, MakeFormat(FourCC('?', '?', '?', '?'), 24, 32, 16), output));
    EXPECT_FALSE(locate(kFccVideoCodec, kMjpg, stream.format, MakeFormat(kYv12, 16, 32, 16)));
    EXPECT_FALSE(locate(kFccVideoCodec, kMjpg, stream.format, MakeFormat(kYv12, 12, 64, 16)));
    EXPECT_FALSE(locate(kFccVideoCodec, kMjpg, MakeFormat(kMjpg, 24, 64, 16), MakeFormat(kYv12, 12, 64, 16)))
        << "pictures of another size than the format's";
    EXPECT_FALSE(locate(kFccVideoCodec, kMjpg, MakeFormat(kMjpg, 24, 1 << 30, 1 << 30),
                        MakeFormat(0, 24, 1 << 30, 1 << 30)));
    EXPECT_FALSE(locate(kFccVideoCodec, kMjpg, {stream.format.begin(), stream.format.begin() + 39}, output));

    HIC handle = locate(kFccVideoCodec, kMjpg, stream.format, output);
    std::uint8_t picture[32 * 16 * 3];
    int sample = 0;
    EXPECT_EQ(ICERR_ERROR, ICDecompress(handle, 0, stream.Input(0), picture, sample)) << "not begun";
    const auto other = MakeFormat(0, 24, 32, 16);
    EXPECT_EQ(ICERR_ERROR, ICDecompressBegin(handle, stream.Format(), {other.data(), kBitmapFormatBytes}));
}

TEST(Decoder, TakesColoursFromThePaletteBehindTheFormat) {
    TestStream stream;
    // Run-length coded rows from the bottom: three of colour 1, one of 2; then two of 2, two of 0.
    stream.samples = {{{3, 1, 1, 2, 0, 0, 2, 2, 2, 0, 0, 1}, 0, true}};
    stream.format = MakeFormat(1, 8, 4, 2, {0, 0, 0, 0, 10, 20, 30, 0, 200, 150, 100, 0});
    TestDecoder decoder(stream, Surface::RGB24, 4, 2);
    ASSERT_TRUE(decoder.handle);
    for (int start = 0; start < 2; ++start) {
        const std::vector<Turn> turns = decoder.Run();
        ASSERT_EQ(1u, turns.size());
        const std::vector<std::uint8_t> kExpected = {10,  20,  30,  10,  20,  30,  10, 20, 30, 200, 150, 100,
                                                     200, 150, 100, 200, 150, 100, 0,  0,  0,  0,   0,   0};
        EXPECT_EQ(kExpected, turns[0].picture);
    }
}

}  // namespace
