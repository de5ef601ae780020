#include "app/shell/progress_dialog.h"

#include "app/dialogs/controls.h"
#include "app/rules/progress_text.h"
#include "app/shell/log_view.h"
#include "app/shell/run_control.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/wide_text.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

namespace {

constexpr QSize kUsualSize(640, 380);
constexpr QSize kLeastSize(480, 260);
constexpr int kBarHeight = 18;
constexpr int kTextSpacing = 24;  // between rate and time left

QHBoxLayout* MakeRow(int spacing) {
    auto* row = new QHBoxLayout;
    row->setSpacing(spacing);
    return row;
}

}  // namespace

ProgressDialog::ProgressDialog(QWidget* parent, RunControl& runControl, const MeasurementJob& runJob,
                               QByteArray& lastGeometry)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      control(runControl),
      job(runJob),
      geometry(lastGeometry),
      log(new LogView),
      bar(new QProgressBar),
      frame(new PlainLabel),
      rate(new PlainLabel),
      left(new PlainLabel),
      autoCloseBox(new QCheckBox(tr("&autoclose"))),
      stop(new QPushButton(tr("&Stop"))),
      continueButton(new QPushButton(tr("&Continue"))) {
    setWindowTitle(tr("Tolvane - Progress"));
    log->setAccessibleName(tr("Log"));
    bar->setAccessibleName(tr("Progress"));
    bar->setTextVisible(false);
    bar->setFixedHeight(kBarHeight);
    // Enter must neither stop a run nor continue before "Continue" has come on.
    stop->setAutoDefault(false);
    continueButton->setAutoDefault(false);
    Arrange();
    ShowButtons();
    left->hide();
    log->setFocus();

    AddHelpKey(*this, kHelpRun);
    connect(stop, &QPushButton::clicked, this, &ProgressDialog::AskToStop);
    connect(continueButton, &QPushButton::clicked, this, &ProgressDialog::Continue);
}

void ProgressDialog::Arrange() {
    auto* texts = MakeRow(kTextSpacing);
    texts->addWidget(frame, 1);
    texts->addWidget(rate);
    texts->addWidget(left);

    auto* foot = MakeRow(kColumnSpacing);
    foot->addWidget(autoCloseBox, 1);
    foot->addWidget(stop);
    foot->addWidget(continueButton);

    auto* rows = new QVBoxLayout(this);
    rows->addWidget(log, 1);
    rows->addWidget(bar);
    rows->addLayout(texts);
    rows->addLayout(foot);
    setMinimumSize(kLeastSize.expandedTo(minimumSizeHint()));
    SetUsualSize(*this, kUsualSize);
    if (!geometry.isEmpty()) restoreGeometry(geometry);
}

int ProgressDialog::Run(int autoClose) {
    if (!control.StartRun(*this)) return autoClose;

    autoCloseBox->setChecked(autoClose > 0);
    flow.Started();
    exec();
    geometry = saveGeometry();
    const int result = autoCloseBox->isChecked() ? 1 : 0;
    control.FinishRun(std::move(record));
    return result;
}

void ProgressDialog::Show(const std::vector<RunEvent>& events) {
    QStringList lines;
    for (const RunEvent& event : events) {
        if (event.kind == RunEvent::Kind::Line)
            lines.append(ToQString(event.line));
        else
            ShowInBar(event);
    }
    log->Append(lines);
}

void ProgressDialog::ShowInBar(const RunEvent& event) {
    switch (event.kind) {
        case RunEvent::Kind::Line:
            break;
        case RunEvent::Kind::Range:
            lastFrame = event.last;
            bar->setRange(event.first, std::max(event.last, event.first + 1));  // an empty range would move
            bar->setValue(event.first);
            break;
        case RunEvent::Kind::Position:
            bar->setValue(event.first);
            ShowPosition(event);
            break;
        case RunEvent::Kind::FramesOver:
            bar->setValue(bar->minimum());
            left->hide();  // and the rate takes its place
            break;
        case RunEvent::Kind::StopWithdrawn:
            flow.FramesOver();
            ShowButtons();
            break;
    }
}

void ProgressDialog::ShowPosition(const RunEvent& event) {
    const ProgressTexts texts = ProgressTextsOf(event.first + 1, lastFrame, event.seconds - pausedSeconds);
    frame->setText(ToQString(texts.frame));
    rate->setText(ToQString(texts.rate));
    left->setText(ToQString(texts.left));
    left->setHidden(texts.left.empty());
}

void ProgressDialog::ShowButtons() {
    SetAvailable(*stop, flow.CanStop() ? L"" : L"All frames are measured");
    SetAvailable(*continueButton, flow.CanContinue() ? L"" : L"Needs the end of the run");
    continueButton->setDefault(flow.CanContinue());
}

void ProgressDialog::AskToStop() {
    QElapsedTimer time;
    time.start();
    isAsking = true;
    control.StartRun(*this);
    isAsking = false;
    pausedSeconds += static_cast<double>(time.elapsed()) / 1000;
    if (continuesWhenAnswered) PressContinue();
}

void ProgressDialog::RunFinished(std::unique_ptr<FinishRecord> finishRecord) {
    const ProgressFlow::Next next = flow.Finished(autoCloseBox->isChecked(), job);
    ShowButtons();
    record = std::move(finishRecord);
    control.RunEnded();
    if (leavesSoon || next == ProgressFlow::Next::ContinueAtOnce)
        PressContinue();
    else if (next == ProgressFlow::Next::ContinueAfterDelay)
        QTimer::singleShot(ProgressFlow::kDelay, Qt::PreciseTimer, this, &ProgressDialog::PressContinue);
}

void ProgressDialog::LeaveSoon() {
    leavesSoon = true;
    if (flow.CanContinue()) PressContinue();
}

// The worker still waits in the call that reports its end, so this goes by way of the event loop.
void ProgressDialog::PressContinue() {
    QMetaObject::invokeMethod(this, &ProgressDialog::Continue, Qt::QueuedConnection);
}

void ProgressDialog::Continue() {
    continuesWhenAnswered = isAsking;  // a run can end while it is asked whether to stop it
    if (!isAsking && flow.Continue()) accept();
}

void ProgressDialog::closeEvent(QCloseEvent* event) {
    event->ignore();
}
