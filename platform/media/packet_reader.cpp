#include "platform/media/packet_reader.h"

namespace {

constexpr int kNearPackets = 100;  // so many are read sooner than sought
constexpr int kMaxStray = 200;  // packets behind a seek that may be unknown: parts of one, or found out anew

/// When a packet is decoded, or else displayed.
std::int64_t TimeOf(const PacketFacts& facts) {
    return facts.dts != kNoTime ? facts.dts : facts.pts;
}

}  // namespace

bool PacketReader::GoTo(int number) {
    const bool isNear = next >= 0 && next <= number && number - next <= kNearPackets;
    if (isNear && SkipTo(number)) return true;
    if (SeekTo(number) && SkipTo(number)) return true;

    // Counting from the start always leads there, if the file is still the same.
    isFetched = false;
    next = file.Rewind() ? 0 : -1;
    return next == 0 && SkipTo(number);
}

/// Seeks to the packet or somewhere in front of it.
bool PacketReader::SeekTo(int number) {
    next = -1;
    isFetched = false;
    const PacketFacts& facts = index.Packet(number);
    if (TimeOf(facts) == kNoTime || !file.Seek(TimeOf(facts))) return false;
    for (int stray = 0; stray < kMaxStray && file.ReadPacket(*packet); ++stray) {
        // Without a place in the file and a time, packets of one size can't be told apart.
        if (packet->pos < 0 && packet->pts == AV_NOPTS_VALUE) continue;
        int found = number;
        while (found >= 0 && !index.IsPacket(*packet, found)) --found;
        if (found < 0) continue;
        next = found;
        isFetched = true;
        return true;
    }
    return false;
}

bool PacketReader::SkipTo(int number) {
    while (next >= 0 && next < number && Fetch()) {
        isFetched = false;
        ++next;
    }
    return next == number;
}

bool PacketReader::Fetch() {
    if (isFetched) return true;
    if (next < 0 || !file.ReadPacket(*packet)) return false;
    isFetched = index.IsPacket(*packet, next);
    if (!isFetched) next = -1;
    return isFetched;
}

bool PacketReader::Read(AVPacket& target) {
    if (!Fetch()) return false;
    av_packet_unref(&target);
    av_packet_move_ref(&target, packet.get());
    isFetched = false;
    ++next;
    return true;
}
