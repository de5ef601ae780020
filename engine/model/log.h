#pragma once

#include <string>

#include "platform/file.h"

/// Takes what a run has to say to the user, line by line. One call at a time, from any thread of the run.
class ILog {
public:
    /// One line, without its end. False if the line got lost; a run goes on all the same.
    virtual bool Log(const std::wstring& message) = 0;
    virtual ~ILog() = default;
};

/// The line as a log shows it: the local time by a 24-hour clock, " : " and the message.
std::wstring TimedLine(const std::wstring& message);

/// Common base of the logs into files: a log that goes nowhere.
class CLogEmpty : public ILog {
public:
    bool Log(const std::wstring&) override { return false; }
};

/// A file of `TimedLine`s that grows over runs: UTF-16LE without a byte order mark, lines ended by "\r\n".
class CLogFile : public CLogEmpty {
public:
    /// Opens `path` for appending, for as long as the log lives. If that fails, every `Log` is false.
    explicit CLogFile(const std::wstring& path) { file.Open(path); }
    bool Log(const std::wstring& message) override;

protected:
    bool Write(const std::wstring& line);
    bool IsOpen() const { return file.IsOpen(); }

private:
    AppendFile file;
};

/// The same, and each line also goes to standard output, as UTF-8 ended by "\n". Without the file nothing is
/// written.
class CLogConsole : public CLogFile {
public:
    using CLogFile::CLogFile;
    bool Log(const std::wstring& message) override;
};
