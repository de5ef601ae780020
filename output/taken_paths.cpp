#include "output/taken_paths.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/text.h"

bool TakenPaths::Has(const std::wstring& path) const {
    return outputs.contains(path) ||
           std::any_of(inputs.begin(), inputs.end(), [&](const std::wstring& input) {
               std::error_code none;  // a file that isn't there yet is the same as no other
               return std::filesystem::equivalent(ToUtf8(input), ToUtf8(path), none);
           });
}

std::wstring NumberedName(const std::wstring& name, int attempt) {
    return attempt < 2 ? name : name + L"_" + std::to_wstring(attempt);
}
