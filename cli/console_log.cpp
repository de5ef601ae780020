#include "cli/console_log.h"

#include "platform/text.h"

ConsoleLog::ConsoleLog(Terminal& lineTerminal, bool isQuiet, const std::wstring& path,
                       std::vector<std::wstring>& logLines)
    : terminal(lineTerminal), quiet(isQuiet), lines(logLines), file(path), hasFile(!path.empty()) {}

bool ConsoleLog::Log(const std::wstring& message) {
    lines.push_back(message);
    if (!quiet) terminal.Line(ToUtf8(TimedLine(message)));
    return !hasFile || file.Log(message);
}
