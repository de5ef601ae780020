#pragma once

#include "app/rules/matrix_choice.h"
#include "engine/model/measurement_job.h"

#include <QDialog>

#include <array>

class QRadioButton;

/// Which matrix turns RGB into YUV and back.
class MatrixDialog : public QDialog {
    Q_OBJECT

public:
    /// `job` outlives the dialog; it changes on "OK" only.
    MatrixDialog(QWidget* parent, MeasurementJob& job);

    void accept() override;

private:
    MeasurementJob& job;
    std::array<QRadioButton*, std::size(kMatrixChoices)> choices{};
};

/// Runs the dialog.
void EditMatrix(QWidget* parent, MeasurementJob& job);
