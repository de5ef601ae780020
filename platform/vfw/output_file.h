#pragma once

#include <cstdint>
#include <span>
#include <string>

/// A file that is being written at any position. Nothing is buffered here: a full disk shows at the write.
class OutputFile {
public:
    OutputFile() = default;
    ~OutputFile() { Close(); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Makes the file, or empties it. False if it may not be written.
    bool Open(const std::wstring& path);
    bool IsOpen() const { return descriptor >= 0; }

    /// False if not all of it could be written; how much was isn't told.
    bool WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) const;
    /// Drops what lies behind the first `size` bytes.
    bool CutTo(std::uint64_t size) const;

    /// False if the system tells only now that something couldn't be written, and if somebody has deleted the
    /// file.
    bool Close();

private:
    int descriptor = -1;
    bool isNameless = false;  // from the start, as in memory
};
