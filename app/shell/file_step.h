#pragma once

#include "app/rules/file_rows.h"
#include "app/rules/main_form.h"
#include "app/shell/control_table.h"
#include "app/shell/step_group.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

class LabelColumn;
class PathField;
class PlainLabel;
class QCheckBox;
class QGridLayout;
class QPushButton;

/// "Step 1: File selection" of the main dialog. It reports what the user does and shows what it is told.
class FileStep : public StepGroup {
    Q_OBJECT

public:
    /// Enters its controls in the table. `labels` outlives the step.
    FileStep(LabelColumn& labels, ControlTable& controls, QWidget* parent = nullptr);

    void Show(const MainForm& form);

    /// The row at a place of the step; nothing between and below the rows.
    std::optional<FileRow> RowAt(const QPoint& place) const;
    /// Outlines the rows that dragged files would go to.
    void ShowDropTargets(const std::vector<FileRow>& rows);

signals:
    void PathEdited(FileRow row, const std::wstring& path);
    void BrowseClicked(FileRow row);
    void UseAvsClicked(FileRow row, bool on);
    void AdvancedClicked(FileRow row);
    void PreviewClicked(FileRow row);
    void ComparativeAnalysisClicked(bool on);
    void UseMaskClicked(bool on);
    void BlackMaskClicked(bool on);
    void MatrixClicked();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Row {
        PathField* path;
        QPushButton* browse;
        QCheckBox* useAvs;
        QPushButton* advanced;
        QPushButton* preview;
        std::array<QWidget*, 5> Widgets() const;
    };

    Row MakeRow(FileRow row, const QString& name);
    void AddRow(QGridLayout& grid, FileRow row, QWidget* label, const QString& name, ControlTable& controls);
    void AddMaskOptions(QGridLayout& grid, ControlTable& controls);
    void SetReadingOrder();
    Row& Of(FileRow row) { return rows[static_cast<std::size_t>(row)]; }

    std::array<Row, kFileRows.size()> rows{};
    QCheckBox* comparativeAnalysis;
    QCheckBox* useMask;
    QCheckBox* blackMask = nullptr;
    PlainLabel* matrix = nullptr;
    QPushButton* matrixAdvanced = nullptr;
};
