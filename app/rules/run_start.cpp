#include "app/rules/run_start.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "app/rules/file_rows.h"
#include "app/rules/metric_choice.h"
#include "app/rules/readiness.h"
#include "app/rules/yuv_form.h"
#include "video/file_kind.h"

namespace {

void TrimEnd(std::wstring& path) {
    path.erase(path.find_last_not_of(L' ') + 1);
}

/// What is missing, in the words of the message; null if nothing is.
const wchar_t* MissingFile(const MeasurementJob& job, const Metric::CMetricList& metrics) {
    const auto lacks = [&](FileRow row) { return SlotOf(job, row).name.empty(); };
    const int inputs = InputsNeeded(job, metrics);
    const bool comparative = job.comparativeAnalysis;

    if (inputs == 2 && lacks(RowOriginal)) return L"Choose original file!";
    if (inputs == 2 && lacks(RowProcessed)) return L"Choose first processed file!";
    if (inputs == 1 && lacks(RowOriginal) && lacks(RowProcessed))
        return L"Choose at least original or first processed file!";
    if (comparative && inputs == 1 && lacks(RowProcessed)) return L"Choose first processed file!";
    if (comparative && lacks(RowSecond)) return L"Choose second processed file!";
    if (job.maskSlot.useMask && lacks(RowMask)) return L"Choose mask file!";
    return nullptr;
}

/// The rows whose files a run opens, the mask last.
std::vector<FileRow> RowsOfRun(const MeasurementJob& job) {
    std::vector<FileRow> rows;
    for (const FileRow row : kFileRows) {
        if (IsRowOpen(job, row) && !SlotOf(job, row).name.empty()) rows.push_back(row);
    }
    return rows;
}

void FillRun(MeasurementJob& job) {
    RunParameters& run = job.run;
    run.inputFiles.clear();
    run.useMask = run.blackMask = false;
    for (const FileRow row : RowsOfRun(job)) {
        if (row != RowMask) {
            run.inputFiles.push_back(SlotOf(job, row));
            continue;
        }
        run.maskFile = job.maskSlot;
        run.useMask = true;
        run.blackMask = job.maskSlot.blackMask;
    }
    run.interruption = std::make_unique<InterruptionToken>();
}

std::vector<std::wstring> NotesOf(const ShellState& state) {
    std::vector<std::wstring> notes;
    for (const FileRow row : RowsOfRun(state.job)) {
        const FileRecord& slot = SlotOf(state.job, row);
        const std::wstring advice = OpeningAdvice(slot, state.capabilities);
        if (!advice.empty()) notes.push_back(L"\"" + slot.name + L"\": " + advice);
    }
    return notes;
}

}  // namespace

RunStart PrepareRun(ShellState& state, IFileQuestions& questions, const Metric::CMetricList& metrics) {
    MeasurementJob& job = state.job;
    for (const FileRow row : kFileRows) {
        TrimEnd(SlotOf(job, row).name);
        TrimEnd(SlotOf(job, row).sourceName);
    }
    if (const wchar_t* missing = MissingFile(job, metrics)) return {.refusal = UserError(missing)};

    ChooseMetric(job, SelectionOf(job).metricIndex, metrics);
    for (const FileRow row : RowsOfRun(job)) {
        FileRecord& slot = SlotOf(job, row);
        slot = ToOpen(std::move(slot));
        if (!SettleRawFile(slot, questions)) return {};
    }
    FillRun(job);
    state.phase = RunPhase::Measuring;
    return {.ready = true, .notes = NotesOf(state)};
}

bool SettleRawFile(FileRecord& slot, IFileQuestions& questions) {
    return !rkIsRawName(slot.name) || HasRawSettings(slot) || questions.EditYuvSettings(slot);
}

BoxText StopQuestion() {
    return {L"Tolvane: Warning", L"Are you sure?"};
}

FileRecord ToOpen(FileRecord slot) {
    if (!rkIsRawName(slot.name)) slot.width = slot.height = slot.yuvType = 0;
    return slot;
}

BoxText PreviewFailure(const FileRecord& slot, const Capabilities& capabilities) {
    return {L"Could not open file for preview", L"Could not open file \"" + slot.name + L"\" for preview.",
            OpeningAdvice(slot, capabilities)};
}
