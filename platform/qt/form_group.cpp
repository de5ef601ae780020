#include "platform/qt/form_group.h"

#include "platform/qt/label_column.h"

#include <QGridLayout>
#include <QLabel>
#include <QStyle>

namespace {

constexpr int kLabelColumn = 0;
constexpr int kFieldColumn = 1;
constexpr int kButtonColumn = 2;
constexpr int kFieldAndButton = 2;  // columns

}  // namespace

FormGroup::FormGroup(const QString& title, LabelColumn& labels, QWidget* parent)
    : QGroupBox(title, parent), labels(labels), grid(new QGridLayout(this)) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    grid->setColumnStretch(kFieldColumn, 1);
}

QLabel* FormGroup::AddLabel(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    labels.Add(label);
    grid->addWidget(label, row, kLabelColumn);
    return label;
}

QLabel* FormGroup::AddRow(const QString& label, QWidget* field, QWidget* button) {
    QLabel* added = AddLabel(label, field);
    AddField(field, button);
    return added;
}

QLabel* FormGroup::AddRow(const QString& label, QLayout* fields, QWidget* buddy) {
    QLabel* added = AddLabel(label, buddy);
    AddField(fields);
    return added;
}

void FormGroup::AddField(QWidget* field, QWidget* button) {
    grid->addWidget(field, row, kFieldColumn, 1, button ? 1 : kFieldAndButton);
    if (button) grid->addWidget(button, row, kButtonColumn);
    ++row;
}

void FormGroup::AddField(QLayout* fields) {
    // A layout asks the one around it for its spacing, and a grid has no single one to tell.
    if (fields->spacing() < 0)
        fields->setSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing, nullptr, this));
    grid->addLayout(fields, row, kFieldColumn, 1, kFieldAndButton);
    ++row;
}
