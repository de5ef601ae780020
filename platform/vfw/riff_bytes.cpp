#include "platform/vfw/riff_bytes.h"

#include "platform/byte_order.h"

void RiffBytes::Number(std::uint64_t number, int count) {
    for (int i = 0; i < count; ++i) U8(static_cast<std::uint8_t>(number >> 8 * i));
}

std::size_t RiffBytes::BeginChunk(std::uint32_t type) {
    U32(type);
    U32(0);
    return bytes.size();
}

std::size_t RiffBytes::BeginList(std::uint32_t listType, std::uint32_t type) {
    const std::size_t start = BeginChunk(listType);
    U32(type);
    return start;
}

void RiffBytes::EndChunk(std::size_t start) {
    const std::size_t size = bytes.size() - start;
    StoreLe(static_cast<std::uint32_t>(size), bytes.data() + start - 4);
    if (size % 2 != 0) U8(0);
}
