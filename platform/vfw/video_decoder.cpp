#include "platform/vfw/video_decoder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <span>

#include "platform/text.h"
#include "platform/vfw/surface_format.h"

namespace {

std::string CodecName(AVCodecID id) {
    std::string name = avcodec_get_name(id);
    for (char& c : name) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get(id);
    if (descriptor == nullptr || descriptor->long_name == nullptr) return name;
    return name + " (" + descriptor->long_name + ")";
}

/// What goes through the decoder with a sample, as its time, and comes back with the picture.
struct PictureTag {
    int sample;
    bool key;  ///< by the container

    std::int64_t ToTime() const { return 2 * std::int64_t{sample} + (key ? 1 : 0); }
    static PictureTag Of(const AVFrame& frame) {
        return {static_cast<int>(frame.pts >> 1), (frame.pts & 1) != 0};
    }
};

/// Whether a sample of MPEG-4 part 2 begins with a picture that is predicted from both sides.
bool IsMpeg4BPicture(std::span<const std::uint8_t> sample) {
    constexpr std::uint8_t kPictureStart[] = {0, 0, 1, 0xB6};
    const auto start =
        std::search(sample.begin(), sample.end(), std::begin(kPictureStart), std::end(kPictureStart));
    return sample.end() - start > 4 && start[4] >> 6 == 2;
}

}  // namespace

VideoDecoder::VideoDecoder(std::uint32_t handler, const Target& target)
    : handler(handler), target(target), converter(target.surface, target.width, target.height) {}

std::optional<VideoDecoder::Target> VideoDecoder::TargetOf(FormatView input, FormatView output) {
    if (input.data == nullptr || input.size < kBitmapFormatBytes) return std::nullopt;
    if (output.data == nullptr || output.size < kBitmapFormatBytes) return std::nullopt;
    const BITMAPINFOHEADER from = LoadBitmapFormat(input.data);
    const BITMAPINFOHEADER to = LoadBitmapFormat(output.data);
    const std::optional<Surface> surface = SurfaceOf(to);
    const std::int64_t height = std::abs(std::int64_t{to.biHeight});
    if (!surface || to.biWidth < 1 || height < 1 || height > INT32_MAX) return std::nullopt;
    if (av_image_check_size(static_cast<unsigned>(to.biWidth), static_cast<unsigned>(height), 0, nullptr) <
        0) {
        return std::nullopt;
    }
    // 0 in the stream's format: its size stands elsewhere.
    if (from.biWidth != 0 && from.biWidth != to.biWidth) return std::nullopt;
    if (from.biHeight != 0 && std::abs(std::int64_t{from.biHeight}) != height) return std::nullopt;
    return Target{*surface, to.biWidth, static_cast<int>(height)};
}

std::shared_ptr<VideoDecoder> VideoDecoder::Locate(std::uint32_t handler, FormatView input, FormatView output,
                                                   const DecompressInput& firstSample) {
    const std::optional<Target> target = TargetOf(input, output);
    if (!target) return nullptr;

    std::shared_ptr<VideoDecoder> decoder(new VideoDecoder(handler, *target));
    decoder->parameters = DecoderParameters(handler, input, target->width, target->height);
    if (!decoder->parameters) return nullptr;
    decoder->palette = PaletteOf(input);
    return decoder->LearnForm(firstSample) ? decoder : nullptr;
}

/// False if there is no decoder for the samples, or if their pictures don't go to the target.
bool VideoDecoder::LearnForm(const DecompressInput& firstSample) {
    if (!OpenContext()) return false;
    form.pixels = context->pix_fmt;
    if (firstSample.data != nullptr && firstSample.size > 0 && !TryFirstSample(firstSample)) return false;
    if (form.pixels == AV_PIX_FMT_NONE) return target.surface == Surface::RGB24;
    return CanConvert(form.pixels, target.width, target.height, target.surface);
}

bool VideoDecoder::TryFirstSample(const DecompressInput& sample) {
    Feed(0, sample);
    Finish();
    if (ready.empty()) {  // a codec may know the form and still want a second sample for its first picture
        form = {context->pix_fmt, context->color_range};
    } else if (ready.front()->width != target.width || ready.front()->height != target.height) {
        return false;
    }
    ready.clear();
    return OpenContext();  // nothing of the trial may show in the first pictures
}

bool VideoDecoder::OpenContext() {
    context = OpenDecoder(*parameters);
    if (!context) return false;
    watch.ListenTo(*context);
    context->get_buffer2 = TakeBuffer;
    return true;
}

