#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "platform/media/libav.h"
#include "platform/vfw/bitmap_format.h"

/// The codec that a stream's codes mean; AV_CODEC_ID_NONE for unknown ones. `tag` receives the code that told
/// it.
AVCodecID CodecIdOf(std::uint32_t handler, std::uint32_t compression, std::uint32_t& tag);

/// What a decoder must know of a stream of `width` by `height` pictures; null for unknown codes. Throws
/// std::bad_alloc.
CodecParametersPtr DecoderParameters(std::uint32_t handler, FormatView format, int width, int height);

/// The 256 colours behind a format of at most 8 bits, as the decoders take them with a sample: 32-bit words
/// of the machine's order, opaque. Missing ones are black.
using Palette = std::array<std::uint32_t, 256>;
std::optional<Palette> PaletteOf(FormatView format);
