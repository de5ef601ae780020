#pragma once

#include <string>
#include <vector>

#include "tests/golden/cases.h"

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

/// One result of a run. Numbers are text of nine significant digits, which tell any two floats apart; "null"
/// is what isn't a number, and the average of no frame.
struct Row {
    std::string key;  ///< "mse Y original processed": metric, component, result if it has a name, files
    int firstFrame = 0;
    std::string average;
    std::vector<std::string> values;
};

/// A case's results.
struct Section {
    std::string name;
    std::string files;  ///< for the reader: how the clips were measured
    std::vector<Row> rows;
};

/// The instruction sets that this machine has code for, as `Program::vectors` takes them.
std::vector<std::string> VectorSets();

// All of these throw std::runtime_error where the program doesn't give results.

/// Throws also unless the program obeys `Program::vectors`.
void CheckVectors(const Program& program);

/// All metrics of the program, in the order of its list.
std::vector<MetricChoice> MetricsOf(const Program& program);

/// Runs the program on the files of a case, once or, split, several times, and puts the results together.
Section Measure(const Program& program, const std::vector<MetricChoice>& metrics, const Case& what,
                Split split);
