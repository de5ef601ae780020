#include "report/frames/frame_reader.h"

#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

#include "platform/loose_threads.h"
#include "video/display_picture.h"

namespace {

constexpr const wchar_t* kCantBeRead = L"The frame can't be read";

std::wstring ErrorText(rkIVideoSource& source, int code) {
    std::array<wchar_t, 512> text{};
    source.GetErrorText(code, text.data(), static_cast<int>(text.size()));
    return text[0] != 0 ? text.data() : kCantBeRead;
}

std::unique_ptr<rkIVideoSource> Open(const FileRecord& record) {
    try {
        return record.OpenSource(true);
    } catch (const std::exception&) {  // a frame too large for memory, or for its container
        return nullptr;
    }
}

}  // namespace

/// All that the thread uses, from `Run` to its end.
class FrameReader::Work {
public:
    Work(std::map<int, FileRecord> files, Sources open, int matrix, Receiver resultReceiver,
         OpenedReceiver openedReceiver)
        : toOpen(std::move(files)),
          sources(std::move(open)),
          yuvTable(matrix),
          receiver(std::move(resultReceiver)),
          opened(std::move(openedReceiver)) {}

    void Run();

    // For the owner's thread.
    void Request(int file, int frame);
    void End();

private:
    struct Asked {
        int file = 0;
        int frame = 0;
    };

    bool IsEnding();
    void OpenFiles();
    void TellOpened();
    std::optional<Asked> WaitForRequest();
    void Deliver(const Asked& asked);
    std::wstring MakePicture(const Asked& asked);

    std::map<int, FileRecord> toOpen;  // the reader's thread's, as all below up to the mutexes
    Sources sources;
    const int yuvTable;
    rkVideoImage image;    // as read
    rkVideoImage scratch;  // of the conversion
    rkVideoImage picture;  // as delivered

    std::mutex receiverMutex;  // held while a receiver is called; both are null at the end
    Receiver receiver;
    OpenedReceiver opened;

    std::mutex mutex;  // of the two below
    std::optional<Asked> pending;
    bool isEnding = false;
    std::condition_variable changed;
};

void FrameReader::Work::Request(int file, int frame) {
    {
        const std::lock_guard lock(mutex);
        pending = {file, frame};
    }
    changed.notify_one();
}

void FrameReader::Work::End() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_one();
    const std::lock_guard lock(receiverMutex);
    receiver = nullptr;
    opened = nullptr;
}

void FrameReader::Work::Run() {
    OpenFiles();
    TellOpened();
    while (const auto asked = WaitForRequest()) Deliver(*asked);
    for (const auto& [file, source] : sources) source->Close();
    sources.clear();
}

bool FrameReader::Work::IsEnding() {
    const std::lock_guard lock(mutex);
    return isEnding;
}

void FrameReader::Work::OpenFiles() {
    for (const auto& [file, record] : toOpen) {
        if (IsEnding()) return;
        if (auto source = Open(record)) sources[file] = std::move(source);
    }
}

void FrameReader::Work::TellOpened() {
    std::vector<OpenedFile> files;
    for (const auto& [file, source] : sources)
        files.push_back({file, source->GetWidth(), source->GetHeight()});
    const std::lock_guard lock(receiverMutex);
    if (opened) opened(files);
}

/// None at the end.
std::optional<FrameReader::Work::Asked> FrameReader::Work::WaitForRequest() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return isEnding || pending.has_value(); });
    if (isEnding) return std::nullopt;
    return std::exchange(pending, std::nullopt);
}

void FrameReader::Work::Deliver(const Asked& asked) {
    Result result = {asked.file, asked.frame, {}, nullptr};
    try {
        result.error = MakePicture(asked);
        if (result.error.empty()) result.picture = &picture;
    } catch (const std::bad_alloc&) {
        result.error = L"There isn't enough memory for the frame";
    } catch (const std::exception&) {
        result.error = kCantBeRead;
    }
    const std::lock_guard lock(receiverMutex);
    if (receiver) receiver(result);
}

/// The reason for a failure, otherwise empty.
std::wstring FrameReader::Work::MakePicture(const Asked& asked) {
    const auto found = sources.find(asked.file);
    if (found == sources.end()) return L"The file isn't open";
    rkIVideoSource& source = *found->second;
    if (const int code = source.ReadFrameImage(image, asked.frame); code != 0) return ErrorText(source, code);
    if (!MakeDisplayPicture(image, yuvTable, scratch, picture))
        return L"Frames of this layout can't be shown";
    return {};
}

FrameReader::FrameReader(Sources sources, int yuvTable, Receiver receiver)
    : work(std::make_shared<Work>(std::map<int, FileRecord>(), std::move(sources), yuvTable,
                                  std::move(receiver), nullptr)) {
    StartLooseThread([share = work] { share->Run(); });
}

FrameReader::FrameReader(std::map<int, FileRecord> files, int yuvTable, Receiver receiver,
                         OpenedReceiver opened)
    : work(std::make_shared<Work>(std::move(files), Sources(), yuvTable, std::move(receiver),
                                  std::move(opened))) {
    StartLooseThread([share = work] { share->Run(); });
}

FrameReader::~FrameReader() {
    work->End();
}

void FrameReader::Request(int file, int frame) {
    work->Request(file, frame);
}
