#include "platform/media/packet_order.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

/// A stream from one letter a packet: I a key, P, B, - no picture, x a priming one.
std::vector<PacketFacts> Stream(const std::string& letters) {
    std::vector<PacketFacts> packets;
    for (const char letter : letters) {
        PacketFacts& packet = packets.emplace_back();
        packet.isKey = letter == 'I';
        packet.isBidirectional = letter == 'B';
        packet.isPicture = letter != '-';
        packet.isPriming = letter == 'x';
    }
    return packets;
}

using Order = std::vector<int>;
using Times = std::vector<std::int64_t>;

// The expected orders are worked out by hand from the codecs' rules.
TEST(PacketOrder, Display) {
    const std::int64_t no = kNoTime;
    // By their letters, times of display and of decoding, and numbers of the stream's order.
    const std::tuple<const char*, const char*, Times, Times, Times, Order> kCases[] = {
        {"one reordering, by types alone", "IPBBPBBI", {}, {}, {}, {0, 2, 3, 1, 5, 6, 4, 7}},
        {"leading pictures of an open group", "IPIBBP", {}, {}, {}, {0, 1, 3, 4, 2, 5}},
        {"no reordering", "IPPP", {}, {}, {}, {0, 1, 2, 3}},
        {"a second field is no picture", "I-P-B-", {}, {}, {}, {0, 4, 2}},
        {"pyramid, by times", "IPBBB", {0, 8, 4, 2, 6}, {-2, -1, 0, 1, 2}, {}, {0, 3, 2, 4, 1}},
        {"variable rate and negative times", "IPB", {-7, 90, 3}, {}, {}, {0, 2, 1}},
        {"a time is missing: the stream's order counts", "IPB", {0, no, 1}, {}, {0, 4, 2}, {0, 2, 1}},
        {"two equal times", "IPB", {0, 5, 5}, {}, {0, 4, 2}, {0, 2, 1}},
        {"times that are those of decoding", "IPBB", {0, 1, 2, 3}, {}, {}, {0, 2, 3, 1}},
        {"pictures that count from anew", "IPBIPB", {}, {}, {0, 4, 2, 0, 4, 2}, {0, 2, 1, 3, 5, 4}},
        {"only keys", "III", {}, {}, {0, 0, 0}, {0, 1, 2}},
        {"a key that goes on counting", "IPIB", {}, {}, {0, 2, 6, 4}, {0, 1, 3, 2}},
        {"a clock set back", "IPBIPB", {0, 2, 1, 0, 2, 1}, {-1, 0, 1, -1, 0, 1}, {}, {0, 2, 1, 3, 5, 4}},
        {"priming pictures take part", "IxP", {0, 1, 2}, {}, {}, {0, 1, 2}}};
    for (const auto& [what, letters, pts, dts, order, expected] : kCases) {
        SCOPED_TRACE(what);
        std::vector<PacketFacts> packets = Stream(letters);
        for (std::size_t i = 0; i < packets.size(); ++i) {
            if (!pts.empty()) packets[i].pts = pts[i];
            if (!dts.empty()) packets[i].dts = dts[i];
            if (!order.empty()) packets[i].order = order[i];
        }
        EXPECT_EQ(expected, DisplayOrder(packets));
    }
}

TEST(PacketOrder, DecodingStarts) {
    const std::tuple<const char*, const char*, Order, Order> kCases[] = {
        {"closed groups", "IPIP", {0, 1, 2, 3}, {0, 0, 2, 2}},
        {"leading pictures start at the key before", "IPIBBP", {0, 1, 3, 4, 2, 5}, {0, 0, 2, 0, 0, 2}},
        {"no key in front", "PPIP", {0, 1, 2, 3}, {-1, -1, 2, 2}},
        {"leading pictures of the first key have no other", "IBBP", {1, 2, 0, 3}, {0, 0, 0, 0}},
        {"no key at all", "PP", {0, 1}, {-1, -1}},
        {"a second field starts with its key", "I-P-", {0, 2}, {0, 0, 0, 0}}};
    for (const auto& [what, letters, display, expected] : kCases)
        EXPECT_EQ(expected, DecodingStarts(Stream(letters), display)) << what;
}

// Keys displayed in the reverse of their order, as in a hostile file: no packet's search may look at all keys.
TEST(PacketOrder, StartsOfAMillionKeysInNoTime) {
    constexpr int count = 1'000'000;
    Order reverse(count);
    std::iota(reverse.rbegin(), reverse.rend(), 0);
    EXPECT_EQ(count - 1, DecodingStarts(Stream(std::string(count, 'I')), reverse).back());
}

}  // namespace
