#include "app/dialogs/more_options_dialog.h"

#include "app/dialogs/controls.h"
#include "app/dialogs/file_kinds.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/form_grid.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/path_field.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr QSize kUsualSize(460, 108);

}  // namespace

MoreOptionsDialog::MoreOptionsDialog(QWidget* parent, ShellState& state)
    : QDialog(parent),
      state(state),
      playWav(new QCheckBox(tr("&Play WAV file, when finished"))),
      path(new PathField(PathField::Drop::File)),
      browse(new QPushButton(tr("&Browse"))) {
    setWindowTitle(tr("Tolvane - More options"));
    const MoreOptionsForm form = MoreOptionsFormFrom(state);
    playWav->setChecked(form.playWav);
    path->SetPath(form.wavPath);
    browse->setAccessibleName(tr("Browse, WAV file"));

    auto* rows = new FormGrid;
    rows->AddWide(playWav);
    pathLabel = rows->AddRow(tr("&WAV:"), path, browse);
    auto* whole = new QVBoxLayout(this);
    whole->addLayout(rows);
    whole->addStretch(1);
    whole->addSpacing(kGroupSpacing - kRowSpacing);
    whole->addWidget(MakeDialogButtons(*this));

    ShowPathRule();
    connect(playWav, &QCheckBox::toggled, this, &MoreOptionsDialog::ShowPathRule);
    connect(browse, &QPushButton::clicked, this, &MoreOptionsDialog::Browse);
    connect(path, &PathField::FileDropped, path, &PathField::SetPath);
    AddHelpKey(*this, kHelpMoreOptions);
    FocusFirst(*playWav);
    SetUsualSize(*this, kUsualSize);
}

void MoreOptionsDialog::ShowPathRule() {
    const std::wstring why = ReadControls().WhyPathDisabled();
    for (QWidget* control : {pathLabel, static_cast<QWidget*>(path), static_cast<QWidget*>(browse)})
        SetAvailable(*control, why);
}

void MoreOptionsDialog::Browse() {
    if (const auto file = ChooseFile(this, L"Open", path->Path(), FileKindsOf(kWavFilters)))
        path->SetPath(*file);
}

MoreOptionsForm MoreOptionsDialog::ReadControls() const {
    return {playWav->isChecked(), path->Path()};
}

void MoreOptionsDialog::accept() {
    StoreForm(ReadControls(), state);
    QDialog::accept();
}

void EditMoreOptions(QWidget* parent, ShellState& state) {
    MoreOptionsDialog(parent, state).exec();
}
