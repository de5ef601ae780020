#pragma once

#include <QGridLayout>

class LabelColumn;
class QLabel;

/// The rows of a window or a group, label | field | button, entered from the top. A field takes the button's
/// place too in a row without one.
class FormGrid : public QGridLayout {
    Q_OBJECT

public:
    /// The layout of `parent`, if there is one. The labels stand in the column that several groups share,
    /// which outlives the grid, or in one of their own.
    explicit FormGrid(QWidget* parent = nullptr, LabelColumn* labels = nullptr);

    /// `label` may have a mnemonic, which leads to `field`.
    QLabel* AddRow(const QString& label, QWidget* field, QWidget* button = nullptr);
    /// The row has several fields; the mnemonic leads to `buddy`.
    QLabel* AddRow(const QString& label, QLayout* fields, QWidget* buddy);
    /// A row without a label; it begins where the fields do.
    void AddField(QWidget* field, QWidget* button = nullptr);
    /// The same with several fields, at the distance of columns if it has none of its own.
    void AddField(QLayout* fields);
    /// A row over all columns.
    void AddWide(QWidget* control);

private:
    QLabel* AddLabel(const QString& text, QWidget* buddy);

    LabelColumn* labels;
    int row = 0;  // the next one
};
