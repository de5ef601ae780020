#include <iterator>

#include "avs_plugins/clip_export.h"
#include "platform/script_host/container_clip.h"

/// SOURCE_FUNCTION("file"): the video of every container, in the chroma form that it is stored in. The libraries that
/// are built of this file differ by their function's name.

namespace {

constexpr SourceParameter kParameters[] = {{"file", SourceFile, true}};

ScriptResult Open(const SourceValue* values) {
    return OpenContainerClip(values[0].text, MediaFile::Container::Any, std::nullopt);
}

constexpr SourceFunction kFunction = {SOURCE_FUNCTION, kParameters, std::size(kParameters),
                                      OpenClip<Open>,  ReadClip,    CloseClip};

}  // namespace

bool RegisterSources(SourceHost* host) {
    return RegisterSource(host, kFunction);
}
