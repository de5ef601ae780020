#pragma once

#include "app/rules/browse.h"
#include "app/shell/run_thread.h"
#include "app/shell/wav_player.h"

#include <QObject>

#include <functional>

/// Starts, stops and ends the runs of the main dialog.
class RunControl : public QObject {
    Q_OBJECT

public:
    /// All outlive the control. `saveSettings` is called before each run, so that a run that takes the
    /// program with it takes no settings with it; the log tells its false.
    RunControl(ShellState& state, IFileQuestions& questions, QWidget& mainWindow,
               std::function<bool()> saveSettings);

    /// Starts a run that shows itself in `runWindow`, which stays until `FinishRun`; false if it can't be
    /// started, which the user is told, or the user doesn't want to. While there is a run, asks whether to
    /// stop it.
    bool StartRun(IRunWindow& runWindow);

    /// The run is over, its results wait to be looked at: plays the sound that the user chose for this.
    void RunEnded();

    /// Ends what `StartRun` began, and shows the results of a complete run. Without a record, as when the
    /// session ends in the midst of it, the run is stopped.
    void FinishRun(std::unique_ptr<FinishRecord> record);

    /// The program is to end: stops a run without a question, and shows nothing any more.
    void Abandon();

signals:
    /// The state has changed.
    void Changed();

private:
    bool Begin(IRunWindow& runWindow);
    void AskToStop(IRunWindow& runWindow);
    void ShowResultsOf(const FinishRecord& record);

    ShellState& state;
    IFileQuestions& questions;
    QWidget& mainWindow;
    std::function<bool()> saveSettings;
    IRunWindow* window = nullptr;  // of the run
    std::unique_ptr<RunThread> run;
    WavPlayer player;
    bool isAbandoned = false;
};
