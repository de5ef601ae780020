#include "platform/qt/form_grid.h"

#include "platform/qt/label_column.h"
#include "platform/qt/layout_grid.h"

#include <QLabel>

namespace {

constexpr int kLabelColumn = 0;
constexpr int kFieldColumn = 1;
constexpr int kButtonColumn = 2;
constexpr int kFieldAndButton = 2;  // columns
constexpr int kAllColumns = 3;

}  // namespace

FormGrid::FormGrid(QWidget* parent, LabelColumn* labelColumn) : QGridLayout(parent), labels(labelColumn) {
    setColumnStretch(kFieldColumn, 1);
    // A layout within another one would take those of that.
    setHorizontalSpacing(kColumnSpacing);
    setVerticalSpacing(kRowSpacing);
}

QLabel* FormGrid::AddLabel(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    if (labels) labels->Add(label);
    addWidget(label, row, kLabelColumn);
    return label;
}

QLabel* FormGrid::AddRow(const QString& text, QWidget* field, QWidget* button) {
    QLabel* label = AddLabel(text, field);
    AddField(field, button);
    return label;
}

QLabel* FormGrid::AddRow(const QString& text, QLayout* fields, QWidget* buddy) {
    QLabel* label = AddLabel(text, buddy);
    AddField(fields);
    return label;
}

void FormGrid::AddField(QWidget* field, QWidget* button) {
    addWidget(field, row, kFieldColumn, 1, button ? 1 : kFieldAndButton);
    if (button) addWidget(button, row, kButtonColumn);
    ++row;
}

void FormGrid::AddField(QLayout* fields) {
    if (fields->spacing() < 0) fields->setSpacing(kColumnSpacing);
    addLayout(fields, row++, kFieldColumn, 1, kFieldAndButton);
}

void FormGrid::AddWide(QWidget* control) {
    addWidget(control, row++, kLabelColumn, 1, kAllColumns);
}
