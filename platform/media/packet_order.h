#pragma once

#include <cstdint>
#include <vector>

/// Time or order that isn't known.
constexpr std::int64_t kNoTime = INT64_MIN;

/// What a packet of a video stream shows without being decoded.
struct PacketFacts {
    std::int64_t pts = kNoTime;    ///< when its picture is displayed, on the stream's clock
    std::int64_t dts = kNoTime;    ///< when it is decoded
    std::int64_t position = -1;    ///< bytes from the file's start; -1 if not told
    std::int64_t order = kNoTime;  ///< display order that the stream itself counts, from anew at times
    int size = 0;                  ///< bytes
    bool isKey = false;            ///< the container says that decoding can begin here
    bool isPredicted = false;      ///< the stream's header says that it can't
    bool isBidirectional = false;  ///< refers to pictures on both sides and is none that others refer to
    bool isPicture = true;         ///< not the second half of a picture, nor one that is only referred to
    bool isPriming = false;        ///< decoded for others' sake, never displayed
    bool isDamaged = false;        ///< the container says that bytes are missing
};

/// The packets' numbers in the order in which their pictures are displayed; those that aren't pictures are
/// left out, priming ones aren't. Packets are in decoding order.
///
/// Goes by the display times if all pictures have one of their own. Otherwise, or if the times merely count
/// in decoding order while the stream reorders, by the stream's own counting; and where there is none by the
/// rule of codecs that reorder by one picture: one that isn't bidirectional waits for the next one that
/// isn't. A clock that is set back at a key packet, and counting that starts anew there, begin behind all
/// that came before.
std::vector<int> DisplayOrder(const std::vector<PacketFacts>& packets);

/// For each packet the key packet from which its picture can be decoded: the last one that stands neither
/// behind it in decoding nor in display, for a picture that is displayed before its key may refer to what
/// came before that key. Where there is none, the last key in decoding order; -1 without any.
std::vector<int> DecodingStarts(const std::vector<PacketFacts>& packets,
                                const std::vector<int>& displayOrder);
