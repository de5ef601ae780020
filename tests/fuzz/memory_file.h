#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

/// A fuzzer's input as a file without a disk. Ends the program if the system can't have one.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor(memfd_create("input", MFD_CLOEXEC)) {
        if (descriptor < 0 || write(descriptor, data, size) != static_cast<ssize_t>(size)) std::abort();
    }
    ~MemoryFile() { close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::wstring Path() const { return L"/proc/self/fd/" + std::to_wstring(descriptor); }

private:
    int descriptor;
};
