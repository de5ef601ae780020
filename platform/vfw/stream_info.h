#pragma once

#include <cstdint>

#include "platform/vfw/bitmap_format.h"

/// What a file says about one of its streams.
struct AVISTREAMINFOW {
    std::uint32_t fccType;  ///< "vids", "auds" or another kind
    std::uint32_t fccHandler;
    std::uint32_t dwFlags;
    std::uint32_t dwCaps;
    std::uint16_t wPriority;
    std::uint16_t wLanguage;
    std::uint32_t dwScale;
    std::uint32_t dwRate;  ///< samples a second are `dwRate / dwScale`
    std::uint32_t dwStart;
    std::uint32_t dwLength;  ///< in samples
    std::uint32_t dwInitialFrames;
    std::uint32_t dwSuggestedBufferSize;
    std::uint32_t dwQuality;
    std::uint32_t dwSampleSize;
    struct {
        std::int32_t left, top, right, bottom;
    } rcFrame;
    std::uint32_t dwEditCount;
    std::uint32_t dwFormatChangeCount;
    wchar_t szName[64];
};

/// `fccType` of a stream.
constexpr std::uint32_t kFccVideo = FourCC('v', 'i', 'd', 's');
constexpr std::uint32_t kFccAudio = FourCC('a', 'u', 'd', 's');

/// `fccHandler` of a stream of uncompressed pictures, in two spellings.
constexpr std::uint32_t kFccDib = FourCC('D', 'I', 'B', ' ');
constexpr std::uint32_t kFccDibZero = FourCC('D', 'I', 'B', '\0');

/// Flags of a sample.
constexpr std::uint32_t AVIIF_KEYFRAME = 0x10;
