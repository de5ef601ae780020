#pragma once

#include <string>

#include "video/avi/compressor_settings.h"

/// The file "codec_config", which keeps the user's choice of a compressor as its record. `directory`, where
/// the program writes, ends in a separator.

/// False, with nothing changed, if there is no file or it holds no whole record.
bool LoadCompressorFile(const std::wstring& directory, rkCompressorSettings& settings);

/// Makes the directory if it is missing. The file is replaced whole or not at all, also when another instance
/// of the program does the same; false if it couldn't be.
bool SaveCompressorFile(const std::wstring& directory, const rkCompressorSettings& settings);
