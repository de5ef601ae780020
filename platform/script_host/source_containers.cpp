#include "platform/script_host/source_containers.h"

#include <algorithm>
#include <new>

#include "platform/script_host/container_clip.h"

namespace {

constexpr struct {
    SourceSurface asked;
    Surface surface;
} kSurfaces[] = {{SourceYV12, Surface::YV12}, {SourceYUY2, Surface::YUY2}, {SourceRGB24, Surface::RGB24}};

ScriptResult OpenClip(const char* path, SourceSurface asked) try {
    std::optional<Surface> surface;
    for (const auto& entry : kSurfaces) {
        if (entry.asked == asked) surface = entry.surface;
    }
    return OpenContainerClip(path, MediaFile::Container::Any, surface);
} catch (const NoCodecLibrary& error) {
    return {nullptr, error.what()};
} catch (const std::bad_alloc&) {
    return {nullptr, "there isn't enough memory"};
}

bool Open(const char* path, SourceSurface surface, SourceVideo* result, char* message, int messageSize) {
    ScriptResult opened = OpenClip(path, surface);
    if (opened.clip == nullptr) {
        const auto length = std::min(opened.error.size(), static_cast<std::size_t>(messageSize) - 1);
        std::copy_n(opened.error.begin(), length, message);
        message[length] = 0;
        return false;
    }
    const Clip::Properties& properties = opened.clip->GetProperties();
    result->width = properties.width;
    result->height = properties.height;
    result->surface = std::find_if(std::begin(kSurfaces), std::end(kSurfaces), [&](const auto& entry) {
                          return entry.surface == properties.surface;
                      })->asked;
    result->frameCount = properties.frameCount;
    result->rate = properties.rate;
    result->scale = properties.scale;
    result->description = properties.description.c_str();
    result->video = opened.clip.release();
    return true;
}

bool Read(void* video, int frame, unsigned char* buffer) try {
    return static_cast<Clip*>(video)->ReadFrame(frame, buffer);
} catch (const std::bad_alloc&) {
    return false;
}

void Close(void* video) {
    delete static_cast<Clip*>(video);
}

}  // namespace

const SourceContainers& GetSourceContainers() {
    static constexpr SourceContainers kContainers = {Open, Read, Close};
    return kContainers;
}
