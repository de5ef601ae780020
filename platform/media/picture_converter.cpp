#include "platform/media/picture_converter.h"

#include <cstddef>
#include <cstring>
#include <new>

namespace {

/// The full-range twins of the usual formats are told apart by their range alone where the scaler is asked.
AVPixelFormat WithoutRange(AVPixelFormat format) {
    switch (format) {
        case AV_PIX_FMT_YUVJ420P:
            return AV_PIX_FMT_YUV420P;
        case AV_PIX_FMT_YUVJ422P:
            return AV_PIX_FMT_YUV422P;
        case AV_PIX_FMT_YUVJ444P:
            return AV_PIX_FMT_YUV444P;
        case AV_PIX_FMT_YUVJ440P:
            return AV_PIX_FMT_YUV440P;
        case AV_PIX_FMT_YUVJ411P:
            return AV_PIX_FMT_YUV411P;
        default:
            return format;
    }
}

const int* MatrixCoefficients(AVColorSpace matrix) {
    switch (matrix) {
        case AVCOL_SPC_BT709:
            return sws_getCoefficients(SWS_CS_ITU709);
        case AVCOL_SPC_FCC:
            return sws_getCoefficients(SWS_CS_FCC);
        case AVCOL_SPC_SMPTE240M:
            return sws_getCoefficients(SWS_CS_SMPTE240M);
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return sws_getCoefficients(SWS_CS_BT2020);
        default:
            return sws_getCoefficients(SWS_CS_ITU601);
    }
}

SampleMap MapOf(const AVFrame& frame, Surface surface, int component) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    const bool full = IsFullRange(format, frame.color_range);
    if (surface == Surface::RGB24) return full ? SampleMap::FullRange : SampleMap::VideoToFullLuma;
    if (!full) return SampleMap::VideoRange;
    return component == 0 ? SampleMap::FullToVideoLuma : SampleMap::FullToVideoChroma;
}

bool IsScaled(PixelKind kind, Surface surface) {
    if (kind == PixelKind::Other) return true;
    return surface == Surface::RGB24 && (kind == PixelKind::Yuv420 || kind == PixelKind::Yuv422);
}

}  // namespace

PictureConverter::PictureConverter(Surface surface, int width, int height)
    : surface(surface), width(width), height(height) {}

bool PictureConverter::Convert(const AVFrame& frame, std::uint8_t* picture) {
    if (!Prepare(frame)) return false;
    if (scaler) {
        if (!Scale(frame)) return false;
        CopyRgb(*scaled, picture);
        return true;
    }
    switch (surface) {
        case Surface::YV12:
            CopyYv12(frame, picture);
            break;
        case Surface::YUY2:
            CopyYuy2(frame, picture);
            break;
        case Surface::RGB24:
            components.empty() ? CopyPalette(frame, picture) : CopyRgb(frame, picture);
            break;
    }
    return true;
}

bool PictureConverter::Prepare(const AVFrame& frame) {
    if (frame.width != width || frame.height != height) return false;
    if (frame.format == format && frame.color_range == range && frame.colorspace == matrix) return true;

    const auto pixels = static_cast<AVPixelFormat>(frame.format);
    if (!CanConvert(pixels, width, height, surface)) return false;
    format = AV_PIX_FMT_NONE;
    components.clear();
    scaler = nullptr;
    if (IsScaled(PixelKindOf(pixels), surface)) {
        PrepareScaler(frame);
        if (!scaler) return false;
    } else {
        PrepareComponents(frame);
    }
    format = frame.format;
    range = frame.color_range;
    matrix = frame.colorspace;
    return true;
}

void PictureConverter::PrepareComponents(const AVFrame& frame) {
    const auto pixels = static_cast<AVPixelFormat>(frame.format);
    const PixelKind kind = PixelKindOf(pixels);
    if (kind == PixelKind::Palette) return;
    for (int i = 0; i < 3; ++i) {
        const int number = kind == PixelKind::Grey ? 0 : i;
        components.emplace_back(*av_pix_fmt_desc_get(pixels), number, MapOf(frame, surface, i));
    }
}

