#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

#include "platform/file.h"

/// Thrown inside a parser, which catches it: the file isn't what it claims to be.
struct UnsoundFile : std::exception {};

inline void Require(bool sound) {
    if (!sound) throw UnsoundFile();
}

/// Where a chunk's bytes lie. Its size is what the file says, which may be more than there is.
struct RiffChunk {
    std::uint32_t type = 0;
    std::uint32_t size = 0;    ///< without the header
    std::uint64_t offset = 0;  ///< of the first byte behind the header

    std::uint64_t End() const { return offset + size; }
    std::uint64_t Next() const { return End() + size % 2; }  ///< the header of the chunk behind
};

/// A file of chunks, read by position. What must be there and isn't throws `UnsoundFile`.
class RiffFile {
public:
    explicit RiffFile(const std::wstring& name);

    std::uint64_t Size() const { return size; }

    /// False if there is no whole chunk header at `offset`.
    bool FindChunk(std::uint64_t offset, RiffChunk& chunk) const;

    void Read(std::uint64_t offset, void* buffer, std::size_t bytes) const;

    std::uint32_t ReadWord(std::uint64_t offset) const;

    /// The first bytes of a chunk; what a shorter chunk doesn't have is 0.
    template <std::size_t bytes>
    std::array<std::uint8_t, bytes> ReadRecord(const RiffChunk& chunk) const {
        std::array<std::uint8_t, bytes> record = {};
        Read(chunk.offset, record.data(), std::min<std::size_t>(bytes, chunk.size));
        return record;
    }

private:
    ReadOnlyFile file;
    std::uint64_t size = 0;
};
