#pragma once

#include <set>
#include <string>
#include <vector>

/// The files that what a run writes next must not go to: its inputs, and what it writes already.
class TakenPaths {
public:
    void TakeInput(const std::wstring& path) { inputs.push_back(path); }
    void TakeOutput(const std::wstring& path);

    /// Whether that is an input or an output, under its own or another path.
    bool Has(const std::wstring& path) const;

private:
    std::vector<std::wstring> inputs;
    std::set<std::string> outputs;
};

/// The `attempt`th choice for a name, from 1 on: the name as it stands, then with "_2", "_3" and so on behind
/// it.
std::wstring NumberedName(const std::wstring& name, int attempt);
