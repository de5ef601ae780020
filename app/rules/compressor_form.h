#pragma once

#include <string>
#include <vector>

#include "platform/vfw/compressor.h"

constexpr int kBestQuality = 100;

/// What the compressor chooser shows.
struct CompressorForm {
    std::vector<CompressorEntry> codecs;
    int codec = 0;    ///< selected position
    int quality = 0;  ///< slider, 0 to `kBestQuality`
    /// Of the slider, which depends on the selected codec; empty: it can be used.
    std::wstring WhyQualityDisabled() const;
};

/// A compressor that isn't there shows as the first one, uncompressed; a quality that nobody chose as that of
/// the compressors themselves.
CompressorForm CompressorFormFrom(const COMPVARS& choice);

/// "OK". The compressor is opened. One that was chosen before keeps its state, and all else that the form
/// doesn't show as long as its quality stays.
void StoreForm(const CompressorForm& form, COMPVARS& choice);

/// The four letters of a code; empty for 0, and "." for a byte that is no letter.
std::wstring FourLetters(std::uint32_t code);
