#include "app/rules/progress_flow.h"

#include "app/rules/file_rows.h"

void ProgressFlow::Started() {
    if (phase == Phase::Validating) phase = Phase::Measuring;
}

void ProgressFlow::FramesOver() {
    if (phase == Phase::Measuring) phase = Phase::Saving;
}

ProgressFlow::Next ProgressFlow::Finished(bool autoClose, const MeasurementJob& job) {
    if (phase != Phase::Measuring && phase != Phase::Saving) return Next::Wait;
    const bool delayed = autoClose && !HasVideoPath(job);
    phase = delayed ? Phase::Timing : Phase::Waiting;
    if (!autoClose) return Next::Wait;
    return delayed ? Next::ContinueAfterDelay : Next::ContinueAtOnce;
}

bool ProgressFlow::Continue() {
    if (!CanContinue()) return false;
    phase = Phase::Closing;
    return true;
}
