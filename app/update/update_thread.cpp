#include "app/update/update_thread.h"

#include "platform/qt/message_box.h"

#include <condition_variable>
#include <optional>
#include <system_error>

/// One answer, for the thread that waits for it. The first one counts.
class UpdateThread::Answer {
public:
    void Give(bool given) {
        const std::lock_guard lock(mutex);
        if (!value) value = given;
        isGiven.notify_all();
    }

    bool Wait() {
        std::unique_lock lock(mutex);
        isGiven.wait(lock, [this] { return value.has_value(); });
        return *value;
    }

private:
    std::mutex mutex;
    std::condition_variable isGiven;
    std::optional<bool> value;
};

UpdateThread::UpdateThread(CAutoUpdater& updater, UpdateCalls calls)
    : updater(updater), calls(std::move(calls)) {
    connect(this, &UpdateThread::Posted, this, &UpdateThread::TakePosted, Qt::QueuedConnection);
}

UpdateThread::~UpdateThread() {
    updater.Cancel();
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        if (pending) pending->Give(false);
    }
    if (thread.joinable()) thread.join();
}

void UpdateThread::Start(const std::string& baseUrl) {
    try {
        thread = std::thread([this, baseUrl] { RunUpdate(updater, *this, baseUrl); });
    } catch (const std::system_error&) {
        // The next start looks again.
    }
}

bool UpdateThread::Ask(const Question& question) {
    const auto answer = std::make_shared<Answer>();
    {
        const std::lock_guard lock(mutex);
        if (isEnding) return false;
        pending = answer;
    }
    // With the end of this object a question that wasn't asked yet goes; the destructor answers it.
    Post([question, answer] { question(answer); });
    return answer->Wait();
}

void UpdateThread::Post(std::function<void()> call) {
    {
        const std::lock_guard lock(mutex);
        posted = std::move(call);
    }
    emit Posted();
}

void UpdateThread::TakePosted() {
    std::function<void()> call;
    {
        const std::lock_guard lock(mutex);
        call.swap(posted);
    }
    if (call) call();
}

bool UpdateThread::AskYesNo(const std::wstring& title, const std::wstring& text) {
    return Ask([title, text](const std::shared_ptr<Answer>& answer) {
        answer->Give(::AskYesNo(nullptr, QMessageBox::Question, title, text));
    });
}

void UpdateThread::ShowWarning(const std::wstring& title, const std::wstring& text) {
    Ask([title, text](const std::shared_ptr<Answer>& answer) {
        ShowMessage(nullptr, QMessageBox::Warning, title, text);
        answer->Give(true);
    });
}

bool UpdateThread::EndWindows() {
    return Ask([this](const std::shared_ptr<Answer>& answer) {
        calls.endWindowsAndThen([answer] { answer->Give(true); });
    });
}

void UpdateThread::Restart() {
    Post(calls.restart);
}
