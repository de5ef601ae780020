#pragma once

#include "platform/media/media_file.h"
#include "platform/media/packet_index.h"

/// The packets of a file by their numbers. Every packet that is read is compared with the index, so that
/// wherever the container lands after a seek, the packet handed over is the one that was asked for. Throws
/// std::bad_alloc.
class PacketReader {
public:
    /// Both stay, and nobody else reads the file. The reader stands nowhere at first.
    PacketReader(MediaFile& packetFile, const PacketIndex& packetIndex)
        : file(packetFile), index(packetIndex), packet(MakePacket()) {}

    /// Makes `packet` number `number` the next one. False if it can't be had.
    bool GoTo(int number);
    /// The next packet, which goes to `target`. False behind the last one, and if the file isn't what it was.
    bool Read(AVPacket& target);
    /// The number of the next packet.
    int Next() const { return next; }

private:
    bool SeekTo(int number);
    bool SkipTo(int number);
    bool Fetch();

    MediaFile& file;
    const PacketIndex& index;
    PacketPtr packet;
    bool isFetched = false;  // `packet` is number `next`
    int next = -1;           // -1: unknown
};
