#include "avs_plugins/clip_export.h"

#include <algorithm>

namespace {

SourceSurface SurfaceOf(const Clip& clip) {
    switch (clip.GetProperties().surface) {
        case Surface::YV12:
            return SourceYV12;
        case Surface::YUY2:
            return SourceYUY2;
        case Surface::RGB24:
            break;
    }
    return SourceRGB24;
}

}  // namespace

bool HandOverClip(ScriptResult opened, SourceVideo* result, char* message, int messageSize) {
    if (opened.clip == nullptr) {
        const auto length = std::min(opened.error.size(), static_cast<std::size_t>(messageSize) - 1);
        std::copy_n(opened.error.begin(), length, message);
        message[length] = 0;
        return false;
    }
    const Clip::Properties& properties = opened.clip->GetProperties();
    result->width = properties.width;
    result->height = properties.height;
    result->surface = SurfaceOf(*opened.clip);
    result->frameCount = properties.frameCount;
    result->rate = properties.rate;
    result->scale = properties.scale;
    result->description = properties.description.c_str();
    result->video = opened.clip.release();
    return true;
}

bool ReadClip(void* video, int frame, unsigned char* buffer) try {
    return static_cast<Clip*>(video)->ReadFrame(frame, buffer);
} catch (...) {
    return false;
}

void CloseClip(void* video) {
    delete static_cast<Clip*>(video);
}

bool RegisterSource(SourceHost* host, const SourceFunction& function) {
    if (host->version != kSourceInterfaceVersion) return false;
    host->add(host, &function);
    return true;
}
