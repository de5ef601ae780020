#include "output/taken_paths.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/text.h"

namespace {

/// One spelling for each path, also of a file that isn't there yet.
std::string Canonical(const std::wstring& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path canonical = fs::weakly_canonical(fs::absolute(ToUtf8(path), error), error);
    return error ? ToUtf8(path) : canonical.native();
}

}  // namespace

void TakenPaths::TakeOutput(const std::wstring& path) {
    outputs.insert(Canonical(path));
}

bool TakenPaths::Has(const std::wstring& path) const {
    return outputs.contains(Canonical(path)) ||
           std::any_of(inputs.begin(), inputs.end(), [&](const std::wstring& input) {
               std::error_code none;  // a file that isn't there yet is the same as no other
               return std::filesystem::equivalent(ToUtf8(input), ToUtf8(path), none);
           });
}

std::wstring NumberedName(const std::wstring& name, int attempt) {
    return attempt < 2 ? name : name + L"_" + std::to_wstring(attempt);
}
