#include "engine/run/frame_loop.h"

#include <omp.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "engine/run/mask.h"
#include "engine/run/parallel.h"
#include "engine/run/run_log.h"
#include "kernels/bands.h"
#include "metric/convert_frame.h"

namespace {

/// The steps of one frame.
class FrameMeasurer {
public:
    FrameMeasurer(RunState& runState, const RunParameters& parameters, CResultsStore& results,
                  RunOutcome& runOutcome)
        : state(runState), run(parameters), store(results), outcome(runOutcome) {
        for (auto& [index, file] : state.opened) {
            if (index == kMaskFile) continue;
            for (auto& [component, target] : file.components)
                conversions.push_back({index, &file, component, &target});
        }
    }

    void MeasureFrame(int frame) {
        ReadFrames();
        FindMask();
        ConvertFrames();
        MeasureSets(frame);
    }

private:
    struct Conversion {
        int index;
        const OpenedFile* file;
        int component;
        ComponentImage* target;
    };

    struct Task {
        ScheduledMetric* metric;
        std::array<const OpenedFile*, 2> files;  // the second is null for a metric of one file
        bool isValid = true;                     // the metric gave all its values
        bool isSaved = true;                     // the picture is in its file, if one is wanted
    };

    void ReadFrames() {
        for (auto& [index, file] : state.opened) {
            if (file.failed || file.source->ReadNextFrameImage(*file.frameImage) == 0) continue;
            file.failed = true;
            outcome.measurement = CompletionPartial;
            LogLine(run, L"Failed to read frame from sequence " + Quoted(RecordOf(run, index).name) +
                             L", measurement skipped");
        }
    }

    void FindMask() {
        activeMask = FindFile(kMaskFile);
        if (activeMask == nullptr || activeMask->failed ||
            !FindMaskPixel(*activeMask->frameImage, run.blackMask, maskX, maskY)) {
            activeMask = nullptr;
            return;
        }
        for (auto& [component, target] : activeMask->components)
            if (!target.failed) target.failed = !Convert({kMaskFile, activeMask, component, &target});
    }

    void ConvertFrames() {
        const int count = static_cast<int>(conversions.size());
        const bool isWork = activeMask != nullptr ||
                            std::any_of(conversions.begin(), conversions.end(), [](const Conversion& c) {
                                return !c.file->failed && Metric::NeedsUnpacking(*c.file->frameImage);
                            });
        ForEachInParallel(count, isWork && count > 1 && IsWorthATeam(count), [&](int i) {
            const Conversion& conversion = conversions[static_cast<std::size_t>(i)];
            if (conversion.file->failed) return;
            Convert(conversion);
            if (activeMask == nullptr) return;
            const auto found = activeMask->components.find(conversion.component);
            if (found == activeMask->components.end() || found->second.failed) return;
            ApplyMask(*conversion.target->image, *found->second.image, maskX, maskY);
        });
    }

    bool Convert(const Conversion& conversion) {
        ComponentImage& target = *conversion.target;
        if (Metric::ConvertFrame(*conversion.file->frameImage, *target.scratchFirst, *target.scratchSecond,
                                 *target.image, run.yuvTable, conversion.component))
            return true;

        InCriticalSection([&] {
            outcome.measurement = CompletionPartial;
            LogLine(run, L"Failed to convert image frame from sequence " +
                             Quoted(RecordOf(run, conversion.index).name) + L" into " +
                             Metric::ComponentName(conversion.component) + L" color, measurement skipped");
        });
        return false;
    }

    void MeasureSets(int frame) {
        tasks.clear();
        for (OneFileSet& set : state.oneFileSchedule) {
            const OpenedFile* file = FindFile(set.file);
            if (file == nullptr) {
                LogLine(run,
                        L"Trying to calculate metric using incorrect file, developer error, skipping...");
                continue;
            }
            if (!file->failed) AddTasks(set.metrics, file, nullptr);
        }
        for (TwoFileSet& set : state.twoFileSchedule) {
            const OpenedFile* first = FindFile(set.first);
            const OpenedFile* second = FindFile(set.second);
            if (first == nullptr || second == nullptr) {
                LogLine(run,
                        L"Trying to calculate metric using incorrect files, developer error, skipping...");
                continue;
            }
            if (!first->failed && !second->failed) AddTasks(set.metrics, first, second);
        }

        // Metrics have loops of their own that can use the threads which a few tasks would leave idle.
        const int count = static_cast<int>(tasks.size());
        try {
            ForEachInParallel(count, count > 1 && count >= omp_get_max_threads() && IsWorthATeam(count),
                              [&](int i) { MeasureMetric(tasks[static_cast<std::size_t>(i)], frame); });
        } catch (...) {
            TellFailures(frame);
            throw;
        }
        TellFailures(frame);
    }

    void AddTasks(std::vector<ScheduledMetric>& metrics, const OpenedFile* first, const OpenedFile* second) {
        for (ScheduledMetric& metric : metrics) tasks.push_back({&metric, {first, second}});
    }

