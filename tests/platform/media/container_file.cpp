#include "tests/platform/media/container_file.h"

#include <cmath>
#include <cstdlib>

namespace {

struct OutputDeleter {
    void operator()(AVFormatContext* context) const {
        avio_closep(&context->pb);
        avformat_free_context(context);
    }
};
using OutputPtr = std::unique_ptr<AVFormatContext, OutputDeleter>;

/// Sends one picture (or the end) to the encoder and takes what comes out, to the file.
class Writer {
public:
    explicit Writer(const ContainerFile& container) : file(container) {}

    bool Open(const std::string& path) {
        SilenceLibav();
        AVFormatContext* context = nullptr;
        if (avformat_alloc_output_context2(&context, nullptr, file.container, path.c_str()) < 0) return false;
        output.reset(context);
        if (avio_open(&output->pb, path.c_str(), AVIO_FLAG_WRITE) < 0 || !OpenEncoder()) return false;
        stream = avformat_new_stream(output.get(), nullptr);
        stream->time_base = encoder->time_base;
        stream->avg_frame_rate = stream->r_frame_rate = {25, 1};
        return avcodec_parameters_from_context(stream->codecpar, encoder.get()) >= 0 &&
               avformat_write_header(output.get(), nullptr) >= 0;
    }

    bool Write(const AVFrame* picture) {
        if (avcodec_send_frame(encoder.get(), picture) < 0) return false;
        const PacketPtr packet = MakePacket();
        while (avcodec_receive_packet(encoder.get(), packet.get()) == 0) {
            const int number = packets++;
            if (number < file.firstPacket) continue;
            if (number == file.zeroedPacket) std::fill_n(packet->data, packet->size, std::uint8_t{0});
            if (number == file.halvedPacket) av_shrink_packet(packet.get(), packet->size / 2);
            av_packet_rescale_ts(packet.get(), encoder->time_base, stream->time_base);
            packet->stream_index = 0;
            if (av_interleaved_write_frame(output.get(), packet.get()) < 0) return false;
        }
        return true;
    }

    bool Finish() { return Write(nullptr) && av_write_trailer(output.get()) >= 0; }

private:
    bool OpenEncoder() {
        const AVCodec* codec = avcodec_find_encoder_by_name(file.encoder);
        if (codec == nullptr) return false;
        encoder.reset(avcodec_alloc_context3(codec));
        encoder->width = file.width;
        encoder->height = file.height;
        encoder->pix_fmt = AV_PIX_FMT_YUV420P;
        encoder->time_base = {1, 25};
        encoder->framerate = {25, 1};
        encoder->gop_size = 10;
        encoder->thread_count = 1;
        if ((output->oformat->flags & AVFMT_GLOBALHEADER) != 0) encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        AVDictionary* options = nullptr;
        av_dict_parse_string(&options, file.options, "=", ":", 0);
        const int result = avcodec_open2(encoder.get(), codec, &options);
        const bool isUnderstood = av_dict_count(options) == 0;
        av_dict_free(&options);
        return result >= 0 && isUnderstood;
    }

    const ContainerFile& file;
    OutputPtr output;
    CodecContextPtr encoder;
    AVStream* stream = nullptr;
    int packets = 0;
};

}  // namespace

bool WriteContainerFile(const ContainerFile& file, const std::string& path) {
    Writer writer(file);
    if (!writer.Open(path)) return false;
    for (int i = 0; i < file.pictures; ++i) {
        const FramePtr picture = SamplePicture(i, file.width, file.height);
        picture->pts = *file.times == 0 ? i : file.times[i] - '0';
        if (!writer.Write(picture.get())) return false;
    }
    return writer.Finish();
}

FramePtr SamplePicture(int number, int width, int height) {
    FramePtr picture = MakeFrame();
    picture->format = AV_PIX_FMT_YUV420P;
    picture->width = width;
    picture->height = height;
    if (av_frame_get_buffer(picture.get(), 0) < 0) std::abort();
    for (int plane = 0; plane < 3; ++plane) {
        const int shift = plane == 0 ? 0 : 1;
        for (int y = 0; y < height >> shift; ++y) {
            for (int x = 0; x < width >> shift; ++x) {
                // Waves whose length and place change from picture to picture.
                const double wave = std::sin(0.05 * (number % 7 + 2) * x + 0.9 * number) +
                                    std::cos(0.04 * (number % 5 + 2) * y - 0.4 * number);
                picture->data[plane][y * picture->linesize[plane] + x] =
                    static_cast<std::uint8_t>(128 + 45 * wave);
            }
        }
    }
    return picture;
}

long Difference(const AVFrame& first, const AVFrame& second) {
    long sum = 0;
    for (int plane = 0; plane < 3; ++plane) {
        const int shift = plane == 0 ? 0 : 1;
        for (int y = 0; y < first.height >> shift; ++y) {
            const std::uint8_t* a = first.data[plane] + y * first.linesize[plane];
            const std::uint8_t* b = second.data[plane] + y * second.linesize[plane];
            for (int x = 0; x < first.width >> shift; ++x) sum += std::abs(a[x] - b[x]);
        }
    }
    return sum;
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
