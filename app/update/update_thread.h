#pragma once

#include "update/update_flow.h"

#include <QObject>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

/// What an update needs of the shell. Called on the thread of the windows.
struct UpdateCalls {
    /// See `IUpdateQuestions::EndWindows`. Calls `then` when that is done, at once or later; it needn't be
    /// called if the program ends.
    std::function<void(std::function<void()> then)> endWindowsAndThen;
    std::function<void()> restart;
};

/// The background check for a newer version. Its boxes come up over whatever window is active. Made, started
/// and destroyed on the thread of the windows, which never waits for the network.
class UpdateThread : public QObject, private IUpdateQuestions {
    Q_OBJECT

public:
    /// The updater outlives the thread.
    UpdateThread(CAutoUpdater& updater, UpdateCalls calls);

    /// Cancels what goes on and waits for its end, which comes at once.
    ~UpdateThread() override;

    /// Once. Without a thread to be had there is no check.
    void Start(const std::string& baseUrl);

signals:
    void Posted();

private:
    class Answer;
    using Question = std::function<void(std::shared_ptr<Answer> answer)>;

    bool AskYesNo(const std::wstring& title, const std::wstring& text) override;
    void ShowWarning(const std::wstring& title, const std::wstring& text) override;
    bool EndWindows() override;
    void Restart() override;

    /// Has `question` asked on the thread of the windows and waits for the answer; false if the program ends
    /// meanwhile.
    bool Ask(const Question& question);
    /// Has `call` called on the thread of the windows. One at a time: only when the one before has been
    /// taken.
    void Post(std::function<void()> call);
    void TakePosted();

    CAutoUpdater& updater;
    const UpdateCalls calls;
    std::mutex mutex;  // of the three below
    bool isEnding = false;
    std::shared_ptr<Answer> pending;
    std::function<void()> posted;
    std::thread thread;
};
