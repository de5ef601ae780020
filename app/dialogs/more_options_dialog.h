#pragma once

#include "app/rules/more_options_form.h"

#include <QDialog>

class PathField;
class QCheckBox;
class QPushButton;

/// What else the program does: a sound when a run has finished.
class MoreOptionsDialog : public QDialog {
    Q_OBJECT

public:
    /// `state` outlives the dialog; it changes on "OK" only.
    MoreOptionsDialog(QWidget* parent, ShellState& state);

    void accept() override;

private:
    void ShowPathRule();
    void Browse();
    MoreOptionsForm ReadControls() const;

    ShellState& state;
    QCheckBox* playWav;
    QWidget* pathLabel;
    PathField* path;
    QPushButton* browse;
};

/// Runs the dialog.
void EditMoreOptions(QWidget* parent, ShellState& state);
