#include "cli/console_log.h"

#include "platform/text.h"

ConsoleLog::ConsoleLog(Terminal& lineTerminal, bool isQuiet, const std::wstring& path, Record& logRecord)
    : terminal(lineTerminal), quiet(isQuiet), record(logRecord), file(path), hasFile(!path.empty()) {}

bool ConsoleLog::Log(const std::wstring& message) {
    record.lines.push_back(message);
    if (!quiet) terminal.Line(ToUtf8(TimedLine(message)));
    if (hasFile && !file.Log(message)) record.fileComplete = false;
    return record.fileComplete;
}
