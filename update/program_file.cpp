#include "update/program_file.h"

#include "platform/text.h"

#include <algorithm>

namespace {

/// "libname.so.1.2"
bool IsVersionedLibrary(std::wstring_view name) {
    constexpr std::wstring_view kEnding = L".so.";
    const std::size_t at = name.rfind(kEnding);
    if (at == std::wstring_view::npos) return false;
    const std::wstring_view version = name.substr(at + kEnding.size());
    return !version.empty() && version.find_first_not_of(L"0123456789.") == std::wstring_view::npos;
}

}  // namespace

bool IsProgramFile(std::wstring_view name, std::wstring_view ownName) {
    const std::wstring_view file = FileNamePart(name);
    if (file == ownName || file == L"tolvane" || file == L"tolvane-measure") return true;
    constexpr const wchar_t* kEndings[] = {L".exe", L".dll", L".so", L".tlp"};
    return std::any_of(std::begin(kEndings), std::end(kEndings),
                       [&](const wchar_t* ending) { return EndsWithNoCase(file, ending); }) ||
           IsVersionedLibrary(file);
}
