#include "cli/output_clash.h"

#include <filesystem>
#include <system_error>

#include "platform/text.h"

namespace {

namespace fs = std::filesystem;

struct NamedFile {
    std::string option;
    fs::path path;
};

bool IsSameFile(const fs::path& first, const fs::path& second) {
    std::error_code error;
    if (fs::exists(first, error) && !fs::is_regular_file(first, error)) return false;
    if (fs::equivalent(first, second, error)) return true;
    // A file that isn't there yet is known by its path alone.
    const fs::path absolute = fs::weakly_canonical(fs::absolute(first, error), error);
    return !absolute.empty() && absolute == fs::weakly_canonical(fs::absolute(second, error), error);
}

std::vector<NamedFile> Inputs(const Options& options) {
    std::vector<NamedFile> files;
    for (std::size_t i = 0; i < RoleCount; ++i) {
        const std::wstring& path = options.files[i].path;
        if (!path.empty()) files.push_back({std::string("--") + kRoleNames[i], ToUtf8(path)});
    }
    return files;
}

/// A CSV name that is made from the inputs' names is longer than each of them: it can't be one.
std::vector<NamedFile> Outputs(const Options& options) {
    std::vector<NamedFile> files;
    if (options.json && *options.json != L"-") files.push_back({"--json", ToUtf8(*options.json)});
    if (!options.log.empty()) files.push_back({"--log", ToUtf8(options.log)});
    if (!options.csv.directory.empty() && options.csv.naming == 2) {
        files.push_back({"--csv-name", fs::path(ToUtf8(options.csv.directory)) / ToUtf8(options.csv.name)});
    }
    return files;
}

}  // namespace

void CheckOutputsClash(const Options& options) {
    std::vector<NamedFile> taken = Inputs(options);
    for (const NamedFile& output : Outputs(options)) {
        for (const NamedFile& other : taken) {
            if (!IsSameFile(output.path, other.path)) continue;
            throw UsageError(output.option + " takes a file of its own; \"" + output.path.native() +
                             "\" is that of " + other.option);
        }
        taken.push_back(output);
    }
}

std::vector<std::wstring> NamedOutputs(const Options& options) {
    std::vector<std::wstring> paths;
    for (const NamedFile& output : Outputs(options)) paths.push_back(FromUtf8(output.path.native()));
    return paths;
}
