#include "app/shell/output_step.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QPushButton>

namespace {

enum Column { BoxColumn, BraceColumn, AdvancedColumn, RestColumn, MoreColumn };
enum Line { CsvLine, VisualizationLine, BadFramesLine };

constexpr int kWideColumnSpacing = 12;
constexpr int kMoreOptionsWidth = 110;

}  // namespace

OutputStep::OutputStep(ControlTable& controls, QWidget* parent)
    : StepGroup(tr("Step &3: Output Selection"), parent),
      saveCsv(new QCheckBox(tr("Save CS&V file"))),
      saveVisualization(new QCheckBox(tr("Save metric visuali&zation video / image"))),
      csvAdvanced(new QPushButton(tr("A&dvanced"))),
      saveBadFrames(new QCheckBox(tr("Save \"&bad frames\""))),
      badFramesAdvanced(new QPushButton(tr("Advanc&ed"))),
      moreOptions(new QPushButton(tr("&More options"))) {
    csvAdvanced->setAccessibleName(tr("Advanced, CSV and visualization"));
    badFramesAdvanced->setAccessibleName(tr("Advanced, \"bad frames\""));
    moreOptions->setMinimumWidth(kMoreOptionsWidth);
    SetFirst(saveCsv);
    Arrange();
    EnterIn(controls);

    connect(saveCsv, &QCheckBox::clicked, this, &OutputStep::SaveCsvClicked);
    connect(saveVisualization, &QCheckBox::clicked, this, &OutputStep::SaveVisualizationClicked);
    connect(csvAdvanced, &QPushButton::clicked, this, &OutputStep::CsvAdvancedClicked);
    connect(saveBadFrames, &QCheckBox::clicked, this, &OutputStep::SaveBadFramesClicked);
    connect(badFramesAdvanced, &QPushButton::clicked, this, &OutputStep::BadFramesAdvancedClicked);
    connect(moreOptions, &QPushButton::clicked, this, &OutputStep::MoreOptionsClicked);
}

void OutputStep::Arrange() {
    // One line marks that the "Advanced" behind it serves two boxes.
    auto* brace = new QFrame;
    brace->setFrameStyle(static_cast<int>(QFrame::VLine) | static_cast<int>(QFrame::Sunken));

    auto* grid = new QGridLayout(this);
    grid->setHorizontalSpacing(kWideColumnSpacing);
    grid->setColumnStretch(RestColumn, 1);
    grid->addWidget(saveCsv, CsvLine, BoxColumn);
    grid->addWidget(saveVisualization, VisualizationLine, BoxColumn);
    grid->addWidget(brace, CsvLine, BraceColumn, 2, 1);
    grid->addWidget(csvAdvanced, CsvLine, AdvancedColumn, 2, 1, Qt::AlignVCenter);
    grid->addWidget(saveBadFrames, BadFramesLine, BoxColumn);
    grid->addWidget(badFramesAdvanced, BadFramesLine, AdvancedColumn);
    grid->addWidget(moreOptions, BadFramesLine, MoreColumn);
}

void OutputStep::EnterIn(ControlTable& controls) {
    controls.Set(Control::SaveCsv, saveCsv);
    controls.Set(Control::SaveVisualization, saveVisualization);
    controls.Set(Control::CsvAdvanced, csvAdvanced);
    controls.Set(Control::SaveBadFrames, saveBadFrames);
    controls.Set(Control::BadFramesAdvanced, badFramesAdvanced);
    controls.Set(Control::MoreOptions, moreOptions);
}

void OutputStep::Show(const MainForm& form) {
    saveCsv->setChecked(form.saveCsv);
    saveVisualization->setChecked(form.saveVisualization);
    saveBadFrames->setChecked(form.saveBadFrames);
}
