#pragma once

#include "report/rules/report_text.h"

#include <QWidget>

#include <array>

class IconButton;
class QRadioButton;
class QSlider;
class ValueField;

namespace Report {

/// The controls below a frame. It keeps its size and reports what was chosen; moving a control by code sends
/// no signal.
class FramePanel : public QWidget {
    Q_OBJECT

public:
    explicit FramePanel(QWidget* parent = nullptr);

    QSize sizeHint() const override;

    /// A file that can't be shown says why in its tooltip.
    void SetFileAvailable(int file, bool isAvailable, const QString& reason = {});
    void SelectFile(int file);
    void ShowZoom(int percent);
    /// Of the two buttons for bad frames.
    void DisableBadFrames(const QString& reason);
    /// Without a file there is nothing to do.
    void DisableAll(const QString& reason);

signals:
    void FileChosen(int file);
    void ZoomMoved(int percent);
    void ZoomInAsked();
    void ZoomOutAsked();
    void CopyAsked();
    void PreviousAsked();
    void NextAsked();
    void PreviousBadAsked();
    void NextBadAsked();

private:
    QLayout* MakeFileRow();
    QLayout* MakeZoomRow();

    std::array<QRadioButton*, kFileCount> files{};
    IconButton* previousBad;
    IconButton* previous;
    IconButton* next;
    IconButton* nextBad;
    IconButton* zoomOut;
    IconButton* zoomIn;
    IconButton* copy;
    QSlider* slider;
    ValueField* zoom;
};

}  // namespace Report
