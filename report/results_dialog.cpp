#include "report/results_dialog.h"

#include "platform/qt/help.h"
#include "platform/qt/icon.h"
#include "platform/qt/icon_button.h"
#include "platform/qt/key_filter.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/value_field.h"
#include "report/hold_button.h"
#include "report/legend.h"
#include "report/report_frame.h"
#include "report/report_graph.h"
#include "report/sample_chip.h"
#include "report/sheet.h"
#include "report/to_qt.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

namespace Report {

namespace {

constexpr QSize kUsualSize(1080, 700);
constexpr QSize kLeastSize(900, 560);
constexpr double kPartOfScreen = 0.9;
constexpr int kColumnWidth = 178;  // of the narrow column; its groups' frames lie around that
constexpr int kFrameDigits = 8;
constexpr int kSliderPages = 20;

template <typename Button>
Button* MakeButton(IconName icon, const char* text, const char* name, const char* toolTip) {
    auto* button = new Button(icon, QString::fromLatin1(text), QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(toolTip));
    return button;
}

}  // namespace

ResultsDialog::ResultsDialog(const ReportParameters& given, QWidget* parent)
    : QDialog(parent),
      parameters(given),
      controller(
          GatherData(given), [this] { ShowNumbers(); },
          [this] {
              for (CReportGraph* plot : Plots()) plot->Redraw();
          }) {
    setWindowTitle(QStringLiteral("Tolvane - Results visualization"));

    auto* column = new QVBoxLayout;
    column->setSpacing(kGroupSpacing);
    column->addWidget(MakeLegend(controller.Data()));
    column->addWidget(MakeValues());
    column->addWidget(MakeControlWindow());
    showGrid = new QCheckBox(QStringLiteral("Show &grid"));
    showGrid->setChecked(true);
    column->addWidget(showGrid);
    column->addStretch(1);
    copy = new QPushButton(TintedIcon(IconName::Copy), QStringLiteral("&Copy lower plot"));
    copy->setToolTip(QStringLiteral("Copy lower plot to clipboard [Ctrl + G]"));
    showFrame = new QPushButton(TintedIcon(IconName::Frame), QStringLiteral("Show &frame"));
    showFrame->setToolTip(QStringLiteral("Show current frame"));
    for (QPushButton* button : {copy, showFrame}) {
        button->setAutoDefault(false);  // Enter is nothing here
        column->addWidget(button);
    }

    auto* grid = new QGridLayout(this);
    grid->setHorizontalSpacing(kWindowMargin);
    grid->setVerticalSpacing(kGroupSpacing);
    grid->addWidget(MakeSheet(), 0, 0);
    grid->addLayout(column, 0, 1);
    grid->addWidget(MakeVideoSlide(), 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    grid->setRowStretch(0, 1);

    for (CReportGraph* plot : Plots()) controller.AddView(*plot);
    ConnectControls();
    RegisterKeys();
    FitToScreen();
    controller.SetCurrent(controller.Range().Current(), true);
    slider->setFocus();
}

ResultsDialog::~ResultsDialog() {
    delete frameView;  // it asks the controller, which goes before the children
    KeyFilter::OfApplication().Remove(this);
}

CReportFrame* ResultsDialog::FrameView() const {
    return frameView;
}

QWidget* ResultsDialog::MakeSheet() {
    overview = new CReportGraph(CReportGraph::Kind::Overview, controller);
    detail = new CReportGraph(CReportGraph::Kind::Detail, controller);
    auto* sheet = new Sheet;
    auto* rows = new QVBoxLayout(sheet);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(overview, 1);
    rows->addWidget(detail, 1);
    return sheet;
}

QGroupBox* ResultsDialog::MakeValues() {
    auto* group = new QGroupBox(QStringLiteral("Values"));
    auto* rows = new QGridLayout(group);
    rows->setHorizontalSpacing(kSampleSpacing);
    rows->setVerticalSpacing(kRowSpacing);
    rows->setColumnStretch(1, 1);
    for (int file = 0; file < kFileCount; ++file) {
        auto* field = new ValueField(10);
        field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        field->setAccessibleName(QStringLiteral("Value, %1").arg(FileLabel(file).toLower()));
        field->setEnabled(controller.Data().series.count(file) > 0);
        if (!field->isEnabled()) field->setToolTip(ToQString(NeedsResultsText(file)));
        rows->addWidget(new SampleChip(file), file, 0);
        rows->addWidget(field, file, 1);
        values.at(static_cast<std::size_t>(file)) = field;
    }
    return group;
}

QGroupBox* ResultsDialog::MakeControlWindow() {
    narrower =
        MakeButton<HoldButton>(IconName::Minus, "-", "Narrower control window",
                               "Decrease radius of control window\n(you can hold button to decrease it)");
    wider = MakeButton<HoldButton>(IconName::Plus, "+", "Wider control window",
                                   "Increase radius of control window\n(you can hold button to increase it)");
    frameCount = new PlainLabel({}, PlainLabel::Tone::Quiet);

    auto* group = new QGroupBox(QStringLiteral("Control window"));
    auto* row = new QHBoxLayout(group);
    row->setSpacing(kRowSpacing);
    row->addWidget(narrower);
    row->addWidget(wider);
    row->addSpacing(kColumnSpacing - kRowSpacing);
    row->addWidget(frameCount);
    row->addStretch(1);
    // The groups' margins lie outside of the column.
    const QMargins around = row->contentsMargins();
    group->setMinimumWidth(kColumnWidth + around.left() + around.right());
    return group;
}

QGroupBox* ResultsDialog::MakeVideoSlide() {
    const ReportData& data = controller.Data();
    slider = new QSlider(Qt::Horizontal);
    slider->setAccessibleName(QStringLiteral("Video slide"));
    slider->setRange(data.firstFrame, data.lastFrame);
    slider->setPageStep(std::max((data.lastFrame - data.firstFrame) / kSliderPages, 1));
    slider->installEventFilter(this);
    frame = new ValueField(kFrameDigits);
    frame->setAccessibleName(QStringLiteral("Current frame"));
    previousBad = MakeButton<IconButton>(IconName::PreviousBad, "<<", "Previous bad frame",
                                         "Go to previous bad frame [Ctrl + left arrow]");
    previous = MakeButton<HoldButton>(
        IconName::Previous, "<", "Previous frame",
        "Go to the previous frame [left arrow]\n(you can hold button to go through frames)");
    next = MakeButton<HoldButton>(
        IconName::Next, ">", "Next frame",
        "Go to the next frame [right arrow]\n(you can hold button to go through frames)");
    nextBad = MakeButton<IconButton>(IconName::NextBad, ">>", "Next bad frame",
                                     "Go to next bad frame [Ctrl + right arrow]");
    for (IconButton* button : {previousBad, nextBad}) {
        button->setEnabled(data.badFrames != nullptr);
        if (!data.badFrames) button->setToolTip(button->toolTip() + u'\n' + ToQString(kNeedsBadFrames));
    }

    auto* group = new QGroupBox(QStringLiteral("&Video slide"));
    auto* row = new QHBoxLayout(group);
    row->setSpacing(kRowSpacing);
    row->addWidget(slider, 1);
    row->addSpacing(2);
    row->addWidget(frame);
    row->addSpacing(kRowSpacing);
    for (IconButton* button :
         {previousBad, static_cast<IconButton*>(previous), static_cast<IconButton*>(next), nextBad})
        row->addWidget(button);
    return group;
}

void ResultsDialog::ConnectControls() {
    connect(slider, &QSlider::valueChanged, this, &ResultsDialog::GoTo);
    connect(previous, &HoldButton::Command, this, [this] { GoTo(controller.Range().Current() - 1); });
    connect(next, &HoldButton::Command, this, [this] { GoTo(controller.Range().Current() + 1); });
    connect(wider, &HoldButton::Command, this, [this] { Widen(2); });
    connect(narrower, &HoldButton::Command, this, [this] { Widen(-2); });
    connect(previousBad, &IconButton::clicked, this,
            [this] { Act(&ReportController::GoToPreviousBadFrame); });
    connect(nextBad, &IconButton::clicked, this, [this] { Act(&ReportController::GoToNextBadFrame); });
    connect(showGrid, &QCheckBox::toggled, this, [this](bool on) {
        for (CReportGraph* plot : Plots()) plot->SetGrid(on);
        controller.Redraw();
    });
    connect(copy, &QPushButton::clicked, detail, [this] { detail->CopyToClipboard(); });
    connect(showFrame, &QPushButton::clicked, this, &ResultsDialog::ShowFrames);
    auto* close = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this);
    connect(close, &QShortcut::activated, this, &ResultsDialog::reject);
    AddHelpKey(*this, kHelpViewer);
}

void ResultsDialog::RegisterKeys() {
    const auto key = [](QKeyCombination keys, std::function<void()> action) {
        return std::pair<QKeyCombination, KeyFilter::Action>(keys, [action] { return action(), true; });
    };
    KeyFilter::OfApplication().Register(
        this, {key(Qt::Key_Left, [this] { GoTo(controller.Range().Current() - 1); }),
               key(Qt::Key_Right, [this] { GoTo(controller.Range().Current() + 1); }),
               key(Qt::CTRL | Qt::Key_Left, [this] { Act(&ReportController::GoToPreviousBadFrame); }),
               key(Qt::CTRL | Qt::Key_Right, [this] { Act(&ReportController::GoToNextBadFrame); }),
               key(Qt::CTRL | Qt::Key_G, [this] { detail->CopyToClipboard(); })});
}

void ResultsDialog::FitToScreen() {
    const QSize available = (QSizeF(screen()->availableGeometry().size()) * kPartOfScreen).toSize();
    const QSize wanted = kUsualSize.expandedTo(minimumSizeHint());
    setFixedSize(wanted.boundedTo(available.expandedTo(kLeastSize)));
}

void ResultsDialog::ShowNumbers() {
    const FrameRange& range = controller.Range();
    frame->setText(QString::number(range.Current()));
    {
        const QSignalBlocker blocker(slider);
        slider->setValue(range.Current());
    }
    for (int file = 0; file < kFileCount; ++file) {
        const auto [has, value] = overview->ValueAt(file, range.Current());
        if (has) values.at(static_cast<std::size_t>(file))->setText(ToQString(ValueText(value)));
    }
    frameCount->setText(ToQString(FrameCountText(range.Width() + 1)));
}

void ResultsDialog::Act(void (ReportController::*command)()) {
    (controller.*command)();
    controller.Redraw();
}

void ResultsDialog::GoTo(int position) {
    controller.SetCurrent(position, true);
    controller.Redraw();
}

void ResultsDialog::Widen(int frames) {
    controller.Widen(frames);
    controller.Redraw();
}

void ResultsDialog::ShowFrames() {
    if (!frameView) {
        frameView = new CReportFrame(controller, parameters, this);
        controller.SetFrameView(frameView);
    }
    activateWindow();
}

bool ResultsDialog::eventFilter(QObject* watched, QEvent* event) {
    // The wheel turns the same everywhere in the window, also over the slider.
    if (watched != slider || event->type() != QEvent::Wheel) return QDialog::eventFilter(watched, event);
    wheelEvent(static_cast<QWheelEvent*>(event));
    return true;
}

void ResultsDialog::wheelEvent(QWheelEvent* event) {
    if (const int steps = wheel.Take(event->angleDelta().y())) Widen(steps);
    event->accept();
}

}  // namespace Report
