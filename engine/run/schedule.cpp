#include "engine/run/schedule.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <memory>
#include <new>
#include <set>
#include <string_view>
#include <utility>

#include "engine/run/run_log.h"

namespace {

constexpr int kOriginal = 0;

// The one metric whose answers are late: it works on a window of frames around the one that it answers for.
constexpr std::wstring_view kLateMetricId = L"stssim";
constexpr int kLateMetricLag = 32;

class Scheduler {
public:
    Scheduler(RunState& runState, const MetricSelection& selectedMetrics, const RunParameters& parameters,
              CResultsStore& results, RunOutcome& runOutcome, const Metric::CMetricList& metricList)
        : state(runState),
          selection(selectedMetrics),
          run(parameters),
          store(results),
          outcome(runOutcome),
          metrics(metricList) {}

    /// The metrics of the selection that take `inputCount` files, at work on `file` (and the original).
    std::vector<ScheduledMetric> MetricsOf(int file, int inputCount) const {
        std::vector<ScheduledMetric> scheduled;
        for (const SelectedMetric& selected : selection)
            if (metrics.GetInputCount(selected.metricIndex, run.visualization.save) == inputCount)
                AddMetric(selected, file, inputCount == 2, scheduled);
        return scheduled;
    }

private:
    void AddMetric(const SelectedMetric& selected, int file, bool isPair,
                   std::vector<ScheduledMetric>& scheduled) const {
        std::unique_ptr<Metric::IMetric> metric = Load(selected, file);
        if (metric == nullptr) return;

        const std::vector<Metric::MetricResultInfo> infos = metric->GetResultInfo(run.visualization.save);
        if (infos.empty() || HasTakenId(infos)) {
            Skip(L"Metric " + metrics.GetName(selected.metricIndex) +
                 L" returned invalid information; measurement skipped");
            return;
        }
        std::vector<int> resultIds;
        for (const Metric::MetricResultInfo& info : infos) {
            const std::vector<FileRecord> files =
                isPair ? FilesOf(info, file) : std::vector<FileRecord>{RecordOf(run, file)};
            store.SetResultRecord(info.resultId, {selected.metricIndex, selected.component, files,
                                                  selected.settings, info.name});
            resultIds.push_back(info.resultId);
        }

        const int lag = isPair && metric->GetId() == kLateMetricId ? kLateMetricLag : 0;
        ScheduledMetric entry = {std::move(metric), selected.component, std::move(resultIds), lag};
        entry.paints = run.visualization.save;
        if (entry.paints) entry.visualization = OpenVisualization(entry.resultIds);
        scheduled.push_back(std::move(entry));
    }

    /// Null if there can't be one.
    boost::shared_ptr<CVisualizationFile> OpenVisualization(const std::vector<int>& resultIds) const {
        boost::shared_ptr<CVisualizationFile> file;
        try {
            file = boost::make_shared<CVisualizationFile>(run.visualization, resultIds, store,
                                                          state.takenPaths, metrics);
        } catch (const std::bad_alloc&) {
            LogLine(run, L"Not enough memory for a visualization file.");
            outcome.visualization = CompletionPartial;
            return nullptr;
        }
        if (file->IsNumbered())
            LogLine(run, L"The name of the visualization file is taken, it gets a number");
        state.takenPaths.TakeOutput(file->GetPath());
        if (!file->Open()) {
            LogLine(run, L"Failed to open visualization file " + Quoted(file->GetPath()));
            outcome.visualization = CompletionPartial;
            return nullptr;
        }
        LogLine(run, L"Saving visualization to " + Quoted(file->GetPath()));
        return file;
    }

    /// Whether a result has the id of another one, whose values it would mix with its own.
    bool HasTakenId(const std::vector<Metric::MetricResultInfo>& infos) const {
        std::set<int> ids;
        ResultRecord record;
        return std::any_of(infos.begin(), infos.end(), [&](const Metric::MetricResultInfo& info) {
            return !ids.insert(info.resultId).second || store.GetResultRecord(info.resultId, record);
        });
    }

    /// A configured instance for the pictures of `file`; null if it can't be had.
    std::unique_ptr<Metric::IMetric> Load(const SelectedMetric& selected, int file) const {
        const std::wstring& name = metrics.GetName(selected.metricIndex);
        rkIVideoSource& source = *state.opened.at(file).source;
        Metric::MetricParameters parameters;
        parameters.component = selected.component;
        parameters.width = source.GetWidth();
        parameters.height = source.GetHeight();
        parameters.maskOpen = state.opened.contains(kMaskFile);
        parameters.blackMask = run.blackMask;

        std::unique_ptr<Metric::IMetric> metric = metrics.CreateInstance(selected.metricIndex, parameters);
        if (metric == nullptr) {
            Skip(L"Failed to load " + name);
            return nullptr;
        }
        LogLine(run, L"Loaded " + name);

        if (metric->IsConfigurable()) {
            if (!metric->Configure(selected.settings)) {
                Skip(L"Failed to configure " + name);
                LogLine(run, L"Settings string: " + selected.settings);
                return nullptr;
            }
            LogLine(run, L"Configured metric with string " + selected.settings);
        }
        return metric;
    }

    /// The files that a result of a pair speaks of.
    std::vector<FileRecord> FilesOf(const Metric::MetricResultInfo& info, int second) const {
        std::vector<FileRecord> files;
        for (const int position : info.files) {
            if (position == 0 || position == 1)
                files.push_back(RecordOf(run, position == 0 ? kOriginal : second));
            else
                Skip(L"Metric returned invalid information; measurements aborted");
        }
        return files;
    }

    void Skip(const std::wstring& reason) const {
        LogLine(run, reason);
        outcome.measurement = CompletionPartial;
    }

    RunState& state;
    const MetricSelection& selection;
    const RunParameters& run;
    CResultsStore& store;
    RunOutcome& outcome;
    const Metric::CMetricList& metrics;
};

}  // namespace

void CreateOneFileSchedule(RunState& state, const MetricSelection& selection, const RunParameters& run,
                           CResultsStore& store, RunOutcome& outcome, const Metric::CMetricList& metrics) {
    const Scheduler scheduler(state, selection, run, store, outcome, metrics);
    for (const auto& [file, entry] : state.opened) {
        if (file == kMaskFile) continue;
        OneFileSet set = {file, scheduler.MetricsOf(file, 1)};
        if (!set.metrics.empty()) state.oneFileSchedule.push_back(std::move(set));
    }
}

void CreateTwoFileSchedule(RunState& state, const MetricSelection& selection, const RunParameters& run,
                           CResultsStore& store, RunOutcome& outcome, const Metric::CMetricList& metrics) {
    if (!state.opened.contains(kOriginal)) return;

    const Scheduler scheduler(state, selection, run, store, outcome, metrics);
    for (const auto& [file, entry] : state.opened) {
        if (file == kMaskFile || file == kOriginal) continue;
        TwoFileSet set = {kOriginal, file, scheduler.MetricsOf(file, 2)};
        if (!set.metrics.empty()) state.twoFileSchedule.push_back(std::move(set));
    }
}
