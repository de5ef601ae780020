#include "app/update/restart.h"

#include "platform/qt/message_box.h"
#include "platform/text.h"
#include "update/update_flow.h"

#include <unistd.h>

#include <linux/close_range.h>

void InstallDownloadedUpdate(CAutoUpdater& updater) {
    const StartAction action = InstallAtStart(updater);
    if (action == StartAction::Restart) RestartProgram(updater.OwnPath());
    if (action != StartAction::TellAndGoOn) return;
    const UpdateMessage failure = InstallFailure(updater);
    ShowMessage(nullptr, QMessageBox::Warning, failure.title, failure.text);
}

void RestartProgram(const std::wstring& program) {
    constexpr unsigned int kFirstPrivate = 3;
    // Libraries may have opened some without the flag. A kernel that can't do it leaves them open, which does
    // no harm.
    close_range(kFirstPrivate, ~0U, CLOSE_RANGE_CLOEXEC);
    std::string path = ToUtf8(program);
    char* arguments[] = {path.data(), nullptr};
    execv(path.c_str(), arguments);
}
