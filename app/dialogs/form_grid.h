#pragma once

#include <QGridLayout>

class QLabel;

/// The rows of a dialog without groups, label | field | button, entered from the top. A field takes the button's place
/// too in a row without one.
class FormGrid : public QGridLayout {
    Q_OBJECT

public:
    FormGrid();

    /// `label` may have a mnemonic, which leads to `field`.
    QLabel* AddRow(const QString& label, QWidget* field, QWidget* button = nullptr);
    /// The row has several fields; the mnemonic leads to `buddy`.
    QLabel* AddRow(const QString& label, QLayout* fields, QWidget* buddy);
    /// A row over all columns.
    void AddWide(QWidget* control);

private:
    QLabel* AddLabel(const QString& text, QWidget* buddy);

    int row = 0;  // the next one
};
