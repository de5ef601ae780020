#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A finished run of tolvane-measure.
struct ProgramRun {
    int status = 0;  ///< exit status; 128 and the number for a signal
    std::string output;
    std::string errors;
};

/// Runs tolvane-measure by a shell, with arguments and redirections as a shell reads them, in the current directory.
ProgramRun RunProgram(const std::string& arguments);

/// A directory of the test's own, removed with what is in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string Path(const std::string& name) const { return (directory / name).native(); }
    /// Writes a file; its path.
    std::string Write(const std::string& name, std::string_view bytes) const;

private:
    std::filesystem::path directory;
};

std::string ReadWhole(const std::string& path);
