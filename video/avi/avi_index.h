#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "video/avi/opendml_raw_stream.h"
#include "video/avi/riff_file.h"

using AviStreams = std::vector<std::unique_ptr<rkOpenDMLRawStream>>;

/// Reads the indexes of one file into the tables of its streams. Throws `UnsoundFile` for an index that
/// reaches beyond its chunk or the file, and for more entries than the file has room for.
class AviIndexReader {
public:
    explicit AviIndexReader(const RiffFile& riffFile);

    /// More entries than that of all streams together no file has; at 30 frames a second it is 25 days.
    static constexpr std::uint32_t kMaxEntries = 1 << 26;

    /// An `indx` chunk, with the `ix##` chunks that it lists wherever they lie. False if it lists nothing, as
    /// where a writer only kept room for it, or is an index of something else. Its offsets count from the
    /// file's start.
    bool ReadOpenDml(const RiffChunk& indx, rkOpenDMLRawStream& stream);

    /// The `idx1` chunk. Whether its offsets count from the file's start rather than from `moviOffset`, the
    /// position of the type of the `movi` list.
    bool ReadIdx1(const RiffChunk& idx1, std::uint64_t moviOffset, const AviStreams& streams);

private:
    void ReadChunkIndex(const RiffChunk& chunk, const AviIndexHead& head, rkOpenDMLRawStream& stream);
    void Claim(std::uint64_t entries);

    const RiffFile& file;
    std::uint64_t entriesLeft;
};
