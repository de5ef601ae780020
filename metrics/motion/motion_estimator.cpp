#include "metrics/motion/motion_estimator.h"

#include <cstddef>
#include <utility>

#include "metrics/motion/block_decision.h"
#include "metrics/motion/neighbours.h"

namespace Metric {

void MotionEstimator::Setup(int height, int width, const MotionParameters& motionParameters) {
    parameters = motionParameters;
    field.columns = width / MotionParameters::blockSize;
    field.rows = height / MotionParameters::blockSize;
    field.blocks.resize(static_cast<std::size_t>(field.columns * field.rows));
    previousField = field;
    planes = ReferencePlanes(width, height, parameters.Margin());
    projected = ProjectedVectors(field.columns, field.rows);
    search = BlockSearch(parameters);
    statistics = CostStatistics(parameters);
}

void MotionEstimator::Estimate(const MotionPicture& current, const MotionPicture& reference) {
    const CostThresholds thresholds = statistics.Thresholds();
    std::swap(field, previousField);
    projected.Clear();
    if (hasPrevious) projected.Project(previousField, thresholds.projection);
    planes.Build(reference);
    search.Begin(current, planes);

    constexpr int kSize = MotionParameters::blockSize;
    for (int row = 0; row < field.rows; ++row) {
        for (int column = 0; column < field.columns; ++column) {
            GatherCandidates(column, row);
            field.At(column, row) = DecideBlock(search, candidates, column * kSize, row * kSize, thresholds);
        }
    }
    statistics.Update(field);
    hasPrevious = true;
}

void MotionEstimator::GatherCandidates(int column, int row) {
    candidates.Clear();
    projected.AppendTo(candidates, column, row);
    AppendNeighbours(candidates, field, hasPrevious ? &previousField : nullptr, column, row);
}

}  // namespace Metric
