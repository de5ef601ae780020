#pragma once

#include <array>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

/// The mean squared errors of the planes Y, U and V of each frame, from the integer sums that a separate
/// program has written down: frame, three sums, the pixels of luma and of chroma. A line with "#" ends them.
inline std::vector<std::array<double, 3>> ExactErrors(const std::string& path) {
    std::vector<std::array<double, 3>> errors;
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);  // the heads
    while (std::getline(file, line) && line[0] != '#') {
        std::istringstream cells(line);
        double cell[6];
        char comma;
        for (double& number : cell) cells >> number >> comma;
        errors.push_back({cell[1] / cell[4], cell[2] / cell[5], cell[3] / cell[5]});
    }
    return errors;
}
