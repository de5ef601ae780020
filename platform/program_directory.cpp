#include "platform/program_directory.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/text.h"

namespace {

/// Empty for a user without a home.
std::string UserDataDirectory() {
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    if (dataHome != nullptr && dataHome[0] == '/') return std::string(dataHome) + "/tolvane/";
    const char* home = std::getenv("HOME");
    return home != nullptr && home[0] == '/' ? std::string(home) + "/.local/share/tolvane/" : std::string();
}

}  // namespace

std::wstring ProgramPath() {
    constexpr std::string_view kDeleted = " (deleted)";  // the kernel's mark
    std::error_code error;
    std::string program = std::filesystem::read_symlink("/proc/self/exe", error).native();
    if (error) return {};
    if (program.ends_with(kDeleted) && access(program.c_str(), F_OK) != 0)
        program.resize(program.size() - kDeleted.size());
    return FromUtf8(program);
}

std::wstring ProgramDirectory() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::wstring() : FromUtf8(program.parent_path().native() + "/");
}

bool IsProgramOfSystem() {
    return ProgramDirectory().starts_with(L"/usr/");
}

std::wstring WritableProgramDirectory() {
    const std::wstring own = ProgramDirectory();
    // Root may write below /usr as well, but what a run leaves there would outlive the package.
    if (!own.empty() && !IsProgramOfSystem() && access(ToUtf8(own).c_str(), W_OK) == 0) return own;
    const std::string user = UserDataDirectory();
    return user.empty() ? own : FromUtf8(user);
}
