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
#include <stdexcept>

#include "tests/golden/measurement.h"

namespace {

constexpr std::size_t kShown = 12;  // differences of a case

struct Options {
    Program program;
    std::string table;
    std::string only;
    bool renew = false;
};

Options ParseOptions(const std::vector<std::string>& words) {
    Options options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto next = [&] {
            if (i + 1 == words.size()) throw std::runtime_error(words[i] + " needs a value");
            return words[++i];
        };
        if (words[i] == "--program")
            options.program.path = std::filesystem::absolute(next()).native();
        else if (words[i] == "--table")
            options.table = next();
        else if (words[i] == "--samples")
            options.program.samples = next();
        else if (words[i] == "--only")
            options.only = next();
        else if (words[i] == "--vectors")
            options.program.vectors = next();
        else if (words[i] == "--renew")
            options.renew = true;
        else
            options.program.options += " '" + words[i] + "'";
    }
    if (options.program.path.empty() || options.table.empty() || options.program.samples.empty())
        throw std::runtime_error("--program, --table and --samples are needed");
    if (!std::filesystem::is_regular_file(options.program.path))
        throw std::runtime_error("there is no program " + options.program.path);
    if (!std::filesystem::exists(options.program.samples + "/yard_x264.y4m"))
        throw std::runtime_error("there are no sample clips in " + options.program.samples);
    return options;
}

std::vector<Section> OldTable(const Options& options) {
    std::ifstream in(options.table);
    if (!in && options.renew) return {};
    if (!in) throw std::runtime_error("can't read " + options.table);
    return ReadTable(in);
}

std::size_t Print(const std::vector<std::string>& lines) {
    for (std::size_t i = 0; i < std::min(lines.size(), kShown); ++i) std::cout << lines[i] << "\n";
    if (lines.size() > kShown) std::cout << "... and " << lines.size() - kShown << " more of this case\n";
    return lines.size();
}

const Section* FindSection(const std::vector<Section>& sections, const std::string& name) {
    const auto found = std::find_if(sections.begin(), sections.end(),
                                    [&](const Section& section) { return section.name == name; });
    return found == sections.end() ? nullptr : &*found;
}

/// What a difference begins with.
std::string CaseName(const Options& options, const Case& what) {
    return options.program.vectors.empty() ? what.name : what.name + " with " + options.program.vectors;
}

/// Measures the chosen cases and compares them with the table; what was measured replaces the table's
/// sections. The number of differences.
std::size_t MeasureAgain(const Options& options, const std::vector<Section>& old,
                         std::vector<Section>& renewed) {
    CheckVectors(options.program);
    const std::vector<MetricChoice> metrics = MetricsOf(options.program);
    const std::vector<Case> cases = GoldenCases();
    std::size_t measured = 0, differences = 0;
    for (const Case& what : cases) {
        const Section* golden = FindSection(old, what.name);
        if (!options.only.empty() && what.name != options.only) {
            if (golden) renewed.push_back(*golden);
            continue;
        }
        ++measured;
        renewed.push_back(Measure(options.program, metrics, what, Split::None));
        const Section& now = renewed.back();
        differences += golden ? Print(Differences(CaseName(options, what), *golden, now))
                              : Print({what.name + ": not in the table"});
        // A result must not depend on what is measured beside it.
        if (what.split != Split::None)
            differences += Print(Differences(CaseName(options, what) + ", apart", now,
                                             Measure(options.program, metrics, what, what.split)));
    }
    if (measured == 0) throw std::runtime_error("there is no case " + options.only);
    for (const Section& section : old) {
        if (std::none_of(cases.begin(), cases.end(),
                         [&](const Case& what) { return what.name == section.name; }))
            differences += Print({section.name + ": only in the table"});
    }
    return differences;
}

int Run(const Options& options, const std::vector<Section>& old) {
    std::vector<Section> renewed;
    const std::size_t differences = MeasureAgain(options, old, renewed);
    if (options.renew) {
        std::ofstream out(options.table);
        WriteTable(out, renewed);
        if (!out.flush()) throw std::runtime_error("can't write " + options.table);
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
    const std::vector<Section> old = OldTable(options);
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
