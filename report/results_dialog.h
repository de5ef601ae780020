#pragma once

#include "report/report_controller.h"
#include "report/rules/report_parameters.h"

#include <QDialog>
#include <QPointer>

#include <array>

class IconButton;
class QCheckBox;
class QGroupBox;
class QPushButton;
class QSlider;
class PlainLabel;
class ValueField;

namespace Report {

class CReportFrame;
class CReportGraph;
class HoldButton;

/// "Results visualization": two plots of the values, and what moves through them. The window with the frames
/// belongs to it.
class ResultsDialog : public QDialog {
    Q_OBJECT

public:
    /// `parameters` outlive the dialog.
    explicit ResultsDialog(const ReportParameters& parameters, QWidget* parent = nullptr);
    ~ResultsDialog() override;

    ReportController& Controller() { return controller; }
    /// The overview comes first.
    std::array<CReportGraph*, 2> Plots() const { return {overview, detail}; }
    /// The window with the frames while it is open, otherwise null.
    CReportFrame* FrameView() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QWidget* MakeSheet();
    QGroupBox* MakeValues();
    QGroupBox* MakeControlWindow();
    QGroupBox* MakeVideoSlide();
    void ConnectControls();
    void RegisterKeys();
    void FitToScreen();

    void ShowNumbers();
    void ShowFrames();
    /// What every command ends with.
    void Act(void (ReportController::*command)());
    void GoTo(int frame);
    void Widen(int frames);

    const ReportParameters& parameters;
    ReportController controller;
    CReportGraph* overview = nullptr;
    CReportGraph* detail = nullptr;
    QPointer<CReportFrame> frameView;
    std::array<ValueField*, 3> values{};
    PlainLabel* frameCount = nullptr;
    QSlider* slider = nullptr;
    ValueField* frame = nullptr;
    HoldButton* narrower = nullptr;
    HoldButton* wider = nullptr;
    HoldButton* previous = nullptr;
    HoldButton* next = nullptr;
    IconButton* previousBad = nullptr;
    IconButton* nextBad = nullptr;
    QCheckBox* showGrid = nullptr;
    QPushButton* copy = nullptr;
    QPushButton* showFrame = nullptr;
    WheelSteps wheel;
};

}  // namespace Report
