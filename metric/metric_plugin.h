#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "metric/metric_interface.h"
#include "metric/sdk/tolvane/plugin.h"
#include "platform/dynamic_library.h"

namespace Metric {

/// A metric that lives in a plug-in file, looking like any other.
///
/// Order of calls  `Load`; for a run `Init`; then as `IMetric` says. Every answer is empty until
///                 `Load` has succeeded.
/// Trust           what the plug-in says is limited to what the buffers hold, and its exceptions end here. A
///                 result count that isn't from 1 to 10, or a call that throws, gives an empty vector; a text
///                 that isn't ended is cut to 259 characters. Result ids and values, NaN included, are passed
///                 on as they are.
class CMetricPlugin : public IMetric {
public:
    CMetricPlugin();
    ~CMetricPlugin() override;
    CMetricPlugin(const CMetricPlugin&) = delete;
    CMetricPlugin& operator=(const CMetricPlugin&) = delete;

    /// Loads the file and lets it make its object. To be called once. False if it is no library, has no
    /// `CreateMetric` or makes no object.
    bool Load(const std::wstring& path);
    /// Hands the run's parameters to the plug-in, with the process's counter of result ids. False if it
    /// throws.
    bool Init(const MetricParameters& parameters);

    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    /// Paints nothing into a `target` without pixels.
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<MetricResultInfo> GetResultInfo(bool visualize) override;
    std::vector<MetricValue> GetAverages(bool visualize) override;
    int GetInputCount(bool visualize) override;
    std::vector<int> GetComponents() override;  ///< only numbers that are colour components
    std::wstring GetId() override { return Text(&IMetricPlugin::GetId); }
    std::wstring GetInfoUrl() override { return Text(&IMetricPlugin::GetInfoUrl); }
    bool IsHigherBetter() override;
    std::wstring GetName() override { return Text(&IMetricPlugin::GetName); }
    std::wstring GetUnit() override { return Text(&IMetricPlugin::GetUnit); }
    int GetBlockWidth() override;  ///< at least 1
    int GetBlockHeight() override;
    bool IsConfigurable() override;
    bool NeedsGpu() override { return false; }
    std::wstring GetDefaultSettings() override;
    bool Configure(const std::wstring& settings) override;

private:
    struct Buffers;

    template <class Call>
    bool Guarded(Call call);
    template <class Answer>
    Answer Ask(Answer (IMetricPlugin::*question)());
    template <class Call>
    std::vector<MetricValue> Values(Call call);
    std::wstring Text(void (IMetricPlugin::*question)(wchar_t*));

    DynamicLibrary module;
    IMetricPlugin* plugin = nullptr;
    std::unique_ptr<Buffers> buffers;
};

}  // namespace Metric
