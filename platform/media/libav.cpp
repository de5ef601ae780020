#include "platform/media/libav.h"

#include <algorithm>
#include <new>

namespace {

template <typename Pointer, typename Object>
Pointer Owned(Object* object) {
    if (object == nullptr) throw std::bad_alloc();
    return Pointer(object);
}

}  // namespace

FramePtr MakeFrame() {
    return Owned<FramePtr>(av_frame_alloc());
}

PacketPtr MakePacket() {
    return Owned<PacketPtr>(av_packet_alloc());
}

CodecParametersPtr MakeCodecParameters() {
    return Owned<CodecParametersPtr>(avcodec_parameters_alloc());
}

void SetExtradata(AVCodecParameters& parameters, std::span<const std::uint8_t> bytes) {
    av_freep(&parameters.extradata);
    parameters.extradata_size = 0;
    if (bytes.empty()) return;

    void* copy = av_mallocz(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE);
    if (copy == nullptr) throw std::bad_alloc();
    parameters.extradata = static_cast<std::uint8_t*>(copy);
    parameters.extradata_size = static_cast<int>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), parameters.extradata);
}

CodecContextPtr OpenDecoder(const AVCodecParameters& parameters) {
    constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (codec == nullptr || codec->type != AVMEDIA_TYPE_VIDEO) return nullptr;

    auto context = Owned<CodecContextPtr>(avcodec_alloc_context3(codec));
    if (avcodec_parameters_to_context(context.get(), &parameters) < 0) return nullptr;
    context->thread_count = 1;  // frame threads would hold pictures back
    context->max_pixels = kMaxPixels;
    context->err_recognition = AV_EF_CRCCHECK;
    context->flags |= AV_CODEC_FLAG_OUTPUT_CORRUPT;  // one left out would shift all that follow
    // By itself the decoder guesses how far pictures are reordered where the stream doesn't say so, and drops what
    // comes too late for its guess. This makes it assume the worst.
    if (codec->id == AV_CODEC_ID_H264) context->strict_std_compliance = FF_COMPLIANCE_STRICT;
    if (avcodec_open2(context.get(), codec, nullptr) < 0) return nullptr;
    return context;
}

int GetPictureBuffer(AVCodecContext* context, AVFrame* frame, int flags) {
    const int result = avcodec_default_get_buffer2(context, frame, flags);
    if (result < 0 || context->codec_id != AV_CODEC_ID_MJPEG) return result;
    for (const AVBufferRef* buffer : frame->buf)
        if (buffer != nullptr) std::fill_n(buffer->data, buffer->size, std::uint8_t{0});
    return result;
}

bool IsDamaged(const AVFrame& frame) {
    return (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame.decode_error_flags != 0;
}
