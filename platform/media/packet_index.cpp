#include "platform/media/packet_index.h"

#include <algorithm>
#include <limits>

#include "platform/media/packet_inspector.h"

namespace {

constexpr std::size_t kMaxPackets = std::size_t{1} << 24;  // three days at 60 a second

/// A picture is displayed when all that are displayed before it are decoded: how many are decoded by then
/// beyond those.
int ReorderDepthOf(const std::vector<int>& displayOrder) {
    std::vector<int> decodingOrder = displayOrder;
    std::sort(decodingOrder.begin(), decodingOrder.end());
    std::ptrdiff_t depth = 0, highest = 0;
    for (std::size_t i = 0; i < displayOrder.size(); ++i) {
        const auto decoded = std::lower_bound(decodingOrder.begin(), decodingOrder.end(), displayOrder[i]);
        highest = std::max(highest, decoded - decodingOrder.begin());
        depth = std::max(depth, highest - static_cast<std::ptrdiff_t>(i));
    }
    return static_cast<int>(depth);
}

}  // namespace

std::string PacketIndex::Build(MediaFile& file) {
    if (!ReadPackets(file)) return "the video stream has too many packets";
    if (file.HasReadError()) return "the file can't be read to its end";
    if (packets.empty()) return "the video stream is empty";
    const auto count = [this](auto has) { return std::count_if(packets.begin(), packets.end(), has); };
    if (count([](const auto& packet) { return packet.isKey; }) == 0)
        return "no picture of the video stream can be decoded on its own";
    // Containers mark keys that are none. But if the stream's headers leave no key at all, they don't mark
    // theirs.
    if (count([](const auto& packet) { return packet.isKey && !packet.isPredicted; }) > 0) {
        for (PacketFacts& packet : packets) packet.isKey = packet.isKey && !packet.isPredicted;
    }
    NumberPictures();
    return NumberFrames(file.IsAvi());
}

bool PacketIndex::ReadPackets(MediaFile& file) {
    PacketInspector inspector(file.CodecParameters());
    const PacketPtr packet = MakePacket();
    while (file.ReadPacket(*packet)) {
        if (packets.size() == kMaxPackets) return false;
        packets.push_back(inspector.Inspect(*packet));
    }
    // What a file that is cut off holds of its last packet is no frame.
    isCutOff = file.EndsEarly();
    for (; !packets.empty() && packets.back().isDamaged; packets.pop_back()) isCutOff = true;
    return true;
}

void PacketIndex::NumberPictures() {
    const std::vector<int> order = DisplayOrder(packets);
    starts = DecodingStarts(packets, order);
    pictureOfPacket.assign(packets.size(), -1);
    for (const int packet : order) {
        if (packets[static_cast<std::size_t>(packet)].isPriming) continue;
        pictureOfPacket[static_cast<std::size_t>(packet)] = static_cast<int>(packetOfPicture.size());
        packetOfPicture.push_back(packet);
    }
    reorderDepth = ReorderDepthOf(order);
}

std::string PacketIndex::NumberFrames(bool hasPlaces) {
    if (packetOfPicture.empty()) return "the video stream shows no picture";
    std::vector<std::int64_t> places;
    for (const int packet : packetOfPicture) places.push_back(packets[static_cast<std::size_t>(packet)].dts);
    std::sort(places.begin(), places.end());
    hasPlaces = hasPlaces && places.front() >= 0;

    std::int64_t next = 0;
    for (const std::int64_t place : places) {
        const std::int64_t frame = hasPlaces ? std::max(next, place) : next;
        if (frame >= std::numeric_limits<int>::max()) return "the video stream has too many frames";
        firstFrames.push_back(static_cast<int>(frame));
        next = frame + 1;
    }
    frameCount = static_cast<int>(next);
    return {};
}

int PacketIndex::PictureOf(int frame) const {
    if (frame < 0 || frame >= frameCount) return -1;
    const auto behind = std::upper_bound(firstFrames.begin(), firstFrames.end(), frame);
    return static_cast<int>(behind - firstFrames.begin()) - 1;
}

int PacketIndex::KeyBefore(int packet) const {
    do --packet;
    while (packet >= 0 && !Packet(packet).isKey);
    return packet;
}

bool PacketIndex::IsPacket(const AVPacket& read, int packet) const {
    if (packet < 0 || packet >= PacketCount()) return false;
    const PacketFacts& facts = Packet(packet);
    const bool sameTime = read.pts == AV_NOPTS_VALUE || facts.pts == kNoTime || read.pts == facts.pts;
    return read.size == facts.size && read.pos == facts.position && sameTime;
}
