#include <iterator>

#include "avs_plugins/clip_export.h"
#include "avs_plugins/raw_clip.h"

/// RawSource("file", width, height, "format"): a file of uncompressed frames, see `OpenRawClip`.

namespace {

enum Parameter { File, Width, Height, Format };
constexpr SourceParameter kParameters[] = {{"file", SourceFile, true},
                                           {"width", SourceWhole, true},
                                           {"height", SourceWhole, true},
                                           {"format", SourceText, true}};

ScriptResult Open(const SourceValue* values) {
    return OpenRawClip(values[File].text, values[Width].whole, values[Height].whole, values[Format].text);
}

constexpr SourceFunction kFunction = {"RawSource",    kParameters, std::size(kParameters),
                                      OpenClip<Open>, ReadClip,    CloseClip};

}  // namespace

bool RegisterSources(SourceHost* host) {
    return RegisterSource(host, kFunction);
}
