#include "engine/model/log.h"

#include <cstdio>

#include "platform/clock.h"
#include "platform/text.h"

std::wstring TimedLine(const std::wstring& message) {
    return TimeOfDay() + L" : " + message;
}

bool CLogFile::Log(const std::wstring& message) {
    return Write(TimedLine(message));
}

bool CLogFile::Write(const std::wstring& line) {
    return file.Append(ToUtf16Le(line + L"\r\n"));
}

bool CLogConsole::Log(const std::wstring& message) {
    if (!IsOpen()) return false;

    const std::wstring line = TimedLine(message);
    const bool written = Write(line);
    std::fputs((ToUtf8(line) + "\n").c_str(), stdout);
    std::fflush(stdout);
    return written;
}
