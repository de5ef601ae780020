// Measures the cases of tests/golden again and says what differs from their table. scripts/golden calls it.
//
//   golden --program FILE --table FILE --samples DIR [--renew] [--only CASE] [--vectors NAME|each]
//   [OPTIONS...]
//
// --vectors holds the program to one instruction set, or to one after the other. OPTIONS go to every run of
// the program that is measured. The status is 0 when all agrees, 1 when something differs, 2 when it can't be
// told.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "tests/golden/measurement.h"

namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kShown = 12;  // differences of a case
constexpr char kHead[] =
    "# The values of every metric, for scripts/golden, which writes this file (--renew).\n"
    "# metric component files [@first frame]: value of the sequence | values of the frames\n";

struct Options {
    Program program;
    std::string table, only;
    bool renew = false;
};

Options ParseOptions(const Lines& words) {
    Options options;
    Program& program = options.program;
    const std::map<std::string, std::string*> values = {{"--program", &program.path},
                                                        {"--table", &options.table},
                                                        {"--samples", &program.samples},
                                                        {"--only", &options.only},
                                                        {"--vectors", &program.vectors}};
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (const auto found = values.find(*word); found != values.end()) {
            if (word + 1 == words.end()) throw std::runtime_error(*word + " needs a value");
            *found->second = *++word;
        } else if (*word == "--renew") {
            options.renew = true;
        } else {
            program.options += " '" + *word + "'";
        }
    }
    if (program.path.empty() || options.table.empty() || program.samples.empty())
        throw std::runtime_error("--program, --table and --samples are needed");
    program.path = std::filesystem::absolute(program.path).native();
    if (!std::filesystem::is_regular_file(program.path))
        throw std::runtime_error("there is no program " + program.path);
    if (!std::filesystem::exists(program.samples + "/yard_x264.y4m"))
        throw std::runtime_error("there are no sample clips in " + program.samples);
    return options;
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

std::vector<Section> ReadTable(const Options& options) {
    std::ifstream in(options.table);
    if (!in && !options.renew) throw std::runtime_error("can't read " + options.table);
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

void WriteTable(const std::string& path, const std::vector<Section>& sections) {
    std::ofstream out(path);
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
    if (!out.flush()) throw std::runtime_error("can't write " + path);
}

template <class Item>
const Item* Find(const std::vector<Item>& items, std::string Item::*key, const std::string& value) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const Item& item) { return item.*key == value; });
    return found == items.end() ? nullptr : &*found;
}

void CompareRows(const std::string& where, const Row& golden, const Row& measured, Lines& lines) {
    const auto compare = [&](const std::string& what, const std::string& old, const std::string& now) {
        if (old != now)
            lines.push_back(where + ", " + what + ": " + old + " in the table, " + now + " measured");
    };
    compare("sequence", golden.average, measured.average);
    compare("first frame", std::to_string(golden.firstFrame), std::to_string(measured.firstFrame));
    compare("number of frames", std::to_string(golden.values.size()), std::to_string(measured.values.size()));
    for (std::size_t i = 0; i < std::min(golden.values.size(), measured.values.size()); ++i)
        compare("frame " + std::to_string(golden.firstFrame + static_cast<int>(i)), golden.values[i],
                measured.values[i]);
}

/// What differs, a line each: `name`, metric, component, files, frame, both values. A row that only one side
/// has is a difference.
Lines Differences(const std::string& name, const Section& golden, const Section& measured) {
    Lines lines;
    for (const Row& row : golden.rows) {
        if (const Row* now = Find(measured.rows, &Row::key, row.key))
            CompareRows(name + ": " + row.key, row, *now, lines);
        else
            lines.push_back(name + ": " + row.key + ": not measured any more");
    }
    for (const Row& row : measured.rows)
        if (!Find(golden.rows, &Row::key, row.key))
            lines.push_back(name + ": " + row.key + ": not in the table");
    return lines;
}

std::size_t Print(const Lines& lines) {
    for (std::size_t i = 0; i < std::min(lines.size(), kShown); ++i) std::cout << lines[i] << "\n";
    if (lines.size() > kShown) std::cout << "... and " << lines.size() - kShown << " more of this case\n";
    return lines.size();
}

/// Measures the chosen cases and compares them with the table; what was measured replaces the table's
/// sections. The number of differences.
std::size_t MeasureAgain(const Options& options, const std::vector<Section>& old,
                         std::vector<Section>& renewed) {
    CheckVectors(options.program);
    const std::vector<MetricChoice> metrics = MetricsOf(options.program);
    const std::vector<Case> cases = GoldenCases();
    const std::string with = options.program.vectors.empty() ? "" : " with " + options.program.vectors;
    std::size_t measured = 0, differences = 0;
    for (const Case& what : cases) {
        const Section* golden = Find(old, &Section::name, what.name);
        if (!options.only.empty() && what.name != options.only) {
            if (golden) renewed.push_back(*golden);
            continue;
        }
        ++measured;
        renewed.push_back(Measure(options.program, metrics, what, Split::None));
        const Section& now = renewed.back();
        differences += golden ? Print(Differences(what.name + with, *golden, now))
                              : Print({what.name + ": not in the table"});
        // A result must not depend on what is measured beside it.
        if (what.split != Split::None)
            differences += Print(Differences(what.name + with + ", apart", now,
                                             Measure(options.program, metrics, what, what.split)));
    }
    if (measured == 0) throw std::runtime_error("there is no case " + options.only);
    for (const Section& section : old)
        if (!Find(cases, &Case::name, section.name))
            differences += Print({section.name + ": only in the table"});
    return differences;
}

int Run(const Options& options, const std::vector<Section>& old) {
    std::vector<Section> renewed;
    const std::size_t differences = MeasureAgain(options, old, renewed);
    if (options.renew) {
        WriteTable(options.table, renewed);
        std::cout << "renewed " << options.table << ", " << differences << " differences\n";
        return 0;
    }
    const std::string with = options.program.vectors.empty() ? "" : " with " + options.program.vectors;
    std::cout << (differences == 0 ? "all values agree" : std::to_string(differences) + " differences")
              << with << std::endl;
    return differences == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) try {
    Options options = ParseOptions({argv + 1, argv + argc});
    const std::vector<Section> old = ReadTable(options);
    if (options.program.vectors != "each") return Run(options, old);
    int status = 0;
    for (const std::string& set : VectorSets()) {
        options.program.vectors = set;
        status = std::max(status, Run(options, old));
    }
    return status;
} catch (const std::exception& error) {
    std::cerr << "golden: " << error.what() << "\n";
    return 2;
}
