#pragma once

#include "app/rules/yuv_form.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QRadioButton;

/// Size, layout and parser of a raw file.
class YuvDialog : public QDialog {
    Q_OBJECT

public:
    /// `record` outlives the dialog. It changes on "OK" only, as `StoreForm` tells: also when a side is 0,
    /// which brings a message while the dialog stays.
    YuvDialog(QWidget* parent, FileRecord& record, const Capabilities& capabilities);

    void accept() override;

private:
    void BuildControls();
    void ShowLayouts();
    void TakeParser(bool useScript);
    YuvForm ReadControls() const;

    FileRecord& record;
    YuvForm form;
    QLineEdit* width;
    QLineEdit* height;
    QComboBox* layouts;
    QRadioButton* internalParser;
    QRadioButton* scriptParser;
};

/// Runs the dialog; whether it ended by "OK".
bool EditYuvSettings(QWidget* parent, FileRecord& record, const Capabilities& capabilities);
