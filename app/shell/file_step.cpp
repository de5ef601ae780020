#include "app/shell/file_step.h"

#include "platform/qt/label_column.h"
#include "platform/qt/path_field.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/wide_text.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPushButton>

#include <algorithm>

namespace {

// Columns of the grid.
enum Column { LabelColumnAt, PathColumn, BrowseColumn, UseAvsColumn, AdvancedColumn, PreviewColumn };

// Lines of the grid.
enum Line {
    OriginalLine,
    ProcessedLine,
    ComparativeLine,
    SecondLine,
    GapLine,  // sets the mask off from the files
    MaskLine,
    MaskOptionsLine
};

constexpr int kGapHeight = 6;
constexpr int kBoxLineHeight = 26;  // a line that holds a box only

int LineOf(FileRow row) {
    switch (row) {
        case RowOriginal:
            return OriginalLine;
        case RowProcessed:
            return ProcessedLine;
        case RowSecond:
            return SecondLine;
        default:
            return MaskLine;
    }
}

QLabel* MakeLabel(const QString& text) {
    return new QLabel(text);
}

QString RowName(const QString& control, const QString& row) {
    return QStringLiteral("%1, %2").arg(control, row);
}

}  // namespace

std::array<QWidget*, 5> FileStep::Row::Widgets() const {
    return {path, browse, useAvs, advanced, preview};
}

FileStep::FileStep(LabelColumn& labels, ControlTable& controls, QWidget* parent)
    : StepGroup(tr("Step &1: File selection"), parent),
      comparativeAnalysis(new QCheckBox(tr("&Comparative analysis"))),
      useMask(new QCheckBox(tr("&Use mask file:"))) {
    auto* grid = new QGridLayout(this);
    grid->setColumnStretch(PathColumn, 1);
    QLabel* const original = MakeLabel(tr("&Original file (avi, avs, yuv, bmp):"));
    QLabel* const processed = MakeLabel(tr("P&rocessed (compressed):"));
    QLabel* const second = MakeLabel(tr("&Second processed (another codec):"));
    for (QWidget* label : {static_cast<QWidget*>(original), static_cast<QWidget*>(processed),
                           static_cast<QWidget*>(second), static_cast<QWidget*>(useMask)})
        labels.Add(label);

    AddRow(*grid, RowOriginal, original, tr("original file"), controls);
    AddRow(*grid, RowProcessed, processed, tr("processed file"), controls);
    grid->addWidget(comparativeAnalysis, ComparativeLine, LabelColumnAt, 1, 2);
    grid->setRowMinimumHeight(ComparativeLine, kBoxLineHeight);
    AddRow(*grid, RowSecond, second, tr("second processed file"), controls);
    AddRow(*grid, RowMask, useMask, tr("mask file"), controls);
    grid->setRowMinimumHeight(GapLine, kGapHeight);
    AddMaskOptions(*grid, controls);
    SetReadingOrder();
    SetFirst(Of(RowOriginal).path);

    controls.Set(Control::ComparativeAnalysis, comparativeAnalysis);
    controls.Set(Control::UseMask, useMask);
    connect(comparativeAnalysis, &QCheckBox::clicked, this, &FileStep::ComparativeAnalysisClicked);
    connect(useMask, &QCheckBox::clicked, this, &FileStep::UseMaskClicked);
}

FileStep::Row FileStep::MakeRow(FileRow row, const QString& name) {
    const Row made = {new PathField(PathField::Drop::File), new QPushButton(tr("Browse")),
                      new QCheckBox(tr("Open with AVISynth")), new QPushButton(tr("Advanced")),
                      new QPushButton(tr("Preview"))};
    made.path->setAcceptDrops(false);  // the window takes drops for all rows
    made.path->setAccessibleName(RowName(tr("Path"), name));
    made.browse->setAccessibleName(RowName(made.browse->text(), name));
    made.useAvs->setAccessibleName(RowName(made.useAvs->text(), name));
    made.advanced->setAccessibleName(RowName(made.advanced->text(), name));
    made.preview->setAccessibleName(RowName(made.preview->text(), name));

    connect(made.path, &QLineEdit::textEdited, this,
            [this, row, path = made.path] { emit PathEdited(row, path->Path()); });
    connect(made.browse, &QPushButton::clicked, this, [this, row] { emit BrowseClicked(row); });
    connect(made.useAvs, &QCheckBox::clicked, this, [this, row](bool on) { emit UseAvsClicked(row, on); });
    connect(made.advanced, &QPushButton::clicked, this, [this, row] { emit AdvancedClicked(row); });
    connect(made.preview, &QPushButton::clicked, this, [this, row] { emit PreviewClicked(row); });
    return made;
}

