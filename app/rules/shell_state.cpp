#include "app/rules/shell_state.h"

#include "app/rules/file_rows.h"
#include "app/rules/metric_choice.h"

ShellState NewShellState(const Capabilities& capabilities, const Metric::CMetricList& metrics) {
    ShellState state;
    state.capabilities = capabilities;
    for (const FileRow row : kFileRows) SlotOf(state.job, row) = EmptySlot();
    for (int i = 0; i < metrics.GetCount(); ++i)
        state.job.metricSettings.push_back(metrics.GetDefaultSettings(i));

    int psnr = 0;
    metrics.FindById(L"psnr", psnr);
    ChooseMetric(state.job, psnr, metrics);
    return state;
}
