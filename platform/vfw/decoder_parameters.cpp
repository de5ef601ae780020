#include "platform/vfw/decoder_parameters.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/byte_order.h"

namespace {

std::span<const std::uint8_t> BytesBehindHeader(FormatView format) {
    return {format.data + kBitmapFormatBytes, format.data + format.size};
}

AVCodecID IdOfTag(std::uint32_t tag) {
    // Some writers put the codes of another container into theirs.
    const AVCodecTag* tables[] = {avformat_get_riff_video_tags(), avformat_get_mov_video_tags(), nullptr};
    return av_codec_get_id(tables, tag);
}

}  // namespace

AVCodecID CodecIdOf(std::uint32_t handler, std::uint32_t compression, std::uint32_t& tag) {
    // Raw pictures under bit masks: the tables have them as 15-bit ones, whatever their depth.
    if (compression == kBitFields) return AV_CODEC_ID_NONE;
    // Handlers are often wrong where the format isn't; but a format of 0 also means that nobody filled it in.
    const std::uint32_t codes[] = {compression, handler};
    const bool handlerFirst = compression == 0;
    for (const int i : {handlerFirst ? 1 : 0, handlerFirst ? 0 : 1}) {
        tag = codes[i];
        const AVCodecID id = IdOfTag(tag);
        if (id != AV_CODEC_ID_NONE) return id;
    }
    return AV_CODEC_ID_NONE;
}

CodecParametersPtr DecoderParameters(std::uint32_t handler, FormatView format, int width, int height) {
    const BITMAPINFOHEADER header = LoadBitmapFormat(format.data);
    std::uint32_t tag = 0;
    const AVCodecID id = CodecIdOf(handler, header.biCompression, tag);
    if (id == AV_CODEC_ID_NONE) return nullptr;

    // This encoder's streams need cures of their own, which go by the code.
    constexpr std::uint32_t kXvid = FourCC('X', 'V', 'I', 'D');
    if (id == AV_CODEC_ID_MPEG4 && handler == kXvid) tag = kXvid;

    CodecParametersPtr parameters = MakeCodecParameters();
    parameters->codec_type = AVMEDIA_TYPE_VIDEO;
    parameters->codec_id = id;
    parameters->codec_tag = tag;
    parameters->width = width;
    parameters->height = height;
    parameters->bits_per_coded_sample = header.biBitCount;

    const auto behind = BytesBehindHeader(format);
    std::vector<std::uint8_t> extradata(behind.begin(), behind.end());
    if (id == AV_CODEC_ID_RAWVIDEO && header.biCompression == 0 && header.biHeight > 0) {
        constexpr std::string_view kBottomUp("BottomUp", 9);  // how the decoder is told
        extradata.insert(extradata.end(), kBottomUp.begin(), kBottomUp.end());
    }
    SetExtradata(*parameters, extradata);
    return parameters;
}

std::optional<Palette> PaletteOf(FormatView format) {
    const BITMAPINFOHEADER header = LoadBitmapFormat(format.data);
    const auto bytes = BytesBehindHeader(format);
    if (header.biBitCount < 1 || header.biBitCount > 8 || bytes.size() < 4) return std::nullopt;

    Palette palette;
    palette.fill(0xFF000000);
    const std::size_t colours = std::min(std::size_t{1} << header.biBitCount, bytes.size() / 4);
    for (std::size_t i = 0; i < colours; ++i) {
        palette[i] = 0xFF000000 | LoadLe<std::uint32_t>(bytes.data() + 4 * i);
    }
    return palette;
}
