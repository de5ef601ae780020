#include "platform/media/packet_order.h"

#include <algorithm>
#include <utility>

namespace {

/// Where a picture belongs: the stretch between two new beginnings, and the place inside it.
using Place = std::pair<int, std::int64_t>;

/// A place for each packet, by a display order `value` that all pictures have.
template <typename Value, typename Restarts>
std::vector<Place> PlacesBy(const std::vector<PacketFacts>& packets, Value value, Restarts restarts) {
    std::vector<Place> places;
    int stretch = 0;
    for (const PacketFacts& packet : packets) {
        if (packet.isKey && restarts(packet)) ++stretch;
        places.emplace_back(stretch, value(packet));
    }
    return places;
}

std::vector<Place> PlacesByTime(const std::vector<PacketFacts>& packets) {
    std::int64_t lastDts = kNoTime;
    const auto restarts = [&lastDts](const PacketFacts& packet) {
        return packet.dts != kNoTime && packet.dts < lastDts;
    };
    const auto value = [&lastDts](const PacketFacts& packet) {
        if (packet.dts != kNoTime) lastDts = packet.dts;
        return packet.pts;
    };
    return PlacesBy(packets, value, restarts);
}

std::vector<Place> PlacesByOrder(const std::vector<PacketFacts>& packets) {
    std::int64_t highest = kNoTime;
    const auto restarts = [&highest](const PacketFacts& packet) {
        // A key that goes on counting stands above all that was decoded before it.
        const bool starts = packet.order <= highest;
        if (starts) highest = kNoTime;
        return starts;
    };
    const auto value = [&highest](const PacketFacts& packet) {
        highest = std::max(highest, packet.order);
        return packet.order;
    };
    return PlacesBy(packets, value, restarts);
}

std::vector<Place> PlacesByType(const std::vector<PacketFacts>& packets) {
    std::vector<Place> places(packets.size());
    auto next = static_cast<std::int64_t>(packets.size());  // the next picture that others refer to
    for (std::size_t i = packets.size(); i-- > 0;) {
        const auto self = static_cast<std::int64_t>(i);
        places[i] = {0, packets[i].isBidirectional ? 2 * self : 2 * next - 1};
        if (packets[i].isPicture && !packets[i].isBidirectional) next = self;
    }
    return places;
}

std::vector<int> Sorted(const std::vector<PacketFacts>& packets, const std::vector<Place>& places) {
    std::vector<int> order;
    for (std::size_t i = 0; i < packets.size(); ++i) {
        if (packets[i].isPicture) order.push_back(static_cast<int>(i));
    }
    const auto placeOf = [&places](int packet) { return places[static_cast<std::size_t>(packet)]; };
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return placeOf(a) < placeOf(b); });
    return order;
}

/// Whether no two pictures, neighbours in `order`, have the same place.
bool AreDistinct(const std::vector<int>& order, const std::vector<Place>& places) {
    const auto same = [&places](int a, int b) {
        return places[static_cast<std::size_t>(a)] == places[static_cast<std::size_t>(b)];
    };
    return std::adjacent_find(order.begin(), order.end(), same) == order.end();
}

template <typename Known>
bool AllPictures(const std::vector<PacketFacts>& packets, Known known) {
    return std::all_of(packets.begin(), packets.end(),
                       [known](const PacketFacts& packet) { return !packet.isPicture || known(packet); });
}

}  // namespace

std::vector<int> DisplayOrder(const std::vector<PacketFacts>& packets) {
    const bool isCounted = AllPictures(packets, [](const auto& p) { return p.order != kNoTime; });
    std::vector<int> byStream = Sorted(packets, isCounted ? PlacesByOrder(packets) : PlacesByType(packets));
    if (!AllPictures(packets, [](const auto& p) { return p.pts != kNoTime; })) return byStream;

    const std::vector<Place> places = PlacesByTime(packets);
    std::vector<int> byTime = Sorted(packets, places);
    const bool isDecodingTime = std::is_sorted(byTime.begin(), byTime.end()) && byTime != byStream;
    return AreDistinct(byTime, places) && !isDecodingTime ? byTime : byStream;
}

std::vector<int> DecodingStarts(const std::vector<PacketFacts>& packets,
                                const std::vector<int>& displayOrder) {
    std::vector<int> places(packets.size(), -1);
    for (std::size_t i = 0; i < displayOrder.size(); ++i)
        places[static_cast<std::size_t>(displayOrder[i])] = static_cast<int>(i);

    std::vector<int> starts(packets.size(), -1);
    // The keys that can still be somebody's start: one that a later key precedes in display too never is
    // again. So their places ascend.
    std::vector<int> keys;
    const auto placeOf = [&places](int packet) { return places[static_cast<std::size_t>(packet)]; };
    for (std::size_t i = 0; i < packets.size(); ++i) {
        if (packets[i].isKey) {
            while (!keys.empty() && placeOf(keys.back()) >= places[i]) keys.pop_back();
            keys.push_back(static_cast<int>(i));
        }
        if (keys.empty()) continue;
        const auto behind = std::upper_bound(keys.begin(), keys.end(), places[i],
                                             [&](int place, int key) { return place < placeOf(key); });
        starts[i] = behind == keys.begin() ? keys.back() : *(behind - 1);
    }
    return starts;
}
