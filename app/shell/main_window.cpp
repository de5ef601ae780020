#include "app/shell/main_window.h"

#include "app/dialogs/bad_frames_dialog.h"
#include "app/dialogs/controls.h"
#include "app/dialogs/matrix_dialog.h"
#include "app/dialogs/metric_dialog.h"
#include "app/dialogs/more_options_dialog.h"
#include "app/dialogs/output_dialog.h"
#include "app/dialogs/script_dialog.h"
#include "app/preview/preview_dialog.h"
#include "app/rules/job_edits.h"
#include "app/rules/metric_choice.h"
#include "app/rules/run_start.h"
#include "app/shell/contact.h"
#include "app/shell/file_step.h"
#include "app/shell/metric_step.h"
#include "app/shell/open_waiting.h"
#include "app/shell/output_step.h"
#include "app/shell/progress_dialog.h"
#include "app/shell/window_drops.h"
#include "platform/qt/help.h"
#include "platform/qt/icon.h"
#include "platform/qt/label_column.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/message_box.h"
#include "platform/qt/status_line.h"
#include "platform/qt/wide_text.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <chrono>
#include <utility>

namespace {

constexpr int kUsualWidth = 928;
constexpr std::chrono::milliseconds kEndingInterval{20};

// The status row stands as far in from the groups' edges as their frames.
constexpr int kStatusIndent = 4;

}  // namespace

MainWindow::MainWindow(ShellState& shellState, std::function<bool()> save,
                       const Metric::CMetricList& metricList)
    : QDialog(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint),
      state(shellState),
      saveSettings(std::move(save)),
      metrics(metricList),
      questions(*this, shellState),
      runControl(shellState, questions, *this, saveSettings),
      lateClicks([this] { return isOpening; }) {
    setWindowTitle(tr("Tolvane 3.0"));
    Arrange();
    process->setDefault(true);  // which means nothing before it is in its dialog
    ConnectFileStep();
    ConnectOtherSteps();
    ConnectFoot();
    connect(&runControl, &RunControl::Changed, this, &MainWindow::Refresh);
    AddHelpKey(*this, kHelpStart);

    auto* drops = new WindowDrops(*this, *fileStep, [this]() -> const MeasurementJob* {
        const bool takesFiles =
            state.phase == RunPhase::Editing && !isOpening && !QApplication::activeModalWidget();
        return takesFiles ? &state.job : nullptr;
    });
    connect(drops, &WindowDrops::Dropped, this, &MainWindow::TakeDropped);

    Refresh();
    fileStep->FocusFirst();
    resize(OpeningSizeOf(*this, {std::max(kUsualWidth, sizeHint().width()), sizeHint().height()}));
}

void MainWindow::Arrange() {
    auto* labels = new LabelColumn(this);
    fileStep = new FileStep(*labels, controls);
    metricStep = new MetricStep(*labels, controls, metrics);
    outputStep = new OutputStep(controls);
    for (QWidget* step : std::initializer_list<QWidget*>{fileStep, metricStep, outputStep})
        step->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);

    auto* line = new QFrame;
    line->setFrameStyle(static_cast<int>(QFrame::HLine) | static_cast<int>(QFrame::Sunken));

    auto* rows = new QVBoxLayout(this);
    rows->setSpacing(kGroupSpacing);
    rows->addWidget(fileStep);
    rows->addWidget(metricStep);
    rows->addWidget(outputStep);
    rows->addWidget(MakeStatusRow());
    rows->addStretch(1);
    rows->addWidget(line);
    rows->addWidget(MakeFoot());
}

QWidget* MainWindow::MakeStatusRow() {
    status = new StatusLine;
    showResults = new QCheckBox(tr("Show resu&lts visualization"));
    controls.Set(Control::ShowResults, showResults);

    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(kStatusIndent, 0, kStatusIndent, 0);
    layout->addWidget(status, 1);
    layout->addWidget(showResults);
    return row;
}

QWidget* MainWindow::MakeFoot() {
    website = new QPushButton(TintedIcon(IconName::Globe), tr("&Website"));
    feedback = new QPushButton(TintedIcon(IconName::Mail), tr("&Feedback"));
    help = new QPushButton(TintedIcon(IconName::Help), tr("&Help"));
    process = new QPushButton;
    process->setMinimumWidth(kMainButtonWidth);
    QFont bold;
    bold.setBold(true);
    process->setFont(bold);
    exitButton = new QPushButton(tr("E&xit"));

    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* link : {website, feedback, help}) layout->addWidget(link);
    layout->addStretch(1);
    layout->addWidget(process);
    layout->addWidget(exitButton);

    controls.Set(Control::Process, process);
    controls.Set(Control::Website, website);
    controls.Set(Control::Feedback, feedback);
    controls.Set(Control::Help, help);
    controls.Set(Control::Exit, exitButton);
    return row;
}

template <class Edit>
auto MainWindow::Changing(Edit edit) {
    return [this, edit](auto... arguments) {
        edit(arguments...);
        Refresh();
    };
}

