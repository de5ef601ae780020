#include "platform/script_host/container_clip.h"

#include "platform/media/indexed_video.h"
#include "platform/media/picture_converter.h"
#include "platform/media/picture_format.h"
#include "platform/script_host/script_text.h"
#include "platform/text.h"

namespace {

constexpr struct {
    Surface surface;
    const char* name;
} kSurfaces[] = {{Surface::YV12, "YV12"}, {Surface::YUY2, "YUY2"}, {Surface::RGB24, "RGB24"}};

const char* NameOf(Surface surface) {
    for (const auto& entry : kSurfaces) {
        if (entry.surface == surface) return entry.name;
    }
    return "";
}

/// What a user has to know of the clip; what matters most comes first, as the text may be cut.
std::string Describe(const IndexedVideo::Properties& source, Surface surface) {
    const std::string conversion = DescribeConversion(source.format, source.range, surface);
    if (!source.isCutOff) return conversion;
    return conversion.empty() ? "the file is cut off" : "the file is cut off, " + conversion;
}

class ContainerClip : public Clip {
public:
    ContainerClip(std::unique_ptr<IndexedVideo> clipVideo, Surface surface)
        : video(std::move(clipVideo)),
          converter(surface, video->GetProperties().width, video->GetProperties().height) {
        const IndexedVideo::Properties& source = video->GetProperties();
        properties.width = source.width;
        properties.height = source.height;
        properties.surface = surface;
        properties.frameCount = source.frameCount;
        properties.rate = source.rate;
        properties.scale = source.scale;
        properties.description = Describe(source, surface);
    }

    const Properties& GetProperties() const override { return properties; }
    bool ReadFrame(int frame, std::uint8_t* buffer) override {
        const AVFrame* picture = video->ReadFrame(frame);
        return picture != nullptr && converter.Convert(*picture, buffer);
    }

private:
    std::unique_ptr<IndexedVideo> video;
    PictureConverter converter;
    Properties properties;
};

}  // namespace

ScriptResult OpenContainerClip(const std::string& path, MediaFile::Container container,
                               std::optional<Surface> surface) {
    std::string error;
    std::unique_ptr<IndexedVideo> video = IndexedVideo::Open(FromUtf8(path), container, error);
    if (video == nullptr) return {nullptr, error};

    const IndexedVideo::Properties& source = video->GetProperties();
    const Surface natural = NaturalSurface(source.format, source.width, source.height);
    if (surface && !CanConvert(source.format, source.width, source.height, *surface)) {
        return {nullptr, std::string("the pictures can't be handed over as ") + NameOf(*surface) +
                             " without loss, only as " + NameOf(natural) +
                             (natural == Surface::RGB24 ? "" : " or RGB24")};
    }
    return {std::make_unique<ContainerClip>(std::move(video), surface.value_or(natural)), ""};
}

std::optional<Surface> SurfaceByName(const std::string& name) {
    for (const auto& entry : kSurfaces) {
        if (IsSameName(entry.name, name)) return entry.surface;
    }
    return std::nullopt;
}
