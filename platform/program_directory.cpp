#include "platform/program_directory.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/text.h"

namespace {

std::string UserDataDirectory() {
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    if (dataHome != nullptr && dataHome[0] == '/') return std::string(dataHome) + "/tolvane/";
    const char* home = std::getenv("HOME");
    return std::string(home != nullptr ? home : "") + "/.local/share/tolvane/";
}

}  // namespace

std::wstring ProgramDirectory() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::wstring() : FromUtf8(program.parent_path().native() + "/");
}

std::wstring WritableProgramDirectory() {
    const std::wstring own = ProgramDirectory();
    if (!own.empty() && access(ToUtf8(own).c_str(), W_OK) == 0) return own;
    const std::string user = UserDataDirectory();
    std::error_code ignored;  // a directory that can't be made shows when a file in it doesn't open
    std::filesystem::create_directories(user, ignored);
    return FromUtf8(user);
}
