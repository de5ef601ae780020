#include <cmath>
#include <random>

#include "platform/vfw/stream_info.h"
#include "tests/platform/vfw/streams.h"

namespace {

struct Size {
    int width, height;
};

using Pictures = std::vector<std::vector<std::uint8_t>>;

FormatView View(const std::vector<std::uint8_t>& bytes) {
    return {bytes.data(), static_cast<int>(bytes.size())};
}

HIC Open(std::uint32_t handler) {
    return ICOpen(kFccVideoCodec, handler, IcMode::Compress);
}

/// A bottom-up picture of `value(x, y, component)`, its padding zero.
template <class Value>
std::vector<std::uint8_t> Make(Size size, Value value) {
    std::vector<std::uint8_t> picture(SurfaceBytes(Surface::RGB24, size.width, size.height));
    const int stride = static_cast<int>(picture.size()) / size.height;
    for (int y = 0; y < size.height; ++y) {
        for (int i = 0; i < 3 * size.width; ++i)
            picture[static_cast<std::size_t>(y * stride + i)] =
                static_cast<std::uint8_t>(value(i / 3, y, i % 3));
    }
    return picture;
}

/// Noise of some bits.
std::vector<std::uint8_t> Noise(Size size, unsigned seed, unsigned mask) {
    std::mt19937 random(seed);
    return Make(size, [&](int, int, int) { return 40 + (random() & mask); });
}

/// A smooth picture that moves with its number.
std::vector<std::uint8_t> Wave(Size size, int number) {
    return Make(size, [=](int x, int y, int i) {
        return 128 + 60 * std::sin(0.11 * (x + 2 * number) + 0.07 * y + 0.3 * i);
    });
}

/// Encodes pictures through the interface; the whole stream, or none if a call failed.
TestStream Encode(const HIC& codec, Size size, const Pictures& pictures) {
    const auto input = MakeFormat(0, 24, size.width, size.height);
    TestStream stream;
    stream.format.resize(static_cast<std::size_t>(ICCompressGetFormatSize(codec, View(input))));
    if (stream.format.empty()) return {};
    EXPECT_EQ(ICERR_OK, ICCompressGetFormat(codec, View(input), stream.format.data()));
    EXPECT_EQ(ICERR_OK, ICCompressBegin(codec, View(input)));
    std::vector<std::uint8_t> room(static_cast<std::size_t>(ICCompressGetSize(codec, View(input))));
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        int bytes = 0;
        std::uint32_t flags = 0;
        const std::uint32_t wanted = i == 0 ? ICCOMPRESS_KEYFRAME : 0;
        const int number = static_cast<int>(i);
        if (ICCompress(codec, wanted, pictures[i].data(), number, room.data(), bytes, flags) != ICERR_OK)
            return {};
        EXPECT_GT(bytes, 0);
        stream.samples.push_back({{room.data(), room.data() + bytes}, number, flags == AVIIF_KEYFRAME});
    }
    EXPECT_EQ(ICERR_OK, ICCompressEnd(codec));
    return stream;
}

double MeanSquaredError(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum / static_cast<double>(a.size());
}

TEST(Encoder, ListsWhatItOpens) {
    const std::vector<CompressorEntry> list = ListCompressors();
    ASSERT_GE(list.size(), 6u);
    EXPECT_EQ(L"Uncompressed RGB", list[0].description);
    for (const CompressorEntry& entry : list) {
        const HIC codec = Open(entry.handler);
        ASSERT_EQ(entry.handler != 0, codec != nullptr);
        if (!codec) continue;
        ICINFO info;
        ASSERT_EQ(ICERR_OK, ICGetInfo(codec, info));
        EXPECT_EQ(entry.description, info.szDescription);
        EXPECT_EQ(VIDCF_FASTTEMPORALC, info.dwFlags);
        for (const auto& input :
             {MakeFormat(0, 32, 16, 16), MakeFormat(FourCC('Y', 'V', '1', '2'), 12, 16, 16),
              MakeFormat(0, 24, 16, -16), MakeFormat(0, 24, 0, 16), MakeFormat(0, 24, 1 << 20, 1 << 20)}) {
            EXPECT_EQ(0, ICCompressGetFormatSize(codec, View(input)));
            EXPECT_NE(ICERR_OK, ICCompressBegin(codec, View(input)));
        }
    }
    COMPVARS choice;
    EXPECT_FALSE(ICCompressorChoose(choice, FormatOf(Surface::RGB24, 16, 16), L"")) << "nobody asks";
}

TEST(Encoder, LosslessOnesGiveTheVeryBytesBack) {
    for (const CompressorEntry& entry : ListCompressors()) {
        if (!entry.lossless || entry.handler == 0) continue;
        for (const Size size : {Size{64, 48}, Size{17, 5}, Size{355, 291}, Size{4, 2}, Size{1, 1}}) {
            SCOPED_TRACE(testing::PrintToString(std::pair(entry.description, size.width)));
            const HIC codec = Open(entry.handler);
            Pictures pictures = {Noise(size, 1, 63), Wave(size, 3), Noise(size, 2, 0xBF),
                                 Noise(size, 3, 255)};
            for (; !pictures.empty(); pictures.pop_back()) {
                const TestStream stream = Encode(codec, size, pictures);
                if (stream.samples.empty()) {  // refused is not spoilt
                    EXPECT_TRUE(pictures.size() == 4 || size.width == 1);
                    continue;
                }
                TestDecoder decoder(stream, Surface::RGB24, size.width, size.height);
                ASSERT_TRUE(decoder.handle);
                EXPECT_EQ(std::wstring::npos, decoder.Description().find(L",")) << "nothing is converted";
                EXPECT_TRUE(stream.samples.back().isKey);
                const std::vector<Turn> turns = decoder.Run(static_cast<int>(pictures.size()) - 1);
                ASSERT_EQ(1u, turns.size());
                EXPECT_EQ(pictures.back(), turns[0].picture);
            }
        }
    }
}

