#include <tolvane/source_plugin.h>

#include <cstdio>
#include <iterator>

/// QTInput("file", color, quality, audio, mode): the video of every container.
///
/// color    0 as RGB24, 1 as YUY2, 2 in the chroma form that it is stored in (the default)
/// quality  0 to 100. Decoding is always exact, so it changes nothing.
/// audio    sound is never read
/// mode     0 or 1, the ways to reach a frame. Every frame is exact, so it changes nothing.

namespace {

enum Parameter { File, Color, Quality, Audio, Mode };
constexpr SourceParameter kParameters[] = {{"file", SourceFile, true},
                                           {"color", SourceWhole, false},
                                           {"quality", SourceWhole, false},
                                           {"audio", SourceFlag, false},
                                           {"mode", SourceWhole, false}};
constexpr SourceSurface kSurfaces[] = {SourceRGB24, SourceYUY2, SourceAsStored};

constexpr struct {
    Parameter parameter;
    int highest;
    const char* message;
} kRanges[] = {{Color, 2, "color takes 0 (RGB24), 1 (YUY2) or 2 (as stored)"},
               {Quality, 100, "quality takes 0 to 100"},
               {Mode, 1, "mode takes 0 or 1"}};

const SourceContainers* containers = nullptr;

bool Open(const SourceValue* values, SourceVideo* result, char* message, int messageSize) {
    for (const auto& range : kRanges) {
        const SourceValue& value = values[range.parameter];
        if (!value.given || (value.whole >= 0 && value.whole <= range.highest)) continue;
        std::snprintf(message, static_cast<std::size_t>(messageSize), "%s", range.message);
        return false;
    }
    const SourceSurface surface = values[Color].given ? kSurfaces[values[Color].whole] : SourceAsStored;
    return containers->open(values[File].text, surface, result, message, messageSize);
}

}  // namespace

bool RegisterSources(SourceHost* host) {
    if (host->version != kSourceInterfaceVersion) return false;
    containers = host->containers;
    const SourceFunction function = {"QTInput", kParameters,      std::size(kParameters),
                                     Open,      containers->read, containers->close};
    host->add(host, &function);
    return true;
}
