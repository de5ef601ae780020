#include "platform/media/picture_format.h"

#include <initializer_list>

namespace {

bool IsXyz(AVPixelFormat format) {
    return format == AV_PIX_FMT_XYZ12LE || format == AV_PIX_FMT_XYZ12BE;
}

std::string ChromaForm(const AVPixFmtDescriptor& descriptor) {
    static constexpr struct {
        int shiftX, shiftY;
        const char* name;
    } kForms[] = {{0, 0, "4:4:4"}, {1, 0, "4:2:2"}, {1, 1, "4:2:0"},
                  {2, 0, "4:1:1"}, {2, 2, "4:1:0"}, {0, 1, "4:4:0"}};
    for (const auto& form : kForms) {
        if (form.shiftX == descriptor.log2_chroma_w && form.shiftY == descriptor.log2_chroma_h)
            return form.name;
    }
    return "YUV";
}

std::string FormName(AVPixelFormat format, const AVPixFmtDescriptor& descriptor) {
    if (IsXyz(format)) return "XYZ";
    if ((descriptor.flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_BAYER)) != 0) return "RGB";
    return descriptor.nb_components < 3 ? "grey" : ChromaForm(descriptor);
}

bool HasDroppedAlpha(const AVPixFmtDescriptor& descriptor) {
    return (descriptor.flags & AV_PIX_FMT_FLAG_ALPHA) != 0 && (descriptor.flags & AV_PIX_FMT_FLAG_PAL) == 0;
}

/// What becomes of the samples themselves on the way to RGB; empty for a mere rearrangement.
std::string DescribeToRgb(AVPixelFormat format, const AVPixFmtDescriptor& descriptor) {
    const int depth = descriptor.comp[0].depth;
    const std::string bits = std::to_string(depth) + "-bit ";
    switch (PixelKindOf(format)) {
        case PixelKind::Palette:
            return "";
        case PixelKind::Rgb:
            if (depth == 8) return "";
            return bits + (depth > 8 ? "RGB rounded to 8 bits" : "RGB widened to 8 bits");
        default:
            const std::string form = FormName(format, descriptor);
            return depth > 8 ? bits + form + " converted to 8-bit RGB" : form + " converted to RGB";
    }
}

std::string Joined(std::initializer_list<std::string> parts) {
    std::string text;
    for (const std::string& part : parts) {
        if (part.empty()) continue;
        if (!text.empty()) text += ", ";
        text += part;
    }
    return text;
}

}  // namespace

PixelKind PixelKindOf(AVPixelFormat format) {
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
    constexpr std::uint64_t kNotRows =
        AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_BAYER | AV_PIX_FMT_FLAG_FLOAT;
    if (descriptor == nullptr || (descriptor->flags & kNotRows) != 0 || IsXyz(format))
        return PixelKind::Other;
    if ((descriptor->flags & AV_PIX_FMT_FLAG_PAL) != 0) return PixelKind::Palette;
    for (int i = 0; i < descriptor->nb_components; ++i) {
        if (descriptor->comp[i].depth > 16) return PixelKind::Other;
    }
    if ((descriptor->flags & AV_PIX_FMT_FLAG_RGB) != 0) return PixelKind::Rgb;
    if (descriptor->nb_components < 3) return PixelKind::Grey;

    if (descriptor->log2_chroma_w != 1) return PixelKind::Other;
    if (descriptor->log2_chroma_h == 0) return PixelKind::Yuv422;
    return descriptor->log2_chroma_h == 1 ? PixelKind::Yuv420 : PixelKind::Other;
}

Surface NaturalSurface(AVPixelFormat format, int width, int height) {
    const PixelKind kind = PixelKindOf(format);
    if (kind == PixelKind::Yuv420 && width % 2 == 0 && height % 2 == 0) return Surface::YV12;
    if (kind == PixelKind::Yuv422 && width % 2 == 0) return Surface::YUY2;
    return Surface::RGB24;
}

bool CanConvert(AVPixelFormat format, int width, int height, Surface surface) {
    if (surface != Surface::RGB24) return surface == NaturalSurface(format, width, height);
    switch (PixelKindOf(format)) {
        case PixelKind::Rgb:
        case PixelKind::Palette:
        case PixelKind::Grey:
            return true;
        default:
            return sws_isSupportedInput(format) != 0;
    }
}

bool IsFullRange(AVPixelFormat format, AVColorRange range) {
    switch (format) {
        case AV_PIX_FMT_YUVJ420P:
        case AV_PIX_FMT_YUVJ422P:
        case AV_PIX_FMT_YUVJ444P:
        case AV_PIX_FMT_YUVJ440P:
        case AV_PIX_FMT_YUVJ411P:
            return true;
        default:
            break;
    }
    switch (PixelKindOf(format)) {
        case PixelKind::Rgb:
        case PixelKind::Palette:
            return true;
        case PixelKind::Grey:
            return range != AVCOL_RANGE_MPEG;
        default:
            return range == AVCOL_RANGE_JPEG;
    }
}

std::string DescribeConversion(AVPixelFormat format, AVColorRange range, Surface surface) {
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
    if (descriptor == nullptr) return "";
    const std::string alpha = HasDroppedAlpha(*descriptor) ? "transparency dropped" : "";
    if (surface == Surface::RGB24) return Joined({DescribeToRgb(format, *descriptor), alpha});

    const int depth = descriptor->comp[0].depth;
    const std::string rounding =
        depth > 8 ? std::to_string(depth) + "-bit " + ChromaForm(*descriptor) + " rounded to 8 bits" : "";
    const std::string narrowing = IsFullRange(format, range) ? "full range converted to video range" : "";
    return Joined({rounding, narrowing, alpha});
}
