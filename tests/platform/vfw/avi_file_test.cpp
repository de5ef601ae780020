#include <random>

#include "platform/vfw/avi_file.h"

#include "platform/byte_order.h"
#include "platform/text.h"
#include "tests/file_size_limit.h"
#include "tests/platform/vfw/streams.h"
#include "tests/temporary_directory.h"

namespace {

using Samples = std::vector<std::vector<std::uint8_t>>;

constexpr std::uint32_t kTag = FourCC('F', 'M', 'P', '4');

/// A file being written, with one stream.
struct Writing {
    Writing(const std::string& path, std::uint32_t tag, int width, int height) {
        AVISTREAMINFOW info = {};
        info.fccType = FourCC('v', 'i', 'd', 's');
        info.fccHandler = tag;
        info.dwScale = 100;
        info.dwRate = 2500;
        info.dwStart = 5;
        info.rcFrame = {0, 0, width, height};
        CopyText(L"A title \u00e4", info.szName, 64);
        const auto format = MakeFormat(tag, 24, width, height, {1, 2, 3});
        if (AVIFileOpenW(file, FromUtf8(path), OF_WRITE | OF_CREATE) != 0) return;
        if (AVIFileCreateStreamW(file, stream, info) != 0) return;
        isReady = AVIStreamSetFormat(*stream, 0, format.data(), static_cast<int>(format.size())) == 0;
    }
    bool Write(const std::vector<std::uint8_t>& sample, bool isKey = true) {
        const std::uint32_t flags = isKey ? AVIIF_KEYFRAME : 0;
        return AVIStreamWrite(*stream, position++, sample.data(), sample.size(), flags) == 0;
    }
    bool Close() { return AVIStreamRelease(stream) == 0 && AVIFileRelease(file) == 0; }

    bool isReady = false;
    int position = 5;
    std::shared_ptr<AviFile> file;
    std::shared_ptr<AviStream> stream;
};

/// A file as another reader sees it: the library's demultiplexer.
struct Seen {
    explicit Seen(const std::string& path, int keptBytes = 1 << 30) {
        AVFormatContext* context = nullptr;
        if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0) return;
        input.reset(context);
        if (context->nb_streams != 1) return;
        stream = context->streams[0];
        const PacketPtr packet = MakePacket();
        for (; av_read_frame(context, packet.get()) == 0; av_packet_unref(packet.get())) {
            samples.push_back({packet->data, packet->data + std::min(packet->size, keptBytes)});
            keys.push_back((packet->flags & AV_PKT_FLAG_KEY) != 0);
        }
    }

    InputPtr input;
    AVStream* stream = nullptr;
    Samples samples;
    std::vector<bool> keys;
};

Samples RandomSamples(int count, std::size_t mostBytes) {
    std::mt19937 random(7);
    Samples samples(static_cast<std::size_t>(count));
    for (auto& sample : samples) {
        sample.resize(1 + random() % mostBytes);
        for (auto& byte : sample) byte = static_cast<std::uint8_t>(random());
    }
    return samples;
}

struct AviWriting : testing::Test {
    /// The file holds at least so many of the samples, and nothing else.
    void ExpectStart(const std::string& file, const Samples& samples, std::size_t least) const {
        const Seen seen(file);
        EXPECT_GE(seen.samples.size(), least);
        EXPECT_GE(seen.stream->nb_frames, static_cast<int>(least));
        for (std::size_t i = 0; i < seen.samples.size(); ++i) ASSERT_EQ(samples.at(i), seen.samples[i]);
    }

    const TemporaryDirectory directory;
    const std::string path = directory.Path("\xC3\xA4.avi");
};

