#include "app/dialogs/output_dialog.h"

#include "app/dialogs/controls.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/form_grid.h"
#include "platform/qt/help.h"
#include "platform/qt/label_column.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/path_field.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/wide_text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr QSize kUsualSize(540, 497);

QComboBox* MakeList(std::span<const Choice> choices, int position, const QString& name = {}) {
    auto* list = new QComboBox;
    list->setAccessibleName(name);
    for (const Choice& choice : choices) list->addItem(ToQString(choice.text));
    list->setCurrentIndex(position);
    return list;
}

QPushButton* MakeBrowse(const QString& label, const QString& name, PathField& field) {
    auto* browse = new QPushButton(label);
    browse->setAccessibleName(name);
    QObject::connect(browse, &QPushButton::clicked, &field, [&field] { BrowseFolder(field); });
    return browse;
}

QCheckBox* MakeBox(const QString& label, bool on) {
    auto* box = new QCheckBox(label);
    box->setChecked(on);
    return box;
}

PathField* MakeFolderField(const std::wstring& folder, const QString& name) {
    auto* field = new PathField(PathField::Drop::None);
    field->setAccessibleName(name);
    field->SetPath(folder);
    return field;
}

QString CompressorText(const rkCompressorSettings& compressor) {
    return OutputDialog::tr("Current:") + u' ' + ToQString(compressor.Description());
}

}  // namespace

OutputDialog::OutputDialog(QWidget* parent, MeasurementJob& job)
    : QDialog(parent), job(job), form(OutputFormFrom(job)) {
    setWindowTitle(tr("Tolvane - Advanced CSV and visualization settings"));
    auto* labels = new LabelColumn(this);
    auto* whole = new QVBoxLayout(this);
    whole->setSpacing(kGroupSpacing);
    whole->addWidget(MakeCsvGroup(*labels));
    whole->addWidget(MakeVisualizationGroup(*labels));
    whole->addWidget(MakeCaptionGroup(*labels));
    whole->addStretch(1);
    whole->addWidget(MakeDialogButtons(*this));

    ShowCompressor();
    ShowCustomNameRule();
    connect(csvNaming, &QComboBox::currentIndexChanged, this, &OutputDialog::ShowCustomNameRule);
    AddHelpKey(*this, kHelpOutput);
    if (form.whyCsvDisabled.empty())
        FocusFirst(*csvDir);
    else if (form.whyVisualizationDisabled.empty())
        FocusFirst(*visualizationNaming);
    SetUsualSize(*this, kUsualSize);
}

QWidget* OutputDialog::MakeCsvGroup(LabelColumn& labels) {
    csvDir = MakeFolderField(form.csvDir, tr("Output dir, CSV files"));
    csvNaming = MakeList(kCsvNamings, form.csvNaming, tr("Name generation, CSV files"));
    customName = new QLineEdit;
    customName->setMaxLength(static_cast<int>(kMaxCustomName));
    customName->setText(ToQString(form.customName));
    csvType = MakeList(kCsvTypes, form.csvType);
    decimalDelimiter = MakeList(kDecimalDelimiters, form.decimalDelimiter);
    unicode = MakeBox(tr("C&reate CSV in unicode"), form.unicode);

    auto* group = new QGroupBox(tr("CSV Settings"));
    auto* rows = new FormGrid(group, &labels);
    rows->AddRow(tr("&Output dir:"), csvDir, MakeBrowse(tr("&Browse"), tr("Browse, CSV files"), *csvDir));
    rows->AddRow(tr("&Name generation:"), csvNaming);
    customNameLabel = rows->AddRow(tr("C&ustom name:"), customName);
    rows->AddRow(tr("CSV &Type:"), csvType);
    rows->AddRow(tr("&Floating point delimiter:"), decimalDelimiter);
    rows->AddField(unicode);
    SetGroupAvailable(*group, form.whyCsvDisabled);
    return group;
}

QWidget* OutputDialog::MakeVisualizationGroup(LabelColumn& labels) {
    visualizationNaming =
        MakeList(kVisualizationNamings, form.visualizationNaming, tr("Name generation, visualization files"));
    visualizationDir = MakeFolderField(form.visualizationDir, tr("Output dir, visualization files"));
    compressor = new PlainLabel({}, PlainLabel::Tone::Normal, PlainLabel::Fit::Elide);
    // Longer names may be cut, this one not.
    compressor->setMinimumWidth(compressor->fontMetrics().horizontalAdvance(CompressorText({})));
    auto* choose = new QPushButton(tr("&Choose compression"));
    connect(choose, &QPushButton::clicked, this, &OutputDialog::ChooseCompressor);

    auto* group = new QGroupBox(tr("Visualization settings"));
    auto* rows = new FormGrid(group, &labels);
    rows->AddRow(tr("Name &generation:"), visualizationNaming);
    rows->AddRow(tr("Output &dir:"), visualizationDir,
                 MakeBrowse(tr("Bro&wse"), tr("Browse, visualization files"), *visualizationDir));
    auto* row = new QHBoxLayout;
    row->addWidget(compressor, 1);
    row->addWidget(choose);
    rows->AddField(row);
    SetGroupAvailable(*group, form.whyVisualizationDisabled);
    return group;
}

QWidget* OutputDialog::MakeCaptionGroup(LabelColumn& labels) {
    captionPosition = MakeList(kCaptionPositions, form.captionPosition);
    printFrameNumber = MakeBox(tr("Print fra&me number"), form.printFrameNumber);
    printMetricValue = MakeBox(tr("Print metric &value"), form.printMetricValue);

    auto* group = new QGroupBox(tr("Caption settings"));
    auto* rows = new FormGrid(group, &labels);
    rows->AddRow(tr("&Position:"), captionPosition);
    auto* boxes = new QHBoxLayout;
    boxes->setSpacing(kRadioSpacing);
    boxes->addWidget(printFrameNumber);
    boxes->addWidget(printMetricValue);
    boxes->addStretch(1);
    rows->AddField(boxes);
    SetGroupAvailable(*group, form.whyVisualizationDisabled);
    return group;
}

void OutputDialog::ShowCustomNameRule() {
    form.csvNaming = csvNaming->currentIndex();
    const std::wstring why = form.WhyCustomNameDisabled();
    SetAvailable(*customNameLabel, why);
    SetAvailable(*customName, why);
}

void OutputDialog::ShowCompressor() {
    compressor->setText(CompressorText(job.visualization.compressor));
}

void OutputDialog::ChooseCompressor() {
    // The size of the videos is known in a run only.
    if (job.visualization.compressor.Choose({})) ShowCompressor();
}

OutputForm OutputDialog::ReadControls() const {
    OutputForm read = form;
    read.csvDir = csvDir->Path();
    read.csvNaming = csvNaming->currentIndex();
    read.customName = ToWide(customName->text());
    read.csvType = csvType->currentIndex();
    read.decimalDelimiter = decimalDelimiter->currentIndex();
    read.unicode = unicode->isChecked();
    read.visualizationNaming = visualizationNaming->currentIndex();
    read.visualizationDir = visualizationDir->Path();
    read.captionPosition = captionPosition->currentIndex();
    read.printFrameNumber = printFrameNumber->isChecked();
    read.printMetricValue = printMetricValue->isChecked();
    return read;
}

void OutputDialog::accept() {
    StoreForm(ReadControls(), job);
    QDialog::accept();
}

void EditCsvAndVisualization(QWidget* parent, MeasurementJob& job) {
    OutputDialog(parent, job).exec();
}
