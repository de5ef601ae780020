#pragma once

#include <string>

#include "video/avi/compressor_settings.h"

/// The compressor that FOURCC[:QUALITY] names: the four characters in any case, or "none" for uncompressed;
/// the quality from 0 to 100, for lossy codecs only. Throws UsageError for anything else.
rkCompressorSettings CompressorOf(const std::string& text);

/// The codecs to choose from, one line each: four characters and description.
std::string CodecListText();
