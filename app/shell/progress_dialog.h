#pragma once

#include "app/rules/progress_flow.h"
#include "app/shell/run_thread.h"

#include <QDialog>

class LogView;
class PlainLabel;
class QCheckBox;
class QProgressBar;
class QPushButton;
class RunControl;

/// The window of a run, over the main dialog for as long as the run lasts: its log, how far it is, and its
/// "Stop". It has no close box; the only way out is "Continue".
class ProgressDialog : public QDialog, public IRunWindow {
    Q_OBJECT

public:
    /// All outlive the dialog. `geometry` is where the one before was left, empty for the first; this one
    /// takes its place and leaves its own.
    ProgressDialog(QWidget* parent, RunControl& control, const MeasurementJob& job, QByteArray& geometry);

    /// Starts a run, stays until it is left, and hands its results over. `autoClose` is the box "autoclose"
    /// at first, above 0 for on; the result is the box as it was left, or `autoClose` if no run was started.
    int Run(int autoClose);

    void Show(const std::vector<RunEvent>& events) override;
    void RunFinished(std::unique_ptr<FinishRecord> record) override;
    void LeaveSoon() override;
    QWidget* Widget() override { return this; }

public slots:
    void reject() override {}  // Escape

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void Arrange();
    void AskToStop();
    void Continue();
    void PressContinue();
    void ShowInBar(const RunEvent& event);
    void ShowPosition(const RunEvent& event);
    void ShowButtons();

    RunControl& control;
    const MeasurementJob& job;
    QByteArray& geometry;
    ProgressFlow flow;
    std::unique_ptr<FinishRecord> record;
    int lastFrame = 0;
    double pausedSeconds = 0;  // spent with the question whether to stop
    bool isAsking = false;     // that question is on the screen
    bool continuesWhenAnswered = false;
    bool leavesSoon = false;

    LogView* log;
    QProgressBar* bar;
    PlainLabel* frame;
    PlainLabel* rate;
    PlainLabel* left;
    QCheckBox* autoCloseBox;
    QPushButton* stop;
    QPushButton* continueButton;
};
