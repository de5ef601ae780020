#pragma once

#include "platform/qt/window_drag.h"
#include "report/picture_reader.h"
#include "report/report_controller_subordinate.h"
#include "report/rules/child_layout.h"
#include "report/rules/report_parameters.h"
#include "report/wait_cursor.h"

#include <QString>
#include <QWidget>

#include <optional>
#include <utility>
#include <vector>

class StatusLine;

namespace Report {

class FramePanel;
class FramePicture;
class ReportController;

/// The window that shows the current frame of one of the files. It follows the controller, and appears when
/// its files have been opened, at the size of their picture. It deletes itself when it is closed.
///
/// Files are opened and read on a thread of their own; the window waits for neither. A frame that arrives
/// after another one was asked for isn't shown.
class CReportFrame : public QWidget, public IReportControllerSubordinate {
    Q_OBJECT

public:
    /// `controller` and `parameters` outlive the window.
    CReportFrame(ReportController& controller, const ReportParameters& parameters, QWidget* parent);
    ~CReportFrame() override;

    /// A frame is read once, though the visible range around it changes.
    void Update(int visibleFirst, int visibleLast, int current) override;

    /// Whether it waits for files or a frame.
    bool IsWaiting() const { return wait.has_value(); }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void ConnectControls();
    void RegisterKeys();
    void Opened(const std::vector<FrameReader::OpenedFile>& files);
    void OfferFiles();
    void FitTo(int imageWidth, int imageHeight);
    void AskForFrame();
    void Show(const PictureReader::Picture& picture);
    void ShowTrouble(const QString& text);
    void ShowNote(const QString& text);
    void PlaceMessage();

    bool SelectFile(int file);
    void Zoom(int percent);
    bool CopyFrame();
    void Step(int frames);
    void GoToBadFrame(bool next);

    const FrameReader::OpenedFile* OpenedFile(int file) const;

    ReportController& controller;
    const ReportParameters& parameters;
    PictureReader reader;
    FramePicture* picture;
    FramePanel* panel;
    StatusLine* message;  // over the picture, while there is something to say
    std::vector<FrameReader::OpenedFile> opened;
    bool hasOpened = false;
    QString noteToShow;  // with the first frame, until the next one
    int selected = 0;
    int asked = 0;  // the newest frame that was asked for

    QSize lastSize;  // that the children are laid out for
    OddPixels oddPixels;
    std::vector<std::pair<QWidget*, PlacedChild>> children;

    WindowDrag windowDrag;
    std::optional<WaitCursor> wait;
};

}  // namespace Report
