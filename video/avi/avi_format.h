#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/vfw/bitmap_format.h"

/// What stands in an AVI file: chunks of a type, a size and that many bytes, padded to an even number. Lists
/// are chunks that start with a type of their own and hold chunks. All numbers are little-endian.

constexpr std::uint32_t kFccRiff = FourCC('R', 'I', 'F', 'F');
constexpr std::uint32_t kFccList = FourCC('L', 'I', 'S', 'T');
constexpr std::uint32_t kFccAvi = FourCC('A', 'V', 'I', ' ');   // the RIFF chunk's form
constexpr std::uint32_t kFccHdrl = FourCC('h', 'd', 'r', 'l');  // list of headers
constexpr std::uint32_t kFccStrl = FourCC('s', 't', 'r', 'l');  // list of one stream's headers
constexpr std::uint32_t kFccOdml = FourCC('o', 'd', 'm', 'l');  // list of what OpenDML adds to the headers
constexpr std::uint32_t kFccMovi = FourCC('m', 'o', 'v', 'i');  // list of samples
constexpr std::uint32_t kFccRec = FourCC('r', 'e', 'c', ' ');   // list of samples that belong together
constexpr std::uint32_t kFccAvih = FourCC('a', 'v', 'i', 'h');
constexpr std::uint32_t kFccStrh = FourCC('s', 't', 'r', 'h');
constexpr std::uint32_t kFccStrf = FourCC('s', 't', 'r', 'f');
constexpr std::uint32_t kFccIndx = FourCC('i', 'n', 'd', 'x');
constexpr std::uint32_t kFccDmlh = FourCC('d', 'm', 'l', 'h');
constexpr std::uint32_t kFccIdx1 = FourCC('i', 'd', 'x', '1');

constexpr std::size_t kChunkHeaderBytes = 8;
constexpr std::size_t kListTypeBytes = 4;
constexpr std::size_t kMainHeaderBytes = 56;
constexpr std::size_t kStreamHeaderBytes = 56;
constexpr std::size_t kIndexHeadBytes = 24;
constexpr std::size_t kSuperIndexEntryBytes = 16;
constexpr std::size_t kIdx1EntryBytes = 16;

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
    enum Type { OfIndexes = 0, OfChunks = 1 };
    std::uint16_t wordsPerEntry;
    std::uint8_t type;
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
