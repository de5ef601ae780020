#include "update/auto_updater.h"

#include "platform/http/http_address.h"
#include "platform/program_directory.h"
#include "platform/program_version.h"
#include "platform/text.h"
#include "update/install.h"
#include "update/staging.h"
#include "update/staging_format.h"
#include "update/version.h"

#include <filesystem>
#include <system_error>

namespace {

constexpr const char* kClientName = "AutoUpdateAgent";
constexpr mode_t kStagedMode = 0666;
constexpr std::chrono::seconds kLockPatience{5};

/// Passes bytes on to a file in blocks.
class BlockWriter {
public:
    BlockWriter(NewFile& file, std::atomic<std::int64_t>& blocks) : file(file), blocks(blocks) {}

    bool Write(std::string_view bytes) {
        while (!bytes.empty()) {
            const std::string_view part = bytes.substr(0, kBlockBytes - block.size());
            block += part;
            bytes.remove_prefix(part.size());
            if (block.size() == kBlockBytes && !Flush()) return false;
        }
        return true;
    }

    bool Flush() {
        if (block.empty()) return true;
        ++blocks;
        const bool isWritten = file.Write(block);
        block.clear();
        return isWritten;
    }

private:
    NewFile& file;
    std::atomic<std::int64_t>& blocks;
    std::string block;
};

std::string SystemTemporaryDirectory() {
    std::error_code error;
    const auto directory = std::filesystem::temp_directory_path(error);
    return error ? "/tmp" : directory.native();
}

std::string Address(const std::string& baseUrl, std::string_view path) {
    return baseUrl + (baseUrl.ends_with('/') ? "" : "/") + EncodePath(path);
}

}  // namespace

UpdaterSettings::UpdaterSettings() : programPath(ProgramPath()), version(ProgramVersion()) {}

CAutoUpdater::CAutoUpdater(UpdaterSettings settings)
    : settings(std::move(settings)), session(kClientName, this->settings.http) {}

bool CAutoUpdater::IsConnected() const {
    return session.IsOpen() && !session.IsCancelled() && settings.isOnline();
}

std::string CAutoUpdater::ProgramDirectory() const {
    const std::string path = ToUtf8(settings.programPath);
    return path.substr(0, path.rfind('/') + 1);
}

std::wstring CAutoUpdater::FailedDownloadPath() const {
    const FileTree program(ProgramDirectory(), settings.fileHook);
    const bool isSetAside = program.Look(kStaging).kind == FileTree::Kind::Missing;
    return FromUtf8(ProgramDirectory() + (isSetAside ? kSetAside : kStaging));
}

/// Takes as much as `maxBytes`; `TooLong` if there is more.
HttpEnd CAutoUpdater::FetchText(const std::string& url, std::size_t maxBytes, std::string& text) {
    return session.Get(url, maxBytes, [&](std::string_view bytes) {
        text += bytes;
        return true;
    });
}

CheckResult CAutoUpdater::CheckForUpdate(const std::string& baseUrl) {
    if (!IsConnected()) return CheckResult::NoConnection;
    std::string text;
    const HttpEnd end = FetchText(Address(baseUrl, kServerVersion), kMaxVersionBytes, text);
    if (end == HttpEnd::NotOpened) return CheckResult::NotOpened;
    if (end == HttpEnd::ReadFailed) return CheckResult::NotRead;  // "3.0.0.1" may be the start of "3.0.0.12"

    const auto newest = ParseVersion(text);
    if (!newest) return CheckResult::NotRead;
    const auto own = ParseVersion(settings.version);
    if (!own || *own == Version{}) return CheckResult::NoOwnVersion;
    return *own < *newest ? CheckResult::Newer : CheckResult::UpToDate;
}

DownloadResult CAutoUpdater::DownloadUpdate(const std::string& baseUrl) {
    progress = 0;
    std::string listText;
    const HttpEnd end = FetchText(Address(baseUrl, kServerList), kMaxListBytes, listText);
    if (end == HttpEnd::NotOpened) return DownloadResult::ListNotOpened;
    if (end != HttpEnd::Complete) return DownloadResult::ListNotRead;
    const auto list = ParseUpdateList(listText);
    if (!list) return DownloadResult::ListNotRead;
    totalSize = static_cast<std::int64_t>(list->totalSize);

    FileTree program(ProgramDirectory(), settings.fileHook);
    if (!program.IsOpen() || !program.Lock(std::chrono::milliseconds(0))) return DownloadResult::LocalFailed;
    if (!BeginStaging(program)) return DownloadResult::LocalFailed;
    for (const UpdateEntry& entry : list->entries)
        if (!FetchFile(Address(baseUrl, kServerFiles + entry.serverName), entry, program))
            return DownloadResult::FileFailed;
    return CompleteStaging(program, listText) ? DownloadResult::Success : DownloadResult::LocalFailed;
}

bool CAutoUpdater::FetchFile(const std::string& url, const UpdateEntry& entry, FileTree& program) {
    const std::string name = StagedName(entry);
    if (!program.MakeDirectoriesFor(name)) return false;
    NewFile file = program.Create(name, kStagedMode);
    if (!file.IsOpen()) return false;
    BlockWriter writer(file, progress);
    std::uint64_t received = 0;
    const HttpEnd end = session.Get(url, entry.size, [&](std::string_view bytes) {
        received += bytes.size();
        return writer.Write(bytes);
    });
    return end == HttpEnd::Complete && received == entry.size && writer.Flush() && file.Finish() &&
           program.SyncDirectoryOf(name);
}

bool CAutoUpdater::IsUpdateDownloaded() const {
    return IsStagingComplete(FileTree(ProgramDirectory(), settings.fileHook));
}

bool CAutoUpdater::InstallLocked(FileTree& program) const {
    const auto list = ReadStagedList(program);
    FileTree temporary(SystemTemporaryDirectory(), settings.fileHook);
    return list &&
           InstallStagedFiles(program, temporary, *list, std::wstring(FileNamePart(settings.programPath))) &&
           EndStaging(program);
}

InstallResult CAutoUpdater::InstallUpdate() {
    FileTree program(ProgramDirectory(), settings.fileHook);
    if (!program.Lock(kLockPatience)) return InstallResult::NotNow;
    // Another process may have been faster.
    if (!IsStagingComplete(program) || InstallLocked(program)) return InstallResult::Installed;
    if (MarkTried(program)) return InstallResult::TryAgain;
    return SetStagingAside(program) ? InstallResult::SetAside : InstallResult::NotNow;
}
