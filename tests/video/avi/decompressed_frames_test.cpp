#include "video/avi/decompressed_frames.h"

#include <algorithm>
#include <numeric>
#include <random>

#include "tests/platform/vfw/streams.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

struct MemoryStream : rkIRawDataStream {
    explicit MemoryStream(const TestStream& encoded, int first = 0) : stream(encoded), start(first) {}

    bool IsVideo() override { return true; }
    bool IsAudio() override { return false; }
    bool ReadSample(int sample, std::uint8_t* buffer, int bufferSize, int* actualBytes) override {
        const Bytes& bytes = stream.samples.at(static_cast<std::size_t>(sample - start)).bytes;
        *actualBytes = sample == unreadable ? 0 : static_cast<int>(bytes.size());
        if (sample == unreadable || *actualBytes > bufferSize) return false;
        std::copy(bytes.begin(), bytes.end(), buffer);
        return true;
    }
    bool GetStreamInfo(AVISTREAMINFOW*) override { return false; }
    bool IsKeyFrame(int sample) override {
        ++keyQuestions;
        return stream.samples.at(static_cast<std::size_t>(sample)).isKey;
    }
    int GetLength() override { return static_cast<int>(stream.samples.size()); }
    int GetStart() override { return start; }
    int GetEnd() override { return start + GetLength() - 1; }
    int GetFormatSize() override { return 0; }
    bool GetFormat(std::uint8_t*, int) override { return false; }

    TestStream stream;
    int start;
    int unreadable = -1;
    int keyQuestions = 0;
};

/// A stream with keys every 12 samples, and its pictures in the order of the times that the encoder gave them.
struct Case {
    static constexpr int kFrames = 50;
    const char* what;
    bool isCutTold;  ///< whether half a sample can't be sound: in an arithmetic code the zeros behind it can
    TestStream stream;
    std::vector<Bytes> pictures = std::vector<Bytes>(stream.samples.size());

    void Decode() {
        TestDecoder decoder(stream, Surface::YV12);
        for (Turn& turn : decoder.Run()) {
            EXPECT_TRUE(turn.isSound);
            const int number = stream.samples[static_cast<std::size_t>(turn.sample)].picture;
            pictures[static_cast<std::size_t>(number)] = std::move(turn.picture);
        }
    }
};

/// In open groups pictures that are displayed before a key sample's are stored behind it.
std::vector<Case> Cases() {
    const auto groups = [](const char* encoder, std::uint32_t tag, int bFrames, const char* x264 = nullptr) {
        return MakeGroups(encoder, tag, Case::kFrames, bFrames, 12, x264);
    };
    const auto mpeg4 = FourCC('F', 'M', 'P', '4'), h264 = FourCC('H', '2', '6', '4');
    const auto still = MakeStream("mjpeg", AV_PIX_FMT_YUVJ420P, FourCC('M', 'J', 'P', 'G'), Case::kFrames);
    std::vector<Case> cases = {
        {"in stored order", true, groups("mpeg4", mpeg4, 0)},
        {"open groups", true, groups("mpeg4", mpeg4, 2)},
        {"open groups, MPEG-2", true, groups("mpeg2video", FourCC('M', 'P', 'G', '2'), 2)},
        {"a pyramid in closed groups", false, groups("libx264", h264, 3, "scenecut=0:b-adapt=0")},
        {"a pyramid in open groups", false, groups("libx264", h264, 3, "scenecut=0:b-adapt=0:open-gop=1")},
        {"a pyramid in another code", true, groups("libx264", h264, 3, "scenecut=0:b-adapt=0:cabac=0")},
        {"without references", true, still}};
    for (Case& c : cases) c.Decode();
    return cases;
}

double MeanLuma(const Bytes& yv12) {
    const auto samples = static_cast<std::ptrdiff_t>(yv12.size() / 3 * 2);
    return std::accumulate(yv12.begin(), yv12.begin() + samples, 0.0) / static_cast<double>(samples);
}

struct Frames {
    Frames(MemoryStream& stream, const TestStream& sound)
        : decoder(sound, Surface::YV12),
          frames(VideoSamples(stream, true), decoder.handle,
                 {sound.format, {decoder.Output().data, decoder.Output().data + kBitmapFormatBytes}},
                 kBytes) {}

    /// The picture, or nothing and `result`.
    Bytes Read(int frame) {
        Bytes picture(kBytes);
        result = frames.Read(frame, picture.data());
        return result == FrameResult::Ok ? picture : Bytes();
    }
    FrameResult result = FrameResult::Ok;
    static constexpr std::size_t kBytes = 32 * 16 * 3 / 2;
    TestDecoder decoder;
    DecompressedFrames frames;
};

/// Expects the pictures in order, each alone, and shuffled.
void ExpectPictures(MemoryStream& stream, const TestStream& sound, const std::vector<Bytes>& pictures) {
    std::vector<int> order(pictures.size());
    std::iota(order.begin(), order.end(), 0);
    for (const bool isShuffled : {false, true}) {
        Frames frames(stream, sound);
        for (const int i : order) {
            const Bytes& picture = pictures[static_cast<std::size_t>(i)];
            EXPECT_TRUE(picture == frames.Read(stream.start + i)) << i << (isShuffled ? " shuffled" : "");
            EXPECT_TRUE(isShuffled || picture == Frames(stream, sound).Read(stream.start + i)) << i;
        }
        std::shuffle(order.begin(), order.end(), std::mt19937(1));
    }
}

