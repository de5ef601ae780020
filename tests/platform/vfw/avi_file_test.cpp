#include "platform/vfw/avi_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "platform/text.h"
#include "tests/platform/vfw/streams.h"
#include "tests/temporary_directory.h"

namespace {

AVISTREAMINFOW Info(std::uint32_t handler, int width, int height) {
    AVISTREAMINFOW info = {};
    info.fccType = FourCC('v', 'i', 'd', 's');
    info.fccHandler = handler;
    info.dwScale = 100;
    info.dwRate = 2500;
    info.rcFrame = {0, 0, width, height};
    CopyText(L"A title \u00e4", info.szName, 64);
    return info;
}

/// A file being written, with one stream.
class Writing {
public:
    Writing(const std::string& path, const AVISTREAMINFOW& info, const std::vector<std::uint8_t>& format) {
        if (AVIFileOpenW(file, FromUtf8(path), OF_WRITE | OF_CREATE) != 0) return;
        if (AVIFileCreateStreamW(file, stream, info) != 0) return;
        isReady = AVIStreamSetFormat(*stream, 0, format.data(), static_cast<int>(format.size())) == 0;
        position = static_cast<int>(info.dwStart);
    }
    bool Write(const std::vector<std::uint8_t>& sample, bool isKey = true) {
        return AVIStreamWrite(*stream, position++, sample.data(), sample.size(),
                              isKey ? AVIIF_KEYFRAME : 0) == 0;
    }
    bool Close() { return AVIStreamRelease(stream) == 0 && AVIFileRelease(file) == 0; }

    bool isReady = false;
    int position = 0;
    std::shared_ptr<AviFile> file;
    std::shared_ptr<AviStream> stream;
};

/// A file as another reader sees it: the library's demultiplexer.
struct Seen {
    explicit Seen(const std::string& path) {
        SilenceLibav();
        AVFormatContext* context = nullptr;
        if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0) return;
        input.reset(context);
        if (context->nb_streams != 1) return;
        stream = context->streams[0];
        const PacketPtr packet = MakePacket();
        while (av_read_frame(context, packet.get()) == 0) {
            bytes += static_cast<std::uint64_t>(packet->size);
            if (keepSamples) samples.push_back({packet->data, packet->data + packet->size});
            keys.push_back((packet->flags & AV_PKT_FLAG_KEY) != 0);
            av_packet_unref(packet.get());
        }
    }

    InputPtr input;
    AVStream* stream = nullptr;
    bool keepSamples = true;
    std::vector<std::vector<std::uint8_t>> samples;
    std::vector<bool> keys;
    std::uint64_t bytes = 0;
};

std::vector<std::vector<std::uint8_t>> RandomSamples(int count, std::size_t mostBytes) {
    std::mt19937 random(7);
    std::vector<std::vector<std::uint8_t>> samples(static_cast<std::size_t>(count));
    for (auto& sample : samples) {
        sample.resize(1 + random() % mostBytes);
        for (auto& byte : sample) byte = static_cast<std::uint8_t>(random());
    }
    return samples;
}

std::uint32_t Word(const std::string& file, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i)
        word |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(file[offset + i])) << 8 * i;
    return word;
}

TEST(AviWriting, AnotherReaderSeesTheSamples) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("\xC3\xA4.avi");
    constexpr std::uint32_t kTag = FourCC('F', 'M', 'P', '4');
    const auto samples = RandomSamples(500, 300);  // odd sizes too
    AVISTREAMINFOW info = Info(kTag, 33, 17);
    info.dwStart = 5;
    Writing writing(path, info, MakeFormat(kTag, 24, 33, 17, {1, 2, 3}));
    ASSERT_TRUE(writing.isReady);
    for (std::size_t i = 0; i < samples.size(); ++i) ASSERT_TRUE(writing.Write(samples[i], i % 12 == 0));
    ASSERT_TRUE(writing.Close());

    const Seen seen(path);
    ASSERT_NE(nullptr, seen.stream);
    EXPECT_EQ(samples, seen.samples);
    for (std::size_t i = 0; i < seen.keys.size(); ++i) EXPECT_EQ(i % 12 == 0, seen.keys[i]);
    EXPECT_EQ(AV_CODEC_ID_MPEG4, seen.stream->codecpar->codec_id);
    EXPECT_EQ(33, seen.stream->codecpar->width);
    EXPECT_EQ(17, seen.stream->codecpar->height);
    ASSERT_EQ(3, seen.stream->codecpar->extradata_size);
    EXPECT_EQ(3, seen.stream->codecpar->extradata[2]);
    EXPECT_EQ(500, seen.stream->nb_frames);
    const AVDictionaryEntry* title = av_dict_get(seen.stream->metadata, "title", nullptr, 0);
    ASSERT_NE(nullptr, title);
    EXPECT_STREQ("A title \u00e4", title->value);

    // The numbers as they are, at the places that the format gives them.
    const std::string file = ReadWhole(path);
    EXPECT_EQ(file.size() - 8, Word(file, 4));
    const std::size_t header = file.find("strh") + 8;
    EXPECT_EQ(kTag, Word(file, header + 4));
    EXPECT_EQ(100u, Word(file, header + 20));
    EXPECT_EQ(2500u, Word(file, header + 24));
    EXPECT_EQ(5u, Word(file, header + 28));
    EXPECT_EQ(500u, Word(file, header + 32));
    EXPECT_EQ(33u | 17u << 16, Word(file, header + 52));
    const std::size_t main = file.find("avih") + 8;
    EXPECT_EQ(40000u, Word(file, main)) << "microseconds a frame";
    EXPECT_EQ(500u, Word(file, main + 16));
}

