#include "metrics/vqm_tables.h"

#include <cmath>
#include <numbers>

namespace Metric {

namespace {

constexpr std::array<float, 64> kQuantTable = {
    8,  16, 19, 22, 26, 27, 29, 34,  //
    16, 16, 22, 21, 27, 29, 34, 37,  //
    19, 22, 26, 27, 29, 31, 34, 38,  //
    22, 22, 26, 27, 29, 34, 37, 40,  //
    22, 26, 27, 29, 32, 35, 40, 48,  //
    26, 27, 29, 32, 35, 40, 48, 58,  //
    26, 27, 29, 34, 38, 46, 56, 69,  //
    27, 29, 35, 38, 46, 56, 69, 83,
};

double DctEntry(int u, int x) {
    if (u == 0) return 0.3535533905932738;  // the square root of 1/8
    return 0.5 * std::cos((x + 0.5) * (u * 0.125) * std::numbers::pi);
}

}  // namespace

const VqmTables& VqmTables::Get() {
    static const VqmTables tables;
    return tables;
}

VqmTables::VqmTables() : quantTable(kQuantTable) {
    for (int u = 0; u < 8; ++u) {
        for (int x = 0; x < 8; ++x) {
            dctMatrix[static_cast<std::size_t>(u * 8 + x)] = DctEntry(u, x);
            dctTransposed[static_cast<std::size_t>(x * 8 + u)] = DctEntry(u, x);
        }
    }
    for (std::size_t i = 0; i < quantTable.size(); ++i) quantInverses[i] = 1 / quantTable[i];
    contrastGains.reserve(65536);
    for (int i = -32768; i < 32768; ++i) {
        const auto dc = static_cast<float>(i);
        contrastGains.push_back(i == 0 ? 0.0f : std::pow(dc * 0.0009765625f, 0.65f) / dc);
    }
}

}  // namespace Metric
