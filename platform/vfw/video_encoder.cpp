#include "platform/vfw/video_encoder.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "platform/byte_order.h"
#include "platform/text.h"
#include "platform/vfw/open_encoder.h"
#include "platform/vfw/stream_info.h"
#include "platform/vfw/surface_format.h"

namespace {

constexpr std::uint32_t kStateVersion = 1;
constexpr std::size_t kStateBytes = 12;  // version, handler, key frame distance

struct Size {
    int width, height;
};

/// The size of frames in the one form that encoders take: RGB24, bottom-up.
std::optional<Size> FrameSize(FormatView input) {
    if (input.data == nullptr || input.size < kBitmapFormatBytes) return std::nullopt;
    const BITMAPINFOHEADER format = LoadBitmapFormat(input.data);
    if (SurfaceOf(format) != Surface::RGB24 || format.biWidth < 1 || format.biHeight < 1) return std::nullopt;
    return Size{format.biWidth, format.biHeight};
}

/// The most that a frame can come to; 0 if it passes what fits in a sample. 12 bytes a pixel of whole
/// macroblocks is what the libraries' encoders reckon with at worst, and headers come on top.
int LargestFrame(Size size) {
    constexpr std::int64_t kHeaders = 65536;
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    const auto aligned = [](std::int64_t side) { return (side + 15) / 16 * 16; };
    const std::int64_t pixels = aligned(size.width) * aligned(size.height);
    return pixels <= (kMost - kHeaders) / 12 ? static_cast<int>(12 * pixels + kHeaders) : 0;
}

/// Whether the library's Ut Video encoder had no room left in a packet: it reckons with a byte a sample, 256
/// for the code lengths and 4 for the size of each of three planes, 4 for flags, and leaves out unsaid what
/// takes more.
bool MayBeCutOff(const AVCodecContext& encoder, const AVPacket& packet) {
    if (encoder.codec_id != AV_CODEC_ID_UTVIDEO) return false;
    const std::int64_t samples = std::int64_t{encoder.width} * encoder.height;
    return packet.size >= 3 * (samples + 256 + 4) + 4;
}

}  // namespace

ICINFO VideoEncoder::GetInfo() const {
    ICINFO info;
    info.fccType = kFccVideoCodec;
    info.fccHandler = entry.handler;
    info.dwFlags = VIDCF_FASTTEMPORALC;
    CopyText(entry.description, info.szDescription, static_cast<int>(std::size(info.szDescription)));
    return info;
}

CodecContextPtr VideoEncoder::Open(FormatView input) const {
    const std::optional<Size> size = FrameSize(input);
    if (!size || LargestFrame(*size) == 0) return nullptr;
    return OpenEncoder(entry, size->width, size->height, rate);
}

std::vector<std::uint8_t> VideoEncoder::Format(FormatView input) const {
    const CodecContextPtr encoder = Open(input);
    if (!encoder) return {};
    BITMAPINFOHEADER format = FormatOf(Surface::RGB24, encoder->width, encoder->height);
    format.biSize += static_cast<std::uint32_t>(encoder->extradata_size);
    format.biCompression = entry.handler;
    if (encoder->bits_per_coded_sample > 0) {
        format.biBitCount = static_cast<std::uint16_t>(encoder->bits_per_coded_sample);
    }
    std::vector<std::uint8_t> bytes(format.biSize);
    StoreBitmapFormat(format, bytes.data());
    std::copy_n(encoder->extradata, encoder->extradata_size, bytes.data() + kBitmapFormatBytes);
    return bytes;
}

int VideoEncoder::FrameBytes(FormatView input) const {
    const std::optional<Size> size = FrameSize(input);
    return size ? LargestFrame(*size) : 0;
}

std::vector<std::uint8_t> VideoEncoder::State() const {
    std::vector<std::uint8_t> state(kStateBytes);
    StoreLe(kStateVersion, state.data());
    StoreLe(entry.handler, state.data() + 4);
    StoreLe(static_cast<std::uint32_t>(rate.keyFrameRate), state.data() + 8);
    return state;
}

int VideoEncoder::SetState(const std::vector<std::uint8_t>& state) {
    if (state.size() != kStateBytes) return ICERR_ERROR;
    const auto keyFrameRate = static_cast<std::int32_t>(LoadLe<std::uint32_t>(state.data() + 8));
    const bool ours = LoadLe<std::uint32_t>(state.data()) == kStateVersion &&
                      LoadLe<std::uint32_t>(state.data() + 4) == entry.handler;
    if (!ours || keyFrameRate < 1) return ICERR_ERROR;
    rate.keyFrameRate = keyFrameRate;
    return ICERR_OK;
}

int VideoEncoder::SetRate(const CompressRate& wanted) {
    if (wanted.scale > 0 && wanted.rate > 0) {
        rate.scale = wanted.scale;
        rate.rate = wanted.rate;
    }
    if (wanted.quality >= 0) rate.quality = std::min(wanted.quality, 10000);
    if (wanted.dataRate > 0) rate.dataRate = wanted.dataRate;
    if (wanted.keyFrameRate > 0) rate.keyFrameRate = wanted.keyFrameRate;
    return ICERR_OK;
}

int VideoEncoder::Begin(FormatView input) {
    intake.reset();
    context = Open(input);
    if (!context) return ICERR_ERROR;
    intake.emplace(*context);
    framesDone = 0;
    return ICERR_OK;
}

int VideoEncoder::Compress(std::uint32_t wanted, const std::uint8_t* frame, std::uint8_t* compressed,
                           int& bytes, std::uint32_t& flags) {
    if (!context || frame == nullptr || compressed == nullptr) return ICERR_ERROR;
    AVFrame* picture = intake->Take(frame);
    if (picture == nullptr) return ICERR_ERROR;
    picture->pts = framesDone++;
    picture->pict_type = (wanted & ICCOMPRESS_KEYFRAME) != 0 ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;

    const PacketPtr packet = MakePacket();
    if (avcodec_send_frame(context.get(), picture) < 0) return ICERR_ERROR;
    if (avcodec_receive_packet(context.get(), packet.get()) < 0) return ICERR_ERROR;
    if (packet->size > LargestFrame({context->width, context->height})) return ICERR_ERROR;
    if (MayBeCutOff(*context, *packet)) return ICERR_ERROR;
    std::copy_n(packet->data, packet->size, compressed);
    bytes = packet->size;
    flags = (packet->flags & AV_PKT_FLAG_KEY) != 0 ? AVIIF_KEYFRAME : 0;
    return ICERR_OK;
}
