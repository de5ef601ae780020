#pragma once

#include "update/auto_updater.h"

#include <string>

/// What the flow of an update asks of the rest of the program. Called from the thread that the flow runs on.
class IUpdateQuestions {
public:
    /// With "Yes" and "No" over the active window; "No" if the program ends meanwhile.
    virtual bool AskYesNo(const std::wstring& title, const std::wstring& text) = 0;
    /// With the icon for warnings and "OK".
    virtual void ShowWarning(const std::wstring& title, const std::wstring& text) = 0;

    /// Closes the program's windows without a question, so that nothing begins any more that needs the old
    /// files. A measurement stops first and keeps what it has, and what the user chose is saved. Returns when
    /// that is done; false if the program ends meanwhile.
    virtual bool EndWindows() = 0;
    /// Starts `CAutoUpdater::OwnPath` in place of this process. May return before that has happened.
    virtual void Restart() = 0;

    virtual ~IUpdateQuestions() = default;
};

/// The background check: looks for a newer version; if the user wants it, downloads it and, if the user wants
/// that too, installs it and restarts. Says nothing unless there is a newer version. Ends soon after
/// `CAutoUpdater::Cancel`, in silence.
void RunUpdate(CAutoUpdater& updater, IUpdateQuestions& questions, const std::string& baseUrl);

enum class StartAction {
    GoOn,         // there is nothing to install, or somebody else does it
    Restart,      // start `CAutoUpdater::OwnPath` in place of this process
    TellAndGoOn,  // show `InstallFailure`
};

/// The first step of a start: installs what was downloaded earlier. Never asks for a second restart for the
/// same download without having come further.
StartAction InstallAtStart(CAutoUpdater& updater);

struct UpdateMessage {
    std::wstring title;
    std::wstring text;
};

/// A warning: a download could not be installed.
UpdateMessage InstallFailure(const CAutoUpdater& updater);
