#include "app/rules/shell_start.h"

#include "app/rules/compressor_file.h"
#include "app/rules/metric_choice.h"
#include "app/rules/readiness.h"
#include "app/rules/settings.h"

namespace {

constexpr int kFeedbackStart = 30;

}  // namespace

ShellState StartShell(const ISettingsStore& store, const std::wstring& programDirectory,
                      const std::wstring& writableDirectory, const Metric::CMetricList& metrics) {
    ShellState state = NewShellState(FindCapabilities(store, programDirectory), metrics);
    LoadSettings(store, writableDirectory, metrics, state);
    LoadCompressorFile(writableDirectory, state.job.visualization.compressor);
    ChooseMetric(state.job, SelectionOf(state.job).metricIndex, metrics);
    MatchBadFramesType(state.job);
    return state;
}

bool IsFeedbackDue(const ShellState& state) {
    return state.runNumber == kFeedbackStart;
}