    void MeasureMetric(Task& task, int frame) {
        ScheduledMetric& scheduled = *task.metric;
        std::vector<Metric::CMetricImage*> images;
        for (const OpenedFile* file : task.files) {
            if (file == nullptr) continue;
            const auto found = file->components.find(scheduled.component);
            if (found == file->components.end()) return;
            images.push_back(found->second.image.get());
        }

        rkVideoImage picture;
        if (scheduled.paints) picture.Create(state.width, state.height, RGB24, 0);
        std::vector<Metric::MetricValue> values = scheduled.paints
                                                      ? scheduled.metric->MeasureAndVisualize(images, picture)
                                                      : scheduled.metric->Measure(images);
        if (frame < scheduled.lag) return;
        const int measured = frame - scheduled.lag;
        task.isValid = CompleteValues(scheduled, values);
        task.isSaved = scheduled.visualization == nullptr ||
                       scheduled.visualization->WriteFrame(picture, measured, values, store);
        InCriticalSection([&] {
            for (const Metric::MetricValue& value : values)
                store.AddValue(value.resultId, measured, value.value);
        });
    }

    /// In the order of the schedule, whichever metric was done first.
    void TellFailures(int frame) {
        for (const Task& task : tasks) {
            if (!task.isValid) TellInvalidValues(*task.metric, frame - task.metric->lag);
            if (!task.isSaved) DropVisualization(*task.metric);
        }
    }

    /// Makes `values` one value for each result of the metric. One that it doesn't give (a plug-in may fail
    /// at a frame) isn't a number, so that the values behind it keep their frames. False if they weren't that
    /// already.
    static bool CompleteValues(const ScheduledMetric& scheduled, std::vector<Metric::MetricValue>& values) {
        std::vector<Metric::MetricValue> complete;
        std::size_t found = 0;
        for (const int id : scheduled.resultIds) {
            const auto value = std::find_if(values.begin(), values.end(),
                                            [id](const Metric::MetricValue& v) { return v.resultId == id; });
            const bool isGiven = value != values.end();
            found += isGiven;
            complete.push_back({id, isGiven ? value->value : std::numeric_limits<float>::quiet_NaN()});
        }
        const bool isValid = found == scheduled.resultIds.size() && found == values.size();
        values = std::move(complete);
        return isValid;
    }

    void TellInvalidValues(ScheduledMetric& scheduled, int frame) {
        if (scheduled.gaveInvalidValues) return;
        scheduled.gaveInvalidValues = true;
        outcome.measurement = CompletionPartial;
        LogLine(run, L"Metric " + scheduled.metric->GetName() + L" returned invalid values at frame " +
                         std::to_wstring(frame) + L"; missing values are not numbers");
    }

    /// The file keeps the frames that it has: one behind a gap would be taken for another.
    void DropVisualization(ScheduledMetric& scheduled) {
        CVisualizationFile& file = *scheduled.visualization;
        LogLine(run, L"Failed to write visualization file " + Quoted(file.GetPath()));
        if (file.Close() && file.HasFile()) state.visualizationPaths.push_back(file.GetPath());
        scheduled.visualization.reset();
        outcome.visualization = CompletionPartial;
    }

    /// Whether so many tasks on a frame of the run take longer than to wake the threads.
    bool IsWorthATeam(int tasks) const {
        return std::int64_t{state.width} * state.height * tasks >= 2 * Kernels::kPixelsPerThread;
    }

    OpenedFile* FindFile(int index) {
        const auto found = state.opened.find(index);
        return found == state.opened.end() ? nullptr : &found->second;
    }

    RunState& state;
    const RunParameters& run;
    CResultsStore& store;
    RunOutcome& outcome;
    std::vector<Conversion> conversions;  // what a frame needs: every component of every file but the mask
    std::vector<Task> tasks;              // of the current frame: no metric needs what another one gives

    // Of the current frame: the mask file if it has a marked pixel, and where its first one is.
    OpenedFile* activeMask = nullptr;
    int maskX = 0;
    int maskY = 0;
};

bool IsInterrupted(const RunParameters& run) {
    return run.interruption != nullptr && !run.interruption->KeepRunning();
}

}  // namespace

void RunFrameLoop(RunState& state, const RunParameters& run, CResultsStore& store, RunOutcome& outcome) {
    int frame = 0;
    try {
        FrameMeasurer measurer(state, run, store, outcome);
        for (; frame < state.length; ++frame) {
            measurer.MeasureFrame(frame);
            if (run.progress != nullptr) run.progress->SetPosition(frame);
            if (!IsInterrupted(run)) continue;

            if (run.progress != nullptr) run.progress->Finish();
            LogLine(run, L"Measurement interrupted");
            outcome.measurement = CompletionPartial;
            break;
        }
    } catch (...) {
        LogFailure(run);
        outcome.measurement = frame > 0 ? CompletionPartial : CompletionNothing;
    }
}
