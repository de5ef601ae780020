#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A regular file, open for reading at any position. Positions and sizes are 64-bit.
///
/// Directories, devices and pipes don't open. Open file: any number of threads may read at once.
class ReadOnlyFile {
public:
    ReadOnlyFile() = default;
    ~ReadOnlyFile() { Close(); }
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;

    /// Closes what was open. False if there is no such file, it isn't a regular one, or it may not be read.
    bool Open(const std::wstring& path);
    void Close();
    bool IsOpen() const { return descriptor >= 0; }

    /// The file's size at this moment, or if that can't be told any more, when it was opened; 0 when closed.
    std::uint64_t Size() const;

    /// Reads up to `bytes` bytes from `offset` on, as many as there are; how many that was.
    std::size_t ReadAt(std::uint64_t offset, void* buffer, std::size_t bytes) const;

private:
    int descriptor = -1;
    std::uint64_t firstSize = 0;
};

/// A file that only grows: every `Append` goes behind what is there, also what others append meanwhile.
/// Created if missing.
class AppendFile {
public:
    AppendFile() = default;
    ~AppendFile() { Close(); }
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;

    bool Open(const std::wstring& path);
    void Close();
    bool IsOpen() const { return descriptor >= 0; }

    /// False if not all of it could be written.
    bool Append(std::string_view bytes);

private:
    int descriptor = -1;
};

/// Writes `bytes` as the whole of the file `path`, or leaves what was there: under a temporary name beside
/// it, then renamed. What is no regular file (a device, a pipe), or lies in a directory that takes no new
/// file, is written in place. False if any step failed, for a file that may not be written, and for a pipe
/// that nobody reads.
bool ReplaceFile(const std::wstring& path, std::string_view bytes);

/// Whether `ReplaceFile` could begin: false for a missing or closed directory and for a file that may not be
/// written. Leaves everything as it is.
bool CanReplaceFile(const std::wstring& path);
