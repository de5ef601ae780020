#include "platform/script_host/builtin_sources.h"

#include "platform/script_host/container_clip.h"

namespace {

enum Parameter : std::size_t { File, Audio, PixelType };
const std::vector<SourceParameter> kParameters = {
    {"file", SourceFile, true},
    {"audio", SourceFlag, false},  // sound is never read
    {"pixel_type", SourceText, false},
};

ScriptResult OpenWithPixelType(MediaFile::Container container, const std::vector<SourceValue>& values) {
    std::optional<Surface> surface;
    if (values[PixelType].given) {
        surface = SurfaceByName(values[PixelType].text);
        if (!surface)
            return {nullptr, "pixel_type takes \"RGB24\", \"YV12\" or \"YUY2\"; it got \"" +
                                 std::string(values[PixelType].text) + "\""};
    }
    return OpenContainerClip(values[File].text, container, surface);
}

ScriptFunction Builtin(const char* name, MediaFile::Container container) {
    const auto open = [container](const std::vector<SourceValue>& values) {
        return OpenWithPixelType(container, values);
    };
    return {name, kParameters, open};
}

}  // namespace

std::vector<ScriptFunction> BuiltinSources() {
    return {Builtin("AviSource", MediaFile::Container::Avi),
            Builtin("OpenDMLSource", MediaFile::Container::Avi),
            Builtin("AviFileSource", MediaFile::Container::Avi),
            Builtin("DirectShowSource", MediaFile::Container::Any)};
}
