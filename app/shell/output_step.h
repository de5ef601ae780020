#pragma once

#include "app/rules/main_form.h"
#include "app/shell/control_table.h"
#include "app/shell/step_group.h"

class QCheckBox;
class QPushButton;

/// "Step 3: Output Selection" of the main dialog. It reports what the user does and shows what it is told.
class OutputStep : public StepGroup {
    Q_OBJECT

public:
    /// Enters its controls in the table.
    explicit OutputStep(ControlTable& controls, QWidget* parent = nullptr);

    void Show(const MainForm& form);

signals:
    void SaveCsvClicked(bool on);
    void SaveVisualizationClicked(bool on);
    void CsvAdvancedClicked();
    void SaveBadFramesClicked(bool on);
    void BadFramesAdvancedClicked();
    void MoreOptionsClicked();

private:
    void Arrange();
    void EnterIn(ControlTable& controls);

    QCheckBox* saveCsv;
    QCheckBox* saveVisualization;
    QPushButton* csvAdvanced;
    QCheckBox* saveBadFrames;
    QPushButton* badFramesAdvanced;
    QPushButton* moreOptions;
};
