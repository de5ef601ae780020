#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "platform/media/libav.h"
#include "platform/vfw/compressor.h"
#include "platform/vfw/surface_format.h"

/// A compressed stream as an AVI file would hold it, in decoding order, made by the library's own encoders.
struct TestStream {
    struct Sample {
        std::vector<std::uint8_t> bytes;
        int picture;  ///< which picture it is, in display order
        bool isKey;
    };

    std::vector<std::uint8_t> format;
    std::vector<Sample> samples;

    FormatView Format() const { return {format.data(), static_cast<int>(format.size())}; }
    DecompressInput Input(int sample) const {
        const auto& bytes = samples[static_cast<std::size_t>(sample)].bytes;
        return {bytes.data(), static_cast<int>(bytes.size()), sample};
    }
};

/// The mean of the first component of picture n, another one than those of its neighbours.
inline int Brightness(int picture) {
    return 40 + 8 * (picture % 23);
}

/// A format of `bits` with `compression` and what follows it.
inline std::vector<std::uint8_t> MakeFormat(std::uint32_t compression, int bits, int width, int height,
                                            const std::vector<std::uint8_t>& behind = {}) {
    BITMAPINFOHEADER header = FormatOf(Surface::RGB24, width, height);
    header.biCompression = compression;
    header.biBitCount = static_cast<std::uint16_t>(bits);
    std::vector<std::uint8_t> bytes(kBitmapFormatBytes);
    StoreBitmapFormat(header, bytes.data());
    bytes.insert(bytes.end(), behind.begin(), behind.end());
    return bytes;
}

/// `count` textured pictures (chroma 128) by the library's encoder of that name, set up by `configure`.
inline TestStream MakeStream(const char* encoderName, AVPixelFormat pixels, std::uint32_t tag, int count,
                             const std::function<void(AVCodecContext&)>& configure = {}) {
    constexpr int kWidth = 32, kHeight = 16;
    const AVCodec* codec = avcodec_find_encoder_by_name(encoderName);
    if (codec == nullptr) return {};
    const CodecContextPtr encoder(avcodec_alloc_context3(codec));
    encoder->width = kWidth;
    encoder->height = kHeight;
    encoder->pix_fmt = pixels;
    encoder->codec_tag = tag;
    encoder->time_base = {1, 25};
    encoder->thread_count = 1;
    encoder->flags |= AV_CODEC_FLAG_QSCALE;
    encoder->global_quality = 2 * FF_QP2LAMBDA;
    if (configure) configure(*encoder);
    if (avcodec_open2(encoder.get(), codec, nullptr) < 0) return {};

    TestStream stream;
    const auto take = [&] {
        const PacketPtr packet = MakePacket();
        while (avcodec_receive_packet(encoder.get(), packet.get()) == 0) {
            stream.samples.push_back({{packet->data, packet->data + packet->size},
                                      static_cast<int>(packet->pts),
                                      (packet->flags & AV_PKT_FLAG_KEY) != 0});
        }
    };
    const int depth = av_pix_fmt_desc_get(pixels)->comp[0].depth;
    const std::size_t sampleBytes = depth > 8 ? 2 : 1;
    for (int i = 0; i < count; ++i) {
        const FramePtr frame = MakeFrame();
        frame->format = pixels;
        frame->width = kWidth;
        frame->height = kHeight;
        frame->pts = i;
        frame->quality = encoder->global_quality;
        EXPECT_EQ(0, av_frame_get_buffer(frame.get(), 0));
        std::mt19937 random(static_cast<unsigned>(i));
        for (int plane = 0; plane < 4 && frame->buf[plane] != nullptr; ++plane) {
            const AVBufferRef& bytes = *frame->buf[plane];
            for (std::size_t at = 0; at + 1 < bytes.size; at += sampleBytes) {
                const int value = plane == 0 ? Brightness(i) + static_cast<int>(random() % 33) - 16 : 128;
                const auto sample = static_cast<std::uint16_t>(value << (depth - 8));
                std::memcpy(bytes.data + at, &sample, sampleBytes);
            }
        }
        EXPECT_EQ(0, avcodec_send_frame(encoder.get(), frame.get()));
        take();
    }
    avcodec_send_frame(encoder.get(), nullptr);
    take();
    const std::vector<std::uint8_t> behind(encoder->extradata, encoder->extradata + encoder->extradata_size);
    const int bits = encoder->bits_per_coded_sample > 0 ? encoder->bits_per_coded_sample : 24;
    stream.format = MakeFormat(tag, bits, kWidth, kHeight, behind);
    return stream;
}

/// One whose key samples stand `keyDistance` apart.
inline TestStream MakeGroups(const char* encoderName, std::uint32_t tag, int count, int bFrames,
                             int keyDistance, const char* x264 = nullptr) {
    return MakeStream(encoderName, AV_PIX_FMT_YUV420P, tag, count, [=](AVCodecContext& encoder) {
        encoder.gop_size = keyDistance;
        encoder.max_b_frames = bFrames;
        av_opt_set_int(encoder.priv_data, "sc_threshold", 1000000000, 0);  // no other keys
        if (x264 != nullptr) av_opt_set(encoder.priv_data, "x264-params", x264, 0);
    });
}

/// A decoder's answers, one a turn.
struct Turn {
    bool isSound;
    int sample;
    std::vector<std::uint8_t> picture;
};

/// Decodes the samples from `first` on and takes all turns.
class TestDecoder {
public:
    TestDecoder(const TestStream& stream, Surface surface, int width = 32, int height = 16)
        : stream(stream), output(kBitmapFormatBytes), bytes(SurfaceBytes(surface, width, height)) {
        StoreBitmapFormat(FormatOf(surface, width, height), output.data());
        handle = Locate(stream.samples.empty() ? DecompressInput{} : stream.Input(0));
    }

    HIC Locate(const DecompressInput& firstSample) const {
        const auto handler = LoadBitmapFormat(stream.format.data()).biCompression;
        return ICLocate(kFccVideoCodec, handler, stream.Format(), Output(), IcMode::Decompress, firstSample);
    }
    FormatView Output() const { return {output.data(), static_cast<int>(output.size())}; }
    std::wstring Description() const {
        ICINFO info;
        return ICGetInfo(handle, info) == ICERR_OK ? info.szDescription : L"";
    }

    std::vector<Turn> Run(int first = 0) {
        std::vector<Turn> turns;
        EXPECT_EQ(ICERR_OK, ICDecompressBegin(handle, stream.Format(), Output()));
        for (int i = first; i < static_cast<int>(stream.samples.size()); ++i)
            Take(stream.samples[static_cast<std::size_t>(i)].isKey ? 0 : ICDECOMPRESS_NOTKEYFRAME,
                 stream.Input(i), turns);
        while (Take(0, {}, turns) != ICERR_ERROR) {
        }
        return turns;
    }

    HIC handle;

private:
    int Take(std::uint32_t flags, const DecompressInput& input, std::vector<Turn>& turns) {
        Turn turn = {false, -1, std::vector<std::uint8_t>(bytes)};
        const int answer = ICDecompress(handle, flags, input, turn.picture.data(), turn.sample);
        turn.isSound = answer == ICERR_OK;
        if (answer == ICERR_OK || answer == ICERR_DAMAGED) turns.push_back(std::move(turn));
        return answer;
    }

    const TestStream& stream;
    std::vector<std::uint8_t> output;
    std::size_t bytes;
};
