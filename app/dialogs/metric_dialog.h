#pragma once

#include "engine/model/measurement_job.h"

#include <QDialog>

class QLineEdit;

/// The settings string of the selected metric.
class MetricDialog : public QDialog {
    Q_OBJECT

public:
    /// `job` outlives the dialog; it changes on "OK" only.
    MetricDialog(QWidget* parent, MeasurementJob& job);

    void accept() override;

private:
    MeasurementJob& job;
    QLineEdit* line;
};

/// Runs the dialog.
void EditMetricConfiguration(QWidget* parent, MeasurementJob& job);
