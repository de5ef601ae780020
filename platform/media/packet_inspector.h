#pragma once

#include <memory>

#include "platform/media/libav.h"
#include "platform/media/packet_order.h"

/// Reads what stands in the headers of a stream's packets, one after another from the first: which of them
/// are pictures, and in what order they are displayed. Throws std::bad_alloc.
class PacketInspector {
public:
    explicit PacketInspector(const AVCodecParameters& parameters);

    PacketFacts Inspect(const AVPacket& packet);

private:
    struct ParserDeleter {
        void operator()(AVCodecParserContext* parser) const { av_parser_close(parser); }
    };

    void Parse(const AVPacket& packet, PacketFacts& facts);

    CodecContextPtr context;  // not opened: the parser keeps the stream's parameters in it
    std::unique_ptr<AVCodecParserContext, ParserDeleter> parser;  ///< null for codecs that need none
    AVPictureStructure openField =
        AV_PICTURE_STRUCTURE_UNKNOWN;  ///< a field whose picture lacks the other one
};
