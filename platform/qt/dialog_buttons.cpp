#include "platform/qt/dialog_buttons.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QShortcut>

#include <utility>

QDialogButtonBox* MakeDialogButtons(QDialog& dialog, std::function<void()> help) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    if (!help) return buttons;

    buttons->addButton(QDialogButtonBox::Help)->setText(QDialogButtonBox::tr("&Help"));
    QObject::connect(buttons, &QDialogButtonBox::helpRequested, &dialog, help);
    auto* key = new QShortcut(QKeySequence(Qt::Key_F1), &dialog);
    QObject::connect(key, &QShortcut::activated, &dialog, std::move(help));
    return buttons;
}
