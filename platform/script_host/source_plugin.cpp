#include "platform/script_host/source_plugin.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "platform/dynamic_library.h"
#include "platform/program_directory.h"
#include "platform/script_host/source_containers.h"
#include "platform/text.h"

namespace {

using Library = std::shared_ptr<DynamicLibrary>;

constexpr int kMessageSize = 1024;
constexpr int kMaxParameters = 64;

/// A video that a plug-in opened.
class PluginClip : public Clip {
public:
    PluginClip(Library clipLibrary, const SourceFunction& clipFunction, const SourceVideo& source)
        : library(std::move(clipLibrary)), function(clipFunction), video(source.video) {
        properties.width = source.width;
        properties.height = source.height;
        properties.surface = static_cast<Surface>(source.surface);
        properties.frameCount = source.frameCount;
        properties.rate = source.rate;
        properties.scale = source.scale;
        if (source.description != nullptr) properties.description = source.description;
    }
    ~PluginClip() override { function.close(video); }

    const Properties& GetProperties() const override { return properties; }
    bool ReadFrame(int frame, std::uint8_t* buffer) override {
        return frame >= 0 && frame < properties.frameCount && function.read(video, frame, buffer);
    }

private:
    Library library;  // holds the functions' code
    SourceFunction function;
    void* video;
    Properties properties;
};

bool IsSound(const SourceVideo& video) {
    if (video.width < 1 || video.height < 1 || video.frameCount < 1 || video.rate == 0 || video.scale == 0)
        return false;
    switch (video.surface) {
        case SourceYV12:
            return video.width % 2 == 0 && video.height % 2 == 0;
        case SourceYUY2:
            return video.width % 2 == 0;
        case SourceRGB24:
            return true;
        case SourceAsStored:
            break;
    }
    return false;
}

ScriptResult Open(const Library& library, const SourceFunction& function,
                  const std::vector<SourceValue>& values) {
    SourceVideo video = {};
    std::array<char, kMessageSize> message = {};
    if (!function.open(values.data(), &video, message.data(), kMessageSize)) {
        message.back() = 0;
        return {nullptr, message[0] != 0 ? message.data() : "the file can't be opened"};
    }
    auto clip = std::make_unique<PluginClip>(library, function, video);
    if (!IsSound(video)) return {nullptr, "the plug-in hands over a video of impossible properties"};
    return {std::move(clip), ""};
}

bool IsSound(const SourceFunction& function) {
    const bool whole = function.name != nullptr && function.open != nullptr && function.read != nullptr &&
                       function.close != nullptr && function.parameterCount >= 0 &&
                       function.parameterCount <= kMaxParameters &&
                       (function.parameterCount == 0 || function.parameters != nullptr);
    return whole && std::all_of(function.parameters, function.parameters + function.parameterCount,
                                [](const SourceParameter& p) { return p.name != nullptr; });
}

/// Takes the functions of one plug-in.
struct Registration : SourceHost {
    Registration(Library pluginLibrary, std::vector<ScriptFunction>& all)
        : SourceHost{kSourceInterfaceVersion, Add, &GetSourceContainers()},
          library(std::move(pluginLibrary)),
          functions(all) {}

    static void Add(SourceHost* host, const SourceFunction* function) {
        auto& self = *static_cast<Registration*>(host);
        if (function == nullptr || !IsSound(*function)) return;
        const auto open = [library = self.library, copy = *function](const std::vector<SourceValue>& values) {
            return Open(library, copy, values);
        };
        self.functions.push_back(
            {function->name, {function->parameters, function->parameters + function->parameterCount}, open});
    }

    Library library;
    std::vector<ScriptFunction>& functions;
};

bool LeadsOut(const std::filesystem::path& path) {
    return path.is_absolute() || std::find(path.begin(), path.end(), "..") != path.end();
}

}  // namespace

std::wstring FindSourcePlugin(const std::string& name) {
    std::string relative = name;
    std::replace(relative.begin(), relative.end(), '\\', '/');
    if (relative.empty() || LeadsOut(relative)) return {};
    for (const std::wstring& directory : {ProgramDirectory(), WritableProgramDirectory()}) {
        std::error_code error;
        const std::string path = ToUtf8(directory) + relative;
        if (!directory.empty() && std::filesystem::is_regular_file(path, error)) return FromUtf8(path);
    }
    return {};
}

std::string LoadSourcePlugin(const std::wstring& path, std::vector<ScriptFunction>& functions) {
    const auto library = std::make_shared<DynamicLibrary>();
    if (!library->Open(path)) return "the plug-in can't be loaded";
    const auto registerSources = library->Find<bool(SourceHost*)>("RegisterSources");
    if (registerSources == nullptr) return "the file is no source plug-in";
    Registration registration(library, functions);
    if (!registerSources(&registration)) return "the plug-in is of another version than the program";
    return {};
}
