#include "tests/cli/program.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

ProgramRun RunProgram(const std::string& arguments) {
    const TemporaryDirectory streams;
    const std::string command =
        TOLVANE_MEASURE " >" + streams.Path("output") + " 2>" + streams.Path("errors") + " " + arguments;
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            ReadWhole(streams.Path("output")), ReadWhole(streams.Path("errors"))};
}

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (fs::temp_directory_path() / "measure.XXXXXX").native();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    directory = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

std::string TemporaryDirectory::Write(const std::string& name, std::string_view bytes) const {
    std::ofstream(directory / name, std::ios::binary) << bytes;
    return Path(name);
}

std::string ReadWhole(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
