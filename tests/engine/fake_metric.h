#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "metric/metric_image.h"
#include "metric/metric_list.h"

using Images = std::vector<Metric::CMetricImage*>;

/// What a FakeMetric is and does.
struct FakeKind {
    std::wstring id = L"fake";
    std::wstring name = L"Fake";
    int inputs = 2;
    int inputsVisual = 2;
    bool loads = true;  ///< an instance for a run can be had
    bool configurable = false;
    bool acceptsSettings = true;
    std::vector<std::vector<int>> results = {{0, 1}};  ///< the file positions of each result
    /// A frame's value; by default that of the first pixel of the component, less that of the second image.
    std::function<float(const Images& images, int component)> measure = [](const Images& images,
                                                                           int component) {
        const float first = *images[0]->GetPlane(component);
        return images.size() == 1 ? first : first - *images[1]->GetPlane(component);
    };
};

/// Answers by its kind. Each result is the same value plus its position among the results; the average is the
/// number of frames measured.
class FakeMetric : public Metric::IMetric {
public:
    FakeMetric(FakeKind metricKind, const Metric::MetricParameters& metricParameters)
        : kind(std::move(metricKind)), parameters(metricParameters), firstId(nextId) {
        nextId += static_cast<int>(kind.results.size());
    }
    std::vector<Metric::MetricValue> Measure(const Images& images) override {
        const float value = kind.measure(images, parameters.component);
        ++frames;
        return Values(value);
    }
    std::vector<Metric::MetricValue> MeasureAndVisualize(const Images& images, rkVideoImage&) override {
        return Measure(images);
    }
    std::vector<Metric::MetricResultInfo> GetResultInfo(bool) override {
        std::vector<Metric::MetricResultInfo> infos;
        for (const std::vector<int>& files : kind.results)
            infos.push_back({firstId + static_cast<int>(infos.size()), files, {}});
        return infos;
    }
    std::vector<Metric::MetricValue> GetAverages(bool) override {
        std::vector<Metric::MetricValue> averages = Values(0);
        for (Metric::MetricValue& average : averages) average.value = static_cast<float>(frames);
        return averages;
    }
    int GetInputCount(bool visualize) override { return visualize ? kind.inputsVisual : kind.inputs; }
    std::vector<int> GetComponents() override { return {0}; }
    std::wstring GetId() override { return kind.id; }
    std::wstring GetInfoUrl() override { return {}; }
    bool IsHigherBetter() override { return true; }
    std::wstring GetName() override { return kind.name; }
    std::wstring GetUnit() override { return {}; }
    int GetBlockWidth() override { return 1; }
    int GetBlockHeight() override { return 1; }
    bool IsConfigurable() override { return kind.configurable; }
    bool NeedsGpu() override { return false; }
    std::wstring GetDefaultSettings() override { return L"default"; }
    bool Configure(const std::wstring&) override { return kind.acceptsSettings; }

private:
    std::vector<Metric::MetricValue> Values(float value) const {
        std::vector<Metric::MetricValue> values;
        for (std::size_t i = 0; i < kind.results.size(); ++i)
            values.push_back({firstId + static_cast<int>(i), value + static_cast<float>(i)});
        return values;
    }

    inline static int nextId = 0;
    FakeKind kind;
    Metric::MetricParameters parameters;
    int firstId;
    int frames = 0;
};

/// A list of such metrics.
inline Metric::CMetricList FakeList(const std::vector<FakeKind>& kinds) {
    Metric::CMetricList list;
    for (const FakeKind& kind : kinds) {
        bool isSample = true;
        list.Append(0, [kind, isSample](const Metric::MetricParameters& parameters) mutable {
            const bool exists = std::exchange(isSample, false) || kind.loads;
            return exists ? std::make_unique<FakeMetric>(kind, parameters) : nullptr;
        });
    }
    return list;
}
