#include "metrics/motion/cost_statistics.h"

#include <algorithm>
#include <cmath>

namespace Metric {

namespace {

/// Calls use(cost) for every vector's cost above 0, scaled to 16 by 16 pixels.
template <class Use>
void ForEachCost(const MotionField& field, const Use& use) {
    for (const BlockMotion& block : field.blocks) {
        block.ForEachVector([&](const MotionVector& vector, int share) {
            if (vector.cost > 0) use(static_cast<float>(vector.cost * share));
        });
    }
}

float Blend(float rate, float fresh, float running) {
    return rate * fresh + (1 - rate) * running;
}

}  // namespace

CostStatistics::CostStatistics(const MotionParameters& motionParameters)
    : parameters(motionParameters), running{motionParameters.meanStart, motionParameters.deviationStart} {}

CostThresholds CostStatistics::Thresholds() const {
    const float split = running.deviation * 0.2f + running.mean;
    return {split, split / 4, running.deviation * 0.7f + running.mean};
}

void CostStatistics::Update(const MotionField& field) {
    float sum = 0;
    int count = 0;
    ForEachCost(field, [&](float cost) {
        sum += cost;
        ++count;
    });
    if (count == 0) return;

    const auto n = static_cast<float>(count);
    Moments frame{sum / n};
    float squares = 0;
    ForEachCost(field, [&](float cost) { squares += (cost - frame.mean) * (cost - frame.mean); });
    frame.deviation = std::sqrt(squares) / n;

    if (!hasPrevious) previous = frame;
    hasPrevious = true;
    running.mean = Blend(parameters.meanRate, std::min(previous.mean, frame.mean), running.mean);
    running.deviation =
        Blend(parameters.deviationRate, std::min(previous.deviation, frame.deviation), running.deviation);
    previous = frame;
}

}  // namespace Metric
