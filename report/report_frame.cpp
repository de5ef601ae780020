#include "report/report_frame.h"

#include "platform/qt/help.h"
#include "platform/qt/key_filter.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/status_line.h"
#include "report/frame_panel.h"
#include "report/frame_picture.h"
#include "report/report_controller.h"
#include "report/to_qt.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QShortcut>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Report {

namespace {

constexpr int kEmptyHeight = 160;  // of the picture without any file: room for the message

}  // namespace

CReportFrame::CReportFrame(ReportController& reportController, const ReportParameters& given, QWidget* parent)
    : QWidget(parent, Qt::Window),
      controller(reportController),
      parameters(given),
      reader(given.files, given.yuvTable),
      picture(new FramePicture(this)),
      panel(new FramePanel(this)),
      message(new StatusLine(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating);  // the focus stays with the results
    setWindowTitle(QStringLiteral("Tolvane"));
    message->setAutoFillBackground(true);
    message->setContentsMargins(kWindowMargin, 2, kWindowMargin, 2);
    message->hide();

    const QSize panelSize = panel->sizeHint();
    setMinimumSize(panelSize);
    resize(panelSize);
    lastSize = panelSize;
    children = {
        {picture, PlacedChild({0, 0, panelSize.width(), 0}, kStretchWidth | kStretchHeight)},
        {panel, PlacedChild({0, 0, panelSize.width(), panelSize.height()}, kMoveDown | kCentreHorizontally)}};
    for (const auto& [child, place] : children) child->setGeometry(ToQRect(place.Rect()));
    panel->ShowZoom(picture->View().percent);
    ConnectControls();
    RegisterKeys();

    wait.emplace();
    connect(&reader, &PictureReader::Opened, this, &CReportFrame::Opened);
    connect(&reader, &PictureReader::Arrived, this, &CReportFrame::Show);
}

CReportFrame::~CReportFrame() {
    KeyFilter::OfApplication().Remove(this);
    controller.SetFrameView(nullptr);
}

void CReportFrame::ConnectControls() {
    connect(panel, &FramePanel::FileChosen, this, &CReportFrame::SelectFile);
    connect(panel, &FramePanel::ZoomMoved, this, [this](int percent) {
        Zoom(percent);
        AskForFrame();
    });
    connect(panel, &FramePanel::ZoomInAsked, this, [this] { Zoom(ZoomAbove(picture->View().percent)); });
    connect(panel, &FramePanel::ZoomOutAsked, this, [this] { Zoom(ZoomBelow(picture->View().percent)); });
    connect(picture, &FramePicture::Zoomed, panel, &FramePanel::ShowZoom);
    connect(panel, &FramePanel::CopyAsked, this, &CReportFrame::CopyFrame);
    connect(panel, &FramePanel::PreviousAsked, this, [this] { Step(-1); });
    connect(panel, &FramePanel::NextAsked, this, [this] { Step(1); });
    connect(panel, &FramePanel::PreviousBadAsked, this, [this] { GoToBadFrame(false); });
    connect(panel, &FramePanel::NextBadAsked, this, [this] { GoToBadFrame(true); });
    auto* close = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
    AddHelpKey(*this, kHelpFrames);
}

void CReportFrame::RegisterKeys() {
    KeyFilter::Keys keys = {{Qt::CTRL | Qt::Key_C, [this] { return CopyFrame(); }}};
    for (int file = 0; file < kFileCount; ++file)
        keys.emplace_back(Qt::Key(Qt::Key_1 + file), [this, file] { return SelectFile(file); });
    KeyFilter::OfApplication().Register(this, std::move(keys));
}

void CReportFrame::Opened(const std::vector<FrameReader::OpenedFile>& files) {
    opened = files;
    hasOpened = true;
    wait.reset();
    OfferFiles();
    if (opened.empty()) {
        FitTo(0, 0);
        panel->DisableAll(QStringLiteral("Needs a file that can be opened"));
        ShowTrouble(QStringLiteral("None of the files can be opened any more"));
    } else {
        selected = opened.front().file;
        panel->SelectFile(selected);
        FitTo(opened.front().width, opened.front().height);
        AskForFrame();
    }
    show();
}

void CReportFrame::OfferFiles() {
    QStringList missing;
    for (int file = 0; file < kFileCount; ++file) {
        const auto found = parameters.files.find(file);
        const bool isOpen = OpenedFile(file) != nullptr;
        QString toolTip = ToQString(NeedsFileText(file));
        if (found != parameters.files.end()) {
            const QString path = ToQString(found->second.name);
            toolTip =
                PlainToolTip(isOpen ? path : QStringLiteral("\"%1\" can't be opened any more").arg(path));
            if (!isOpen) missing.append(FileLabel(file));
        }
        panel->SetFileAvailable(file, isOpen, toolTip);
    }
    if (!missing.isEmpty())
        noteToShow =
            QStringLiteral("Can't be opened any more: %1").arg(missing.join(QStringLiteral(", ")).toLower());
    if (!parameters.badFrames) panel->DisableBadFrames(ToQString(kNeedsBadFrames));
}

