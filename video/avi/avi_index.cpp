#include "video/avi/avi_index.h"

#include <algorithm>

#include "platform/byte_order.h"
#include "platform/vfw/stream_info.h"

namespace {

constexpr std::size_t kBlockBytes = 1 << 18;  // room for the longest record, 65535 words
constexpr std::uint32_t kMaxIndexes = 1 << 16;

/// Hands the records from `offset` on to `take`, one after another; reads them in large blocks.
template <class Take>
void ForEachRecord(const RiffFile& file, std::uint64_t offset, std::uint64_t count, std::size_t recordBytes,
                   const Take& take) {
    const std::uint64_t recordsPerBlock = kBlockBytes / recordBytes;
    std::vector<std::uint8_t> block(std::min(count, recordsPerBlock) * recordBytes);
    while (count > 0) {
        const std::uint64_t records = std::min(count, recordsPerBlock);
        const std::size_t bytes = records * recordBytes;
        file.Read(offset, block.data(), bytes);
        for (std::size_t at = 0; at < bytes; at += recordBytes) take(&block[at]);
        offset += bytes;
        count -= records;
    }
}

AviIndexHead ReadHead(const RiffFile& file, const RiffChunk& chunk) {
    return AviIndexHead(file.ReadRecord<kIndexHeadBytes>(chunk));
}

/// The entries behind the head of an index must lie inside its chunk.
void RequireInside(const RiffChunk& chunk, std::uint64_t entries, std::size_t entryBytes) {
    Require(kIndexHeadBytes + entries * entryBytes <= chunk.size);
}

/// The number of the stream that a chunk belongs to: two decimal digits in front of its type.
std::size_t StreamNumber(const std::uint8_t* chunkId) {
    const auto digit = [](std::uint8_t c) {
        Require(c >= '0' && c <= '9');
        return static_cast<std::size_t>(c - '0');
    };
    return digit(chunkId[0]) * 10 + digit(chunkId[1]);
}

}  // namespace

AviIndexReader::AviIndexReader(const RiffFile& riffFile)
    : file(riffFile),
      entriesLeft(std::min<std::uint64_t>(file.Size() / kChunkIndexEntryBytes, kMaxEntries)) {}

/// Many indexes could point to the same entries, and few bytes would make endless tables.
void AviIndexReader::Claim(std::uint64_t entries) {
    Require(entries <= entriesLeft);
    entriesLeft -= entries;
}

bool AviIndexReader::ReadOpenDml(const RiffChunk& indx, rkOpenDMLRawStream& stream) {
    const AviIndexHead head = ReadHead(file, indx);
    if (head.type == kIndexOfChunks) {
        ReadChunkIndex(indx, head, stream);
        return head.entries > 0;
    }
    if (head.type != kIndexOfIndexes) return false;

    Require(head.entries <= kMaxIndexes);
    RequireInside(indx, head.entries, kSuperIndexEntryBytes);
    ForEachRecord(file, indx.offset + kIndexHeadBytes, head.entries, kSuperIndexEntryBytes,
                  [&](const std::uint8_t* entry) {
                      RiffChunk chunk;
                      Require(file.FindChunk(LoadLe<std::uint64_t>(entry), chunk));
                      const AviIndexHead chunkHead = ReadHead(file, chunk);
                      Require(chunkHead.type == kIndexOfChunks);
                      ReadChunkIndex(chunk, chunkHead, stream);
                  });
    return head.entries > 0;
}

void AviIndexReader::ReadChunkIndex(const RiffChunk& chunk, const AviIndexHead& head,
                                    rkOpenDMLRawStream& stream) {
    const std::size_t entryBytes = head.wordsPerEntry * sizeof(std::uint32_t);
    Require(entryBytes >= kChunkIndexEntryBytes);
    RequireInside(chunk, head.entries, entryBytes);
    Claim(head.entries);
    ForEachRecord(file, chunk.offset + kIndexHeadBytes, head.entries, entryBytes,
                  [&](const std::uint8_t* entry) {
                      // These offsets are of a sample's bytes, the tables' are of the chunk's header.
                      const std::uint64_t data = head.baseOffset + LoadLe<std::uint32_t>(entry);
                      const auto size = LoadLe<std::uint32_t>(entry + 4);
                      stream.AddEntry({data - kChunkHeaderBytes, size & ~kChunkIndexNoKey,
                                       (size & kChunkIndexNoKey) == 0 ? AVIIF_KEYFRAME : 0});
                  });
}

bool AviIndexReader::ReadIdx1(const RiffChunk& idx1, std::uint64_t moviOffset, const AviStreams& streams) {
    const std::uint32_t count = idx1.size / kIdx1EntryBytes;
    Claim(count);
    bool offsetsAbsolute = true;
    ForEachRecord(file, idx1.offset, count, kIdx1EntryBytes, [&](const std::uint8_t* record) {
        if (LoadLe<std::uint32_t>(record) == kFccRec)
            return;  // a list of samples, which have their own entries
        const std::size_t number = StreamNumber(record);
        Require(number < streams.size());
        const AviIndexEntry entry = {.offset = LoadLe<std::uint32_t>(record + 8),
                                     .size = LoadLe<std::uint32_t>(record + 12),
                                     .flags = LoadLe<std::uint32_t>(record + 4)};
        // Some writers give an empty sample the offset 0, which says nothing about the others.
        if (entry.size > 0 && entry.offset < moviOffset) offsetsAbsolute = false;
        streams[number]->AddEntry(entry);
    });
    return offsetsAbsolute;
}
