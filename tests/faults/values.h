#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

/// A result as a file shows it, numbers as the very text.
struct Column {
    std::string average;
    std::vector<std::string> values;  ///< of the frames from 0 on
};

/// By the result's name and its files.
using Columns = std::map<std::string, Column>;

/// Of a CSV file with points and commas. Throws std::runtime_error if it isn't whole.
Columns ColumnsOfCsv(const std::string& text);

/// Of the object that tolvane-measure writes. Throws what the library throws if something is missing.
Columns ColumnsOfJson(const nlohmann::json& report);
