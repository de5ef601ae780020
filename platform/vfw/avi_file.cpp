#include "platform/vfw/avi_file.h"

#include <algorithm>
#include <exception>

#include "platform/vfw/avi_file_base.h"
#include "platform/vfw/script_file.h"
#include "platform/vfw/written_file.h"

namespace {

constexpr int kOk = 0;
constexpr int kFailed = 1;

/// The answer to a call that gives true for success; running out of memory is a failure too.
template <typename Call>
int Answer(const Call& call) {
    try {
        return call() ? kOk : kFailed;
    } catch (const std::exception&) {
        return kFailed;
    }
}

}  // namespace

// The libraries below hold nothing for a thread.
void AVIFileInit() {}
void AVIFileExit() {}

int AVIFileOpenW(std::shared_ptr<AviFile>& file, const std::wstring& path, unsigned mode) {
    file = nullptr;
    return Answer([&] {
        if (mode == 0) file = ScriptFile::Open(path);
        if (mode == (OF_WRITE | OF_CREATE)) file = WrittenFile::Open(path);
        return file != nullptr;
    });
}

int AVIFileRelease(std::shared_ptr<AviFile>& file) {
    // With streams left the file goes on; its last owner completes it.
    const bool last = file.use_count() == 1;
    const int answer = Answer([&] { return !last || file->Complete(); });
    file = nullptr;
    return answer;
}

int AVIFileInfoW(AviFile& file, AVIFILEINFOW& info) {
    info.dwStreams = file.StreamCount();
    return kOk;
}

int AVIFileGetStream(const std::shared_ptr<AviFile>& file, std::shared_ptr<AviStream>& stream, int number) {
    stream = nullptr;
    return Answer([&] { return file && (stream = file->GetStream(file, number)); });
}

int ScriptClipError(AviFile& file, std::string* message) {
    if (file.ScriptError().empty()) return kOk;
    if (message != nullptr) *message = file.ScriptError();
    return kFailed;
}

int AVIStreamRelease(std::shared_ptr<AviStream>& stream) {
    stream = nullptr;
    return kOk;
}

int AVIStreamInfoW(AviStream& stream, AVISTREAMINFOW& info) {
    info = stream.Info();
    return kOk;
}

int AVIStreamReadFormat(AviStream& stream, int /*position*/, void* format, int& size) {
    const BITMAPINFOHEADER header = stream.Format();
    const int room = size;
    size = kBitmapFormatBytes;
    if (header.biSize == 0) return kFailed;
    if (format == nullptr) return kOk;
    if (room < kBitmapFormatBytes) return kFailed;
    StoreBitmapFormat(header, static_cast<std::uint8_t*>(format));
    return kOk;
}

int AVIStreamRead(AviStream& stream, int sample, void* buffer, int bufferSize, int& bytes) {
    bytes = static_cast<int>(stream.SampleBytes(sample));
    if (bytes == 0) return kFailed;
    if (buffer == nullptr) return kOk;
    if (bufferSize < bytes) return kFailed;
    return Answer([&] { return stream.ReadSample(sample, static_cast<std::uint8_t*>(buffer)); });
}

int AVIStreamFindSample(AviStream& stream, int sample, unsigned flags) {
    // All samples that can be read are key frames.
    if (flags != (FIND_PREV | FIND_KEY) || sample < 0) return -1;
    const auto length = static_cast<int>(stream.Info().dwLength);
    return std::min(sample, length - 1);
}

int AVIFileCreateStreamW(const std::shared_ptr<AviFile>& file, std::shared_ptr<AviStream>& stream,
                         const AVISTREAMINFOW& info) {
    stream = nullptr;
    return Answer([&] { return file && (stream = file->CreateStream(file, info)); });
}

int AVIStreamSetFormat(AviStream& stream, int position, const void* format, int size) {
    if (position != 0 || format == nullptr || size < kBitmapFormatBytes) return kFailed;
    return Answer([&] { return stream.SetFormat({static_cast<const std::uint8_t*>(format), size}); });
}

int AVIStreamWrite(AviStream& stream, int position, const void* data, std::size_t size, std::uint32_t flags) {
    const std::span<const std::uint8_t> sample(static_cast<const std::uint8_t*>(data), size);
    const bool isKey = (flags & AVIIF_KEYFRAME) != 0;
    return Answer(
        [&] { return (data != nullptr || size == 0) && stream.WriteSample(position, sample, isKey); });
}