/// Checks key flags of a stream at one quality; the mean squared error of its pictures.
double CheckLossy(const CompressorEntry& entry, Size size, int quality) {
    Pictures pictures;
    for (int i = 0; i < 25; ++i) pictures.push_back(Wave(size, i));
    const HIC codec = Open(entry.handler);
    ICSetRate(codec, {.scale = 1001, .rate = 30000, .quality = quality, .keyFrameRate = 10});
    const TestStream stream = Encode(codec, size, pictures);
    EXPECT_EQ(pictures.size(), stream.samples.size()) << "each at once";
    std::size_t keys = 0, lastKey = 0;
    for (std::size_t i = 0; i < stream.samples.size(); ++i) {
        if (i == 0 || stream.samples[i].isKey) {
            EXPECT_TRUE(stream.samples[i].isKey);
            EXPECT_LE(i - lastKey, 10u);
            ++keys;
            lastKey = i;
        }
    }
    EXPECT_GE(lastKey + 10, stream.samples.size());
    EXPECT_EQ(entry.handler == FourCC('M', 'J', 'P', 'G'), keys > 6) << "three are asked for";
    TestDecoder decoder(stream, Surface::RGB24, size.width, size.height);
    if (!decoder.handle) return 1e9;
    double error = 0;
    const std::vector<Turn> turns = decoder.Run();
    EXPECT_EQ(pictures.size(), turns.size());
    for (std::size_t i = 0; i < turns.size(); ++i) {
        EXPECT_TRUE(turns[i].isSound);
        error += MeanSquaredError(pictures[i], turns[i].picture) / 25;
    }
    return error;
}

TEST(Encoder, QualityAndKeyFramesAreAsAsked) {
    for (const CompressorEntry& entry : ListCompressors()) {
        if (entry.lossless) continue;
        for (const Size size : {Size{64, 48}, Size{33, 17}}) {
            SCOPED_TRACE(testing::PrintToString(std::pair(entry.description, size.width)));
            const double coarse = CheckLossy(entry, size, 0);
            const double middle = CheckLossy(entry, size, 5000);
            const double fine = CheckLossy(entry, size, 10000);
            EXPECT_LT(middle, coarse);
            EXPECT_LT(fine, middle);
            EXPECT_LT(fine, 6.5) << "40 dB: colours, range and rows are right";
        }
    }
}

TEST(Encoder, FollowsADataRate) {
    constexpr Size kSize = {128, 96};
    Pictures pictures;
    for (unsigned i = 0; i < 50; ++i) pictures.push_back(Noise(kSize, i, 0x1F));
    std::size_t before = 0;
    for (const int dataRate : {20, 60}) {
        const HIC codec = Open(FourCC('F', 'M', 'P', '4'));
        ICSetRate(codec, {.dataRate = dataRate});
        std::size_t bytes = 0;
        for (const auto& sample : Encode(codec, kSize, pictures).samples) bytes += sample.bytes.size();
        EXPECT_GT(bytes, 2 * before);
        EXPECT_LT(bytes, 2 * 2 * 1024 * static_cast<std::size_t>(dataRate)) << "two seconds, twice the rate";
        before = bytes;
    }
}

TEST(Encoder, KeepsTheKeyFrameDistanceInItsState) {
    constexpr Size kSize = {32, 16};
    const Pictures pictures(8, Wave(kSize, 0));
    const HIC chosen = Open(FourCC('F', 'M', 'P', '4'));
    ICSetRate(chosen, {.keyFrameRate = 4});
    std::vector<std::uint8_t> state = ICGetState(chosen);

    const HIC codec = Open(FourCC('F', 'M', 'P', '4'));
    ASSERT_EQ(ICERR_OK, ICSetState(codec, state));
    ICSetRate(codec, {.quality = 9000});
    const TestStream stream = Encode(codec, kSize, pictures);
    ASSERT_EQ(8u, stream.samples.size());
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(i % 4 == 0, stream.samples[i].isKey);

    EXPECT_EQ(ICERR_ERROR, ICSetState(Open(FourCC('H', 'F', 'Y', 'U')), state));
    for (const std::size_t byte : {std::size_t{0}, std::size_t{11}}) {
        std::vector<std::uint8_t> wrong = state;
        wrong[byte] ^= 0x80;
        EXPECT_EQ(ICERR_ERROR, ICSetState(codec, wrong)) << "another version, a negative distance";
    }
    for (const std::size_t size : {state.size() + 1, state.size() - 1, std::size_t{0}}) {
        state.resize(size);
        EXPECT_EQ(ICERR_ERROR, ICSetState(codec, state)) << size;
    }
}

}  // namespace
