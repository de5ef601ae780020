#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "metric/metric_interface.h"
#include "metric/metric_types.h"

namespace Metric {

/// The `kind` of every plug-in. The kinds of the metrics that live in the program stand where those are
/// entered.
constexpr int kPluginKind = 19;

/// What the list knows of a metric without an instance.
struct MetricInfo {
    int kind = 0;  ///< stable over versions, unlike the index
    std::wstring id;
    std::wstring name;
    std::wstring infoUrl;
    std::wstring unit;
    std::vector<int> components;  ///< in display order
    int inputCountPlain = 0;
    int inputCountVisual = 0;
    bool higherIsBetter = false;
    bool configurable = false;
    bool needsGpu = false;
    std::wstring defaultSettings;  ///< of a configurable metric
    std::wstring pluginPath;       ///< the file of a plug-in, otherwise empty
};

/// Makes a new instance, or null if it can't be had.
using MetricFactory = std::function<std::unique_ptr<IMetric>(const MetricParameters& parameters)>;

/// The catalogue of what can be measured, and the factory of working instances. A metric's index is its
/// position; settings store the id, since the index depends on the plug-ins and devices that were found.
///
/// Filled on one thread, then read from any. An index that isn't in the list gives 0, false, an empty text or
/// an empty vector. Knows no metric by itself: `GetMetricList` has the one list of the process.
class CMetricList {
public:
    /// Adds a metric behind the others. Its record is read from a sample instance for 160 by 160 pixels;
    /// without one the metric isn't added.
    void Append(int kind, MetricFactory create) { Append(kind, create, create); }
    /// The same with another factory for the sample, where the metric's own is dear.
    void Append(int kind, MetricFactory create, const MetricFactory& createSample);

    /// Adds the plug-ins of a directory, its files "*.tlp" in ascending order of their names' bytes. A file
    /// that can't be loaded is passed over, a missing directory holds none.
    void AppendPlugins(const std::wstring& directory);

    int GetCount() const { return static_cast<int>(entries.size()); }
    const std::wstring& GetId(int index) const { return Info(index).id; }
    const std::wstring& GetName(int index) const { return Info(index).name; }
    const std::wstring& GetInfoUrl(int index) const { return Info(index).infoUrl; }
    const std::wstring& GetUnit(int index) const { return Info(index).unit; }
    const std::vector<int>& GetComponents(int index) const { return Info(index).components; }
    int GetInputCount(int index, bool visualize) const;
    bool IsHigherBetter(int index) const { return Info(index).higherIsBetter; }
    bool IsConfigurable(int index) const { return Info(index).configurable; }
    bool NeedsGpu(int index) const { return Info(index).needsGpu; }
    const std::wstring& GetDefaultSettings(int index) const { return Info(index).defaultSettings; }
    /// The whole record; an empty one for an index that isn't in the list.
    const MetricInfo& Info(int index) const;

    /// The index of the first metric with exactly this id. False leaves `index` alone.
    bool FindById(std::wstring_view id, int& index) const;

    /// A new instance for a run; null for an index that isn't in the list or a plug-in that doesn't load any
    /// more. Throws what the metric's constructor throws (std::bad_alloc).
    std::unique_ptr<IMetric> CreateInstance(int index, const MetricParameters& parameters) const;

private:
    struct Entry {
        MetricInfo info;
        MetricFactory create;
    };

    bool Has(int index) const { return index >= 0 && index < GetCount(); }
    void AppendPlugin(const std::wstring& path);

    std::vector<Entry> entries;
};

}  // namespace Metric
