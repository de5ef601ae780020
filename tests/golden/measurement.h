#pragma once

#include <string>
#include <vector>

#include "tests/golden/cases.h"
#include "tests/golden/table.h"

/// The program that is measured with.
struct Program {
    std::string path;     ///< absolute
    std::string options;  ///< of every run
    std::string vectors;  ///< the instruction set that it is held to; empty for the best
    std::string samples;  ///< the directory of the sample clips
};

/// A metric in one component, as `--metric` takes it.
struct MetricChoice {
    std::string id;
    char component = 'Y';
};

/// The instruction sets that this machine has code for, as `Program::vectors` takes them.
std::vector<std::string> VectorSets();

/// Throws std::runtime_error unless the program obeys `Program::vectors`.
void CheckVectors(const Program& program);

/// All metrics of the program, in the order of its list. Throws std::runtime_error if it doesn't run.
std::vector<MetricChoice> MetricsOf(const Program& program);

/// Runs the program on the files of a case, once or, split, several times, and puts the results together.
/// Throws std::runtime_error where the program doesn't give results.
Section Measure(const Program& program, const std::vector<MetricChoice>& metrics, const Case& what,
                Split split);
