#include "app/rules/main_form.h"

#include "app/rules/matrix_choice.h"
#include "app/rules/metric_choice.h"
#include "app/rules/readiness.h"

MainForm MainFormFrom(const ShellState& state, const Metric::CMetricList& metrics) {
    const MeasurementJob& job = state.job;
    MainForm form;
    for (const FileRow row : kFileRows) {
        const FileRecord& slot = SlotOf(job, row);
        form.rows[static_cast<std::size_t>(row)] = {slot.name, slot.useAvs};
    }
    form.comparativeAnalysis = job.comparativeAnalysis;
    form.useMask = job.maskSlot.useMask;
    form.blackMask = job.maskSlot.blackMask;
    form.matrix = MatrixText(job.run.yuvTable);

    const SelectedMetric selected = SelectionOf(job);
    form.metric = selected.metricIndex;
    if (SupportsComponent(metrics, selected.metricIndex, selected.component))
        form.component = selected.component;
    form.metricSettingsVisible = metrics.IsConfigurable(selected.metricIndex);
    form.metricSettings = SelectedSettings(job);

    form.saveCsv = job.csv.save;
    form.saveVisualization = job.visualization.save;
    form.saveBadFrames = job.badFrames.save;
    form.showResults = state.showResults;

    form.isReady = IsReady(job, metrics);
    form.status = StatusText(form.isReady);
    form.processCaption = state.phase == RunPhase::Measuring ? L"Stop" : L"Process";
    for (int i = 0; i < kControlCount; ++i)
        form.whyDisabled[static_cast<std::size_t>(i)] = WhyDisabled(static_cast<Control>(i), state, metrics);
    return form;
}
