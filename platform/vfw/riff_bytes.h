#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Builds RIFF chunks in memory: a type, a size and that many bytes, padded to an even number; lists are
/// chunks that start with a type of their own. Numbers are little-endian.
class RiffBytes {
public:
    void U8(std::uint8_t number) { bytes.push_back(number); }
    void U16(std::uint16_t number) { Number(number, 2); }
    void U32(std::uint32_t number) { Number(number, 4); }
    void U64(std::uint64_t number) { Number(number, 8); }
    void Zeros(std::size_t count) { bytes.resize(bytes.size() + count); }
    void Append(std::span<const std::uint8_t> more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

    /// Starts a chunk; what `EndChunk` needs.
    std::size_t BeginChunk(std::uint32_t type);
    /// Starts a "LIST", or another chunk of chunks.
    std::size_t BeginList(std::uint32_t listType, std::uint32_t type);
    void EndChunk(std::size_t start);

    const std::vector<std::uint8_t>& Get() const { return bytes; }

private:
    void Number(std::uint64_t number, int count);

    std::vector<std::uint8_t> bytes;
};
