#include "app/rules/job_edits.h"

#include "app/rules/bad_frames_form.h"
#include "app/rules/readiness.h"
#include "video/file_kind.h"

void EditPath(MeasurementJob& job, FileRow row, const std::wstring& text) {
    SetPath(SlotOf(job, row), text.substr(0, kMaxTypedPath));
}

bool SetUseAvs(FileRecord& slot, bool on) {
    slot.useAvs = on;
    return rkIsRawName(slot.name);
}

void SetComparativeAnalysis(MeasurementJob& job, bool on) {
    job.comparativeAnalysis = on;
    MatchBadFramesType(job);
}

void SetSaveBadFrames(MeasurementJob& job, bool on) {
    job.badFrames.save = on;
    if (on && job.badFrames.count == 0) job.badFrames.count = kDefaultBadFrames;
}
