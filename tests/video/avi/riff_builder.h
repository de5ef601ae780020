#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <vector>

/// Builds the bytes of AVI files, sound or not, from the inside out.

/// The lowest bytes of a number, the lowest first.
template <std::integral Value>
std::string Number(Value value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
    return text;
}

std::string Word(std::integral auto value) {
    return Number(value, 4);
}

inline std::string Zeros(std::size_t count) {
    return std::string(count, '\0');
}

/// A chunk that claims `size` bytes whatever it has.
inline std::string ChunkOfSize(const std::string& type, std::uint64_t size, const std::string& data) {
    return type + Word(size) + data + std::string(data.size() % 2, '\0');
}

inline std::string Chunk(const std::string& type, const std::string& data) {
    return ChunkOfSize(type, data.size(), data);
}

inline std::string List(const std::string& type, const std::string& data) {
    return Chunk("LIST", type + data);
}

inline std::string Riff(const std::string& data, const std::string& form = "AVI ") {
    return Chunk("RIFF", form + data);
}

inline std::string MainHeader(int frames, int streams) {
    return Chunk("avih", Zeros(16) + Word(frames) + Word(0) + Word(streams) + Zeros(28));
}

struct StreamFields {
    std::string type = "vids";
    std::string handler = "DIB ";
    unsigned scale = 1, rate = 25, start = 0, length = 0;
    int width = 16, height = 16;
    int bitsPerPixel = 24;
    std::string compression = Zeros(4);
};

inline std::string StreamHeader(const StreamFields& fields) {
    return Chunk("strh", fields.type + fields.handler + Zeros(12) + Word(fields.scale) + Word(fields.rate) +
                             Word(fields.start) + Word(fields.length) + Zeros(12) + Number(0, 4) +
                             Number(fields.width, 2) + Number(fields.height, 2));
}

inline std::string StreamFormat(const StreamFields& fields) {
    return Chunk("strf", Word(40) + Word(fields.width) + Word(fields.height) + Number(1, 2) +
                             Number(fields.bitsPerPixel, 2) + fields.compression + Zeros(20));
}

/// A stream's list of headers; `behind` follows them.
inline std::string StreamList(const StreamFields& fields, const std::string& behind = "") {
    return List("strl", StreamHeader(fields) + StreamFormat(fields) + behind);
}

/// An entry of `idx1`.
inline std::string Idx1Entry(const char* id, std::uint64_t offset, std::uint64_t size, bool key = true) {
    return id + Word(key ? 0x10 : 0) + Word(offset) + Word(size);
}

/// The bytes of an `indx` or `ix##` chunk; `type` is 0 for an index of indexes and 1 for one of chunks.
inline std::string Index(int wordsPerEntry, int type, std::uint64_t count, std::uint64_t base,
                         const std::string& entries) {
    return Number(wordsPerEntry, 2) + Number(0, 1) + Number(type, 1) + Word(count) + "00dc" +
           Number(base, 8) + Word(0) + entries;
}

inline std::string SuperIndexEntry(std::uint64_t offset) {
    return Number(offset, 8) + Word(0) + Word(0);
}

constexpr std::uint64_t kNoKey = 1u << 31;  // in the size of an entry of an index of chunks

/// A whole file of one stream with an `idx1` that counts from the `movi` list. An empty sample is a dropped frame.
inline std::string AviBytes(StreamFields fields, const std::vector<std::string>& samples) {
    std::string movi, index;
    for (const std::string& sample : samples) {
        index += Idx1Entry("00dc", 4 + movi.size(), sample.size());
        movi += Chunk("00dc", sample);
    }
    fields.length = static_cast<unsigned>(samples.size());
    const int frames = static_cast<int>(samples.size());
    return Riff(List("hdrl", MainHeader(frames, 1) + StreamList(fields)) + List("movi", movi) +
                Chunk("idx1", index));
}
