#include "tests/platform/media/container_file.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

struct OutputDeleter {
    void operator()(AVFormatContext* context) const {
        avio_closep(&context->pb);
        avformat_free_context(context);
    }
};
using OutputPtr = std::unique_ptr<AVFormatContext, OutputDeleter>;

constexpr AVRational kTimeBase = {1, 25};

CodecContextPtr OpenEncoder(const ContainerFile& file) {
    const AVCodec* codec = avcodec_find_encoder_by_name(file.encoder);
    const AVOutputFormat* format = av_guess_format(file.container, nullptr, nullptr);
    if (codec == nullptr || format == nullptr) return nullptr;
    CodecContextPtr encoder(avcodec_alloc_context3(codec));
    encoder->width = file.width;
    encoder->height = file.height;
    encoder->pix_fmt = AV_PIX_FMT_YUV420P;
    encoder->time_base = kTimeBase;
    encoder->framerate = {25, 1};
    encoder->gop_size = 10;
    encoder->thread_count = 1;
    if ((format->flags & AVFMT_GLOBALHEADER) != 0) encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    AVDictionary* options = nullptr;
    av_dict_parse_string(&options, file.options, "=", ":", 0);
    const int result = avcodec_open2(encoder.get(), codec, &options);
    const bool isUnderstood = av_dict_count(options) == 0;
    av_dict_free(&options);
    return result >= 0 && isUnderstood ? std::move(encoder) : nullptr;
}

/// Sends one picture (or the end) to the encoder and takes what comes out.
bool Encode(AVCodecContext& encoder, const AVFrame* picture, std::vector<PacketPtr>& packets) {
    if (avcodec_send_frame(&encoder, picture) < 0) return false;
    for (PacketPtr packet = MakePacket(); avcodec_receive_packet(&encoder, packet.get()) == 0;
         packet = MakePacket())
        packets.push_back(std::move(packet));
    return true;
}

/// Packet `number` as the file shall hold it.
PacketPtr PacketFor(const ContainerFile& file, const AVPacket& encoded, int number) {
    PacketPtr packet(av_packet_clone(&encoded));
    if (packet == nullptr || av_packet_make_writable(packet.get()) < 0) return nullptr;
    if (number == file.zeroedPacket) std::fill_n(packet->data, packet->size, std::uint8_t{0});
    if (number == file.halvedPacket) av_shrink_packet(packet.get(), packet->size / 2);
    packet->stream_index = 0;
    return packet;
}

std::uint8_t& Sample(const AVFrame& picture, int plane, int x, int y) {
    return picture.data[plane][y * picture.linesize[plane] + x];
}

/// Calls `visit(plane, x, y)` for each sample of a 4:2:0 picture, row by row.
template <class Visit>
void ForEachSample(const AVFrame& picture, Visit visit) {
    for (int plane = 0; plane < 3; ++plane) {
        const int shift = plane == 0 ? 0 : 1;
        for (int y = 0; y < picture.height >> shift; ++y)
            for (int x = 0; x < picture.width >> shift; ++x) visit(plane, x, y);
    }
}

}  // namespace

bool Encode(const ContainerFile& file, EncodedPictures& encoded) {
    const CodecContextPtr encoder = OpenEncoder(file);
    encoded.codec = MakeCodecParameters();
    encoded.packets.clear();
    if (encoder == nullptr || avcodec_parameters_from_context(encoded.codec.get(), encoder.get()) < 0)
        return false;
    for (int i = 0; i < file.pictures; ++i) {
        const FramePtr picture = SamplePicture(i, file.width, file.height);
        picture->pts = *file.times == 0 ? i : file.times[i] - '0';
        if (!Encode(*encoder, picture.get(), encoded.packets)) return false;
    }
    return Encode(*encoder, nullptr, encoded.packets);
}

bool WriteContainerFile(const ContainerFile& file, const EncodedPictures& encoded, const std::string& path) {
    AVFormatContext* context = nullptr;
    if (avformat_alloc_output_context2(&context, nullptr, file.container, path.c_str()) < 0) return false;
    const OutputPtr output(context);
    if (avio_open(&output->pb, path.c_str(), AVIO_FLAG_WRITE) < 0) return false;
    AVStream* stream = avformat_new_stream(output.get(), nullptr);
    stream->time_base = kTimeBase;
    stream->avg_frame_rate = stream->r_frame_rate = {25, 1};
    if (avcodec_parameters_copy(stream->codecpar, encoded.codec.get()) < 0 ||
        avformat_write_header(output.get(), nullptr) < 0)
        return false;
    for (std::size_t i = static_cast<std::size_t>(file.firstPacket); i < encoded.packets.size(); ++i) {
        const PacketPtr packet = PacketFor(file, *encoded.packets[i], static_cast<int>(i));
        if (packet == nullptr) return false;
        av_packet_rescale_ts(packet.get(), kTimeBase, stream->time_base);
        if (av_interleaved_write_frame(output.get(), packet.get()) < 0) return false;
    }
    return av_write_trailer(output.get()) >= 0;
}

bool WriteContainerFile(const ContainerFile& file, const std::string& path) {
    EncodedPictures encoded;
    return Encode(file, encoded) && WriteContainerFile(file, encoded, path);
}

FramePtr SamplePicture(int number, int width, int height) {
    FramePtr picture = MakeFrame();
    picture->format = AV_PIX_FMT_YUV420P;
    picture->width = width;
    picture->height = height;
    if (av_frame_get_buffer(picture.get(), 0) < 0) std::abort();
    ForEachSample(*picture, [&](int plane, int x, int y) {
        // Waves whose length and place change from picture to picture.
        const double wave = std::sin(0.05 * (number % 7 + 2) * x + 0.9 * number) +
                            std::cos(0.04 * (number % 5 + 2) * y - 0.4 * number);
        Sample(*picture, plane, x, y) = static_cast<std::uint8_t>(128 + 45 * wave);
    });
    return picture;
}

long Difference(const AVFrame& first, const AVFrame& second) {
    long sum = 0;
    ForEachSample(first, [&](int plane, int x, int y) {
        sum += std::abs(Sample(first, plane, x, y) - Sample(second, plane, x, y));
    });
    return sum;
}

std::vector<std::uint8_t> ToYv12(const AVFrame& picture) {
    std::vector<std::uint8_t> bytes[3];
    ForEachSample(picture, [&](int i, int x, int y) { bytes[i].push_back(Sample(picture, i, x, y)); });
    for (const int plane : {2, 1}) bytes[0].insert(bytes[0].end(), bytes[plane].begin(), bytes[plane].end());
    return bytes[0];
}

int NearestSample(const AVFrame& decoded, int count) {
    int nearest = -1;
    long smallest = 0;
    for (int i = 0; i < count; ++i) {
        const long difference = Difference(decoded, *SamplePicture(i, decoded.width, decoded.height));
        if (nearest >= 0 && difference >= smallest) continue;
        nearest = i;
        smallest = difference;
    }
    return nearest;
}
