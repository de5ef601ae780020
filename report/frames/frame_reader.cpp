#include "report/frames/frame_reader.h"

#include <array>
#include <exception>
#include <utility>

#include "video/display_picture.h"

namespace {

std::wstring ErrorText(rkIVideoSource& source, int code) {
    std::array<wchar_t, 512> text{};
    source.GetErrorText(code, text.data(), static_cast<int>(text.size()));
    return text[0] != 0 ? text.data() : L"The frame can't be read";
}

/// Files are opened one at a time in the whole program: scripts and codecs bring libraries that aren't made for more.
std::mutex& OpeningMutex() {
    static std::mutex mutex;
    return mutex;
}

std::unique_ptr<rkIVideoSource> Open(const FileRecord& record) {
    const std::lock_guard lock(OpeningMutex());
    try {
        return record.OpenSource(true);
    } catch (const std::exception&) {  // a frame too large for memory, or for its container
        return nullptr;
    }
}

}  // namespace

FrameReader::FrameReader(Sources openSources, int matrix, Receiver resultReceiver)
    : sources(std::move(openSources)),
      yuvTable(matrix),
      receiver(std::move(resultReceiver)),
      thread([this] { Run(); }) {}

FrameReader::FrameReader(std::map<int, FileRecord> files, int matrix, Receiver resultReceiver,
                         OpenedReceiver openedReceiver)
    : toOpen(std::move(files)),
      yuvTable(matrix),
      receiver(std::move(resultReceiver)),
      opened(std::move(openedReceiver)),
      thread([this] { Run(); }) {}

FrameReader::~FrameReader() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_one();
    thread.join();
}

void FrameReader::Request(int file, int frame) {
    {
        const std::lock_guard lock(mutex);
        pending = {file, frame};
    }
    changed.notify_one();
}

void FrameReader::Run() {
    if (OpenFiles() && opened) {
        std::vector<OpenedFile> files;
        for (const auto& [file, source] : sources)
            files.push_back({file, source->GetWidth(), source->GetHeight(), source->GetFrameCount()});
        opened(files);
    }

    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return isEnding || pending.has_value(); });
        if (isEnding) break;
        const Asked asked = *pending;
        pending.reset();
        lock.unlock();
        Deliver(asked);
        lock.lock();
    }
    lock.unlock();
    for (const auto& [file, source] : sources) source->Close();
    sources.clear();
}

/// False if the reader ends before all files were tried.
bool FrameReader::OpenFiles() {
    for (const auto& [file, record] : toOpen) {
        {
            const std::lock_guard lock(mutex);
            if (isEnding) return false;
        }
        if (auto source = Open(record)) sources[file] = std::move(source);
    }
    return true;
}

void FrameReader::Deliver(const Asked& asked) {
    Result result = {asked.file, asked.frame, {}, nullptr};
    try {
        result.error = MakePicture(asked);
        if (result.error.empty()) result.picture = &picture;
    } catch (const std::exception&) {  // nothing else is thrown here
        result.error = L"There isn't enough memory for the frame";
    }
    receiver(result);
}

/// The reason for a failure, otherwise empty.
std::wstring FrameReader::MakePicture(const Asked& asked) {
    const auto found = sources.find(asked.file);
    if (found == sources.end()) return L"The file isn't open";
    rkIVideoSource& source = *found->second;
    if (const int code = source.ReadFrameImage(image, asked.frame); code != 0) return ErrorText(source, code);
    if (!MakeDisplayPicture(image, yuvTable, scratch, picture))
        return L"Frames of this layout can't be shown";
    return {};
}
