#include "platform/media/packet_inspector.h"

#include <algorithm>
#include <new>

namespace {

/// Codecs whose pictures may be stored in another order than they are displayed in, as far as their headers
/// tell.
bool IsParsed(AVCodecID codec) {
    constexpr AVCodecID kParsed[] = {AV_CODEC_ID_H264,       AV_CODEC_ID_HEVC,  AV_CODEC_ID_MPEG1VIDEO,
                                     AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG4, AV_CODEC_ID_VC1,
                                     AV_CODEC_ID_WMV3};
    return std::find(std::begin(kParsed), std::end(kParsed), codec) != std::end(kParsed);
}

bool CountsOrder(AVCodecID codec) {
    return codec == AV_CODEC_ID_H264 || codec == AV_CODEC_ID_HEVC;
}

/// RFC 6386, 9.1: bit 4 of a frame's first byte tells whether it is displayed.
bool IsHidden(AVCodecID codec, const AVPacket& packet) {
    return codec == AV_CODEC_ID_VP8 && (packet.data[0] & 0x10) == 0;
}

std::int64_t TimeOf(std::int64_t time) {
    return time == AV_NOPTS_VALUE ? kNoTime : time;
}

bool IsField(AVPictureStructure structure) {
    return structure == AV_PICTURE_STRUCTURE_TOP_FIELD || structure == AV_PICTURE_STRUCTURE_BOTTOM_FIELD;
}

}  // namespace

PacketInspector::PacketInspector(const AVCodecParameters& parameters)
    : context(avcodec_alloc_context3(nullptr)) {
    if (context == nullptr || avcodec_parameters_to_context(context.get(), &parameters) < 0)
        throw std::bad_alloc();
    if (!IsParsed(parameters.codec_id)) return;
    parser.reset(av_parser_init(parameters.codec_id));
    if (parser != nullptr) parser->flags |= PARSER_FLAG_COMPLETE_FRAMES;
}

PacketFacts PacketInspector::Inspect(const AVPacket& packet) {
    PacketFacts facts;
    facts.pts = TimeOf(packet.pts);
    facts.dts = TimeOf(packet.dts);
    facts.position = packet.pos;
    facts.size = packet.size;
    facts.isKey = (packet.flags & AV_PKT_FLAG_KEY) != 0;
    facts.isPriming = (packet.flags & AV_PKT_FLAG_DISCARD) != 0;
    facts.isDamaged = (packet.flags & AV_PKT_FLAG_CORRUPT) != 0;
    facts.isPicture = !IsHidden(context->codec_id, packet);
    if (parser != nullptr) Parse(packet, facts);
    return facts;
}

void PacketInspector::Parse(const AVPacket& packet, PacketFacts& facts) {
    std::uint8_t* frame = nullptr;
    int size = 0;
    parser->pict_type = AV_PICTURE_TYPE_NONE;
    parser->picture_structure = AV_PICTURE_STRUCTURE_UNKNOWN;
    av_parser_parse2(parser.get(), context.get(), &frame, &size, packet.data, packet.size, packet.pts,
                     packet.dts, packet.pos);
    facts.isBidirectional = parser->pict_type == AV_PICTURE_TYPE_B;
    if (!CountsOrder(context->codec_id)) {
        facts.isPredicted = facts.isBidirectional || parser->pict_type == AV_PICTURE_TYPE_P;
        return;
    }
    // Not every intra picture of these codecs is one that decoding can begin at.
    facts.isPredicted = parser->key_frame == 0;
    facts.order = parser->output_picture_number;
    if (context->codec_id != AV_CODEC_ID_H264) return;

    // Two packets with a field each are one picture. A packet with both fields shows the first one's parity
    // only, the same in every packet.
    const AVPictureStructure structure = parser->picture_structure;
    const bool completes = IsField(structure) && IsField(openField) && structure != openField;
    if (completes) facts.isPicture = false;
    openField = IsField(structure) && !completes ? structure : AV_PICTURE_STRUCTURE_UNKNOWN;
}
