#pragma once

#include <cstdint>
#include <vector>

#include "platform/vfw/stream_info.h"

/// What the headers of an AVI file with one video stream say, and their bytes, from the start of the file to
/// the first sample. They have the same length whatever has been written meanwhile.
struct AviHeader {
    /// An `ix00` chunk, which lists some of the samples.
    struct IndexChunk {
        std::uint64_t offset;  ///< of its header in the file
        std::uint32_t bytes;   ///< with its header
        std::uint32_t samples;
    };
    /// The room for such chunks, 32 kB. A file of the largest kind takes one a GiB, see `AviWriter`.
    static constexpr std::size_t kMaxIndexChunks = 2048;

    AVISTREAMINFOW stream = {};
    std::vector<std::uint8_t> format;

    std::uint32_t samples = 0;            ///< in the file
    std::uint32_t samplesInFirst = 0;     ///< in the first RIFF chunk
    std::uint32_t largestSample = 0;      ///< in bytes
    std::vector<IndexChunk> indexChunks;  ///< at most kMaxIndexChunks
    std::uint64_t firstMoviEnd = 0;       ///< file position behind the first list of samples
    std::uint64_t firstRiffEnd = 0;       ///< and behind the first RIFF chunk
    bool hasOldIndex = false;             ///< the first RIFF chunk ends with an `idx1`

    std::vector<std::uint8_t> Bytes() const;

    /// The type of the chunks that hold samples: compressed or uncompressed, of stream 0.
    std::uint32_t SampleChunk() const;
};
