#include "update/update_flow.h"

namespace {

constexpr const wchar_t* kAvailableTitle = L"Update is available";
constexpr const wchar_t* kAvailableText =
    L"An update of Tolvane is now available. Do you want to download update now? "
    L"(It will be downloaded in the background)";
constexpr const wchar_t* kCompleteTitle = L"Download completed";
constexpr const wchar_t* kCompleteText = L"Download complete! Restart Tolvane now?";
constexpr const wchar_t* kErrorTitle = L"Download error";
constexpr const wchar_t* kConnectionText = L"Internet connection error. Check for the internet connection.";
constexpr const wchar_t* kFileText =
    L"File download error. Check for internet connection, administrator rights and free space on disk.";
constexpr const wchar_t* kLocalText =
    L"File management error. Check for administrator rights and for file consistency.";

const wchar_t* ErrorText(DownloadResult result) {
    switch (result) {
        case DownloadResult::Success:
            break;
        case DownloadResult::ListNotOpened:
        case DownloadResult::ListNotRead:
            return kConnectionText;
        case DownloadResult::FileFailed:
            return kFileText;
        case DownloadResult::LocalFailed:
            return kLocalText;
    }
    return L"";
}

void InstallAndRestart(CAutoUpdater& updater, IUpdateQuestions& questions) {
    if (!updater.IsUpdateDownloaded()) {  // another instance has installed it or begun it anew
        questions.ShowWarning(kErrorTitle, kLocalText);
        return;
    }
    if (!questions.EndWindows()) return;  // the next start installs it
    if (updater.InstallUpdate() == InstallResult::SetAside) {
        const UpdateMessage failure = InstallFailure(updater);
        questions.ShowWarning(failure.title, failure.text);
    }
    questions.Restart();
}

}  // namespace

void RunUpdate(CAutoUpdater& updater, IUpdateQuestions& questions, const std::string& baseUrl) {
    if (!updater.IsConnected() || updater.CheckForUpdate(baseUrl) != CheckResult::Newer) return;
    if (updater.IsCancelled() || !questions.AskYesNo(kAvailableTitle, kAvailableText)) return;

    const DownloadResult result = updater.DownloadUpdate(baseUrl);
    if (updater.IsCancelled()) return;
    if (result != DownloadResult::Success) {
        questions.ShowWarning(kErrorTitle, ErrorText(result));
    } else if (questions.AskYesNo(kCompleteTitle, kCompleteText)) {
        InstallAndRestart(updater, questions);
    }
}

StartAction InstallAtStart(CAutoUpdater& updater) {
    if (!updater.IsUpdateDownloaded()) return StartAction::GoOn;
    switch (updater.InstallUpdate()) {
        case InstallResult::Installed:
        case InstallResult::TryAgain:
            return StartAction::Restart;
        case InstallResult::SetAside:
            return StartAction::TellAndGoOn;
        case InstallResult::NotNow:
            break;
    }
    return StartAction::GoOn;
}

UpdateMessage InstallFailure(const CAutoUpdater& updater) {
    return {L"Update error",
            L"The downloaded update could not be installed. "
            L"Check for administrator rights and free space on disk, then download it again. "
            L"Its files are in \"" +
                updater.FailedDownloadPath() + L"\"."};
}
