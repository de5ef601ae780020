#include "app/rules/readiness.h"

#include "app/rules/file_rows.h"
#include "app/rules/metric_choice.h"

int InputsNeeded(const MeasurementJob& job, const Metric::CMetricList& metrics) {
    return metrics.GetInputCount(SelectionOf(job).metricIndex, job.visualization.save);
}

bool IsReady(const MeasurementJob& job, const Metric::CMetricList& metrics) {
    const auto has = [&](FileRow row) { return !SlotOf(job, row).name.empty(); };
    const bool comparative = job.comparativeAnalysis;
    switch (InputsNeeded(job, metrics)) {
        case 1:
            return comparative ? has(RowProcessed) && has(RowSecond) : has(RowOriginal) || has(RowProcessed);
        case 2:
            return has(RowOriginal) && has(RowProcessed) && (!comparative || has(RowSecond));
        default:
            return false;
    }
}

const wchar_t* StatusText(bool isReady) {
    return isReady ? L"Ready" : L"Select video files and options";
}

void MatchBadFramesType(MeasurementJob& job) {
    int& type = job.badFrames.frameType;
    if (!job.comparativeAnalysis)
        type = BadOriginalProcessed;
    else if (type == BadOriginalProcessed)
        type = BadFirstSecond;
}