TEST(AviWriting, UncompressedRowsStayBottomUp) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("raw.avi");
    std::vector<std::uint8_t> format = MakeFormat(0, 24, 3, 2);
    format.resize(44);
    Writing writing(path, Info(FourCC('D', 'I', 'B', '\0'), 3, 2), format);
    const std::vector<std::uint8_t> picture = {1,  2,  3,  4,  5,  6,  7,  8,  9,  0, 0, 0,
                                               11, 12, 13, 14, 15, 16, 17, 18, 19, 0, 0, 0};
    ASSERT_TRUE(writing.Write(picture));
    ASSERT_TRUE(writing.Close());

    const Seen seen(path);
    ASSERT_EQ(1u, seen.samples.size());
    EXPECT_EQ(picture, seen.samples[0]);
    const CodecContextPtr decoder = OpenDecoder(*seen.stream->codecpar);
    ASSERT_TRUE(decoder);
    const PacketPtr packet = MakePacket();
    ASSERT_EQ(0, av_new_packet(packet.get(), 24));
    std::memcpy(packet->data, picture.data(), 24);
    const FramePtr frame = MakeFrame();
    ASSERT_EQ(0, avcodec_send_packet(decoder.get(), packet.get()));
    ASSERT_EQ(0, avcodec_receive_frame(decoder.get(), frame.get()));
    EXPECT_EQ(AV_PIX_FMT_BGR24, frame->format);
    EXPECT_EQ(11, frame->data[0][0]) << "the last row of the file is the top one";
}

TEST(AviWriting, IsReadableAfterAKill) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("cut.avi");
    constexpr std::uint32_t kTag = FourCC('M', 'J', 'P', 'G');
    const auto samples = RandomSamples(3000, 50);
    Writing writing(path, Info(kTag, 16, 16), MakeFormat(kTag, 24, 16, 16));
    for (const auto& sample : samples) ASSERT_TRUE(writing.Write(sample));
    const std::string cut = directory.Write("copy.avi", ReadWhole(path));

    const Seen seen(cut);
    EXPECT_GE(seen.samples.size(), 3000u - 3000 / 64);
    for (std::size_t i = 0; i < seen.samples.size(); ++i) ASSERT_EQ(samples[i], seen.samples[i]);
    EXPECT_GE(seen.stream->nb_frames, 3000 - 3000 / 64);
    ASSERT_TRUE(writing.Close());
    EXPECT_EQ(samples, Seen(path).samples);
}

TEST(AviWriting, AFullDiskFailsTheWriteAndLeavesAReadableFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("full.avi");
    constexpr std::uint32_t kTag = FourCC('M', 'J', 'P', 'G');
    const auto samples = RandomSamples(100, 2000);
    std::size_t written = 0;
    {
        // A limit on the size of files makes a disk full.
        const auto handler = signal(SIGXFSZ, SIG_IGN);
        rlimit before = {};
        getrlimit(RLIMIT_FSIZE, &before);
        Writing writing(path, Info(kTag, 16, 16), MakeFormat(kTag, 24, 16, 16));
        rlimit limit = before;
        limit.rlim_cur = 80000;
        setrlimit(RLIMIT_FSIZE, &limit);
        while (written < samples.size() && writing.Write(samples[written])) ++written;
        EXPECT_FALSE(writing.Write(samples[0])) << "nothing more";
        EXPECT_FALSE(writing.Close());
        setrlimit(RLIMIT_FSIZE, &before);
        signal(SIGXFSZ, handler);
    }
    EXPECT_GT(written, 10u);
    EXPECT_LT(written, samples.size());
    const Seen seen(path);
    EXPECT_GE(seen.samples.size() + 16, written);
    for (std::size_t i = 0; i < seen.samples.size(); ++i) ASSERT_EQ(samples[i], seen.samples[i]);

    Writing device("/dev/full", Info(kTag, 16, 16), MakeFormat(kTag, 24, 16, 16));
    EXPECT_FALSE(device.isReady);
}

