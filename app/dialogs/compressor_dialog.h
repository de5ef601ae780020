#pragma once

#include "app/rules/compressor_form.h"

#include <QDialog>

class QTreeWidget;
class ValueSlider;

/// The codec of visualization videos, and its quality.
class CompressorDialog : public QDialog {
    Q_OBJECT

public:
    /// `choice` outlives the dialog; it changes on "OK" only.
    CompressorDialog(QWidget* parent, COMPVARS& choice, const QString& title);

    void accept() override;

private:
    void BuildList();
    void ShowQualityRule();

    COMPVARS& choice;
    CompressorForm form;
    QTreeWidget* codecs;
    QWidget* qualityLabel;
    ValueSlider* quality;
};

/// Lets the video library ask for a compressor by this dialog, over the active window. Called once at start.
void InstallCompressorChooser();
