#include "metric/metric_base.h"

#include <gtest/gtest.h>

#include <numeric>
#include <utility>
#include <vector>

namespace Metric {
namespace {

/// Opens what a metric's author has, without measuring anything.
class Probe : public CMetric {
public:
    explicit Probe(MetricParameters size) : CMetric(std::move(size)) {}
    Probe(MetricParameters size, int block, bool padBoth) : CMetric(std::move(size), block, block, padBoth) {}

    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>&) override { return Result(value); }
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>&, rkVideoImage&) override {
        return Result(value);
    }
    std::vector<int> GetComponents() override { return {}; }
    void Visualize(rkVideoImage&, int) override {}

    using CMetric::GetMap;
    using CMetric::GetPlanes;
};

MetricParameters Parameters(int width, int height) {
    return {.width = width, .height = height, .text = {}};
}

TEST(MetricBase, PlanesArePaddedByRepetition) {
    CMetricImage first(3, 2);
    CMetricImage second(3, 2);
    std::iota(first.GetU(), first.GetU() + 6, 1.0f);
    std::iota(second.GetU(), second.GetU() + 6, 11.0f);
    const std::vector<float> kPadded = {1, 2, 3, 3, 4, 5, 6, 6, 4, 5, 6, 6, 4, 5, 6, 6};

    Probe both(Parameters(3, 2), 4, true);
    const auto planes = both.GetPlanes({&first, &second}, ComponentU);
    EXPECT_EQ(kPadded, std::vector<float>(planes.first, planes.first + 16));
    EXPECT_EQ(11, planes.second[0]);
    EXPECT_EQ(16, planes.second[15]);

    Probe single(Parameters(3, 2), 4, false);
    const auto plane = single.GetPlanes({&first}, ComponentU);
    EXPECT_EQ(kPadded, std::vector<float>(plane.first, plane.first + 16));
    EXPECT_EQ(nullptr, plane.second);

    Probe fitting(Parameters(3, 2));
    EXPECT_EQ((std::pair<const float*, const float*>(first.GetU(), second.GetU())),
              fitting.GetPlanes({&first, &second}, ComponentU));
}

TEST(MetricBase, MapsStartAtZeroAndStay) {
    Probe probe(Parameters(3, 2), 4, true);
    probe.GetMap(ComponentB)[15] = 5;
    EXPECT_EQ(5, probe.GetMap(ComponentB)[15]);
    EXPECT_EQ(0, probe.GetMap(ComponentG)[15]);
}

TEST(MetricBase, AverageIsTheMeanOfTheFirstValues) {
    Probe probe(Parameters(1, 1));
    // In float the ones after 2^24 would be lost: (2^24 + 8) / 4 = 2^22 + 2.
    for (float frameValue : {16777216.0f, 1.0f, 1.0f, 6.0f}) probe.AddFrameValues({frameValue, 1000});
    EXPECT_EQ(4194306.0f, probe.GetAverages(true)[0].value);
}

TEST(MetricBase, EveryInstanceHasAResultIdOfItsOwn) {
    const int next = *CMetric::ResultIdCounter();
    Probe first(Parameters(1, 1));
    Probe second(Parameters(1, 1), 8, false);
    EXPECT_EQ(next, first.GetAverages(false)[0].resultId);
    EXPECT_EQ(next + 1, second.GetResultInfo(false)[0].resultId);
}

}  // namespace
}  // namespace Metric
