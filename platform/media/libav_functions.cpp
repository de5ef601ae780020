/// The codec libraries' functions that we call, each by its own name and declaration. The libraries bring along some
/// 130 others, and loading them takes four fifths of a short run; so they aren't linked but loaded by the first call of
/// a function, and measuring raw files never does.

#include "platform/media/libav.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdio>
#include <string>

namespace {

/// Says the loader's reason, the first time on the terminal too, as the loader does when a program starts: not all that
/// comes of it, an error code for one, has room for a reason.
[[noreturn]] void Fail() {
    static std::atomic<bool> isTold = false;
    const std::string reason = dlerror();
    if (!isTold.exchange(true)) std::fprintf(stderr, "%s\n", reason.c_str());
    throw NoCodecLibrary(reason);
}

/// One of the libraries, with those that it needs. The system finds it by its name, and it stays to the end of the process,
/// unlike a `DynamicLibrary`. Throws NoCodecLibrary.
class Library {
public:
    /// From now on the library itself writes nothing to the terminal: what fails is told by our own results.
    explicit Library(const char* file) : handle(dlopen(file, RTLD_LAZY | RTLD_LOCAL)) {
        if (handle == nullptr) Fail();
        Find<decltype(av_log_set_level)>("av_log_set_level")(AV_LOG_QUIET);
    }

    /// The function of that name here or in what the library needs.
    template <class Function>
    Function* Find(const char* name) const {
        void* const function = dlsym(handle, name);
        if (function == nullptr) Fail();
        return reinterpret_cast<Function*>(function);
    }

private:
    void* handle;
};

#define LIBRARY(name, file, version)                                           \
    const Library& name() {                                                    \
        static const Library library("lib" file ".so." AV_STRINGIFY(version)); \
        return library;                                                        \
    }

LIBRARY(Codec, "avcodec", LIBAVCODEC_VERSION_MAJOR)
LIBRARY(Format, "avformat", LIBAVFORMAT_VERSION_MAJOR)
LIBRARY(Util, "avutil", LIBAVUTIL_VERSION_MAJOR)
LIBRARY(Scale, "swscale", LIBSWSCALE_VERSION_MAJOR)

}  // namespace

