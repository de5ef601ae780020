#pragma once

#include <string>
#include <vector>

#include "metric/metric_types.h"

class rkVideoImage;

namespace Metric {

class CMetricImage;

/// A quality measure. The engine knows nothing else of a metric.
///
/// Order    construct; `Configure` if configurable; `GetResultInfo` once; for each frame in order `Measure`
///          or `MeasureAndVisualize`; `GetAverages`; destroy. Running values start with the instance; nothing
///          resets them.
/// Images   one for each input file in file order, original first; they belong to the caller, stay valid for
///          the call only and are read-only. As many as `GetInputCount` promised: the caller's duty.
/// Threads  one thread at a time an instance, not always the same one; instances share nothing written.
class IMetric {
public:
    virtual ~IMetric() = default;
    /// Measures one frame.
    virtual std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) = 0;
    /// Measures one frame and paints `target`, an `RGB24` image of the picture's size, rows as they lie in
    /// memory from the top.
    virtual std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                         rkVideoImage& target) = 0;
    /// The results that will be delivered, with or without visualization. Empty is invalid.
    virtual std::vector<MetricResultInfo> GetResultInfo(bool visualize) = 0;
    /// The value of the whole sequence for each result, over the frames measured so far.
    virtual std::vector<MetricValue> GetAverages(bool visualize) = 0;
    /// How many files the metric takes without and with visualization.
    virtual int GetInputCount(bool visualize) = 0;
    /// Supported colour components, in display order.
    virtual std::vector<int> GetComponents() = 0;
    virtual std::wstring GetId() = 0;       ///< stable, such as "psnr"
    virtual std::wstring GetInfoUrl() = 0;  ///< the metric's description
    virtual bool IsHigherBetter() = 0;
    virtual std::wstring GetName() = 0;  ///< as displayed, such as "PSNR"
    virtual std::wstring GetUnit() = 0;  ///< "dB", or empty
    virtual int GetBlockWidth() = 0;     ///< the padded picture's width is a multiple of this
    virtual int GetBlockHeight() = 0;
    virtual bool IsConfigurable() = 0;  ///< takes a settings string
    virtual bool NeedsGpu() = 0;
    /// Whether it looks at the planes of its own component alone, so that the others need not be there.
    virtual bool ReadsItsComponentOnly() { return false; }
    virtual std::wstring GetDefaultSettings() = 0;
    /// Applies a settings string; false when it is refused.
    virtual bool Configure(const std::wstring& settings) = 0;
};

}  // namespace Metric