TEST(DecompressedFrames, AnyOrderGivesThePicturesByTheirTimesAndRepeats) {
    for (const Case& c : Cases()) {
        SCOPED_TRACE(c.what);
        ASSERT_EQ(Case::kFrames, static_cast<int>(c.pictures.size())) << "the encoder is missing";
        for (int i = 0; i < Case::kFrames; ++i) {
            const bool isFull = c.stream.samples[0].isKey && c.stream.samples[1].isKey;  // Motion JPEG
            const int brightness = isFull ? 16 + 219 * Brightness(i) / 255 : Brightness(i);
            EXPECT_NEAR(brightness, MeanLuma(c.pictures[static_cast<std::size_t>(i)]), 3) << i;
        }
        MemoryStream stream(c.stream, 5);
        ExpectPictures(stream, c.stream, c.pictures);

        // An empty sample repeats the picture before.
        stream.start = 0;
        std::vector<Bytes> pictures = c.pictures;
        for (const std::size_t at : {50u, 30u, 7u}) {  // behind the last, and 14 where they hide a key sample
            const std::size_t count = at == 30 ? 14 : 1;
            const auto offset = static_cast<std::ptrdiff_t>(at);
            stream.stream.samples.insert(stream.stream.samples.begin() + offset, count, {});
            pictures.insert(pictures.begin() + offset, count, Bytes(pictures[at - 1]));
        }
        ExpectPictures(stream, c.stream, pictures);
    }
}

TEST(DecompressedFrames, DamageNeverShowsAnotherPicture) {
    // A start may need the group before it, and pictures displayed before a key sample belong to its group.
    constexpr int kFar = 2 * 12 + 4;
    for (const Case& c : Cases()) {
        for (int sample = 0; sample < Case::kFrames; ++sample) {
            SCOPED_TRACE(testing::Message() << c.what << ", sample " << sample);
            MemoryStream stream(c.stream);
            Bytes& bytes = stream.stream.samples[static_cast<std::size_t>(sample)].bytes;
            const int damage = sample % 5;
            if (damage == 0) stream.unreadable = sample;
            if (damage == 1) bytes = Bytes(40);
            if (damage == 2) std::fill(bytes.begin(), bytes.end(), std::uint8_t{0x55});
            if (damage == 3) bytes.resize(1);
            if (damage == 4) bytes.resize(c.isCutTold ? bytes.size() / 2 : 1);
            Frames inOrder(stream, c.stream);
            for (int i = 0; i < Case::kFrames; ++i) {
                const Bytes inTurn = inOrder.Read(i);
                const Bytes alone = i % 8 == sample % 8 ? Frames(stream, c.stream).Read(i) : inTurn;
                for (const Bytes& read : {inTurn, alone})
                    EXPECT_TRUE((read.empty() && std::abs(i - sample) <= kFar) ||
                                read == c.pictures[static_cast<std::size_t>(i)])
                        << i;
            }
        }
    }
}

TEST(DecompressedFrames, WithoutReferencesPicturesBeforeTheFirstKeySampleAreSound) {
    TestStream encoded = MakeStream("mjpeg", AV_PIX_FMT_YUVJ420P, FourCC('M', 'J', 'P', 'G'), 6);
    const std::vector<Turn> turns = TestDecoder(encoded, Surface::YV12).Run();
    for (int i = 0; i < 6; ++i) encoded.samples[static_cast<std::size_t>(i)].isKey = i == 4;
    MemoryStream stream(encoded, 5);
    Frames frames(stream, encoded);
    for (const int i : {0, 3, 1, 5, 2, 4})
        EXPECT_EQ(turns[static_cast<std::size_t>(i)].picture, frames.Read(stream.start + i)) << i;
}

TEST(DecompressedFrames, ALongStillIsReadInTimeThatGrowsWithItsLength) {
    constexpr int kRepeats = 3000;
    const Case c = Cases().front();
    MemoryStream stream(c.stream);
    auto& samples = stream.stream.samples;
    samples.resize(2);
    samples.insert(samples.begin() + 1, kRepeats, {});
    Frames frames(stream, c.stream);
    for (int i = 0; i <= kRepeats; ++i) ASSERT_EQ(c.pictures[0], frames.Read(i)) << i;
    EXPECT_EQ(c.pictures[1], frames.Read(kRepeats + 1));
    EXPECT_EQ(c.pictures[0], frames.Read(kRepeats / 2));
    EXPECT_LT(stream.keyQuestions, 10 * kRepeats);
}

TEST(DecompressedFrames, NothingBeforeTheFirstKeySampleOrBehindDamageUpToTheNext) {
    const Case c = Cases().front();
    MemoryStream stream(c.stream);
    auto& samples = stream.stream.samples;
    samples.erase(samples.begin());  // and frame i is picture i + 1
    samples[13].bytes = Bytes(40);
    stream.unreadable = 24;
    Frames frames(stream, c.stream);
    for (int i = 0; i + 1 < Case::kFrames; ++i) {
        const bool isFailed = i < 11 || (i >= 13 && i < 23), isUnreadable = i >= 24 && i < 35;
        const Bytes& picture = c.pictures[static_cast<std::size_t>(i) + 1];
        EXPECT_EQ(!isFailed && !isUnreadable, frames.Read(i) == picture) << i;
        EXPECT_EQ(isFailed, frames.result == FrameResult::DecodeFailed) << i;
        EXPECT_EQ(isUnreadable, frames.result == FrameResult::ReadFailed) << i;
    }

    MemoryStream unmarked(c.stream);
    for (auto& sample : unmarked.stream.samples) sample.isKey = false;
    EXPECT_EQ(c.pictures[13], Frames(unmarked, c.stream).Read(13)) << "no sample is marked";
    unmarked.stream.samples.insert(unmarked.stream.samples.begin(), TestStream::Sample{});
    EXPECT_EQ(Bytes(), Frames(unmarked, c.stream).Read(0)) << "there is nothing to repeat";
}

}  // namespace
