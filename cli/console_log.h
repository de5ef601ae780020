#pragma once

#include <string>
#include <vector>

#include "cli/terminal.h"
#include "engine/model/log.h"

/// The run's log as the headless program keeps it: on standard error unless quiet, in a file in the desktop program's
/// format if there is a path, and in `lines` without the time.
class ConsoleLog : public ILog {
public:
    /// Terminal and lines outlive the log. An empty path is no file.
    ConsoleLog(Terminal& terminal, bool quiet, const std::wstring& path, std::vector<std::wstring>& lines);
    bool Log(const std::wstring& message) override;

private:
    Terminal& terminal;
    bool quiet;
    std::vector<std::wstring>& lines;
    CLogFile file;
    bool hasFile;
};
