#pragma once

#include <iosfwd>
#include <string>
#include <vector>

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

/// Reads a table; throws std::runtime_error where it isn't one.
std::vector<Section> ReadTable(std::istream& in);

void WriteTable(std::ostream& out, const std::vector<Section>& sections);

/// What differs, a line each: `name`, metric, component, files, frame, both values. A row that only one side
/// has is a difference.
std::vector<std::string> Differences(const std::string& name, const Section& golden, const Section& measured);