TEST_F(AviWriting, AnotherReaderSeesTheSamples) {
    const Samples samples = RandomSamples(500, 300);  // odd sizes too
    Writing writing(path, kTag, 33, 17);
    ASSERT_TRUE(writing.isReady);
    for (std::size_t i = 0; i < samples.size(); ++i) ASSERT_TRUE(writing.Write(samples[i], i % 12 == 0));
    ASSERT_TRUE(writing.Close());

    const Seen seen(path);
    ASSERT_NE(nullptr, seen.stream);
    EXPECT_EQ(samples, seen.samples);
    for (std::size_t i = 0; i < seen.keys.size(); ++i) EXPECT_EQ(i % 12 == 0, seen.keys[i]);
    const AVCodecParameters& codec = *seen.stream->codecpar;
    EXPECT_EQ(AV_CODEC_ID_MPEG4, codec.codec_id);
    ASSERT_EQ(3, codec.extradata_size);
    EXPECT_EQ(3, codec.extradata[2]);
    EXPECT_STREQ("A title \u00e4", av_dict_get(seen.stream->metadata, "title", nullptr, 0)->value);

    // The numbers as they are, at the places that the format gives them.
    const std::string file = ReadWhole(path);
    const auto word = [&](std::size_t offset) {
        return LoadLe<std::uint32_t>(reinterpret_cast<const std::uint8_t*>(&file[offset]));
    };
    EXPECT_EQ(file.size() - 8, word(4));
    const std::pair<std::size_t, unsigned> kOfTheStream[] = {{4, kTag}, {20, 100}, {24, 2500},
                                                             {28, 5},   {32, 500}, {52, 33u | 17u << 16}};
    for (const auto& [offset, number] : kOfTheStream)
        EXPECT_EQ(number, word(file.find("strh") + 8 + offset)) << offset;
    EXPECT_EQ(40000u, word(file.find("avih") + 8)) << "microseconds a frame";
    EXPECT_EQ(500u, word(file.find("avih") + 24));
    EXPECT_EQ(33u, word(file.find("strf") + 12));
}

TEST_F(AviWriting, IsReadableAfterAKill) {
    const Samples samples = RandomSamples(3000, 50);
    Writing writing(path, kTag, 16, 16);
    for (const auto& sample : samples) ASSERT_TRUE(writing.Write(sample));
    ExpectStart(directory.Write("copy.avi", ReadWhole(path)), samples, 3000 - 3000 / 64);
    ASSERT_TRUE(writing.Close());
    ExpectStart(path, samples, 3000);
}

TEST_F(AviWriting, AFullDiskFailsTheWriteAndLeavesAReadableFile) {
    const Samples samples = RandomSamples(100, 2000);
    std::size_t written = 0;
    {
        Writing writing(path, kTag, 16, 16);
        const FileSizeLimit limit(80000);
        while (written < samples.size() && writing.Write(samples[written])) ++written;
        EXPECT_FALSE(writing.Write(samples[0])) << "nothing more";
        EXPECT_FALSE(writing.Close());
    }
    EXPECT_LT(written, samples.size());
    ASSERT_GT(written, 26u);
    ExpectStart(path, samples, written - 16);
    EXPECT_FALSE(Writing("/dev/full", kTag, 16, 16).isReady);
}

// Takes 4.6 GB in the temporary directory: --gtest_also_run_disabled_tests.
TEST_F(AviWriting, DISABLED_GoesBeyondFourGiB) {
    std::vector<std::uint8_t> picture(1920 * 1080 * 3, 0x5A);
    constexpr int kFrames = 740;
    Writing writing(path, 0, 1920, 1080);
    for (int i = 0; i < kFrames; ++i) {
        std::memcpy(picture.data(), &i, sizeof i);
        ASSERT_TRUE(writing.Write(picture));
    }
    ASSERT_TRUE(writing.Close());
    ASSERT_GT(std::filesystem::file_size(path), std::uint64_t{1} << 32);
    const Seen seen(path, sizeof(int));
    ASSERT_EQ(kFrames, static_cast<int>(seen.samples.size()));
    for (int i = 0; i < kFrames; ++i)
        EXPECT_EQ(0, std::memcmp(seen.samples[static_cast<std::size_t>(i)].data(), &i, sizeof i)) << i;
}

}  // namespace
