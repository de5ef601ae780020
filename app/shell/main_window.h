#pragma once

#include "app/rules/drop.h"
#include "app/shell/control_table.h"
#include "app/shell/file_questions.h"
#include "app/shell/late_clicks.h"
#include "app/shell/run_control.h"

#include <QDialog>

#include <functional>

class FileStep;
class MetricStep;
class OutputStep;
class StatusLine;
class QCheckBox;
class QPushButton;

/// The main dialog, "Tolvane 3.0": what to measure, how, and what to keep of it.
///
/// Its controls hold nothing of their own. What the user does changes the state by the rules of app/rules,
/// and after every change the window shows the state.
class MainWindow : public QDialog {
    Q_OBJECT

public:
    /// The state outlives the window, and nobody else changes it meanwhile. `saveSettings` is called when the
    /// state is to be kept: before each run and at the window's end. Its false is told in the log of the run.
    MainWindow(ShellState& state, std::function<bool()> saveSettings,
               const Metric::CMetricList& metrics = Metric::GetMetricList());

    /// Closes the window as "Exit" does, as soon as that can be: stops a run and takes back whatever dialog
    /// is open, all without a question.
    void EndSoon();
    /// Whether the window has been closed.
    bool HasEnded() const { return hasEnded; }

public slots:
    void reject() override {}  // Escape

signals:
    void Ended();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void Arrange();
    QWidget* MakeStatusRow();
    QWidget* MakeFoot();
    void ConnectFileStep();
    void ConnectOtherSteps();
    void ConnectFoot();
    template <class Edit>
    auto Changing(Edit edit);  // a slot that edits the state and shows it
    void Refresh();

    void UseAvs(FileRow row, bool on);
    void TakeDropped(const std::vector<RoutedFile>& files);
    void Preview(FileRow row);
    void Process();

    ShellState& state;
    std::function<bool()> saveSettings;
    const Metric::CMetricList& metrics;
    FileQuestions questions;
    RunControl runControl;
    ControlTable controls;
    bool isOpening = false;  // the file of a preview
    const LateClicks lateClicks;
    bool hasEnded = false;
    QByteArray progressGeometry;  // where the window of the last run was

    FileStep* fileStep;
    MetricStep* metricStep;
    OutputStep* outputStep;
    StatusLine* status;
    QCheckBox* showResults;
    QPushButton* website;
    QPushButton* feedback;
    QPushButton* help;
    QPushButton* process;
    QPushButton* exitButton;
};
