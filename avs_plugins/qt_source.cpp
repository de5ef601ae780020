#include <iterator>

#include "avs_plugins/clip_export.h"
#include "platform/script_host/container_clip.h"

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

bool IsWithin(const SourceValue& value, int lowest, int highest) {
    return !value.given || (value.whole >= lowest && value.whole <= highest);
}

std::optional<Surface> SurfaceOf(const SourceValue& color) {
    if (!color.given || color.whole == 2) return std::nullopt;
    return color.whole == 0 ? Surface::RGB24 : Surface::YUY2;
}

ScriptResult Open(const SourceValue* values) {
    if (!IsWithin(values[Color], 0, 2)) return {nullptr, "color takes 0 (RGB24), 1 (YUY2) or 2 (as stored)"};
    if (!IsWithin(values[Quality], 0, 100)) return {nullptr, "quality takes 0 to 100"};
    if (!IsWithin(values[Mode], 0, 1)) return {nullptr, "mode takes 0 or 1"};
    return OpenContainerClip(values[File].text, MediaFile::Container::Any, SurfaceOf(values[Color]));
}

constexpr SourceFunction kFunction = {"QTInput",      kParameters, std::size(kParameters),
                                      OpenClip<Open>, ReadClip,    CloseClip};

}  // namespace

bool RegisterSources(SourceHost* host) {
    return RegisterSource(host, kFunction);
}