#define FUNCTION(library, result, name, parameters, arguments)          \
    result name parameters {                                            \
        static const auto real = library().Find<decltype(name)>(#name); \
        return real arguments;                                          \
    }

// The compiler holds each line against the library's header.
// clang-format off
extern "C" {

FUNCTION(Codec, int, av_bsf_alloc, (const AVBitStreamFilter* filter, AVBSFContext** ctx), (filter, ctx))
FUNCTION(Codec, void, av_bsf_flush, (AVBSFContext* ctx), (ctx))
FUNCTION(Codec, void, av_bsf_free, (AVBSFContext** ctx), (ctx))
FUNCTION(Codec, const AVBitStreamFilter*, av_bsf_get_by_name, (const char* name), (name))
FUNCTION(Codec, int, av_bsf_init, (AVBSFContext* ctx), (ctx))
FUNCTION(Codec, int, av_bsf_receive_packet, (AVBSFContext* ctx, AVPacket* pkt), (ctx, pkt))
FUNCTION(Codec, int, av_bsf_send_packet, (AVBSFContext* ctx, AVPacket* pkt), (ctx, pkt))
FUNCTION(Codec, int, av_new_packet, (AVPacket* pkt, int size), (pkt, size))
FUNCTION(Codec, AVPacket*, av_packet_alloc, (), ())
FUNCTION(Codec, void, av_packet_free, (AVPacket** pkt), (pkt))
FUNCTION(Codec, void, av_packet_move_ref, (AVPacket* dst, AVPacket* src), (dst, src))
FUNCTION(Codec, uint8_t*, av_packet_new_side_data, (AVPacket* pkt, AVPacketSideDataType type, size_t size),
         (pkt, type, size))
FUNCTION(Codec, void, av_packet_unref, (AVPacket* pkt), (pkt))
FUNCTION(Codec, void, av_parser_close, (AVCodecParserContext* s), (s))
FUNCTION(Codec, AVCodecParserContext*, av_parser_init, (int codec_id), (codec_id))
FUNCTION(Codec, int, av_parser_parse2,
         (AVCodecParserContext* s, AVCodecContext* avctx, uint8_t** poutbuf, int* poutbuf_size, const uint8_t* buf,
          int buf_size, int64_t pts, int64_t dts, int64_t pos),
         (s, avctx, poutbuf, poutbuf_size, buf, buf_size, pts, dts, pos))
FUNCTION(Codec, AVCodecContext*, avcodec_alloc_context3, (const AVCodec* codec), (codec))
FUNCTION(Codec, int, avcodec_default_get_buffer2, (AVCodecContext* s, AVFrame* frame, int flags), (s, frame, flags))
FUNCTION(Codec, const AVCodecDescriptor*, avcodec_descriptor_get, (AVCodecID id), (id))
FUNCTION(Codec, const AVCodec*, avcodec_find_decoder, (AVCodecID id), (id))
FUNCTION(Codec, const AVCodec*, avcodec_find_encoder_by_name, (const char* name), (name))
FUNCTION(Codec, void, avcodec_flush_buffers, (AVCodecContext* avctx), (avctx))
FUNCTION(Codec, void, avcodec_free_context, (AVCodecContext** avctx), (avctx))
FUNCTION(Codec, const AVClass*, avcodec_get_class, (), ())
FUNCTION(Codec, const char*, avcodec_get_name, (AVCodecID id), (id))
FUNCTION(Codec, int, avcodec_open2, (AVCodecContext* avctx, const AVCodec* codec, AVDictionary** options),
         (avctx, codec, options))
FUNCTION(Codec, AVCodecParameters*, avcodec_parameters_alloc, (), ())
FUNCTION(Codec, int, avcodec_parameters_copy, (AVCodecParameters* dst, const AVCodecParameters* src), (dst, src))
FUNCTION(Codec, void, avcodec_parameters_free, (AVCodecParameters** par), (par))
FUNCTION(Codec, int, avcodec_parameters_to_context, (AVCodecContext* codec, const AVCodecParameters* par), (codec, par))
FUNCTION(Codec, int, avcodec_receive_frame, (AVCodecContext* avctx, AVFrame* frame), (avctx, frame))
FUNCTION(Codec, int, avcodec_receive_packet, (AVCodecContext* avctx, AVPacket* avpkt), (avctx, avpkt))
FUNCTION(Codec, int, avcodec_send_frame, (AVCodecContext* avctx, const AVFrame* frame), (avctx, frame))
FUNCTION(Codec, int, avcodec_send_packet, (AVCodecContext* avctx, const AVPacket* avpkt), (avctx, avpkt))

FUNCTION(Format, AVCodecID, av_codec_get_id, (const AVCodecTag* const* tags, unsigned int tag), (tags, tag))
FUNCTION(Format, const AVInputFormat*, av_find_input_format, (const char* short_name), (short_name))
FUNCTION(Format, int, av_read_frame, (AVFormatContext* s, AVPacket* pkt), (s, pkt))
FUNCTION(Format, int, av_seek_frame, (AVFormatContext* s, int stream_index, int64_t timestamp, int flags),
         (s, stream_index, timestamp, flags))
FUNCTION(Format, AVFormatContext*, avformat_alloc_context, (), ())
FUNCTION(Format, void, avformat_close_input, (AVFormatContext** s), (s))
FUNCTION(Format, int, avformat_find_stream_info, (AVFormatContext* ic, AVDictionary** options), (ic, options))
FUNCTION(Format, const AVClass*, avformat_get_class, (), ())
FUNCTION(Format, const AVCodecTag*, avformat_get_mov_video_tags, (), ())
FUNCTION(Format, const AVCodecTag*, avformat_get_riff_video_tags, (), ())
FUNCTION(Format, int, avformat_open_input,
         (AVFormatContext** ps, const char* url, const AVInputFormat* fmt, AVDictionary** options),
         (ps, url, fmt, options))
FUNCTION(Format, AVIOContext*, avio_alloc_context,
         (unsigned char* buffer, int buffer_size, int write_flag, void* opaque,
          int (*read_packet)(void* opaque, uint8_t* buf, int buf_size),
          int (*write_packet)(void* opaque, uint8_t* buf, int buf_size),
          int64_t (*seek)(void* opaque, int64_t offset, int whence)),
         (buffer, buffer_size, write_flag, opaque, read_packet, write_packet, seek))
FUNCTION(Format, void, avio_context_free, (AVIOContext** s), (s))

FUNCTION(Util, void, av_dict_free, (AVDictionary** m), (m))
FUNCTION(Util, int, av_dict_set, (AVDictionary** pm, const char* key, const char* value, int flags),
         (pm, key, value, flags))
FUNCTION(Util, AVFrame*, av_frame_alloc, (), ())
FUNCTION(Util, void, av_frame_free, (AVFrame** frame), (frame))
FUNCTION(Util, int, av_frame_get_buffer, (AVFrame* frame, int align), (frame, align))
FUNCTION(Util, int, av_frame_make_writable, (AVFrame* frame), (frame))
FUNCTION(Util, void, av_frame_unref, (AVFrame* frame), (frame))
FUNCTION(Util, void, av_free, (void* ptr), (ptr))
FUNCTION(Util, void, av_freep, (void* ptr), (ptr))
FUNCTION(Util, int, av_image_check_size, (unsigned int w, unsigned int h, int log_offset, void* log_ctx),
         (w, h, log_offset, log_ctx))
FUNCTION(Util, void, av_log_set_callback, (void (*callback)(void*, int, const char*, va_list)), (callback))
FUNCTION(Util, void*, av_malloc, (size_t size), (size))
FUNCTION(Util, void*, av_mallocz, (size_t size), (size))
FUNCTION(Util, int, av_opt_set, (void* obj, const char* name, const char* val, int search_flags),
         (obj, name, val, search_flags))
FUNCTION(Util, int, av_opt_set_double, (void* obj, const char* name, double val, int search_flags),
         (obj, name, val, search_flags))
FUNCTION(Util, const AVPixFmtDescriptor*, av_pix_fmt_desc_get, (AVPixelFormat pix_fmt), (pix_fmt))
FUNCTION(Util, int, av_reduce, (int* dst_num, int* dst_den, int64_t num, int64_t den, int64_t max),
         (dst_num, dst_den, num, den, max))

FUNCTION(Scale, void, sws_freeContext, (SwsContext* swsContext), (swsContext))
FUNCTION(Scale, const int*, sws_getCoefficients, (int colorspace), (colorspace))
FUNCTION(Scale, SwsContext*, sws_getContext,
         (int srcW, int srcH, AVPixelFormat srcFormat, int dstW, int dstH, AVPixelFormat dstFormat, int flags,
          SwsFilter* srcFilter, SwsFilter* dstFilter, const double* param),
         (srcW, srcH, srcFormat, dstW, dstH, dstFormat, flags, srcFilter, dstFilter, param))
FUNCTION(Scale, int, sws_isSupportedInput, (AVPixelFormat pix_fmt), (pix_fmt))
FUNCTION(Scale, int, sws_scale,
         (SwsContext* c, const uint8_t* const srcSlice[], const int srcStride[], int srcSliceY, int srcSliceH,
          uint8_t* const dst[], const int dstStride[]),
         (c, srcSlice, srcStride, srcSliceY, srcSliceH, dst, dstStride))
FUNCTION(Scale, int, sws_setColorspaceDetails,
         (SwsContext* c, const int inv_table[4], int srcRange, const int table[4], int dstRange, int brightness,
          int contrast, int saturation),
         (c, inv_table, srcRange, table, dstRange, brightness, contrast, saturation))

}  // extern "C"
// clang-format on
