#include <cmath>
#include <cstdint>
#include <vector>

#include "metric/metric_image.h"
#include "platform/text.h"
#include "tests/fuzz/metrics_with_plugins.h"

namespace {

constexpr int kLargestSide = 24;
constexpr std::size_t kHead = 4;

/// Measures a frame of two pictures that differ in one pixel.
void Measure(Metric::IMetric& metric, const Metric::MetricParameters& parameters) {
    Metric::CMetricImage first(parameters.width, parameters.height);
    Metric::CMetricImage second(parameters.width, parameters.height);
    second.GetPlane(parameters.component)[0] = 1;
    const std::vector<Metric::MetricResultInfo> infos = metric.GetResultInfo(false);
    const std::vector<Metric::MetricValue> values = metric.Measure({&first, &second});
    const std::vector<Metric::MetricValue> averages = metric.GetAverages(false);
    Require(!infos.empty() && values.size() == infos.size() && averages.size() == infos.size());
    for (std::size_t i = 0; i < infos.size(); ++i) {
        Require(values[i].resultId == infos[i].resultId && averages[i].resultId == infos[i].resultId);
        Require(std::isfinite(values[i].value) && values[i].value == averages[i].value);
    }
}

}  // namespace

/// Gives the bytes, but for a head that says which metric and what size, to a metric as its settings. Only a
/// configurable one takes any, and only then it measures by them; what it refuses leaves it as it was.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Metric::CMetricList& metrics = MetricsWithPlugins();
    if (size < kHead) return 0;
    const int index = data[0] % metrics.GetCount();
    const std::vector<int>& components = metrics.GetComponents(index);
    Metric::MetricParameters parameters;
    parameters.component = components[data[1] % components.size()];
    parameters.width = 1 + data[2] % kLargestSide;
    parameters.height = 1 + data[3] % kLargestSide;
    const auto metric = metrics.CreateInstance(index, parameters);
    Require(metric != nullptr);

    const std::wstring settings = FromUtf8({reinterpret_cast<const char*>(data) + kHead, size - kHead});
    const bool isTaken = metric->Configure(settings);
    Require(!isTaken || metrics.IsConfigurable(index));
    if (!metrics.IsConfigurable(index)) return 0;
    Measure(*metric, parameters);
    Require(metric->Configure(metrics.GetDefaultSettings(index)));
    return 0;
}