TEST(AviWriting, RefusesWhatIsOutOfOrder) {
    const TemporaryDirectory directory;
    const std::wstring path = FromUtf8(directory.Path("a.avi"));
    std::shared_ptr<AviFile> file;
    EXPECT_NE(0, AVIFileOpenW(file, FromUtf8(directory.Path("missing/a.avi")), OF_WRITE | OF_CREATE));
    EXPECT_NE(0, AVIFileOpenW(file, FromUtf8(directory.Root().native()), OF_WRITE | OF_CREATE));
    ASSERT_EQ(0, AVIFileOpenW(file, path, OF_WRITE | OF_CREATE));

    std::shared_ptr<AviStream> stream, second;
    const AVISTREAMINFOW good = Info(0, 16, 16);
    AVISTREAMINFOW bad = good;
    bad.dwRate = 0;
    EXPECT_NE(0, AVIFileCreateStreamW(file, stream, bad));
    bad = good;
    bad.fccType = FourCC('a', 'u', 'd', 's');
    EXPECT_NE(0, AVIFileCreateStreamW(file, stream, bad));
    ASSERT_EQ(0, AVIFileCreateStreamW(file, stream, good));
    EXPECT_NE(0, AVIFileCreateStreamW(file, second, good));

    const auto format = MakeFormat(0, 24, 16, 16);
    const std::vector<std::uint8_t> sample(768);
    EXPECT_NE(0, AVIStreamWrite(*stream, 0, sample.data(), sample.size(), AVIIF_KEYFRAME)) << "no format yet";
    EXPECT_NE(0, AVIStreamSetFormat(*stream, 0, format.data(), 39));
    ASSERT_EQ(0, AVIStreamSetFormat(*stream, 0, format.data(), 40));
    EXPECT_NE(0, AVIStreamSetFormat(*stream, 0, format.data(), 40));
    EXPECT_NE(0, AVIStreamWrite(*stream, 1, sample.data(), sample.size(), AVIIF_KEYFRAME)) << "not the next";
    ASSERT_EQ(0, AVIStreamWrite(*stream, 0, sample.data(), sample.size(), AVIIF_KEYFRAME));

    ASSERT_EQ(0, AVIFileRelease(file)) << "the stream still keeps it";
    EXPECT_EQ(0, AVIStreamWrite(*stream, 1, sample.data(), sample.size(), AVIIF_KEYFRAME));
    AVIStreamRelease(stream);
    EXPECT_EQ(2u, Seen(directory.Path("a.avi")).samples.size());
}

// Takes 4.6 GB in the temporary directory: --gtest_also_run_disabled_tests.
TEST(AviWriting, DISABLED_GoesBeyondFourGiB) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("large.avi");
    std::vector<std::uint8_t> picture = RandomSamples(1, 1)[0];
    picture.resize(1920 * 1080 * 3, 0x5A);
    constexpr int kFrames = 740;
    Writing writing(path, Info(FourCC('D', 'I', 'B', '\0'), 1920, 1080), MakeFormat(0, 24, 1920, 1080));
    for (int i = 0; i < kFrames; ++i) {
        std::memcpy(picture.data(), &i, sizeof i);
        ASSERT_TRUE(writing.Write(picture));
    }
    ASSERT_TRUE(writing.Close());
    ASSERT_GT(std::filesystem::file_size(path), std::uint64_t{1} << 32);

    SilenceLibav();
    AVFormatContext* context = nullptr;
    ASSERT_EQ(0, avformat_open_input(&context, path.c_str(), nullptr, nullptr));
    const InputPtr input(context);
    EXPECT_EQ(kFrames, context->streams[0]->nb_frames);
    const PacketPtr packet = MakePacket();
    int read = 0;
    while (av_read_frame(context, packet.get()) == 0) {
        EXPECT_EQ(static_cast<int>(picture.size()), packet->size);
        EXPECT_EQ(0, std::memcmp(packet->data, &read, sizeof read)) << read;
        ++read;
        av_packet_unref(packet.get());
    }
    EXPECT_EQ(kFrames, read);
}

}  // namespace
