#pragma once

#include <chrono>

#include "engine/model/measurement_job.h"

/// The progress dialog from its opening to its end: which button can be used, and what ends it.
///
/// Legal order: `Started`, `FramesOver`, `Finished`, `Continue`. A dialog whose run doesn't start ends
/// without any of them. Calls that come again or too late change nothing.
class ProgressFlow {
public:
    enum class Phase { Validating, Measuring, Saving, Waiting, Timing, Closing };

    /// What the window does once the run is over.
    enum class Next { Wait, ContinueAtOnce, ContinueAfterDelay };
    /// Still images are measured at once: so long their log stays on the screen.
    static constexpr std::chrono::milliseconds kDelay{2000};

    bool CanStop() const { return phase == Phase::Validating || phase == Phase::Measuring; }
    bool CanContinue() const { return phase == Phase::Waiting || phase == Phase::Timing; }

    void Started();
    void FramesOver();
    /// `autoClose` is the box as it stands now.
    Next Finished(bool autoClose, const MeasurementJob& job);
    /// "Continue", by the user, by `Next` or by the timer. True for the first one: the dialog ends.
    bool Continue();

private:
    Phase phase = Phase::Validating;
};
