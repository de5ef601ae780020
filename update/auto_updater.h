#pragma once

#include "platform/http/http_session.h"
#include "platform/http/network_state.h"
#include "update/file_tree.h"
#include "update/update_list.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

enum class CheckResult {
    NoConnection = 1,
    NotOpened = 2,
    NotRead = 3,  // nothing, or no version
    NoOwnVersion = 5,
    UpToDate = 6,
    Newer = 7,
};

enum class DownloadResult {
    Success = 0,
    ListNotOpened = 2,
    ListNotRead = 3,  // also: it can't be true, or asks for files outside the program's directory
    FileFailed = 4,   // also: it hasn't the size of the list
    LocalFailed = 8,  // also: another process is at it
};

enum class InstallResult {
    Installed,
    TryAgain,  // failed for the first time; the download stays for the next start
    SetAside,  // failed again; the download is out of the way, and the user is to be told
    NotNow,    // another process is at it and didn't come to an end, or this user may change nothing here
};

/// What an updater stands on. The defaults are the running program's.
struct UpdaterSettings {
    UpdaterSettings();

    std::wstring programPath;
    std::string version;
    HttpOptions http;
    std::function<bool()> isOnline = HasNetwork;
    FileHook fileHook;  // for tests
};

/// All that the program does on its own update server, and with what comes from there. It trusts nothing of
/// it: names that leave the program's directory, and sizes that don't match, are refused before a file is
/// written.
///
/// One object a process. Its calls come one at a time, from any thread; `Cancel` comes at any time.
class CAutoUpdater {
public:
    explicit CAutoUpdater(UpdaterSettings settings = {});
    virtual ~CAutoUpdater() = default;

    /// Whether the system reports a network. Doesn't try it.
    bool IsConnected() const;

    /// `baseUrl` is the directory that the server's `update/` lies in; see `IsFetchable`.
    CheckResult CheckForUpdate(const std::string& baseUrl);
    /// Fetches the newest version to the staging directory beside the program. What is there isn't touched
    /// before the list has been found good.
    DownloadResult DownloadUpdate(const std::string& baseUrl);

    /// Whether a complete download waits to be installed.
    bool IsUpdateDownloaded() const;
    /// Installs it; see `InstallStagedFiles`. To be called only if there is one.
    InstallResult InstallUpdate();

    /// The running program's file, as it was named when the updater was made: the one to start after an
    /// install.
    std::wstring OwnPath() const { return settings.programPath; }
    /// Where a download lies that couldn't be installed: set aside, or, if that was impossible, where it was.
    std::wstring FailedDownloadPath() const;

    /// Ends what goes on on the network, and all that would come. For the end of the program.
    void Cancel() { session.Cancel(); }
    bool IsCancelled() const { return session.IsCancelled(); }

    /// Of the last download; for any thread.
    std::int64_t TotalSize() const { return totalSize; }
    std::int64_t Progress() const { return progress; }

private:
    std::string ProgramDirectory() const;
    HttpEnd FetchText(const std::string& url, std::size_t maxBytes, std::string& text);
    bool FetchFile(const std::string& url, const UpdateEntry& entry, FileTree& program);
    bool InstallLocked(FileTree& program) const;

    const UpdaterSettings settings;
    HttpSession session;
    std::atomic<std::int64_t> totalSize{0};  // bytes
    std::atomic<std::int64_t> progress{0};   // blocks of `kBlockBytes`, the last of each file as it comes
};