void FileStep::AddRow(QGridLayout& grid, FileRow row, QWidget* label, const QString& name,
                      ControlTable& controls) {
    const int line = LineOf(row);
    const Row made = MakeRow(row, name);
    Of(row) = made;
    if (auto* text = qobject_cast<QLabel*>(label)) text->setBuddy(made.path);
    grid.addWidget(label, line, LabelColumnAt);
    grid.addWidget(made.path, line, PathColumn);
    grid.addWidget(made.browse, line, BrowseColumn);
    grid.addWidget(made.useAvs, line, UseAvsColumn);
    grid.addWidget(made.advanced, line, AdvancedColumn);
    grid.addWidget(made.preview, line, PreviewColumn);

    const std::array<QWidget*, 5> widgets = made.Widgets();
    for (int part = 0; part < kRowParts; ++part)
        controls.Set(RowControl(row, static_cast<RowPart>(part)), widgets[static_cast<std::size_t>(part)]);
}

void FileStep::AddMaskOptions(QGridLayout& grid, ControlTable& controls) {
    blackMask = new QCheckBox(tr("Use blac&k mask"));
    matrix = new PlainLabel({}, PlainLabel::Tone::Quiet);
    matrixAdvanced = new QPushButton(tr("&Advanced"));
    matrixAdvanced->setAccessibleName(RowName(tr("Advanced"), tr("RGB/YUV matrix")));
    grid.addWidget(blackMask, MaskOptionsLine, PathColumn);
    grid.addWidget(matrix, MaskOptionsLine, BrowseColumn, 1, 3, Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(matrixAdvanced, MaskOptionsLine, PreviewColumn);

    controls.Set(Control::BlackMask, blackMask);
    controls.Set(Control::MatrixAdvanced, matrixAdvanced);
    connect(blackMask, &QCheckBox::clicked, this, &FileStep::BlackMaskClicked);
    connect(matrixAdvanced, &QPushButton::clicked, this, &FileStep::MatrixClicked);
}

// The boxes in front of a row were made before the rows.
void FileStep::SetReadingOrder() {
    std::vector<QWidget*> order;
    const auto addRow = [&](FileRow row) {
        for (QWidget* widget : Of(row).Widgets()) order.push_back(widget);
    };
    addRow(RowOriginal);
    addRow(RowProcessed);
    order.push_back(comparativeAnalysis);
    addRow(RowSecond);
    order.push_back(useMask);
    addRow(RowMask);
    order.push_back(blackMask);
    order.push_back(matrixAdvanced);
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void FileStep::Show(const MainForm& form) {
    for (const FileRow row : kFileRows) {
        const MainForm::Row& shown = form.rows[static_cast<std::size_t>(row)];
        Row& widgets = Of(row);
        if (widgets.path->Path() != shown.path) widgets.path->SetPath(shown.path);  // the cursor stays
        widgets.useAvs->setChecked(shown.useAvs);
    }
    comparativeAnalysis->setChecked(form.comparativeAnalysis);
    useMask->setChecked(form.useMask);
    blackMask->setChecked(form.blackMask);
    matrix->setText(ToQString(form.matrix));
}

std::optional<FileRow> FileStep::RowAt(const QPoint& place) const {
    for (const FileRow row : kFileRows) {
        const QRect path = rows[static_cast<std::size_t>(row)].path->geometry();
        const QRect line(0, path.top(), width(), path.height());
        if (line.contains(place)) return row;
    }
    return std::nullopt;
}

void FileStep::ShowDropTargets(const std::vector<FileRow>& targets) {
    for (const FileRow row : kFileRows)
        Of(row).path->SetDropHighlight(std::find(targets.begin(), targets.end(), row) != targets.end());
}

// Within a row Ctrl+O browses and Ctrl+P previews.
void FileStep::keyPressEvent(QKeyEvent* event) {
    const bool browses = event->keyCombination() == QKeyCombination(Qt::CTRL, Qt::Key_O);
    const bool previews = event->keyCombination() == QKeyCombination(Qt::CTRL, Qt::Key_P);
    for (Row& row : rows) {
        const std::array<QWidget*, 5> widgets = row.Widgets();
        const bool focused =
            std::find(widgets.begin(), widgets.end(), QApplication::focusWidget()) != widgets.end();
        if (!focused || (!browses && !previews)) continue;
        (browses ? row.browse : row.preview)->click();
        return;
    }
    StepGroup::keyPressEvent(event);
}
