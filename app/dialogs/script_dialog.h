#pragma once

#include "app/rules/script_form.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

/// How a file is opened through a script: the preferred filter and its parameters.
class ScriptDialog : public QDialog {
    Q_OBJECT

public:
    /// `record` outlives the dialog; it changes on "OK" only.
    ScriptDialog(QWidget* parent, FileRecord& record, const Capabilities& capabilities);

    void accept() override;

private:
    void BuildControls();
    void ShowParameters();
    void TakeControls();

    FileRecord& record;
    ScriptForm form;
    QComboBox* filters;
    QCheckBox* customParameters;
    QLineEdit* parameters;
    QCheckBox* onlyPreferred;
};

/// Runs the dialog.
void EditAviSynthParameters(QWidget* parent, FileRecord& record, const Capabilities& capabilities);
