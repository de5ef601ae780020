#include "app/dialogs/compressor_dialog.h"

#include "app/dialogs/controls.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/form_grid.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/value_slider.h"
#include "platform/qt/wide_text.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr QSize kUsualSize(460, 300);
constexpr int kNameColumn = 0;
constexpr int kCodeColumn = 1;

bool ChooseCompressor(COMPVARS& choice, const BITMAPINFOHEADER&, const wchar_t* title) {
    QWidget* over = QApplication::activeModalWidget();
    if (!over) over = QApplication::activeWindow();
    return CompressorDialog(over, choice, ToQString(title)).exec() == QDialog::Accepted;
}

}  // namespace

CompressorDialog::CompressorDialog(QWidget* parent, COMPVARS& choice, const QString& title)
    : QDialog(parent),
      choice(choice),
      form(CompressorFormFrom(choice)),
      codecs(new QTreeWidget),
      quality(new ValueSlider(tr("Quality"), 0, kBestQuality)) {
    setWindowTitle(title);
    BuildList();
    quality->SetPosition(form.quality);

    auto* rows = new FormGrid;
    rows->AddWide(codecs);
    qualityLabel = rows->AddRow(tr("&Quality:"), quality);
    auto* whole = new QVBoxLayout(this);
    whole->setSpacing(kGroupSpacing);
    whole->addLayout(rows, 1);
    whole->addWidget(MakeDialogButtons(*this));

    ShowQualityRule();
    connect(codecs, &QTreeWidget::currentItemChanged, this, &CompressorDialog::ShowQualityRule);
    connect(codecs, &QTreeWidget::itemDoubleClicked, this, &CompressorDialog::accept);
    AddHelpKey(*this, kHelpCompression);
    FocusFirst(*codecs);
    SetUsualSize(*this, kUsualSize);
}

void CompressorDialog::BuildList() {
    codecs->setHeaderLabels({tr("Compressor"), tr("Code")});
    codecs->setRootIsDecorated(false);
    codecs->setUniformRowHeights(true);
    codecs->setAccessibleName(tr("Compressors"));
    for (const CompressorEntry& entry : form.codecs)
        new QTreeWidgetItem(codecs, {ToQString(entry.description), ToQString(FourLetters(entry.handler))});
    codecs->setCurrentItem(codecs->topLevelItem(form.codec));

    QHeaderView& columns = *codecs->header();
    columns.setStretchLastSection(false);
    columns.setMinimumSectionSize(codecs->fontMetrics().horizontalAdvance(QStringLiteral("WWWW")) +
                                  kColumnSpacing);
    columns.setSectionResizeMode(kNameColumn, QHeaderView::Stretch);
    columns.setSectionResizeMode(kCodeColumn, QHeaderView::ResizeToContents);
    // No name is cut.
    const QAbstractItemView& list = *codecs;
    const int names = list.sizeHintForColumn(kNameColumn);
    codecs->setMinimumWidth(names + columns.sectionSize(kCodeColumn) + 2 * codecs->frameWidth() +
                            kColumnSpacing);
}

void CompressorDialog::ShowQualityRule() {
    form.codec = codecs->indexOfTopLevelItem(codecs->currentItem());
    const std::wstring why = form.WhyQualityDisabled();
    SetAvailable(*qualityLabel, why);
    SetGroupAvailable(*quality, why);
}

void CompressorDialog::accept() {
    form.quality = quality->Position();
    StoreForm(form, choice);
    QDialog::accept();
}

void InstallCompressorChooser() {
    SetCompressorChooser(&ChooseCompressor);
}