const FrameReader::OpenedFile* CReportFrame::OpenedFile(int file) const {
    const auto found =
        std::find_if(opened.begin(), opened.end(), [file](const auto& open) { return open.file == file; });
    return found == opened.end() ? nullptr : &*found;
}

/// The window shows the frame at 100 percent above the panel, as far as the screen has room for it.
void CReportFrame::FitTo(int imageWidth, int imageHeight) {
    const double ratio = devicePixelRatioF();
    const QSize image(static_cast<int>(std::ceil(imageWidth / ratio)),
                      imageHeight > 0 ? static_cast<int>(std::ceil(imageHeight / ratio)) : kEmptyHeight);
    const QSize wanted(std::max(image.width(), panel->width()), image.height() + panel->height());
    const QRect available = screen()->availableGeometry();
    const QSize frameOfWindow(8, 40);  // not known before the window is shown
    resize(wanted.boundedTo(available.size() - frameOfWindow).expandedTo(minimumSize()));
}

void CReportFrame::Update(int, int, int current) {
    if (hasOpened && current != asked) AskForFrame();
}

void CReportFrame::AskForFrame() {
    if (opened.empty()) return picture->update();
    asked = controller.Range().Current();
    if (!wait) wait.emplace();
    reader.Request(selected, asked);
}

void CReportFrame::Show(const PictureReader::Picture& come) {
    const auto& [file, frame, error, image] = come;
    if (file != selected || frame != asked) return;  // too late: another one is on its way
    wait.reset();
    if (!error.isEmpty()) {
        const QString name = ToQString(FrameDescription(file, frame));
        return ShowTrouble(QStringLiteral("%1 can't be read. %2").arg(name, error));
    }
    message->hide();
    picture->SetImage(image);
    picture->setAccessibleDescription(ToQString(FrameDescription(file, frame)));
    setWindowTitle(ToQString(FrameTitle(file, frame)));

    if (!noteToShow.isEmpty()) ShowNote(std::exchange(noteToShow, {}));
    const FrameReader::OpenedFile& first = opened.front();
    if (image.size() != QSize(first.width, first.height)) {
        ShowNote(QStringLiteral("%1 has frames of %2 x %3, %4 of %5 x %6")
                     .arg(FileLabel(file))
                     .arg(image.width())
                     .arg(image.height())
                     .arg(FileLabel(first.file).toLower())
                     .arg(first.width)
                     .arg(first.height));
    }
}

void CReportFrame::ShowTrouble(const QString& text) {
    message->Show(Status::Error, text);
    PlaceMessage();
}

void CReportFrame::ShowNote(const QString& text) {
    message->Show(Status::Warning, text);
    PlaceMessage();
}

void CReportFrame::PlaceMessage() {
    const int height = message->sizeHint().height();
    message->setGeometry(0, std::max(picture->height() - height, 0), width(), height);
    message->show();
    message->raise();
}

bool CReportFrame::SelectFile(int file) {
    if (!OpenedFile(file)) return false;
    selected = file;
    panel->SelectFile(file);
    AskForFrame();
    return true;
}

void CReportFrame::Zoom(int percent) {
    picture->SetZoom(percent);
    panel->ShowZoom(percent);
}

bool CReportFrame::CopyFrame() {
    if (picture->Image().isNull()) return false;
    const WaitCursor waitForClipboard;
    QGuiApplication::clipboard()->setImage(picture->Image());
    return true;
}

void CReportFrame::Step(int frames) {
    if (opened.empty()) return;
    controller.SetCurrent(controller.Range().Current() + frames, true);
    controller.Redraw();
}

void CReportFrame::GoToBadFrame(bool next) {
    if (opened.empty()) return;
    if (next)
        controller.GoToNextBadFrame();
    else
        controller.GoToPreviousBadFrame();
    controller.Redraw();
}

void CReportFrame::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const QSize change = size() - lastSize;
    lastSize = size();
    const int centreMove = oddPixels.MoveFor(change.width());
    for (auto& [child, place] : children) {
        place.Follow(change.width(), change.height(), centreMove);
        child->setGeometry(ToQRect(place.Rect()));
    }
    if (!message->isHidden()) PlaceMessage();
}

void CReportFrame::mousePressEvent(QMouseEvent* event) {
    if (picture->geometry().contains(event->position().toPoint())) return event->ignore();
    windowDrag.Press(*this, *event);
}

void CReportFrame::mouseMoveEvent(QMouseEvent* event) {
    windowDrag.Move(*this, *event);
}

void CReportFrame::mouseReleaseEvent(QMouseEvent*) {
    windowDrag.Release();
}

}  // namespace Report