void PictureConverter::PrepareScaler(const AVFrame& frame) {
    constexpr int kFlags =
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_BITEXACT;
    constexpr int kUnity = 1 << 16;
    const auto pixels = static_cast<AVPixelFormat>(frame.format);
    scaler.reset(sws_getContext(width, height, WithoutRange(pixels), width, height, AV_PIX_FMT_BGR24, kFlags,
                                nullptr, nullptr, nullptr));
    if (!scaler) return;
    const int* coefficients = MatrixCoefficients(frame.colorspace);
    const int full = IsFullRange(pixels, frame.color_range) ? 1 : 0;
    // Formats without a matrix of their own refuse it, which leaves nothing to set.
    sws_setColorspaceDetails(scaler.get(), coefficients, full, coefficients, 1, 0, kUnity, kUnity);

    scaled = MakeFrame();
    scaled->format = AV_PIX_FMT_BGR24;
    scaled->width = width;
    scaled->height = height;
    if (av_frame_get_buffer(scaled.get(), 0) < 0) throw std::bad_alloc();
    PrepareComponents(*scaled);
}

bool PictureConverter::Scale(const AVFrame& frame) {
    return sws_scale(scaler.get(), frame.data, frame.linesize, 0, height, scaled->data, scaled->linesize) ==
           height;
}

void PictureConverter::CopyYv12(const AVFrame& frame, std::uint8_t* picture) const {
    for (const int number : {0, 2, 1}) {
        const int columns = number == 0 ? width : width / 2;
        const int rows = number == 0 ? height : height / 2;
        for (int y = 0; y < rows; ++y, picture += columns) {
            components[static_cast<std::size_t>(number)].CopyRow(frame, y, columns, picture, 1);
        }
    }
}

void PictureConverter::CopyYuy2(const AVFrame& frame, std::uint8_t* picture) const {
    for (int y = 0; y < height; ++y, picture += std::ptrdiff_t{2} * width) {
        components[0].CopyRow(frame, y, width, picture, 2);
        components[1].CopyRow(frame, y, width / 2, picture + 1, 4);
        components[2].CopyRow(frame, y, width / 2, picture + 3, 4);
    }
}

std::uint8_t* PictureConverter::RgbRow(std::uint8_t* picture, int row) const {
    const auto stride = static_cast<std::ptrdiff_t>(SurfaceBytes(Surface::RGB24, width, 1));
    std::uint8_t* start = picture + stride * (height - 1 - row);
    std::memset(start + std::ptrdiff_t{3} * width, 0,
                static_cast<std::size_t>(stride) - 3 * static_cast<std::size_t>(width));
    return start;
}

void PictureConverter::CopyRgb(const AVFrame& frame, std::uint8_t* picture) const {
    for (int y = 0; y < height; ++y) {
        std::uint8_t* out = RgbRow(picture, y);
        for (int i = 0; i < 3; ++i)
            components[static_cast<std::size_t>(i)].CopyRow(frame, y, width, out + 2 - i, 3);
    }
}

void PictureConverter::CopyPalette(const AVFrame& frame, std::uint8_t* picture) const {
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* in = frame.data[0] + std::ptrdiff_t{frame.linesize[0]} * y;
        std::uint8_t* out = RgbRow(picture, y);
        for (int x = 0; x < width; ++x, out += 3) {
            std::uint32_t colour;  // alpha, red, green, blue from the highest byte, in the machine's order
            std::memcpy(&colour, frame.data[1] + 4 * std::size_t{in[x]}, sizeof colour);
            for (int i = 0; i < 3; ++i) out[i] = static_cast<std::uint8_t>(colour >> 8 * i);
        }
    }
}
