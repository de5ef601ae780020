#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "metric/metric_base.h"
#include "metric/metric_list.h"

using Images = std::vector<Metric::CMetricImage*>;

/// What a FakeMetric is and does.
struct FakeKind {
    std::wstring id = L"fake";
    std::wstring name = L"Fake";
    std::array<int, 2> inputs = {2, 2};  ///< without and with visualization
    bool loads = true;                   ///< an instance for a run can be had
    bool configurable = false;
    bool acceptsSettings = true;
    std::vector<std::vector<int>> results = {{0, 1}};  ///< the file positions of each result
    /// A frame's value; by default that of the first pixel, less that of the second image.
    std::function<float(const Images& images)> measure = [](const Images& images) {
        return *images[0]->GetY() - (images.size() == 1 ? 0 : *images[1]->GetY());
    };
    /// Changes a frame's answer before it is given.
    std::function<void(std::vector<Metric::MetricValue>& values)> answer = [](auto&) {};
};

/// Answers by its kind. Each result is the same value plus its position among the results; the average is the
/// number of frames measured.
class FakeMetric : public Metric::CMetric {
public:
    FakeMetric(FakeKind metricKind, const Metric::MetricParameters& metricParameters)
        : CMetric(metricParameters), kind(std::move(metricKind)) {
        id = kind.id;
        name = kind.name;
        inputCount = kind.inputs;
        *ResultIdCounter() += static_cast<int>(kind.results.size());
    }
    std::vector<Metric::MetricValue> Measure(const Images& images) override {
        const float frameValue = kind.measure(images);
        ++count;
        auto values = Values(frameValue);
        kind.answer(values);
        return values;
    }
    std::vector<Metric::MetricValue> MeasureAndVisualize(const Images& images, rkVideoImage&) override {
        return Measure(images);
    }
    void Visualize(rkVideoImage&, int) override {}
    std::vector<Metric::MetricResultInfo> GetResultInfo(bool) override {
        std::vector<Metric::MetricResultInfo> infos;
        for (const auto& files : kind.results)
            infos.push_back({resultId + static_cast<int>(infos.size()), files, {}});
        return infos;
    }
    std::vector<Metric::MetricValue> GetAverages(bool) override {
        auto averages = Values(0);
        for (Metric::MetricValue& result : averages) result.value = static_cast<float>(count);
        return averages;
    }
    std::vector<int> GetComponents() override { return {0}; }
    bool IsConfigurable() override { return kind.configurable; }
    bool Configure(const std::wstring&) override { return kind.acceptsSettings; }

private:
    std::vector<Metric::MetricValue> Values(float first) const {
        std::vector<Metric::MetricValue> values;
        for (int i = 0; i < static_cast<int>(kind.results.size()); ++i)
            values.push_back({resultId + i, first + static_cast<float>(i)});
        return values;
    }

    FakeKind kind;
};

/// A list of such metrics.
inline Metric::CMetricList FakeList(const std::vector<FakeKind>& kinds) {
    Metric::CMetricList list;
    for (const FakeKind& kind : kinds) {
        const auto make = [kind](const Metric::MetricParameters& parameters) {
            return std::make_unique<FakeMetric>(kind, parameters);
        };
        const auto makeForRun = [kind, make](const Metric::MetricParameters& parameters) {
            return kind.loads ? make(parameters) : nullptr;
        };
        list.Append(0, makeForRun, make);
    }
    return list;
}
