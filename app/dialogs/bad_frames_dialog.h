#pragma once

#include "app/rules/bad_frames_form.h"
#include "engine/model/measurement_job.h"

#include <QDialog>

#include <array>

class PathField;
class QRadioButton;
class ValueSlider;

/// Which frames count as bad, and where they go.
class BadFramesDialog : public QDialog {
    Q_OBJECT

public:
    /// `job` outlives the dialog; it changes on "OK" only.
    BadFramesDialog(QWidget* parent, MeasurementJob& job);

    void accept() override;

private:
    void BuildControls();
    BadFramesForm ReadControls() const;

    MeasurementJob& job;
    BadFramesForm form;
    std::array<QRadioButton*, kBadFramesTypes> types{};
    ValueSlider* number;
    ValueSlider* radius;
    PathField* outputDir;
};

/// Runs the dialog.
void EditBadFrames(QWidget* parent, MeasurementJob& job);
