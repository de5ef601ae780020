#include "engine/run/run_measurement.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include "engine/run/frame_loop.h"
#include "engine/run/open_input_files.h"
#include "engine/run/run_log.h"
#include "engine/run/run_state.h"
#include "engine/run/schedule.h"
#include "engine/run/taken_by_run.h"
#include "kernels/machine.h"

namespace {

bool StopWithNothing(const RunParameters& run, const std::wstring& reason, RunOutcome& outcome) {
    LogLine(run, reason);
    outcome = {CompletionNothing, CompletionNothing};
    return false;
}

void CreateSchedules(RunState& state, const RunParameters& run, CResultsStore& store,
                     const MetricSelection& selection, RunOutcome& outcome,
                     const Metric::CMetricList& metrics) {
    LogLine(run, L"Creating measurement schedule...");
    if (run.visualization.save) {
        LogMissingFont(run);
        state.takenPaths = TakenByRun(run);
    }
    CreateOneFileSchedule(state, selection, run, store, outcome, metrics);

    const std::wstring skipped = L"Calculation of metrics on two files will be skipped because ";
    if (!state.originalOpened)
        LogLine(run, skipped + L"original file was not opened.");
    else if (state.opened.size() < 2)
        LogLine(run, skipped + L"there is no enough files opened.");
    else
        CreateTwoFileSchedule(state, selection, run, store, outcome, metrics);
}

void StartProgress(const RunParameters& run, const MetricSelection& selection, int length) {
    if (run.progress == nullptr) return;

    std::vector<std::wstring> names;
    for (const FileRecord& record : run.inputFiles) names.push_back(record.name);
    run.progress->Start(selection, names);
    run.progress->SetMinimum(0);
    run.progress->SetMaximum(length);
}

void CreateComponentImages(RunState& state, const MetricSelection& selection) {
    for (const SelectedMetric& selected : selection) {
        for (auto& [index, file] : state.opened) {
            ComponentImage& target = file.components[selected.component];
            if (target.image != nullptr) continue;
            target.scratchFirst = boost::make_shared<rkVideoImage>();
            target.scratchSecond = boost::make_shared<rkVideoImage>();
            target.image = boost::make_shared<Metric::CMetricImage>(state.width, state.height);
        }
    }
}

/// Every scheduled metric, in the order of the schedule.
template <typename Action>
void ForEachMetric(RunState& state, const Action& action) {
    for (OneFileSet& set : state.oneFileSchedule)
        for (ScheduledMetric& scheduled : set.metrics) action(scheduled);
    for (TwoFileSet& set : state.twoFileSchedule)
        for (ScheduledMetric& scheduled : set.metrics) action(scheduled);
}

/// Tells the images which only one metric reads so: what that makes of them needs no planes.
void ExpectReaders(RunState& state) {
    std::map<Metric::CMetricImage*, int> readers;
    const auto count = [&](int file, const std::vector<ScheduledMetric>& metrics) {
        const auto found = state.opened.find(file);
        if (found == state.opened.end()) return;
        for (const ScheduledMetric& scheduled : metrics)
            ++readers[found->second.components.at(scheduled.component).image.get()];
    };
    for (const OneFileSet& set : state.oneFileSchedule) count(set.file, set.metrics);
    for (const TwoFileSet& set : state.twoFileSchedule) {
        count(set.first, set.metrics);
        count(set.second, set.metrics);
    }
    for (const auto& [image, number] : readers) image->ExpectOneReader(number == 1);
}

/// Leaves chroma in the files where nobody looks at it. A mask is compared as a whole colour.
void ReadWhatIsNeeded(RunState& state) {
    bool needsChroma = state.opened.contains(kMaskFile);
    ForEachMetric(state, [&](const ScheduledMetric& scheduled) {
        const bool isOfLuma =
            scheduled.component == Metric::ComponentY || scheduled.component == Metric::ComponentL;
        needsChroma |= !isOfLuma || !scheduled.metric->ReadsItsComponentOnly();
    });
    if (needsChroma) return;
    for (auto& [index, file] : state.opened) file.source->ReadLumaOnly();
}

/// Everything before the first frame; false if there is nothing to measure.
bool PrepareRun(RunState& state, RunParameters& run, CResultsStore& store, const MetricSelection& selection,
                RunOutcome& outcome, const Metric::CMetricList& metrics) {
    OpenInputFiles(state.opened, run, &outcome, state.width, state.height, state.length,
                   state.originalOpened);
    if (state.opened.empty())
        return StopWithNothing(run, L"No files were opened, can not perform measurement.", outcome);

    run.width = state.width;
    run.height = state.height;
    run.length = state.length;
    run.maskOpened = state.opened.contains(kMaskFile);
    for (const auto& [file, opened] : state.opened)
        run.openedInputs.push_back({file, opened.source->GetFrameCount(), DescriptionOf(*opened.source)});
    if (run.visualization.save) {
        run.visualization.width = state.width;
        run.visualization.height = state.height;
    }
    CreateSchedules(state, run, store, selection, outcome, metrics);
    if (state.oneFileSchedule.empty() && state.twoFileSchedule.empty()) return false;

    StartProgress(run, selection, state.length);
    CreateComponentImages(state, selection);
    ExpectReaders(state);
    ReadWhatIsNeeded(state);
    return true;
}

void StoreAverages(RunState& state, bool visualize, CResultsStore& store) {
    ForEachMetric(state, [&](ScheduledMetric& scheduled) {
        for (const Metric::MetricValue& result : scheduled.metric->GetAverages(visualize))
            if (std::count(scheduled.resultIds.begin(), scheduled.resultIds.end(), result.resultId) > 0)
                store.SetAverage(result.resultId, result.value);
    });
}

void CompleteVisualizations(RunState& state, const RunParameters& run, RunOutcome& outcome) {
    ForEachMetric(state, [&](ScheduledMetric& scheduled) {
        if (scheduled.visualization == nullptr) return;
        const std::wstring& path = scheduled.visualization->GetPath();
        if (scheduled.visualization->Close()) {
            if (scheduled.visualization->HasFile()) state.visualizationPaths.push_back(path);
            return;
        }
        LogLine(run, L"Failed to write visualization file " + Quoted(path));
        outcome.visualization = CompletionPartial;
    });
}

}  // namespace

bool RunMeasurement(RunParameters& run, CResultsStore& store, const MetricSelection& selection,
                    RunOutcome* outcome, const Metric::CMetricList& metrics) {
    RunOutcome unwatched;
    RunOutcome& result = outcome == nullptr ? unwatched : *outcome;
    result = {CompletionAll, CompletionAll};
    run.width = run.height = run.length = 0;
    run.maskOpened = false;
    run.openedInputs.clear();
    run.visualizationPaths.clear();
    if (run.inputFiles.empty()) return StopWithNothing(run, L"No files for measurement!", result);

    Kernels::ChooseInstructionSet();
    RunState state;
    try {
        if (!PrepareRun(state, run, store, selection, result, metrics)) return false;
    } catch (...) {
        LogFailure(run);
        result = {CompletionNothing, CompletionNothing};
        return false;
    }

    RunFrameLoop(state, run, store, result);
    if (run.progress != nullptr) run.progress->Finish();

    LogLine(run, L"Saving average results");
    try {
        StoreAverages(state, run.visualization.save, store);
        CompleteVisualizations(state, run, result);
        run.visualizationPaths = std::move(state.visualizationPaths);
    } catch (...) {
        LogFailure(run);
        if (result.measurement == CompletionAll) result.measurement = CompletionPartial;
    }
    LogLine(run, L"Done!");
    return true;
}
