#include "platform/media/indexed_video.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "platform/media/numbered_decoder.h"
#include "platform/text.h"
#include "tests/platform/media/container_file.h"
#include "tests/temporary_directory.h"

namespace {

// Lossless, three pictures deep, with groups whose first pictures refer to the group before.
constexpr const char* kLossless = "qp=0:bf=5:b-pyramid=normal:x264-params=open-gop=1";
constexpr int kLost = -1;

struct IndexedVideoTest : testing::Test {
    std::unique_ptr<IndexedVideo> Make(const ContainerFile& file, const std::string& name = "clip") {
        EXPECT_TRUE(WriteContainerFile(file, directory.Path(name))) << file.container << ' ' << file.encoder;
        return Open(name);
    }
    std::unique_ptr<IndexedVideo> Open(const std::string& name,
                                       MediaFile::Container container = MediaFile::Container::Any) {
        return IndexedVideo::Open(FromUtf8(directory.Path(name)), container, error);
    }

    TemporaryDirectory directory;
    std::string error;
};

std::vector<int> InOrder(int count) {
    std::vector<int> numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

/// The sample pictures that the frames of a video show.
std::vector<int> Shown(IndexedVideo& video, int pictures) {
    std::vector<int> numbers;
    for (const int i : InOrder(video.GetProperties().frameCount)) {
        const AVFrame* frame = video.ReadFrame(i);
        numbers.push_back(frame != nullptr ? NearestSample(*frame, pictures) : kLost);
    }
    return numbers;
}

// A damaged JPEG picture keeps what was never written to it; the memory comes back from an earlier one.
TEST(PictureBuffer, OfJpegBeginsAsZeros) {
    const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_MJPEG);
    const CodecContextPtr context(avcodec_alloc_context3(codec));
    ASSERT_EQ(0, avcodec_open2(context.get(), codec, nullptr));
    context->width = context->height = 64;
    context->pix_fmt = AV_PIX_FMT_YUVJ420P;
    for (const int turn : {1, 2}) {
        const FramePtr frame = MakeFrame();
        frame->width = frame->height = 64;
        frame->format = AV_PIX_FMT_YUVJ420P;
        ASSERT_EQ(0, GetPictureBuffer(context.get(), frame.get(), 0));
        EXPECT_EQ(64, std::count(frame->data[0], frame->data[0] + 64, 0)) << turn;
        EXPECT_EQ(32, std::count(frame->data[2], frame->data[2] + 32, 0)) << turn;
        std::fill_n(frame->data[0], 64, std::uint8_t{9});
        std::fill_n(frame->data[2], 32, std::uint8_t{9});
    }
}

// What was encoded without loss must come out as it went in, in whatever order it is asked for.
TEST_F(IndexedVideoTest, EveryFrameIsItsPicture) {
    const std::pair<ContainerFile, bool> kCases[] = {
        {{"mp4", "libx264", kLossless}, true},
        {{"mov", "libx264", kLossless}, true},
        {{"matroska", "libx264", kLossless}, true},
        {{"mpegts", "libx264", kLossless}, true},
        {{"flv", "libx264", "qp=0:bf=2:profile=high444"}, true},
        {{"avi", "libx264", kLossless}, true},   // stores no display times
        {{"h264", "libx264", kLossless}, true},  // stores no times at all
        {{"matroska", "libx264", "crf=20:x264-params=intra-refresh=1"}, false},
        {{"avi", "ffv1"}, true},
        {{"matroska", "ffv1"}, true},
        {{"webm", "libvpx", "auto-alt-ref=1:lag-in-frames=10:b=400000"}, false},  // has hidden pictures
        {{"webm", "libvpx-vp9", "lossless=1:lag-in-frames=10"}, true},
        {{"avi", "mpeg4", "bf=2:b=2000000"}, false},
        {{"mp4", "mpeg4", "bf=2:b=2000000"}, false},
        {{"mpeg", "mpeg2video", "bf=2:b=2000000"}, false},
        {{"mpegts", "mpeg2video", "bf=2:b=2000000"}, false},
        {{"asf", "wmv2", "b=2000000"}, false},
    };
    std::mt19937 random(1);
    for (const auto& [file, isExact] : kCases) {
        SCOPED_TRACE(std::string(file.container) + " " + file.encoder);
        const auto video = Make(file);
        ASSERT_NE(nullptr, video) << error;
        const int count = video->GetProperties().frameCount;
        ASSERT_EQ(file.pictures, count);
        EXPECT_EQ(25u, video->GetProperties().rate);
        std::vector<int> numbers = InOrder(count);
        for (int round = 0; round < 3; ++round) {
            for (const int number : numbers) {
                const AVFrame* frame = video->ReadFrame(number);
                ASSERT_NE(nullptr, frame) << number;
                const bool isRight = isExact ? Difference(*frame, *SamplePicture(number, 64, 48)) == 0
                                             : NearestSample(*frame, count) == number;
                ASSERT_TRUE(isRight) << number;
            }
            std::shuffle(numbers.begin(), numbers.end(), random);
        }
        EXPECT_EQ(nullptr, video->ReadFrame(-1));
        EXPECT_EQ(nullptr, video->ReadFrame(count));
    }
}

// This encoder puts two pictures into one packet and leaves the next one nearly empty, and its file has a gap
// in front.
TEST_F(IndexedVideoTest, PicturesThatArePackedInPairs) {
    const auto video = Make({"avi", "libxvid", "bf=2:b=2000000"});
    ASSERT_NE(nullptr, video) << error;
    std::vector<int> shown = Shown(*video, 30);
    EXPECT_EQ(0, shown.front());
    for (std::size_t i = 1; i < shown.size(); ++i) EXPECT_LE(shown[i] - shown[i - 1], i == 2 ? 0 : 1) << i;
    EXPECT_EQ(static_cast<int>(shown.size()) - 2, shown.back());
    for (; !shown.empty(); shown.pop_back()) {
        const AVFrame* frame = video->ReadFrame(static_cast<int>(shown.size()) - 1);
        ASSERT_NE(nullptr, frame);
        EXPECT_EQ(shown.back(), NearestSample(*frame, 30));
    }
}

TEST_F(IndexedVideoTest, CountsFrames) {
    const std::tuple<const char*, ContainerFile, std::vector<int>> kCases[] = {
        {"an empty place repeats", {"avi", "ffv1", "", 4, 64, 48, "0145"}, {0, 1, 1, 1, 2, 3}},
        {"a variable rate", {"matroska", "ffv1", "", 4, 64, 48, "0179"}, {0, 1, 2, 3}},
        {"before the first key",
         {"matroska", "libx264", "qp=0:bf=0:x264-params=scenecut=0", 24, 64, 48, "", 1},
         {-1, -1, -1, -1, -1, -1, -1, -1, -1, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23}},
        {"damage and what refers to it",
         {"avi", "mpeg4", "bf=0:b=2000000:g=6", 14, 64, 48, "", 0, 3},
         {0, 1, 2, -1, -1, -1, 6, 7, 8, 9, 10, 11, 12, 13}},
        {"damage alone", {"matroska", "mpeg4", "g=1:b=4000000", 5, 64, 48, "", 0, 2}, {0, 1, -1, 3, 4}},
    };
    for (const auto& [what, file, shown] : kCases) {
        SCOPED_TRACE(what);
        const auto video = Make(file);
        ASSERT_NE(nullptr, video) << error;
        for (int time = 0; time < 2; ++time) EXPECT_EQ(shown, Shown(*video, file.pictures));
    }
}

// A decoder may keep something of a damaged picture to itself and mix it into a later one, and with several threads it
// may mark the picture after it handed it over.
TEST_F(IndexedVideoTest, DamageEndsAtTheNextKey) {
    ContainerFile file = {"matroska", "libx264", "bf=3:g=6:crf=4:coder=vlc:x264-params=scenecut=0",
                          18,         32,        16};
    EncodedPictures encoded;
    ASSERT_TRUE(Encode(file, encoded));
    ASSERT_TRUE(WriteContainerFile(file, encoded, directory.Path("sound")));
    const auto sound = Open("sound");
    ASSERT_NE(nullptr, sound) << error;
    for (file.halvedPacket = 0; file.halvedPacket < file.pictures; ++file.halvedPacket) {
        SCOPED_TRACE(file.halvedPacket);
        ASSERT_TRUE(WriteContainerFile(file, encoded, directory.Path("damaged")));
        const auto damaged = Open("damaged");
        ASSERT_NE(nullptr, damaged) << error;
        for (int i = 0; i < file.pictures; ++i) {
            const AVFrame* frame = damaged->ReadFrame(i);
            const bool mayBeLost = i / 6 == file.halvedPacket / 6;
            EXPECT_TRUE(frame == nullptr ? mayBeLost : Difference(*sound->ReadFrame(i), *frame) == 0) << i;
        }
    }
}

// A damaged packet may have been fed ahead whose picture nobody has taken when another frame is asked for.
TEST_F(IndexedVideoTest, DamageAheadLeavesNoTrace) {
    for (const char* options :
         {"bf=3:g=6:crf=4:coder=vlc:x264-params=scenecut=0", "bf=0:g=1:crf=4:coder=vlc"}) {
        ContainerFile file = {"matroska", "libx264", options, 8, 32, 16};
        EncodedPictures encoded;
        ASSERT_TRUE(Encode(file, encoded));
        ASSERT_TRUE(WriteContainerFile(file, encoded, directory.Path("sound")));
        const auto sound = Open("sound");
        file.halvedPacket = 5;
        ASSERT_TRUE(WriteContainerFile(file, encoded, directory.Path("damaged")));
        for (int pair = 0; pair < 64; ++pair) {
            const auto damaged = Open("damaged");
            damaged->ReadFrame(pair / 8);
            const AVFrame* frame = damaged->ReadFrame(pair % 8);
            EXPECT_TRUE(frame == nullptr || Difference(*sound->ReadFrame(pair % 8), *frame) == 0) << pair;
        }
    }
}

// A file that is cut off has fewer frames, or none; those that it has are right.
TEST_F(IndexedVideoTest, EveryPrefixOfAFile) {
    const ContainerFile file = {"matroska", "ffv1", "", 6, 32, 16};
    ASSERT_TRUE(WriteContainerFile(file, directory.Path("whole")));
    const std::string whole = ReadWhole(directory.Path("whole"));
    int opened = 0;
    for (std::size_t length = 0; length < whole.size(); length += 97) {
        directory.Write("cut", std::string_view(whole).substr(0, length));
        const auto video = Open("cut");
        EXPECT_EQ(video == nullptr, !error.empty()) << length;
        if (video == nullptr) continue;
        ++opened;
        const int count = video->GetProperties().frameCount;
        EXPECT_EQ(InOrder(count), Shown(*video, file.pictures)) << length;
        EXPECT_TRUE(video->GetProperties().isCutOff || count == file.pictures) << length;
    }
    EXPECT_GT(opened, 10);
    EXPECT_FALSE(Open("whole")->GetProperties().isCutOff);
}

TEST_F(IndexedVideoTest, SaysWhyThereIsNothing) {
    ASSERT_TRUE(WriteContainerFile({}, directory.Path("clip.mkv")));
    const std::string clip = directory.Path("clip.mkv");
    // 8 kHz, mono, 8 bits.
    const std::string sound(
        "RIFF\x44\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x08\0data\x20\0\0\0", 44);
    directory.Write("sound", sound + std::string(32, 'x'));
    directory.Write("empty", "");
    directory.Write("text", "no video at all\n");
    directory.Write("list", "ffconcat version 1.0\nfile '" + clip + "'\n");
    directory.Write("playlist",
                    "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + clip + "\n#EXT-X-ENDLIST\n");
    const auto expectRefused = [&](const char* name, const char* words, auto container) {
        EXPECT_EQ(nullptr, Open(name, container)) << name;
        EXPECT_NE(error.npos, error.find(words)) << name << ": " << error;
    };
    const std::pair<const char*, const char*> kCases[] = {
        {"gone", "can't be read"},
        {"empty", "no video file"},
        {"text", "no video file"},
        {"sound", "no video stream"},
        // Other files that a file names are none of its own.
        {"list", "file"},
        {"playlist", "file"}};
    for (const auto& [name, words] : kCases) expectRefused(name, words, MediaFile::Container::Any);
    expectRefused("clip.mkv", "no AVI file", MediaFile::Container::Avi);
}

// As with a disk that is unplugged, and plugged in again.
TEST_F(IndexedVideoTest, AFileThatIsAwayCostsTheFramesOfThatTimeOnly) {
    constexpr int kPictures = 30;
    const auto video = Make({.pictures = kPictures, .width = 640, .height = 480});  // more than is read ahead
    ASSERT_NE(nullptr, video) << error;
    const std::string bytes = ReadWhole(directory.Path("clip"));
    directory.Write("clip", "");
    for (const int frame : {20, 21, 2}) EXPECT_EQ(nullptr, video->ReadFrame(frame)) << frame;
    directory.Write("clip", bytes);
    for (const int frame : {25, 26, 3}) {
        const AVFrame* const picture = video->ReadFrame(frame);
        ASSERT_NE(nullptr, picture) << frame;
        EXPECT_EQ(frame, NearestSample(*picture, kPictures));
    }
}

// What the decoder has read of a broken block stays in it, also behind a flush, and would go into the next picture.
TEST(NumberedDecoder, AStartLeavesNoTraceOfDamage) {
    EncodedPictures encoded;
    ASSERT_TRUE(Encode({"matroska", "libx264", "bf=0:g=1:crf=4:coder=vlc", 1, 32, 16}, encoded));
    AVStream stream = {};
    stream.time_base = {1, 25};
    NumberedDecoder decoder;
    /// The picture of so many bytes of the packet, if it can be had.
    const auto decode = [&](int bytes) {
        const PacketPtr packet(av_packet_clone(encoded.packets[0].get()));
        EXPECT_EQ(0, av_packet_make_writable(packet.get()));
        av_shrink_packet(packet.get(), bytes);
        FramePtr picture = MakeFrame();
        EXPECT_TRUE(decoder.Start(stream, *encoded.codec, 0, NumberedDecoder::Mode::Careful));
        decoder.Send(*packet, 0);
        decoder.Drain();
        return decoder.Receive(*picture) == NumberedDecoder::Result::Done ? std::move(picture) : nullptr;
    };
    const int whole = encoded.packets[0]->size;
    const FramePtr sound = decode(whole);
    for (int bytes = whole / 2; bytes < whole; ++bytes) {
        decode(bytes);
        const FramePtr next = decode(whole);
        ASSERT_NE(nullptr, next) << bytes;
        EXPECT_EQ(0, Difference(*sound, *next)) << bytes;
    }
}

}  // namespace
