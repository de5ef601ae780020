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
    /// Stops a run that goes on, without a question, and saves what it has and what the user chose; calls `then` when that
    /// is done, at once or later. It needn't be called if the program ends.
    std::function<void(std::function<void()> then)> stopRunAndThen;
    /// Ends the program and starts `program` in its place; see `RestartProgram`.
    std::function<void(const std::wstring& program)> restart;
};

/// The background check for a newer version. Its boxes come up over whatever window is active. Made, started and destroyed
/// on the thread of the windows, which never waits for the network.
class UpdateThread : public QObject, private IUpdateQuestions {
    Q_OBJECT

public:
    /// The updater outlives the thread.
    UpdateThread(CAutoUpdater& updater, UpdateCalls calls);

    /// Cancels what goes on and waits for its end, which comes at once.
    ~UpdateThread() override;

    /// Once. Without a thread to be had there is no check.
    void Start(const std::string& baseUrl);

private:
    class Answer;
    using Question = std::function<void(std::shared_ptr<Answer> answer)>;

    bool AskYesNo(const std::wstring& title, const std::wstring& text) override;
    void ShowWarning(const std::wstring& title, const std::wstring& text) override;
    bool StopRun() override;
    void Restart(const std::wstring& program) override;

    /// Has `question` asked on the thread of the windows and waits for the answer; false if the program ends meanwhile.
    bool Ask(const Question& question);

    CAutoUpdater& updater;
    const UpdateCalls calls;
    std::mutex mutex;
    bool isEnding = false;            // guarded by the mutex
    std::shared_ptr<Answer> pending;  // as well
    std::thread thread;
};
