#pragma once

#include "app/rules/main_form.h"
#include "app/shell/control_table.h"
#include "app/shell/step_group.h"

#include <array>

class LabelColumn;
class PlainLabel;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QRadioButton;

/// "Step 2: Metric Selection" of the main dialog. It reports what the user does and shows what it is told.
class MetricStep : public StepGroup {
    Q_OBJECT

public:
    /// Enters its controls in the table. `labels` outlives the step.
    MetricStep(LabelColumn& labels, ControlTable& controls, const Metric::CMetricList& metrics,
               QWidget* parent = nullptr);

    void Show(const MainForm& form);

signals:
    void MetricChosen(int metricIndex);
    void ComponentChosen(int component);
    void SettingsClicked();
    void InfoClicked();

private:
    QHBoxLayout* MakeButtons(ControlTable& controls);
    QHBoxLayout* MakeComponents(ControlTable& controls);

    QComboBox* metric;
    QLabel* componentLabel;
    std::array<QRadioButton*, Metric::kComponentCount> components{};  // by number
    PlainLabel* settingsLabel = nullptr;
    PlainLabel* settings = nullptr;
};
