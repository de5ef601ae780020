#include "app/dialogs/matrix_dialog.h"

#include "app/dialogs/controls.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/plain_label.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr QSize kUsualSize(460, 249);
constexpr int kTextIndent = 22;  // behind the sign of the radio button

struct MatrixText {
    QStringView mnemonic;
    const char* text;
};
constexpr MatrixText kTexts[] = {
    {u"601",
     QT_TRANSLATE_NOOP("MatrixDialog",
                       "REC.601 - Default matrix for AviSynth and some of YUV files. Y: [16...235], U, V: "
                       "[16...240] (or [-112...112]")},
    {u"PC",
     QT_TRANSLATE_NOOP("MatrixDialog",
                       "PC.601. This matrix was used in previous version of Tolvane.         Y: [0...255], "
                       "U, V: [0...255]")},
};
static_assert(std::size(kTexts) == std::size(kMatrixChoices));

}  // namespace

MatrixDialog::MatrixDialog(QWidget* parent, MeasurementJob& job) : QDialog(parent), job(job) {
    setWindowTitle(tr("Tolvane - Advanced file settings"));
    auto* group = new QGroupBox(tr("RGB <-> YUV Matrix"));
    auto* rows = new QVBoxLayout(group);
    rows->setSpacing(kRowSpacing);
    for (std::size_t i = 0; i < choices.size(); ++i) {
        auto* choice = new QRadioButton(WithMnemonic(kMatrixChoices[i].text, kTexts[i].mnemonic));
        auto* text = new PlainLabel(tr(kTexts[i].text), PlainLabel::Tone::Quiet);
        text->setWordWrap(true);
        text->setContentsMargins(kTextIndent, 0, 0, 0);
        choice->setAccessibleDescription(text->text());
        rows->addWidget(choice);
        rows->addWidget(text);
        choices[i] = choice;
    }

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(group);
    whole->addStretch(1);
    whole->addSpacing(kGroupSpacing - kRowSpacing);
    whole->addWidget(MakeDialogButtons(*this, [] { ShowHelp(kHelpMatrix); }));

    QRadioButton* chosen =
        choices[static_cast<std::size_t>(ChoicePosition(kMatrixChoices, job.run.yuvTable))];
    chosen->setChecked(true);
    FocusFirst(*chosen);
    SetUsualSize(*this, kUsualSize);
}

void MatrixDialog::accept() {
    for (std::size_t i = 0; i < choices.size(); ++i) {
        if (choices[i]->isChecked()) job.run.yuvTable = kMatrixChoices[i].value;
    }
    QDialog::accept();
}

void EditMatrix(QWidget* parent, MeasurementJob& job) {
    MatrixDialog(parent, job).exec();
}
