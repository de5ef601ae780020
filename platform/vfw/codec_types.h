#pragma once

#include <cstdint>

#include "platform/vfw/bitmap_format.h"

/// What the functions of `compressor.h` take and answer, as the codecs behind them do.

constexpr int ICERR_OK = 0;
/// The picture comes out only after more samples (pictures are stored out of their display order).
constexpr int ICERR_NEEDMORE = 1;
constexpr int ICERR_ERROR = -100;
/// The sample whose turn it is has no sound picture.
constexpr int ICERR_DAMAGED = -101;

struct ICINFO {
    std::uint32_t fccType = 0;
    std::uint32_t fccHandler = 0;
    std::uint32_t dwFlags = 0;
    wchar_t szDescription[128] = {};  ///< for people; says every conversion of the samples
};

constexpr std::uint32_t kFccVideoCodec = FourCC('v', 'i', 'd', 'c');
/// In `ICINFO::dwFlags`: keeps the previous frame itself, so that the caller needn't hand it over.
constexpr std::uint32_t VIDCF_FASTTEMPORALC = 0x20;

/// One compressed sample, with its number as the stream counts them.
struct DecompressInput {
    const std::uint8_t* data = nullptr;
    int size = 0;     ///< 0: an empty sample, which repeats the picture before
    int sample = -1;  ///< below 0: no sample, there are no more
};

/// Flags of `ICDecompress`.
constexpr std::uint32_t ICDECOMPRESS_NOTKEYFRAME = 0x08000000;

/// A wanted rate. The quality goes evenly from the coarsest step (0) to the finest (10000): quantizers 31 to
/// 2 of Motion JPEG and MPEG-4, rate factors 51 to 1 of H.264. Lossless encoders don't ask for it.
struct CompressRate {
    int scale = 1;
    int rate = 25;         ///< frames a second are `rate / scale`
    int quality = -1;      ///< 0 to 10000
    int dataRate = 0;      ///< kilobytes (1024 bytes) a second; 0 goes by quality
    int keyFrameRate = 0;  ///< a key frame at least every so many frames
};

constexpr std::uint32_t ICCOMPRESS_KEYFRAME = 1;
