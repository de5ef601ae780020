#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <new>
#include <span>
#include <string>

/// The first call of a library's function loads the library. Thrown if that fails: to a caller it's the same as memory that
/// isn't there, whatever the system lacks.
class NoCodecLibrary : public std::bad_alloc {
public:
    explicit NoCodecLibrary(const std::string& reason) : reason(std::make_shared<std::string>(reason)) {}
    const char* what() const noexcept override { return reason->c_str(); }

private:
    std::shared_ptr<const std::string> reason;
};

/// Owners of the codec libraries' objects. Each belongs to one thread at a time.

struct FrameDeleter {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct PacketDeleter {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct CodecContextDeleter {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct CodecParametersDeleter {
    void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
};
struct InputDeleter {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct ScalerDeleter {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;
using PacketPtr = std::unique_ptr<AVPacket, PacketDeleter>;
using CodecContextPtr = std::unique_ptr<AVCodecContext, CodecContextDeleter>;
using CodecParametersPtr = std::unique_ptr<AVCodecParameters, CodecParametersDeleter>;
using InputPtr = std::unique_ptr<AVFormatContext, InputDeleter>;
using ScalerPtr = std::unique_ptr<SwsContext, ScalerDeleter>;

/// Empty objects. These throw std::bad_alloc.
FramePtr MakeFrame();
PacketPtr MakePacket();
CodecParametersPtr MakeCodecParameters();

/// Gives the codec `bytes` as its private header, with the padding behind them that readers rely on. Throws
/// std::bad_alloc.
void SetExtradata(AVCodecParameters& parameters, std::span<const std::uint8_t> bytes);

/// An open video decoder; null if there is none for this codec or it refuses the parameters.
///
/// It works in the calling thread, so that a sample goes in and its picture, as far as the codec allows, comes out
/// at once. Damaged pictures come out too, for `IsDamaged` to tell. A stream that asks for more than 2^28 pixels
/// fails.
CodecContextPtr OpenDecoder(const AVCodecParameters& parameters);

/// A decoder's `get_buffer2`: as the library's own, but a JPEG picture begins as zeros. Of a damaged one the decoder may
/// hand over what it never wrote, without a complaint; that mustn't be what the memory held before.
int GetPictureBuffer(AVCodecContext* context, AVFrame* frame, int flags);

/// Whether the decoder had to make up parts of a picture.
bool IsDamaged(const AVFrame& frame);
