#include "platform/vfw/frame_intake.h"

#include <cstddef>
#include <new>

#include "platform/media/surface.h"

namespace {

FramePtr MakePicture(AVPixelFormat format, int width, int height) {
    FramePtr frame = MakeFrame();
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), 0) < 0) throw std::bad_alloc();
    return frame;
}

/// Into the planes or packed bytes of an RGB format of 8 bits.
void CopyRgb(const std::uint8_t* frame, const AVFrame& picture) {
    const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
    const auto stride = static_cast<std::ptrdiff_t>(SurfaceBytes(Surface::RGB24, picture.width, 1));
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t* row = frame + stride * (picture.height - 1 - y);
        for (int i = 0; i < 3; ++i) {
            const AVComponentDescriptor& component = format.comp[i];
            const std::uint8_t* in = row + 2 - i;
            std::uint8_t* out = picture.data[component.plane] +
                                std::ptrdiff_t{picture.linesize[component.plane]} * y + component.offset;
            for (int x = 0; x < picture.width; ++x, in += 3, out += component.step) *out = *in;
        }
    }
}

}  // namespace

FrameIntake::FrameIntake(const AVCodecContext& encoder)
    : picture(MakePicture(encoder.pix_fmt, encoder.width, encoder.height)) {
    picture->quality = encoder.global_quality;
    picture->color_range = encoder.color_range;
    picture->colorspace = encoder.colorspace;
    if ((av_pix_fmt_desc_get(encoder.pix_fmt)->flags & AV_PIX_FMT_FLAG_RGB) != 0) return;

    constexpr int kFlags =
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_BITEXACT;
    constexpr int kUnity = 1 << 16;
    rgb = MakePicture(AV_PIX_FMT_BGR24, encoder.width, encoder.height);
    scaler.reset(sws_getContext(encoder.width, encoder.height, AV_PIX_FMT_BGR24, encoder.width,
                                encoder.height, encoder.pix_fmt, kFlags, nullptr, nullptr, nullptr));
    if (!scaler) return;
    const int* coefficients = sws_getCoefficients(SWS_CS_ITU601);
    const int full = encoder.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
    sws_setColorspaceDetails(scaler.get(), coefficients, 1, coefficients, full, 0, kUnity, kUnity);
}

AVFrame* FrameIntake::Take(const std::uint8_t* frame) {
    // The encoder may still hold the picture before.
    if (av_frame_make_writable(picture.get()) < 0) throw std::bad_alloc();
    if (!rgb) {
        CopyRgb(frame, *picture);
        return picture.get();
    }
    if (!scaler) return nullptr;
    CopyRgb(frame, *rgb);
    const int rows =
        sws_scale(scaler.get(), rgb->data, rgb->linesize, 0, rgb->height, picture->data, picture->linesize);
    return rows == picture->height ? picture.get() : nullptr;
}
