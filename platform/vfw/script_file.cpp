#include "platform/vfw/script_file.h"

#include <iterator>
#include <limits>
#include <utility>

#include "platform/file.h"
#include "platform/text.h"
#include "platform/vfw/surface_format.h"

namespace {

AVISTREAMINFOW InfoOf(const Clip::Properties& clip) {
    const BITMAPINFOHEADER format = FormatOf(clip.surface, clip.width, clip.height);
    AVISTREAMINFOW info = {};
    info.fccType = kFccVideo;
    info.fccHandler = format.biCompression != 0 ? format.biCompression : kFccDib;
    info.dwScale = clip.scale;
    info.dwRate = clip.rate;
    info.dwLength = static_cast<std::uint32_t>(clip.frameCount);
    info.dwSuggestedBufferSize = format.biSizeImage;
    info.dwQuality = 0xFFFFFFFF;  // the default
    info.rcFrame = {0, 0, clip.width, clip.height};
    CopyText(FromUtf8(clip.description), info.szName, static_cast<int>(std::size(info.szName)));
    return info;
}

class ScriptStream : public AviStream {
public:
    ScriptStream(std::shared_ptr<AviFile> file, Clip& clip)
        : file(std::move(file)), clip(clip), info(InfoOf(clip.GetProperties())) {}

    const AVISTREAMINFOW& Info() const override { return info; }
    BITMAPINFOHEADER Format() const override {
        const Clip::Properties& properties = clip.GetProperties();
        return FormatOf(properties.surface, properties.width, properties.height);
    }
    std::size_t SampleBytes(int sample) const override {
        return sample >= 0 && sample < clip.GetProperties().frameCount ? info.dwSuggestedBufferSize : 0;
    }
    bool ReadSample(int sample, std::uint8_t* buffer) override { return clip.ReadFrame(sample, buffer); }

private:
    std::shared_ptr<AviFile> file;  // the clip is its
    Clip& clip;
    AVISTREAMINFOW info;
};

}  // namespace

std::shared_ptr<ScriptFile> ScriptFile::Open(const std::wstring& path) {
    ReadOnlyFile file;
    if (!EndsWithNoCase(path, L".avs") || !file.Open(path)) return nullptr;
    return std::shared_ptr<ScriptFile>(new ScriptFile(RunScript(path)));
}

ScriptFile::ScriptFile(ScriptResult result) : clip(std::move(result.clip)), error(std::move(result.error)) {
    if (!clip) return;
    const Clip::Properties& properties = clip->GetProperties();
    const std::size_t bytes = SurfaceBytes(properties.surface, properties.width, properties.height);
    if (bytes <= std::numeric_limits<int>::max()) return;
    error = "The clip's pictures are too large.";
    clip = nullptr;
}

std::shared_ptr<AviStream> ScriptFile::GetStream(const std::shared_ptr<AviFile>& self, int number) {
    return clip && number == 0 ? std::make_shared<ScriptStream>(self, *clip) : nullptr;
}
