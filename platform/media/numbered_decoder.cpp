#include "platform/media/numbered_decoder.h"

#include <algorithm>
#include <new>
#include <thread>

namespace {

constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;
constexpr unsigned kMaxThreads = 8;
constexpr int kMaxReorderDepth = 16;  // the codecs' own limit

/// Other decoders make up what they can't read and say so in a message only. This one has messages about
/// sound pictures too.
bool MarksDamage(AVCodecID codec) {
    return codec == AV_CODEC_ID_H264;
}

NumberedDecoder::Result ResultOf(int code) {
    switch (code) {
        case 0:
            return NumberedDecoder::Result::Done;
        case AVERROR(EAGAIN):
            return NumberedDecoder::Result::NeedsPacket;
        case AVERROR_EOF:
            return NumberedDecoder::Result::End;
        default:
            return NumberedDecoder::Result::Error;
    }
}

}  // namespace

bool NumberedDecoder::Start(const AVStream& stream, const AVCodecParameters& parameters, int reorderDepth,
                            Mode startMode) {
    // What the decoder of H.264 has read of a broken block goes into a later one, also behind a flush. Pictures
    // that nobody took may be damaged too; its threads have ended with the flush, so their complaints are
    // here.
    if (context != nullptr) avcodec_flush_buffers(context.get());
    if (complaints.Take()) isTainted = true;
    if (context == nullptr || mode != startMode || isTainted) {
        mode = startMode;
        isTainted = false;
        if (!Open(stream, parameters, reorderDepth)) context.reset();
        complaints.Take();
    }
    return context != nullptr;
}

bool NumberedDecoder::Open(const AVStream& stream, const AVCodecParameters& parameters, int reorderDepth) {
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    context.reset(avcodec_alloc_context3(codec));
    if (context == nullptr) throw std::bad_alloc();
    if (avcodec_parameters_to_context(context.get(), &parameters) < 0) return false;
    complaints.ListenTo(*context);
    context->pkt_timebase = stream.time_base;
    context->max_pixels = kMaxPixels;
    context->get_buffer2 = GetPictureBuffer;
    context->err_recognition = AV_EF_CRCCHECK;
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1u, kMaxThreads);
    context->thread_count = mode == Mode::Careful ? 1 : static_cast<int>(threads);
    // A decoder that has to guess how far pictures are reordered begins by too little and loses some.
    context->has_b_frames = std::max(context->has_b_frames, std::min(reorderDepth, kMaxReorderDepth));
    return avcodec_open2(context.get(), codec, nullptr) >= 0;
}

NumberedDecoder::Result NumberedDecoder::Send(AVPacket& packet, int number) {
    // The decoder hands the packet's time on to the picture.
    packet.pts = number >= 0 ? number : AV_NOPTS_VALUE;
    packet.dts = AV_NOPTS_VALUE;
    const Result result = ResultOf(avcodec_send_packet(context.get(), &packet));
    if (result == Result::Error) isTainted = true;
    if (mode == Mode::Swift || !complaints.Take()) return result;
    isTainted = true;
    return MarksDamage(context->codec_id) ? result : Result::Error;
}

void NumberedDecoder::Drain() {
    avcodec_send_packet(context.get(), nullptr);
}

NumberedDecoder::Result NumberedDecoder::Receive(AVFrame& frame) {
    const Result result = ResultOf(avcodec_receive_frame(context.get(), &frame));
    if (result == Result::Error || (result == Result::Done && IsDamaged(frame))) isTainted = true;
    // A picture may be handed over before another thread marks it as damaged.
    const bool isDoubtful = mode == Mode::Swift && complaints.Heard();
    return isDoubtful && result != Result::NeedsPacket ? Result::Error : result;
}
