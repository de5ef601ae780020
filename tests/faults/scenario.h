#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

/// A short run of tolvane-measure: what it reads and what it is to write.
struct Scenario {
    enum Inputs { Raw, Y4m, OddY4m, Avi, CompressedAvi, Scripts, Bitmaps };

    const char* name;
    Inputs inputs;
    bool hasSecond;       ///< a second processed file
    bool hasMask;         ///< for raw files only
    const char* options;  ///< "OUT" is the directory of the outputs

    int Frames() const { return inputs == Bitmaps ? 1 : 4; }
};

/// Its name in the tests' output.
inline void PrintTo(const Scenario& scenario, std::ostream* output) {
    *output << scenario.name;
}

extern const std::vector<Scenario> kScenarios;

/// Makes the input files in `directory`, the same each time but for their length: `frames` of the videos have
/// pictures, and of the mask `maskedFrames` have marked pixels.
void WriteInputs(const Scenario& scenario, const std::filesystem::path& directory, int frames,
                 int maskedFrames);

/// What tolvane-measure is told: inputs are in `in`, all outputs go to `out`.
std::vector<std::string> Arguments(const Scenario& scenario, const std::filesystem::path& in,
                                   const std::filesystem::path& out);
