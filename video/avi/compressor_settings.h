#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/vfw/compressor.h"

/// The choice of a video compressor, with what its user set. At first, and with codes that nobody has:
/// uncompressed.
///
/// Record  the stored form, little-endian 32-bit numbers: the bytes that follow this one, `fccType`,
///         `fccHandler`, `quality`, `dataRate`, the bytes of the state, and the state.
struct rkCompressorSettings {
    std::uint32_t fccType = 0;
    std::uint32_t fccHandler = 0;
    std::int32_t quality = -1;        ///< 0 to 10000; below 0 leaves it to the compressor
    std::int32_t dataRate = 0;        ///< kilobytes a second; 0 goes by quality
    std::vector<std::uint8_t> state;  ///< the compressor's own, see `ICGetState`

    bool operator==(const rkCompressorSettings&) const = default;

    std::vector<std::uint8_t> ToRecord() const;
    /// False, with nothing changed, for bytes that are no whole record. Bytes behind the record don't matter,
    /// and a state of 0 bytes or fewer is an empty one.
    bool FromRecord(std::span<const std::uint8_t> bytes);

    /// Asks the user; false, with nothing changed, if there was no answer.
    bool Choose(const BITMAPINFOHEADER& format);

    /// The compressor, with the state if it takes it; null if there is none of these codes.
    HIC OpenCompressor() const;

    /// For people: the compressor's own description, or "Uncompressed RGB" if it can't be opened.
    std::wstring Description() const;
    void Describe(wchar_t* buffer, int size) const;
};