/// Notes that the decoder begins a picture; it works in the calling thread.
int VideoDecoder::TakeBuffer(AVCodecContext* context, AVFrame* frame, int flags) {
    static_cast<Watch*>(static_cast<Complaints*>(context->opaque))->pictureBegun = true;
    return GetPictureBuffer(context, frame, flags);
}

ICINFO VideoDecoder::GetInfo() const {
    ICINFO info;
    info.fccType = kFccVideoCodec;
    info.fccHandler = handler;
    std::string text = CodecName(parameters->codec_id);
    const std::string conversion = DescribeConversion(form.pixels, form.range, target.surface);
    if (!conversion.empty()) text += ", " + conversion;
    CopyText(FromUtf8(text), info.szDescription, static_cast<int>(std::size(info.szDescription)));
    return info;
}

int VideoDecoder::Begin(FormatView input, FormatView output) {
    if (TargetOf(input, output) != target) return ICERR_ERROR;
    if (taintedBy == INT_MAX) {
        avcodec_flush_buffers(context.get());
    } else if (!OpenContext()) {
        return ICERR_ERROR;
    }
    started = broken = true;
    finished = paletteSent = pictureCame = keyCame = false;
    ready.clear();
    brokenBy = -1;
    taintedBy = INT_MAX;
    last = nullptr;
    turns = {};
    return ICERR_OK;
}

int VideoDecoder::Decompress(std::uint32_t flags, const DecompressInput& input, std::uint8_t* output,
                             int& sampleOfPicture) {
    const bool isInput = input.size == 0 || (input.size > 0 && input.data != nullptr);
    if (!started || output == nullptr || !isInput) return ICERR_ERROR;
    if (input.sample < 0) {
        if (!finished) Finish();
    } else {
        if (finished) return ICERR_ERROR;
        Feed(flags, input);
    }
    return HandOver(output, sampleOfPicture);
}

PacketPtr VideoDecoder::MakeSample(std::uint32_t flags, const DecompressInput& input) {
    PacketPtr packet = MakePacket();
    if (av_new_packet(packet.get(), input.size) < 0) throw std::bad_alloc();
    std::memcpy(packet->data, input.data, static_cast<std::size_t>(input.size));
    const bool key = (flags & ICDECOMPRESS_NOTKEYFRAME) == 0;
    if (key) packet->flags |= AV_PKT_FLAG_KEY;
    packet->pts = PictureTag{input.sample, key}.ToTime();
    if (palette && !paletteSent) {
        std::uint8_t* side = av_packet_new_side_data(packet.get(), AV_PKT_DATA_PALETTE, sizeof(Palette));
        if (side == nullptr) throw std::bad_alloc();
        std::memcpy(side, palette->data(), sizeof(Palette));
        paletteSent = true;
    }
    return packet;
}

void VideoDecoder::Feed(std::uint32_t flags, const DecompressInput& input) {
    turns.Feed(input.sample);
    if (input.size == 0) {  // the decoder would take it for the end
        turns.SetRepeat();
        return;
    }
    const PacketPtr packet = MakeSample(flags, input);
    watch.Take();
    watch.pictureBegun = false;
    const bool sent = avcodec_send_packet(context.get(), packet.get()) >= 0;
    if (!ReceivePictures(packet->pts) || !sent || TellsDamage()) {
        Fail(input.sample);
    } else if (!watch.pictureBegun) {
        SettlePictureless(input);
    }
}

/// Most decoders make up what they can't read and say so in a message only. That of H.264 marks its pictures,
/// and has messages about sound ones too.
bool VideoDecoder::TellsDamage() {
    return watch.Take() && context->codec_id != AV_CODEC_ID_H264;
}

bool VideoDecoder::HasDelay() const {
    return (context->codec->capabilities & AV_CODEC_CAP_DELAY) != 0;
}

/// What to make of a sample that the decoder read without a complaint and without beginning a picture.
void VideoDecoder::SettlePictureless(const DecompressInput& input) {
    const std::span<const std::uint8_t> bytes(input.data, static_cast<std::size_t>(input.size));
    const bool isMpeg4 = context->codec_id == AV_CODEC_ID_MPEG4;
    if (isMpeg4 && !pictureCame && IsMpeg4BPicture(bytes)) {
        // It refers to pictures before the start, and is displayed before the first that comes.
        turns.SetFailure(0);
    } else if (isMpeg4 || !HasDelay()) {
        turns.SetRepeat();  // the codec's own way to say that nothing has changed
    } else {
        Fail(input.sample);
    }
}

