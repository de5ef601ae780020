#include "report/frame_panel.h"

#include "platform/qt/icon_button.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/value_field.h"
#include "report/rules/picture_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <initializer_list>

namespace Report {

namespace {

constexpr QSize kLeastSize(620, 84);
constexpr int kSliderWidth = 300;
constexpr int kZoomDigits = 4;
constexpr int kFileSpacing = 14;  // between the files: the row is long

IconButton* MakeButton(IconName icon, const char* text, const char* name, const char* toolTip) {
    auto* button = new IconButton(icon, QString::fromLatin1(text), QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(toolTip));
    return button;
}

/// To what the controls' tooltips say already.
void AddReason(std::initializer_list<QWidget*> controls, const QString& reason) {
    for (QWidget* control : controls) {
        const QString toolTip = control->toolTip();
        control->setToolTip(toolTip.isEmpty() ? reason : toolTip + u'\n' + reason);
    }
}

}  // namespace

FramePanel::FramePanel(QWidget* parent)
    : QWidget(parent),
      previousBad(MakeButton(
          IconName::PreviousBad, "<<", "Previous bad frame",
          "Go to previous bad frame [Ctrl + left arrow]\n(you can use graph to navigate as well)")),
      previous(MakeButton(IconName::Previous, "<", "Previous frame",
                          "Go to the previous frame [left arrow] \n(you can use graph to navigate as well)")),
      next(MakeButton(IconName::Next, ">", "Next frame",
                      "Go to the next frame [right arrow] \n(you can use graph to navigate as well)")),
      nextBad(
          MakeButton(IconName::NextBad, ">>", "Next bad frame",
                     "Go to next bad frame [Ctrl + right arrow] \n(you can use graph to navigate as well)")),
      zoomOut(MakeButton(IconName::Minus, "-", "Smaller scale", "Show the frame smaller")),
      zoomIn(MakeButton(IconName::Plus, "+", "Larger scale", "Show the frame larger")),
      copy(MakeButton(IconName::Copy, "Copy", "Copy frame", "Copy current frame to clipboard [Ctrl + C]")),
      slider(new QSlider(Qt::Horizontal)),
      zoom(new ValueField(kZoomDigits)) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(kWindowMargin, kGroupTopMargin - 1, kWindowMargin, kGroupTopMargin);
    rows->setSpacing(kSliderRowSpacing);
    rows->addLayout(MakeFileRow());
    rows->addLayout(MakeZoomRow());

    connect(previousBad, &IconButton::clicked, this, &FramePanel::PreviousBadAsked);
    connect(previous, &IconButton::clicked, this, &FramePanel::PreviousAsked);
    connect(next, &IconButton::clicked, this, &FramePanel::NextAsked);
    connect(nextBad, &IconButton::clicked, this, &FramePanel::NextBadAsked);
    connect(zoomOut, &IconButton::clicked, this, &FramePanel::ZoomOutAsked);
    connect(zoomIn, &IconButton::clicked, this, &FramePanel::ZoomInAsked);
    connect(copy, &IconButton::clicked, this, &FramePanel::CopyAsked);
    connect(slider, &QSlider::valueChanged, this, &FramePanel::ZoomMoved);
}

QLayout* FramePanel::MakeFileRow() {
    auto* row = new QHBoxLayout;
    row->setSpacing(kRowSpacing);
    row->addStretch(1);
    constexpr std::array kTexts = {"Original file [&1]", "First processed [&2]", "Second processed [&3]"};
    for (int file = 0; file < kFileCount; ++file) {
        const auto index = static_cast<std::size_t>(file);
        auto* radio = files.at(index) = new QRadioButton(QString::fromLatin1(kTexts.at(index)));
        connect(radio, &QRadioButton::clicked, this, [this, file] { emit FileChosen(file); });
        row->addWidget(radio);
        row->addSpacing(kFileSpacing - kRowSpacing);
    }
    for (IconButton* button : {previousBad, previous, next, nextBad}) row->addWidget(button);
    row->addStretch(1);
    return row;
}

QLayout* FramePanel::MakeZoomRow() {
    auto* label = new QLabel(QStringLiteral("&Scale"));
    label->setBuddy(slider);
    slider->setAccessibleName(QStringLiteral("Scale"));
    slider->setRange(kSmallestZoom, kLargestSliderZoom);
    slider->setPageStep(100);
    slider->setFixedWidth(kSliderWidth);
    zoom->setAccessibleName(QStringLiteral("Scale, percent"));

    auto* row = new QHBoxLayout;
    row->setSpacing(kRowSpacing);
    row->addStretch(1);
    for (QWidget* control : std::initializer_list<QWidget*>{label, zoomOut, slider, zoomIn, zoom})
        row->addWidget(control);
    row->addWidget(new PlainLabel(QStringLiteral("%")));
    row->addSpacing(kColumnSpacing * 2);
    row->addWidget(copy);
    row->addStretch(1);
    return row;
}

QSize FramePanel::sizeHint() const {
    return QWidget::sizeHint().expandedTo(kLeastSize);
}

void FramePanel::SetFileAvailable(int file, bool isAvailable, const QString& reason) {
    QRadioButton* radio = files.at(static_cast<std::size_t>(file));
    radio->setEnabled(isAvailable);
    radio->setToolTip(reason);
}

void FramePanel::SelectFile(int file) {
    files.at(static_cast<std::size_t>(file))->setChecked(true);
}

void FramePanel::ShowZoom(int percent) {
    const QSignalBlocker blocker(slider);
    slider->setValue(percent);
    zoom->setText(QString::number(percent));
}

void FramePanel::DisableBadFrames(const QString& reason) {
    for (IconButton* button : {previousBad, nextBad}) button->setEnabled(false);
    AddReason({previousBad, nextBad}, reason);
}

void FramePanel::DisableAll(const QString& reason) {
    setEnabled(false);
    AddReason({previousBad, previous, next, nextBad, zoomOut, slider, zoomIn, zoom, copy}, reason);
}

}  // namespace Report
