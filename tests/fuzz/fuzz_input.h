#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

/// Ends the fuzzer's program, which shows the input, unless `condition` holds.
inline void Require(bool condition) {
    if (!condition) std::abort();
}

/// A fuzzer's input as a file without a disk. Ends the program if the system can't have one.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor(memfd_create("input", MFD_CLOEXEC)) {
        Require(descriptor >= 0 && write(descriptor, data, size) == static_cast<ssize_t>(size));
    }
    ~MemoryFile() { close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::wstring Path() const { return L"/proc/self/fd/" + std::to_wstring(descriptor); }

private:
    int descriptor;
};
