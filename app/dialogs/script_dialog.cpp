#include "app/dialogs/script_dialog.h"

#include "app/dialogs/controls.h"
#include "app/dialogs/wrapped_check_box.h"
#include "app/rules/reasons.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/wide_text.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr QSize kUsualSize(460, 236);

QLabel* LabelOf(QWidget* field, const QString& text) {
    auto* label = new QLabel(text);
    label->setBuddy(field);
    return label;
}

}  // namespace

ScriptDialog::ScriptDialog(QWidget* parent, FileRecord& record, const Capabilities& capabilities)
    : QDialog(parent), record(record), form(ScriptFormFrom(record, capabilities)) {
    setWindowTitle(tr("Tolvane - AVISynth parameters"));
    BuildControls();
    ShowParameters();
    connect(filters, &QComboBox::currentIndexChanged, this, [this](int position) {
        TakeControls();
        ChooseFilter(form, position);
        ShowParameters();
    });
    connect(customParameters, &QCheckBox::toggled, this, [this](bool on) {
        TakeControls();
        SetCustomParameters(form, on);
        ShowParameters();
    });
    FocusFirst(*filters);
    SetUsualSize(*this, kUsualSize);
}

void ScriptDialog::BuildControls() {
    filters = new QComboBox;
    for (const ScriptForm::Filter& filter : form.filters) filters->addItem(ToQString(filter.label));
    filters->setCurrentIndex(form.filter);
    customParameters = new QCheckBox(tr("&Edit parameters string manually"));
    customParameters->setChecked(form.customParameters);
    parameters = new QLineEdit;
    parameters->setMaxLength(static_cast<int>(kMaxScriptParameters));
    onlyPreferred = new WrappedCheckBox(
        tr("&Do not try to open the file using different filters, use only provided settings for AviSynth"));
    onlyPreferred->setChecked(form.onlyPreferred);

    auto* rows = new QVBoxLayout;
    rows->setSpacing(kRowSpacing);
    rows->addWidget(LabelOf(filters, tr("Choose prefered AVISynth &filter:")));
    rows->addWidget(filters);
    rows->addWidget(customParameters);
    rows->addWidget(LabelOf(parameters, tr("Additional filter &parameters:")));
    rows->addWidget(parameters);
    rows->addWidget(onlyPreferred);

    auto* whole = new QVBoxLayout(this);
    whole->addLayout(rows);
    whole->addStretch(1);
    whole->addSpacing(kGroupSpacing - kRowSpacing);
    whole->addWidget(MakeDialogButtons(*this, [] { ShowHelp(kHelpScripts); }));
}

void ScriptDialog::ShowParameters() {
    SetAvailable(*parameters, form.customParameters ? L"" : Needs(L"Edit parameters string manually"));
    if (parameters->text() != ToQString(form.parameters)) {
        parameters->setText(ToQString(form.parameters));
        parameters->setCursorPosition(0);
    }
}

void ScriptDialog::TakeControls() {
    form.parameters = ToWide(parameters->text());
    form.onlyPreferred = onlyPreferred->isChecked();
}

void ScriptDialog::accept() {
    TakeControls();
    StoreForm(form, record);
    QDialog::accept();
}

void EditAviSynthParameters(QWidget* parent, FileRecord& record, const Capabilities& capabilities) {
    ScriptDialog(parent, record, capabilities).exec();
}
