#pragma once

#include "app/rules/preview_layout.h"
#include "platform/qt/window_drag.h"
#include "report/picture_reader.h"
#include "report/wait_cursor.h"

#include <QDialog>

#include <memory>
#include <optional>

class PreviewPicture;
class QLayout;
class QSlider;
class QGroupBox;
class ValueField;

/// A window to look through a video. Its frames are read on a thread of their own; one that arrives after
/// another was asked for isn't shown, and one that can't be read leaves the last picture.
class PreviewDialog : public QDialog {
    Q_OBJECT

public:
    /// `source`, not null, is open; it goes with the dialog, by its reader's thread.
    PreviewDialog(QWidget* parent, std::unique_ptr<rkIVideoSource> source, int yuvTable);

    /// Whether a frame is on its way.
    bool IsWaiting() const { return wait.has_value(); }

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QLayout* MakeScaleRow();
    QGroupBox* MakeFrameGroup();
    void SetLimits();

    PreviewLayout Layout() const;
    void ResizeTo(int percent);
    void FitPicture();
    void ShowScale(int percent);
    QSize OnScreen(PixelSize size) const;

    void AskForFrame(int frame);
    void Show(const Report::PictureReader::Picture& come);

    PixelSize video;
    int frameCount;
    int asked = -1;  // the newest frame that was asked for
    int shown = -1;  // that of the picture

    QSlider* scaleSlider;
    ValueField* scale;
    PreviewPicture* picture;
    QSlider* frameSlider;
    ValueField* frameNumber;

    WindowDrag windowDrag;
    std::optional<Report::WaitCursor> wait;
    std::unique_ptr<Report::PictureReader> reader;
};

/// Lets the user look through a video that is open; returns once its window is closed. The source is closed
/// and destroyed as soon as no frame of it is being read any more. Nothing happens without a source.
/// `yuvTable` is the matrix of the pictures, as the job has it.
void ShowPreview(QWidget* parent, std::unique_ptr<rkIVideoSource> source, int yuvTable);
