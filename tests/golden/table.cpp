#include "tests/golden/table.h"

#include <algorithm>
#include <istream>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char kHead[] =
    "# The values of every metric, for scripts/golden, which writes this file (--renew).\n"
    "# metric component files [@first frame]: value of the sequence | values of the frames\n";

const Row* FindRow(const Section& section, const std::string& key) {
    const auto found = std::find_if(section.rows.begin(), section.rows.end(),
                                    [&](const Row& row) { return row.key == key; });
    return found == section.rows.end() ? nullptr : &*found;
}

Row ParseRow(const std::string& line) {
    const std::size_t colon = line.find(": "), bar = line.find(" |");
    if (colon == line.npos || bar == line.npos || bar < colon)
        throw std::runtime_error("no row of a table: " + line);
    Row row;
    row.key = line.substr(0, colon);
    row.average = line.substr(colon + 2, bar - colon - 2);
    if (const std::size_t at = row.key.find(" @"); at != line.npos) {
        row.firstFrame = std::stoi(row.key.substr(at + 2));
        row.key.resize(at);
    }
    std::istringstream values(line.substr(bar + 2));
    for (std::string value; values >> value;) row.values.push_back(value);
    return row;
}

void CompareRows(const std::string& where, const Row& golden, const Row& measured,
                 std::vector<std::string>& lines) {
    const auto compare = [&](const std::string& what, const std::string& old, const std::string& now) {
        if (old != now)
            lines.push_back(where + ", " + what + ": " + old + " in the table, " + now + " measured");
    };
    compare("sequence", golden.average, measured.average);
    compare("first frame", std::to_string(golden.firstFrame), std::to_string(measured.firstFrame));
    compare("number of frames", std::to_string(golden.values.size()), std::to_string(measured.values.size()));
    const std::size_t both = std::min(golden.values.size(), measured.values.size());
    for (std::size_t i = 0; i < both; ++i)
        compare("frame " + std::to_string(golden.firstFrame + static_cast<int>(i)), golden.values[i],
                measured.values[i]);
}

}  // namespace

std::vector<Section> ReadTable(std::istream& in) {
    std::vector<Section> sections;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || (line[0] == '#' && sections.empty())) continue;
        if (line[0] == '[' && line.back() == ']')
            sections.push_back({line.substr(1, line.size() - 2), "", {}});
        else if (sections.empty())
            throw std::runtime_error("a row before the first case: " + line);
        else if (line[0] == '#')
            sections.back().files = line.substr(2);
        else
            sections.back().rows.push_back(ParseRow(line));
    }
    return sections;
}

void WriteTable(std::ostream& out, const std::vector<Section>& sections) {
    out << kHead;
    for (const Section& section : sections) {
        out << "\n[" << section.name << "]\n# " << section.files << "\n";
        for (const Row& row : section.rows) {
            out << row.key;
            if (row.firstFrame != 0) out << " @" << row.firstFrame;
            out << ": " << row.average << " |";
            for (const std::string& value : row.values) out << " " << value;
            out << "\n";
        }
    }
}

std::vector<std::string> Differences(const std::string& name, const Section& golden,
                                     const Section& measured) {
    std::vector<std::string> lines;
    for (const Row& row : golden.rows) {
        if (const Row* now = FindRow(measured, row.key))
            CompareRows(name + ": " + row.key, row, *now, lines);
        else
            lines.push_back(name + ": " + row.key + ": not measured any more");
    }
    for (const Row& row : measured.rows)
        if (!FindRow(golden, row.key)) lines.push_back(name + ": " + row.key + ": not in the table");
    return lines;
}
