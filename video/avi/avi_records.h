#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/vfw/avi_format.h"

/// The records of an AVI file as it holds them, taken apart.

template <std::size_t bytes>
using AviRecord = std::array<std::uint8_t, bytes>;

/// `avih`.
struct AviMainHeader {
    explicit AviMainHeader(const AviRecord<kMainHeaderBytes>& record);
    std::uint32_t totalFrames, streams;
};

/// `strh`.
struct AviStreamHeader {
    explicit AviStreamHeader(const AviRecord<kStreamHeaderBytes>& record);
    std::uint32_t type, handler, flags;
    std::uint16_t priority, language;
    std::uint32_t initialFrames, scale, rate, start, length, suggestedBufferSize, quality, sampleSize;
    std::int16_t left, top, right, bottom;
};

/// The head of `indx` and of the `ix##` chunks that it lists.
struct AviIndexHead {
    explicit AviIndexHead(const AviRecord<kIndexHeadBytes>& record);
    std::uint16_t wordsPerEntry;
    std::uint8_t type;  ///< `kIndexOfIndexes`, `kIndexOfChunks` or another
    std::uint32_t entries;
    std::uint64_t baseOffset;
};

/// One sample of a stream: what is kept of an entry of `idx1`, and the form that those of an index of chunks
/// are brought into.
struct AviIndexEntry {
    std::uint64_t offset;  ///< of the chunk's header
    std::uint32_t size;    ///< without the header
    std::uint32_t flags;
};
