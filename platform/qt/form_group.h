#pragma once

#include <QGroupBox>

class LabelColumn;
class QGridLayout;
class QLabel;

/// A titled group of rows, label | field | button. The labels stand in a column that several groups share; a field takes
/// the button's place too in a row without one. Rows are entered from the top; the group is as high as they need.
class FormGroup : public QGroupBox {
    Q_OBJECT

public:
    /// `labels` outlives the group.
    FormGroup(const QString& title, LabelColumn& labels, QWidget* parent = nullptr);

    /// `label` may have a mnemonic, which leads to `field`.
    QLabel* AddRow(const QString& label, QWidget* field, QWidget* button = nullptr);
    /// The row has several fields, at the distance of columns if it has none of its own; the mnemonic leads to `buddy`.
    QLabel* AddRow(const QString& label, QLayout* fields, QWidget* buddy);

    /// A row without a label; it begins where the fields do.
    void AddField(QWidget* field, QWidget* button = nullptr);
    void AddField(QLayout* fields);

    /// For what differs between rows, such as their distances.
    QGridLayout& Grid() { return *grid; }

private:
    QLabel* AddLabel(const QString& text, QWidget* buddy);

    LabelColumn& labels;
    QGridLayout* grid;
    int row = 0;  // the next one
};
