#pragma once

#include <string>
#include <vector>

#include "cli/terminal.h"
#include "engine/model/log.h"

/// The run's log as the headless program keeps it: on standard error unless quiet, in a file in the desktop
/// program's format if there is a path, and in a record without the time.
class ConsoleLog : public ILog {
public:
    /// What the log leaves when it is gone.
    struct Record {
        std::vector<std::wstring> lines;
        bool fileComplete = true;  ///< false once a line couldn't be written to the file
    };

    /// Terminal and record outlive the log. An empty path is no file.
    ConsoleLog(Terminal& terminal, bool quiet, const std::wstring& path, Record& record);
    bool Log(const std::wstring& message) override;

private:
    Terminal& terminal;
    bool quiet;
    Record& record;
    CLogFile file;
    bool hasFile;
};
