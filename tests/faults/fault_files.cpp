// Calls on files that fail, do less than asked, or are interrupted: those that the program and the libraries
// that open its files make. What the C library calls itself isn't seen: a FILE is watched when it is opened
// and closed, not in between.

#include "tests/faults/fault_plan.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// The C library's function of that name and type.
template <class Function>
Function* Real(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define REAL(name) static auto* const real = Real(&name, #name)

std::array<std::atomic<bool>, 1024> watchedDescriptors = {};

bool IsWatched(const char* path) {
    static const char* const directory = std::getenv(kFaultDirectoryVariable);
    return directory == nullptr || std::strncmp(path, directory, std::strlen(directory)) == 0;
}

bool IsWatched(int descriptor) {
    const auto at = static_cast<std::size_t>(descriptor);
    return at < watchedDescriptors.size() && watchedDescriptors[at];
}

void SetWatched(int descriptor, bool on) {
    const auto at = static_cast<std::size_t>(descriptor);
    if (at < watchedDescriptors.size()) watchedDescriptors[at] = on;
}

/// Whether the call on a path or descriptor is to fail; then `errno` is set.
template <class File>
bool Fails(FaultPlan::Calls calls, File file, int error = EIO) {
    return IsWatched(file) && NextFault(calls, error) == Fault::Fails;
}

int DescriptorOf(int descriptor) {
    return descriptor;
}

int DescriptorOf(std::FILE* file) {
    return fileno(file);
}

/// Opens a file by `open()`, as planned. `none` is the answer of a failure.
template <class File, class Open>
File Opened(const char* path, File none, const Open& open) {
    if (!IsWatched(path)) return open();
    if (Fails(FaultPlan::Open, path, EMFILE)) return none;
    if (FaultCounter* const counter = faultCounter) counter->hasBegun = true;
    const File opened = open();
    if (opened != none) SetWatched(DescriptorOf(opened), true);
    return opened;
}

/// Closes a file by `close()`. It is gone also when closing reports a failure.
template <class Close>
int Closed(int descriptor, const Close& close) {
    const bool fails = Fails(FaultPlan::Close, descriptor);
    SetWatched(descriptor, false);
    const int result = close();
    if (fails) errno = EIO;
    return fails ? -1 : result;
}

/// Does a transfer of `bytes` bytes by `transfer(bytes)`, as planned.
template <class Transfer>
ssize_t Transferred(FaultPlan::Calls calls, int descriptor, std::size_t bytes, const Transfer& transfer) {
    const int error = calls == FaultPlan::Write ? ENOSPC : EIO;
    const Fault fault = IsWatched(descriptor) ? NextFault(calls, error) : Fault::None;
    if (fault == Fault::Fails) return -1;
    return transfer(fault == Fault::GoesShorter ? (bytes + 1) / 2 : bytes);
}

}  // namespace

extern "C" {

#define OPEN_FUNCTION(name, parameters, arguments)                             \
    int name parameters {                                                      \
        REAL(name);                                                            \
        va_list rest;                                                          \
        va_start(rest, flags);                                                 \
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0; \
        va_end(rest);                                                          \
        return Opened(path, -1, [=] { return real arguments; });               \
    }
OPEN_FUNCTION(open, (const char* path, int flags, ...), (path, flags, mode))
OPEN_FUNCTION(open64, (const char* path, int flags, ...), (path, flags, mode))
OPEN_FUNCTION(openat, (int directory, const char* path, int flags, ...), (directory, path, flags, mode))

#define FOPEN_FUNCTION(name)                                                        \
    std::FILE* name(const char* path, const char* mode) {                           \
        REAL(name);                                                                 \
        return Opened<std::FILE*>(path, nullptr, [=] { return real(path, mode); }); \
    }
FOPEN_FUNCTION(fopen)
FOPEN_FUNCTION(fopen64)

int close(int descriptor) {
    REAL(close);
    return Closed(descriptor, [=] { return real(descriptor); });
}

int fclose(std::FILE* file) {
    REAL(fclose);
    return Closed(fileno(file), [=] { return real(file); });
}

#define TRANSFER_FUNCTION(calls, name, parameters, arguments)                                                \
    ssize_t name parameters {                                                                                \
        REAL(name);                                                                                          \
        return Transferred(FaultPlan::calls, file, bytes, [=](std::size_t some) { return real arguments; }); \
    }
TRANSFER_FUNCTION(Read, read, (int file, void* to, std::size_t bytes), (file, to, some))
TRANSFER_FUNCTION(Read, pread, (int file, void* to, std::size_t bytes, off_t at), (file, to, some, at))
TRANSFER_FUNCTION(Write, write, (int file, const void* from, std::size_t bytes), (file, from, some))
TRANSFER_FUNCTION(Write, pwrite, (int file, const void* from, std::size_t bytes, off_t at),
                  (file, from, some, at))

/// A shorter transfer takes the half of the first part.
ssize_t writev(int descriptor, const iovec* parts, int count) {
    REAL(writev);
    return Transferred(FaultPlan::Write, descriptor, parts[0].iov_len, [=](std::size_t bytes) {
        const iovec shorter = {parts[0].iov_base, bytes};
        return bytes == parts[0].iov_len ? real(descriptor, parts, count) : real(descriptor, &shorter, 1);
    });
}

// Calls that fail or do what they always do. `file` is the one of the parameters that may be watched.
#define FUNCTION(calls, Result, name, file, parameters, arguments)  \
    Result name parameters noexcept {                               \
        REAL(name);                                                 \
        return Fails(FaultPlan::calls, file) ? -1 : real arguments; \
    }
FUNCTION(Seek, off_t, lseek, file, (int file, off_t offset, int from), (file, offset, from))
FUNCTION(Seek, off64_t, lseek64, file, (int file, off64_t offset, int from), (file, offset, from))
FUNCTION(Change, int, rename, to, (const char* from, const char* to), (from, to))
FUNCTION(Change, int, ftruncate, file, (int file, off_t bytes), (file, bytes))
FUNCTION(Change, int, fchmod, file, (int file, mode_t mode), (file, mode))
FUNCTION(Change, int, mkdir, path, (const char* path, mode_t mode), (path, mode))
FUNCTION(Change, int, unlink, path, (const char* path), (path))
FUNCTION(Look, int, stat, path, (const char* path, struct stat* status), (path, status))
FUNCTION(Look, int, lstat, path, (const char* path, struct stat* status), (path, status))
FUNCTION(Look, int, fstat, file, (int file, struct stat* status), (file, status))
FUNCTION(Look, int, faccessat, path, (int at, const char* path, int mode, int flags), (at, path, mode, flags))

/// Nothing is written through to the disk, which would take most of a test's time.
int fsync(int descriptor) {
    return Fails(FaultPlan::Change, descriptor) ? -1 : 0;
}

// Of these standard output alone is watched.

std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, std::FILE* file) {
    REAL(fwrite);
    if (file == stdout && NextFault(FaultPlan::Print, ENOSPC) == Fault::Fails) return 0;
    return real(bytes, size, count, file);
}

int fflush(std::FILE* file) {
    REAL(fflush);
    if (file == stdout && NextFault(FaultPlan::Print, ENOSPC) == Fault::Fails) return EOF;
    return real(file);
}

}  // extern "C"
