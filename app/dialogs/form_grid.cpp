#include "app/dialogs/form_grid.h"

#include "platform/qt/layout_grid.h"

#include <QLabel>

namespace {

constexpr int kLabelColumn = 0;
constexpr int kFieldColumn = 1;
constexpr int kButtonColumn = 2;
constexpr int kFieldAndButton = 2;  // columns
constexpr int kAllColumns = 3;

}  // namespace

FormGrid::FormGrid() {
    setColumnStretch(kFieldColumn, 1);
    setHorizontalSpacing(kColumnSpacing);
    setVerticalSpacing(kRowSpacing);
}

QLabel* FormGrid::AddLabel(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    addWidget(label, row, kLabelColumn);
    return label;
}

QLabel* FormGrid::AddRow(const QString& text, QWidget* field, QWidget* button) {
    QLabel* label = AddLabel(text, field);
    addWidget(field, row, kFieldColumn, 1, button ? 1 : kFieldAndButton);
    if (button) addWidget(button, row, kButtonColumn);
    ++row;
    return label;
}

QLabel* FormGrid::AddRow(const QString& text, QLayout* fields, QWidget* buddy) {
    QLabel* label = AddLabel(text, buddy);
    fields->setSpacing(kColumnSpacing);
    addLayout(fields, row, kFieldColumn, 1, kFieldAndButton);
    ++row;
    return label;
}

void FormGrid::AddWide(QWidget* control) {
    addWidget(control, row++, kLabelColumn, 1, kAllColumns);
}
