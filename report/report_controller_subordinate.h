#pragma once

namespace Report {

/// A view of the results that follows the controller.
class IReportControllerSubordinate {
public:
    virtual ~IReportControllerSubordinate() = default;
    /// Called after every change of the visible range or the current frame.
    virtual void Update(int visibleFirst, int visibleLast, int current) = 0;
};

}  // namespace Report
