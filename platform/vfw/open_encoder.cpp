#include "platform/vfw/open_encoder.h"

#include <new>
#include <string_view>

namespace {

/// The time of a frame. Encoders get it for their rate control alone, and MPEG-4 has 16 bits for it.
AVRational FrameTime(const CompressRate& rate) {
    constexpr int kMost = 65535;
    AVRational time = {};
    av_reduce(&time.num, &time.den, rate.scale, rate.rate, kMost);
    return time.num > 0 && time.den > 0 ? time : AVRational{1, kMost};
}

/// A value from `coarsest` to `finest` in proportion to a quality of 0 to 10000.
double ByQuality(int quality, double coarsest, double finest) {
    return coarsest + (finest - coarsest) * quality / 10000;
}

void SetQuality(AVCodecContext& encoder, int quality) {
    encoder.flags |= AV_CODEC_FLAG_QSCALE;
    encoder.global_quality = static_cast<int>(FF_QP2LAMBDA * ByQuality(quality, 31, 2) + 0.5);
}

void SetLossyOptions(AVCodecContext& encoder, const CompressRate& rate) {
    const bool isX264 = std::string_view(encoder.codec->name) == "libx264";
    const bool full = encoder.pix_fmt == AV_PIX_FMT_YUVJ420P;
    encoder.color_range = full ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    encoder.colorspace = AVCOL_SPC_SMPTE170M;
    if (rate.dataRate > 0) {
        encoder.bit_rate = std::int64_t{rate.dataRate} * 1024 * 8;
    } else if (isX264) {
        av_opt_set_double(encoder.priv_data, "crf", ByQuality(rate.quality, 51, 1), 0);
    } else {
        SetQuality(encoder, rate.quality);
    }
    if (isX264) {
        av_opt_set(encoder.priv_data, "preset", "veryfast", 0);
        av_opt_set(encoder.priv_data, "tune", "zerolatency", 0);  // nothing looks ahead
        av_opt_set(encoder.priv_data, "forced-idr", "1", 0);
    }
}

void SetLosslessOptions(AVCodecContext& encoder) {
    // The library cuts FFV1 pictures above this size in four slices or more, and refuses to write fewer.
    const bool large = encoder.width > 352 || encoder.height > 288;
    encoder.slices = encoder.codec->id == AV_CODEC_ID_FFV1 && large ? 4 : 1;
    if (encoder.codec->id == AV_CODEC_ID_FFV1) encoder.level = 3;  // has checksums, so that damage is found
}

}  // namespace

CodecContextPtr OpenEncoder(const EncoderEntry& entry, int width, int height, const CompressRate& rate) {
    if (width < entry.leastSide || height < entry.leastSide) return nullptr;
    const AVCodec* codec = avcodec_find_encoder_by_name(entry.encoder);
    CodecContextPtr encoder(avcodec_alloc_context3(codec));
    if (!encoder) throw std::bad_alloc();
    encoder->width = width;
    encoder->height = height;
    encoder->pix_fmt = width % 2 == 0 && height % 2 == 0 ? entry.pixels : entry.oddPixels;
    encoder->codec_tag = entry.handler;
    encoder->time_base = FrameTime(rate);
    encoder->framerate = av_inv_q(encoder->time_base);
    encoder->gop_size = entry.intraOnly ? 1 : rate.keyFrameRate;
    encoder->max_b_frames = 0;
    encoder->thread_count = 1;  // the same bytes on every machine, and no delay
    if (entry.lossless) {
        SetLosslessOptions(*encoder);
    } else {
        SetLossyOptions(*encoder, rate);
    }
    if (avcodec_open2(encoder.get(), codec, nullptr) < 0) return nullptr;
    return encoder;
}
