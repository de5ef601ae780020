#pragma once

#include <string>
#include <vector>

#include "platform/media/media_file.h"
#include "platform/media/packet_order.h"

/// The packets of a video stream and the frames that they show: what access by number needs.
///
/// A picture is what one packet (or two fields) decodes to; pictures are numbered in display order. Frames
/// are numbered in display order too, and each shows one picture: the same number, but for AVI files, whose
/// stream has a place for every frame; an empty place repeats the picture before. 64 bytes of memory a
/// packet.
class PacketIndex {
public:
    /// Reads all packets of an open file, without decoding. Why there are no frames, in UTF-8; empty if there
    /// are. Throws std::bad_alloc.
    std::string Build(MediaFile& file);

    int FrameCount() const { return frameCount; }
    /// Whether the file lacks its end: there were more frames once. Not every container can tell.
    bool IsCutOff() const { return isCutOff; }
    /// The picture of a frame; -1 for a frame before the first picture, and out of range.
    int PictureOf(int frame) const;

    int PictureCount() const { return static_cast<int>(packetOfPicture.size()); }
    int PacketOf(int picture) const { return packetOfPicture[static_cast<std::size_t>(picture)]; }
    /// -1 for a packet whose picture is never displayed.
    int PictureOfPacket(int packet) const { return pictureOfPacket[static_cast<std::size_t>(packet)]; }
    /// The key packet from which a picture is decoded; -1 if there is none.
    int StartOf(int picture) const { return StartOfPacket(PacketOf(picture)); }
    int StartOfPacket(int packet) const { return starts[static_cast<std::size_t>(packet)]; }
    /// The nearest key packet in front of `packet`; -1 if there is none.
    int KeyBefore(int packet) const;
    /// How many pictures, at most, a decoder holds back until it is the next one's turn.
    int ReorderDepth() const { return reorderDepth; }

    int PacketCount() const { return static_cast<int>(packets.size()); }
    const PacketFacts& Packet(int packet) const { return packets[static_cast<std::size_t>(packet)]; }
    /// Whether `read` is packet number `packet`.
    bool IsPacket(const AVPacket& read, int packet) const;

private:
    bool ReadPackets(MediaFile& file);
    void NumberPictures();
    std::string NumberFrames(bool hasPlaces);

    std::vector<PacketFacts> packets;  // in decoding order
    std::vector<int> starts;           // of packets
    std::vector<int> packetOfPicture, pictureOfPacket;
    std::vector<int> firstFrames;  // of pictures, ascending
    int frameCount = 0;
    bool isCutOff = false;
    int reorderDepth = 0;
};
