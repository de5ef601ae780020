#include "cli/codec_option.h"

#include <charconv>
#include <string_view>

#include "cli/options.h"
#include "platform/text.h"
#include "platform/vfw/compressor.h"

namespace {

constexpr int kDefaultQuality = 75;
constexpr int kBestQuality = 100;
constexpr int kQualityUnit = 100;  // settings hold hundredths of it

std::string NameOf(const CompressorEntry& entry) {
    if (entry.handler == 0) return "none";
    std::string name;
    for (int shift = 0; shift < 32; shift += 8) name += static_cast<char>(entry.handler >> shift & 0xFF);
    return name;
}

UsageError Wrong(const std::string& text) {
    std::string names;
    for (const CompressorEntry& entry : ListCompressors()) names += " " + NameOf(entry);
    return UsageError("--codec takes FOURCC[:QUALITY], quality 0 to 100 for a lossy codec, one of" + names +
                      ", or list; it got \"" + text + "\"");
}

bool IsSameName(std::string_view first, std::string_view second) {
    return FromUtf8(first).size() == FromUtf8(second).size() &&
           EndsWithNoCase(FromUtf8(first), FromUtf8(second));
}

CompressorEntry Find(std::string_view name, const std::string& text) {
    for (const CompressorEntry& entry : ListCompressors())
        if (IsSameName(NameOf(entry), name)) return entry;
    throw Wrong(text);
}

int ParseQuality(std::string_view digits, const std::string& text) {
    int quality = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), quality);
    if (error != std::errc() || end != digits.data() + digits.size() || quality < 0 || quality > kBestQuality)
        throw Wrong(text);
    return quality;
}

}  // namespace

rkCompressorSettings CompressorOf(const std::string& text) {
    const std::string_view given = text;
    const std::size_t colon = given.find(':');
    const CompressorEntry entry = Find(given.substr(0, colon), text);
    rkCompressorSettings settings;
    if (entry.handler == 0 && colon == given.npos) return settings;
    if (entry.lossless && colon != given.npos) throw Wrong(text);

    settings.fccType = kFccVideoCodec;
    settings.fccHandler = entry.handler;
    const int quality = colon == given.npos ? kDefaultQuality : ParseQuality(given.substr(colon + 1), text);
    settings.quality = quality * kQualityUnit;
    return settings;
}

std::string CodecListText() {
    std::string text;
    for (const CompressorEntry& entry : ListCompressors())
        text += NameOf(entry) + "  " + ToUtf8(entry.description) + "\n";
    return text;
}
