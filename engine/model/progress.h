#pragma once

#include <string>
#include <vector>

#include "engine/model/selected_metric.h"

/// Follows a run from its first frame to its last. Called by the run's own thread only, in this order:
/// `Start`, `SetMinimum(0)`, `SetMaximum` with the length in frames, `SetPosition` after each frame with its
/// number, `Finish`, which comes twice when the run was interrupted.
class IProgress {
public:
    /// Announces what is measured on which files, by their paths.
    virtual void Start(const MetricSelection& selection, const std::vector<std::wstring>& names) = 0;
    virtual void SetMinimum(int) {}
    virtual void SetMaximum(int) {}
    virtual void SetPosition(int position) = 0;
    /// The frames are over; results are still to be saved.
    virtual void Finish() {}
    virtual ~IProgress() = default;
};