void VideoDecoder::Fail(int sample) {
    turns.SetFailure(
        static_cast<int>(std::count_if(ready.begin(), ready.end(), [this, sample](const FramePtr& frame) {
            const int number = PictureTag::Of(*frame).sample;
            return number != sample && turns.IsOpen(number);
        })));
    brokenBy = sample;
}

void VideoDecoder::Finish() {
    finished = true;
    avcodec_send_packet(context.get(), nullptr);
    ReceivePictures(AV_NOPTS_VALUE);
}

/// Takes what the decoder has ready; false if it reports damage. `tag` is that of the sample just fed.
bool VideoDecoder::ReceivePictures(std::int64_t tag) {
    while (true) {
        FramePtr frame = MakeFrame();
        const int result = avcodec_receive_frame(context.get(), frame.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return true;
        if (result < 0) return false;
        if (!HasDelay()) {  // then it belongs to this sample, though some decoders leave the tag of an earlier one
            frame->pts = tag;
            watch.pictureBegun = true;
        }
        form = {static_cast<AVPixelFormat>(frame->format), frame->color_range};
        pictureCame = true;
        NoteDamage(*frame);
        ready.push_back(std::move(frame));
    }
}

/// What the decoder of H.264 has read of a broken block goes into a later one, be it of a key frame. Pictures
/// displayed before the first key frame lack what they refer to, and that is all.
void VideoDecoder::NoteDamage(const AVFrame& frame) {
    keyCame = keyCame || IsKeyPicture(frame);
    if (context->codec_id != AV_CODEC_ID_H264) return;
    if (keyCame && IsDamaged(frame)) taintedBy = std::min(taintedBy, PictureTag::Of(frame).sample);
}

int VideoDecoder::HandOver(std::uint8_t* output, int& sampleOfPicture) {
    const std::optional<TurnOrder::Turn> turn = NextTurn();
    if (!turn) return finished ? ICERR_ERROR : ICERR_NEEDMORE;
    sampleOfPicture = turn->sample;
    if (turn->kind == TurnOrder::Kind::Picture) {
        TakePicture();
    } else if (turn->kind == TurnOrder::Kind::Failure) {
        broken = true;
        last = nullptr;
    }
    if (last && !converter.Convert(*last, output)) last = nullptr;
    return last ? ICERR_OK : ICERR_DAMAGED;
}

std::optional<TurnOrder::Turn> VideoDecoder::NextTurn() {
    // A picture can come after all of a sample that was given up.
    while (!ready.empty() && !turns.IsOpen(PictureTag::Of(*ready.front()).sample)) ready.pop_front();
    if (ready.empty()) return turns.Next(std::nullopt, false, finished);
    const int sample = PictureTag::Of(*ready.front()).sample;
    if (!finished && !AreReferencesKnown(sample)) return turns.Next(std::nullopt, false, false);
    return turns.Next(sample, IsKeyPicture(*ready.front()), finished);
}

/// Whether the pictures that were decoded before this one have come, also those that are displayed behind it:
/// only then it is known whether they are damaged.
bool VideoDecoder::AreReferencesKnown(int sample) const {
    constexpr std::size_t kMostHeld = 16;  // pictures that any codec keeps; what isn't among them won't come
    if (ready.size() > kMostHeld) return true;
    const std::vector<int> before = turns.PicturesBefore(sample);
    return std::all_of(before.begin(), before.end(), [this](int number) {
        return std::any_of(ready.begin(), ready.end(),
                           [=](const FramePtr& frame) { return PictureTag::Of(*frame).sample == number; });
    });
}

void VideoDecoder::TakePicture() {
    FramePtr picture = std::move(ready.front());
    ready.pop_front();
    const int sample = PictureTag::Of(*picture).sample;
    if (sample >= taintedBy || IsDamaged(*picture)) {
        broken = true;
    } else if (IsKeyPicture(*picture) && sample > brokenBy) {
        broken = false;
    }
    last = broken ? nullptr : std::move(picture);
}

bool VideoDecoder::IsKeyPicture(const AVFrame& frame) const {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get(context->codec_id);
    const bool intraOnly = descriptor != nullptr && (descriptor->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
    return intraOnly || frame.key_frame != 0 || PictureTag::Of(frame).key;
}
