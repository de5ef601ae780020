#pragma once

#include "app/rules/output_form.h"

#include <QDialog>

class LabelColumn;
class PathField;
class PlainLabel;
class QCheckBox;
class QComboBox;
class QLineEdit;

/// Where CSV and visualization files go, what they are called and how they look.
class OutputDialog : public QDialog {
    Q_OBJECT

public:
    /// `job` outlives the dialog. It changes on "OK" only, but for the compressor, whose choice takes effect
    /// at once.
    OutputDialog(QWidget* parent, MeasurementJob& job);

    void accept() override;

private:
    QWidget* MakeCsvGroup(LabelColumn& labels);
    QWidget* MakeVisualizationGroup(LabelColumn& labels);
    QWidget* MakeCaptionGroup(LabelColumn& labels);
    void ShowForm();
    void ShowCustomNameRule();
    void ShowCompressor();
    void ChooseCompressor();
    OutputForm ReadControls() const;

    MeasurementJob& job;
    OutputForm form;

    PathField* csvDir;
    QComboBox* csvNaming;
    QLineEdit* customName;
    QWidget* customNameLabel;
    QComboBox* csvType;
    QComboBox* decimalDelimiter;
    QCheckBox* unicode;
    QComboBox* visualizationNaming;
    PathField* visualizationDir;
    PlainLabel* compressor;
    QComboBox* captionPosition;
    QCheckBox* printFrameNumber;
    QCheckBox* printMetricValue;
};

/// Runs the dialog.
void EditCsvAndVisualization(QWidget* parent, MeasurementJob& job);