void MainWindow::ConnectFileStep() {
    MeasurementJob& job = state.job;
    connect(fileStep, &FileStep::PathEdited, this, [this](FileRow row, const std::wstring& path) {
        EditPath(state.job, row, path);
        Refresh();
    });
    connect(fileStep, &FileStep::BrowseClicked, this,
            Changing([this](FileRow row) { BrowseFile(state, row, questions); }));
    connect(fileStep, &FileStep::UseAvsClicked, this, &MainWindow::UseAvs);
    connect(fileStep, &FileStep::AdvancedClicked, this, Changing([this, &job](FileRow row) {
                EditAviSynthParameters(this, SlotOf(job, row), state.capabilities);
            }));
    connect(fileStep, &FileStep::PreviewClicked, this, &MainWindow::Preview);
    connect(fileStep, &FileStep::ComparativeAnalysisClicked, this,
            Changing([&job](bool on) { SetComparativeAnalysis(job, on); }));
    connect(fileStep, &FileStep::UseMaskClicked, this,
            Changing([&job](bool on) { job.maskSlot.useMask = on; }));
    connect(fileStep, &FileStep::BlackMaskClicked, this,
            Changing([&job](bool on) { job.maskSlot.blackMask = on; }));
    connect(fileStep, &FileStep::MatrixClicked, this, Changing([this, &job] { EditMatrix(this, job); }));
}

void MainWindow::ConnectOtherSteps() {
    MeasurementJob& job = state.job;
    connect(metricStep, &MetricStep::MetricChosen, this,
            Changing([this, &job](int metric) { ChooseMetric(job, metric, metrics); }));
    connect(metricStep, &MetricStep::ComponentChosen, this,
            Changing([&job](int component) { ChooseComponent(job, component); }));
    connect(metricStep, &MetricStep::SettingsClicked, this,
            Changing([this, &job] { EditMetricConfiguration(this, job); }));
    connect(metricStep, &MetricStep::InfoClicked, this,
            [this, &job] { OpenPage(this, metrics.GetInfoUrl(SelectionOf(job).metricIndex)); });

    connect(outputStep, &OutputStep::SaveCsvClicked, this, Changing([&job](bool on) { job.csv.save = on; }));
    connect(outputStep, &OutputStep::SaveVisualizationClicked, this,
            Changing([&job](bool on) { job.visualization.save = on; }));
    connect(outputStep, &OutputStep::SaveBadFramesClicked, this,
            Changing([&job](bool on) { SetSaveBadFrames(job, on); }));
    connect(outputStep, &OutputStep::CsvAdvancedClicked, this,
            Changing([this, &job] { EditCsvAndVisualization(this, job); }));
    connect(outputStep, &OutputStep::BadFramesAdvancedClicked, this,
            Changing([this, &job] { EditBadFrames(this, job); }));
    connect(outputStep, &OutputStep::MoreOptionsClicked, this,
            Changing([this] { EditMoreOptions(this, state); }));
}

void MainWindow::ConnectFoot() {
    connect(showResults, &QCheckBox::clicked, this, Changing([this](bool on) { state.showResults = on; }));
    connect(website, &QPushButton::clicked, this, [this] { OpenProductPage(this); });
    connect(feedback, &QPushButton::clicked, this, [this] { SendFeedback(this); });
    connect(help, &QPushButton::clicked, this, [] { ShowHelp(kHelpStart); });
    connect(process, &QPushButton::clicked, this, &MainWindow::Process);
    connect(exitButton, &QPushButton::clicked, this, &MainWindow::close);
}

void MainWindow::Refresh() {
    const MainForm form = MainFormFrom(state, metrics);
    fileStep->Show(form);
    metricStep->Show(form);
    outputStep->Show(form);
    showResults->setChecked(form.showResults);
    status->Show(form.isReady ? Status::Good : Status::Neutral, ToQString(form.status));

    const bool stops = state.phase == RunPhase::Measuring;
    process->setIcon(TintedIcon(stops ? IconName::Stop : IconName::Play));
    process->setText(WithMnemonic(form.processCaption, stops ? u"p" : u"P"));
    controls.Show(form);
}

void MainWindow::UseAvs(FileRow row, bool on) {
    FileRecord& slot = SlotOf(state.job, row);
    if (SetUseAvs(slot, on)) questions.EditYuvSettings(slot);
    Refresh();
}

void MainWindow::TakeDropped(const std::vector<RoutedFile>& files) {
    activateWindow();
    for (const RoutedFile& file : files) {
        TakeFile(state, file.row, file.path, questions);
        Refresh();
    }
}

void MainWindow::Preview(FileRow row) {
    FileRecord& slot = SlotOf(state.job, row);
    const bool isSettled = SettleRawFile(slot, questions);
    Refresh();
    if (!isSettled) return;

    isOpening = true;
    std::unique_ptr<rkIVideoSource> source = OpenWaiting(ToOpen(slot));
    isOpening = false;
    if (source) return ShowPreview(this, std::move(source), state.job.run.yuvTable);
    const BoxText failure = PreviewFailure(slot, state.capabilities);
    ShowMessage(this, QMessageBox::Critical, failure.title, failure.text, failure.advice);
}

void MainWindow::Process() {
    const QPointer<QWidget> focused = focusWidget();  // a run takes it away with what it locks
    ProgressDialog progress(this, runControl, state.job, progressGeometry);
    state.job.autoCloseProgress = progress.Run(state.job.autoCloseProgress ? 1 : 0) > 0;
    if (focused) focused->setFocus(Qt::OtherFocusReason);
}

void MainWindow::EndSoon() {
    runControl.Abandon();
    if (QWidget* const modal = QApplication::activeModalWidget()) modal->close();
    close();
    // Each dialog that was open returns to who opened it, and only then the window can close.
    if (!hasEnded) QTimer::singleShot(kEndingInterval, this, &MainWindow::EndSoon);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    const bool stays =
        state.phase != RunPhase::Editing || isOpening || QApplication::activeModalWidget() != nullptr;
    event->setAccepted(!stays);
    if (stays || hasEnded) return;
    hasEnded = true;
    saveSettings();
    emit Ended();
}

// The window is as high as its content, and grows to the side only.
bool MainWindow::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest) setFixedHeight(layout()->sizeHint().height());
    return handled;
}
