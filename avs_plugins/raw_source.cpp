#include <tolvane/source_plugin.h>

#include <cstdio>
#include <iterator>
#include <memory>

#include "avs_plugins/raw_video.h"

/// RawSource("file", width, height, "format"): a file of uncompressed frames, see `RawVideo`; 25 frames a
/// second.

namespace {

enum Parameter { File, Width, Height, Format };
constexpr SourceParameter kParameters[] = {{"file", SourceFile, true},
                                           {"width", SourceWhole, true},
                                           {"height", SourceWhole, true},
                                           {"format", SourceText, true}};

/// Throws std::bad_alloc.
std::string OpenRaw(const SourceValue* values, SourceVideo& result) {
    const RawFormat* format = FindRawFormat(values[Format].text);
    if (format == nullptr) {
        return "format takes YV12, I420, Y8, UYVY, YUYV, VYUY or YVYU; it got \"" +
               std::string(values[Format].text) + "\"";
    }
    auto video = std::make_unique<RawVideo>();
    std::string error = video->Open(values[File].text, values[Width].whole, values[Height].whole, *format);
    if (!error.empty()) return error;
    result.width = values[Width].whole;
    result.height = values[Height].whole;
    result.surface = format->isPlanar ? SourceYV12 : SourceYUY2;
    result.frameCount = video->FrameCount();
    result.rate = 25;
    result.scale = 1;
    result.description = "";
    result.video = video.release();
    return {};
}

bool Open(const SourceValue* values, SourceVideo* result, char* message, int messageSize) {
    std::string error;
    try {
        error = OpenRaw(values, *result);
    } catch (const std::bad_alloc&) {
        std::snprintf(message, static_cast<std::size_t>(messageSize), "there isn't enough memory");
        return false;
    }
    std::snprintf(message, static_cast<std::size_t>(messageSize), "%s", error.c_str());
    return error.empty();
}

bool Read(void* video, int frame, unsigned char* buffer) {
    return static_cast<RawVideo*>(video)->ReadFrame(frame, buffer);
}

void Close(void* video) {
    delete static_cast<RawVideo*>(video);
}

constexpr SourceFunction kFunction = {"RawSource", kParameters, std::size(kParameters), Open, Read, Close};

}  // namespace

bool RegisterSources(SourceHost* host) {
    if (host->version != kSourceInterfaceVersion) return false;
    host->add(host, &kFunction);
    return true;
}
