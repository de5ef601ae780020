#include "app/dialogs/bad_frames_dialog.h"

#include "app/dialogs/controls.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/form_grid.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/path_field.h"
#include "platform/qt/value_slider.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr QSize kUsualSize(560, 277);
constexpr std::array<QStringView, kBadFramesTypes> kMnemonics = {u"original", u"second", u"first", u"tric"};

QString RadiusText(int position) {
    return QString::number(RadiusOf(position));
}

}  // namespace

BadFramesDialog::BadFramesDialog(QWidget* parent, MeasurementJob& job)
    : QDialog(parent), job(job), form(BadFramesFormFrom(job.badFrames, job.comparativeAnalysis)) {
    setWindowTitle(tr("Tolvane - \"Bad frames\" settings"));
    BuildControls();
    number->SetPosition(form.number);
    radius->SetPosition(form.radiusSteps);
    number->KeepRoomFor(RadiusText(kMaxRadiusSteps));
    radius->SetText(QString::number(form.radiusShown));
    outputDir->SetPath(form.outputDir);
    connect(radius, &ValueSlider::Moved, this, [this](int position) { MoveRadius(form, position); });
    AddHelpKey(*this, kHelpBadFrames);
    SetUsualSize(*this, kUsualSize);
}

void BadFramesDialog::BuildControls() {
    auto* group = new QGroupBox(tr("Save bad frames:"));
    auto* typeRows = new QVBoxLayout(group);
    typeRows->setSpacing(kRowSpacing);
    for (std::size_t i = 0; i < types.size(); ++i) {
        types[i] = new QRadioButton(WithMnemonic(kBadFramesTypeTexts[i], kMnemonics[i]));
        types[i]->setChecked(static_cast<int>(i) == form.type);
        typeRows->addWidget(types[i]);
        SetAvailable(*types[i], form.whyTypeDisabled[i]);
    }
    number = new ValueSlider(tr("Number of \"bad frames\" saved"), 1, kMaxBadFrames);
    radius = new ValueSlider(tr("Count out radius"), 0, kMaxRadiusSteps, RadiusText);
    outputDir = new PathField(PathField::Drop::None);
    auto* browse = new QPushButton(tr("&Browse"));
    browse->setAccessibleName(tr("Browse, output directory"));
    connect(browse, &QPushButton::clicked, this, [this] { BrowseFolder(*outputDir); });

    auto* rows = new FormGrid;
    rows->setVerticalSpacing(kSliderRowSpacing);
    QWidget* const labels[] = {
        rows->AddRow(tr("&Number of \"bad frames\" saved:"), number),
        rows->AddRow(tr("Count out &radius:"), radius),
        rows->AddRow(tr("Output &dir:"), outputDir, browse),
    };
    for (QWidget* label : labels) SetAvailable(*label, form.whyDisabled);
    for (QWidget* slider : {number, radius}) SetGroupAvailable(*slider, form.whyDisabled);
    SetAvailable(*outputDir, form.whyDisabled);
    SetAvailable(*browse, form.whyDisabled);
    if (form.whyDisabled.empty()) FocusFirst(*types[static_cast<std::size_t>(form.type)]);

    auto* whole = new QVBoxLayout(this);
    whole->setSpacing(kGroupSpacing);
    whole->addWidget(group);
    whole->addLayout(rows);
    whole->addStretch(1);
    whole->addWidget(MakeDialogButtons(*this));
}

BadFramesForm BadFramesDialog::ReadControls() const {
    BadFramesForm read = form;
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (types[i]->isChecked()) read.type = static_cast<int>(i);
    }
    read.number = number->Position();
    read.outputDir = outputDir->Path();
    return read;
}

void BadFramesDialog::accept() {
    StoreForm(ReadControls(), job.badFrames);
    QDialog::accept();
}

void EditBadFrames(QWidget* parent, MeasurementJob& job) {
    BadFramesDialog(parent, job).exec();
}
