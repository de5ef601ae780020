#include "tests/faults/values.h"

#include <stdexcept>

namespace {

using Cells = std::vector<std::string>;

Cells Split(const std::string& text, const std::string& separator) {
    Cells cells;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = text.find(separator, start)) != text.npos;
         start = end + separator.size())
        cells.push_back(text.substr(start, end - start));
    cells.push_back(text.substr(start));
    return cells;
}

void Require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(what);
}

}  // namespace

Columns ColumnsOfCsv(const std::string& text) {
    constexpr std::size_t kTitle = 0, kFirstFile = 1, kSecondFile = 2, kAverage = 3, kValues = 4;
    std::vector<Cells> lines;
    for (const std::string& line : Split(text, "\r\n")) lines.push_back(Split(line, ","));
    Require(lines.back() == Cells{""}, "the last line has no end");
    lines.pop_back();
    Require(lines.size() >= kValues, "no head");

    Columns columns;
    for (std::size_t i = 0; i < lines[kTitle].size(); ++i) {
        for (const Cells& line : lines)
            Require(line.size() == lines[kTitle].size(), "lines of different length");
        Column column = {lines[kAverage][i], {}};
        bool isOver = false;
        for (std::size_t line = kValues; line < lines.size(); ++line) {
            const std::string& value = lines[line][i];
            Require(!isOver || value.empty(), "a gap in a series");
            isOver = value.empty();
            if (!isOver) column.values.push_back(value);
        }
        columns[lines[kTitle][i] + " " + lines[kFirstFile][i] + " " + lines[kSecondFile][i]] = column;
    }
    return columns;
}

Columns ColumnsOfJson(const nlohmann::json& report) {
    Columns columns;
    for (const auto& result : report.at("results")) {
        Column column = {result.at("average").dump(), {}};
        for (const auto& value : result.at("values")) column.values.push_back(value.dump());
        columns[result.at("name").dump() + result.at("component").dump() + result.at("files").dump()] =
            column;
    }
    return columns;
}
