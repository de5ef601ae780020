#include "platform/vfw/encoder_table.h"

#include "platform/vfw/bitmap_format.h"

namespace {

// Which of its forms an encoder is fed with is what other players read: 4:2:0, and RGB as such where it is
// lossless.
constexpr EncoderEntry kEncoders[] = {
    {FourCC('H', 'F', 'Y', 'U'), "huffyuv", AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB24, 1, true, true,
     L"Huffyuv, lossless"},
    {FourCC('U', 'L', 'R', 'G'), "utvideo", AV_PIX_FMT_GBRP, AV_PIX_FMT_GBRP, 1, true, true,
     L"Ut Video RGB, lossless"},
    {FourCC('F', 'F', 'V', '1'), "ffv1", AV_PIX_FMT_BGR0, AV_PIX_FMT_BGR0, 2, true, true, L"FFV1, lossless"},
    {FourCC('M', 'J', 'P', 'G'), "mjpeg", AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUVJ420P, 1, false, true,
     L"Motion JPEG, RGB converted to 4:2:0"},
    {FourCC('F', 'M', 'P', '4'), "mpeg4", AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV420P, 1, false, false,
     L"MPEG-4 part 2, RGB converted to 4:2:0"},
    {FourCC('H', '2', '6', '4'), "libx264", AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV444P, 1, false, false,
     L"H.264, RGB converted to 4:2:0 (4:4:4 for odd sizes)"},
};

}  // namespace

std::span<const EncoderEntry> EncoderTable() {
    return kEncoders;
}

const EncoderEntry* FindEncoder(std::uint32_t handler) try {
    for (const EncoderEntry& entry : kEncoders) {
        if (entry.handler != handler) continue;
        return avcodec_find_encoder_by_name(entry.encoder) != nullptr ? &entry : nullptr;
    }
    return nullptr;
} catch (const NoCodecLibrary&) {
    return nullptr;
}
