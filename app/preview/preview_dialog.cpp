#include "app/preview/preview_dialog.h"

#include "app/dialogs/controls.h"
#include "app/preview/preview_picture.h"
#include "platform/qt/help.h"
#include "platform/qt/icon_button.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/value_field.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kScaleDigits = 4;
constexpr int kControlsWidth = 300;  // with sliders that can be used
constexpr int kLeastFrameDigits = 4;
constexpr int kScalePage = 25;  // percent

QRect ToQRect(const PixelRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

IconButton* MakeButton(IconName icon, const QString& text, const QString& name) {
    auto* button = new IconButton(icon, text, name);
    button->setToolTip(name);
    return button;
}

QSlider* MakeSlider(const QString& name, int first, int last) {
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setRange(first, last);
    slider->setAccessibleName(name);
    return slider;
}

}  // namespace

PreviewDialog::PreviewDialog(QWidget* parent, std::unique_ptr<rkIVideoSource> source, int yuvTable)
    : QDialog(parent),
      video{std::max(source->GetWidth(), 1), std::max(source->GetHeight(), 1)},
      frameCount(std::max(source->GetFrameCount(), 1)),
      picture(new PreviewPicture) {
    setWindowTitle(tr("Tolvane - Preview"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addLayout(MakeScaleRow());
    rows->addWidget(picture, 1);
    auto* foot = new QVBoxLayout;
    foot->setContentsMargins(kWindowMargin, kGroupSpacing, kWindowMargin, kWindowMargin);
    foot->addWidget(MakeFrameGroup());
    rows->addLayout(foot);

    ShowScale(100);
    connect(picture, &PreviewPicture::Resized, this, &PreviewDialog::FitPicture);
    auto* close = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
    AddHelpKey(*this, kHelpPreview);
    FocusFirst(*frameSlider);
    SetLimits();
    ResizeTo(100);

    FrameReader::Sources sources;
    sources[0] = std::move(source);
    reader = std::make_unique<Report::PictureReader>(std::move(sources), yuvTable);
    connect(reader.get(), &Report::PictureReader::Arrived, this, &PreviewDialog::Show);
    AskForFrame(0);
}

QLayout* PreviewDialog::MakeScaleRow() {
    auto* smaller = MakeButton(IconName::Minus, QStringLiteral("<"), tr("Smaller scale"));
    auto* larger = MakeButton(IconName::Plus, QStringLiteral(">"), tr("Larger scale"));
    scaleSlider = MakeSlider(tr("Scale"), kSmallestScale, kLargestScale);
    scaleSlider->setPageStep(kScalePage);
    scale = new ValueField(kScaleDigits);
    scale->setAccessibleName(tr("Scale, percent"));

    connect(smaller, &IconButton::clicked, this, [this] { ResizeTo(ScaleBelow(scale->text().toInt())); });
    connect(larger, &IconButton::clicked, this, [this] { ResizeTo(ScaleAbove(scale->text().toInt())); });
    connect(scaleSlider, &QSlider::valueChanged, this, [this](int percent) {
        scale->setText(QString::number(percent));
        if (!scaleSlider->isSliderDown()) ResizeTo(percent);
    });
    connect(scaleSlider, &QSlider::sliderReleased, this, [this] { ResizeTo(scaleSlider->value()); });

    auto* row = new QHBoxLayout;
    row->setContentsMargins(kWindowMargin, kGroupSpacing, kWindowMargin, kGroupSpacing);
    row->setSpacing(kColumnSpacing);
    row->addWidget(smaller);
    row->addWidget(scaleSlider, 1);
    row->addWidget(larger);
    row->addWidget(scale);
    row->addWidget(new PlainLabel(QStringLiteral("%")));
    return row;
}

QGroupBox* PreviewDialog::MakeFrameGroup() {
    auto* previous = MakeButton(IconName::Previous, QStringLiteral("<"), tr("Previous frame"));
    auto* next = MakeButton(IconName::Next, QStringLiteral(">"), tr("Next frame"));
    frameSlider = MakeSlider(tr("Video slide"), 0, frameCount - 1);
    const int digits = static_cast<int>(QString::number(frameCount - 1).size());
    frameNumber = new ValueField(std::max(digits, kLeastFrameDigits));
    frameNumber->setAccessibleName(tr("Frame number"));

    for (IconButton* button : {previous, next}) button->setAutoRepeat(true);
    connect(previous, &IconButton::clicked, this, [this] { AskForFrame(asked - 1); });
    connect(next, &IconButton::clicked, this, [this] { AskForFrame(asked + 1); });
    connect(frameSlider, &QSlider::valueChanged, this, &PreviewDialog::AskForFrame);
    // A frame that couldn't be read is asked for again where the slider is let go.
    connect(frameSlider, &QSlider::sliderReleased, this, [this] { AskForFrame(frameSlider->value()); });

    auto* group = new QGroupBox(tr("Video slide"));
    auto* row = new QHBoxLayout(group);
    row->setSpacing(kColumnSpacing);
    row->addWidget(previous);
    row->addWidget(frameSlider, 1);
    row->addWidget(next);
    row->addWidget(frameNumber);
    return group;
}

void PreviewDialog::SetLimits() {
    const QSize controls = layout()->minimumSize().expandedTo(QSize(kControlsWidth, 0));
    setMinimumSize(OnScreen(Layout().SmallestWindow()).expandedTo(controls));
}

/// In pixels of the screen, of which a device ratio puts several into one of the window's.
PreviewLayout PreviewDialog::Layout() const {
    const double controls = layout()->minimumSize().height() * devicePixelRatioF();
    return {video, {0, static_cast<int>(std::ceil(controls))}};
}

QSize PreviewDialog::OnScreen(PixelSize size) const {
    const double ratio = devicePixelRatioF();
    return {static_cast<int>(std::ceil(size.width / ratio)),
            static_cast<int>(std::ceil(size.height / ratio))};
}

/// As far as the screen has room for it, and without leaving the screen.
void PreviewDialog::ResizeTo(int percent) {
    const QRect available = screen()->availableGeometry();
    const QSize wanted = OnScreen(Layout().WindowAt(percent));
    if (isMaximized()) showNormal();
    resize(OpeningSizeOf(*this, wanted));
    FitPicture();
    if (!isVisible()) return;
    QRect place = frameGeometry();
    place.moveRight(std::min(place.right(), available.right()));
    place.moveBottom(std::min(place.bottom(), available.bottom()));
    place.moveLeft(std::max(place.left(), available.left()));
    place.moveTop(std::max(place.top(), available.top()));
    if (place.topLeft() != pos()) move(place.topLeft());
}

void PreviewDialog::FitPicture() {
    const QSize space = picture->SizeOnScreen();
    PixelRect rect = Layout().PictureIn({space.width(), space.height()});
    // A window has whole pixels of its own, of which one or two can be too much for 100 percent. That stays
    // exact.
    const double ratio = devicePixelRatioF();
    const double spare = ratio == 1 ? 0 : 2 * ratio;
    const int tooWide = rect.width - video.width;
    const int tooHigh = rect.height - video.height;
    if (tooWide >= 0 && tooWide <= spare && tooHigh >= 0 && tooHigh <= spare)
        rect = {rect.x + tooWide / 2, rect.y + tooHigh / 2, video.width, video.height};
    picture->SetRect(ToQRect(rect));
    if (isVisible()) ShowScale(Layout().ShownScale(rect.width));
}

void PreviewDialog::ShowScale(int percent) {
    const QSignalBlocker blocker(scaleSlider);
    scaleSlider->setValue(ScaleSliderPosition(percent));
    scale->setText(QString::number(percent));
}

void PreviewDialog::AskForFrame(int frame) {
    const bool isHere = frame == asked && (wait || frame == shown);
    if (frame < 0 || frame >= frameCount || isHere) return;
    asked = frame;
    {
        const QSignalBlocker blocker(frameSlider);
        frameSlider->setValue(frame);
    }
    picture->ShowTrouble({});
    if (frame == shown) return wait.reset();
    if (!wait) wait.emplace();
    reader->Request(0, frame);
}

void PreviewDialog::Show(const Report::PictureReader::Picture& come) {
    if (come.frame != asked || !wait) return;  // too late: another one is shown or on its way
    wait.reset();
    if (!come.error.isEmpty()) {
        picture->ShowTrouble(tr("Frame %1 can't be read. %2").arg(QString::number(come.frame), come.error));
        return;
    }
    shown = come.frame;
    picture->SetImage(come.image);
    picture->setAccessibleDescription(tr("Frame %1 of 0 to %2.").arg(shown).arg(frameCount - 1));
    frameNumber->setText(QString::number(shown));
}

void PreviewDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    FitPicture();
}

// A maximised window is no larger than the largest scale needs.
void PreviewDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SetLimits();
    if (event->type() != QEvent::WindowStateChange || !isMaximized()) return;
    const QSize room = RoomFor(*this);
    const QSize largest = OnScreen(Layout().LargestWindow()).expandedTo(minimumSize());
    if (largest.width() >= room.width() && largest.height() >= room.height()) return;
    QMetaObject::invokeMethod(
        this, [this] { ResizeTo(kLargestScale); }, Qt::QueuedConnection);
}

void PreviewDialog::mousePressEvent(QMouseEvent* event) {
    windowDrag.Press(*this, *event);
}

void PreviewDialog::mouseMoveEvent(QMouseEvent* event) {
    windowDrag.Move(*this, *event);
}

void PreviewDialog::mouseReleaseEvent(QMouseEvent*) {
    windowDrag.Release();
}

void ShowPreview(QWidget* parent, std::unique_ptr<rkIVideoSource> source, int yuvTable) {
    if (source) PreviewDialog(parent, std::move(source), yuvTable).exec();
}
