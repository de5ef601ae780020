// Calls on files that fail, do less than asked, or are interrupted. What the C library calls itself isn't
// seen: a FILE is watched when it is opened and closed, not in between.

#include "tests/faults/fault_counter.h"

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
bool Fails(FaultPlan::Calls calls, File file, int error) {
    return IsWatched(file) && NextFault(calls, error) == Fault::Fails;
}

void Begin() {
    if (FaultCounter* const counter = faultCounter) counter->hasBegun = true;
}

int Opened(int descriptor) {
    Begin();
    if (descriptor >= 0) SetWatched(descriptor, true);
    return descriptor;
}

std::FILE* Opened(std::FILE* file) {
    Begin();
    if (file != nullptr) SetWatched(fileno(file), true);
    return file;
}

/// Does a transfer of `bytes` bytes by `transfer(bytes)`, as planned.
template <class Transfer>
ssize_t Transferred(FaultPlan::Calls calls, int descriptor, std::size_t bytes, const Transfer& transfer) {
    const int error = calls == FaultPlan::Write ? ENOSPC : EIO;
    const Fault fault = IsWatched(descriptor) ? NextFault(calls, error) : Fault::None;
    if (fault == Fault::Fails) return -1;
    return transfer(fault == Fault::GoesShorter ? (bytes + 1) / 2 : bytes);
}

/// The same for a vector, of which a shorter transfer takes the half of the first part.
template <class Transfer>
ssize_t TransferredParts(FaultPlan::Calls calls, int descriptor, const iovec* parts, int count,
                         const Transfer& transfer) {
    if (count < 1) return transfer(parts, count);
    return Transferred(calls, descriptor, parts[0].iov_len, [&](std::size_t bytes) {
        if (bytes == parts[0].iov_len) return transfer(parts, count);
        const iovec shorter = {parts[0].iov_base, bytes};
        return transfer(&shorter, 1);
    });
}

/// The third argument of `open`, if it has one.
mode_t ModeOf(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

extern "C" {

// -- Open

#define OPEN_FUNCTION(name)                                                                 \
    int name(const char* path, int flags, ...) {                                            \
        REAL(name);                                                                         \
        va_list arguments;                                                                  \
        va_start(arguments, flags);                                                         \
        const mode_t mode = ModeOf(flags, arguments);                                       \
        va_end(arguments);                                                                  \
        if (!IsWatched(path)) return real(path, flags, mode);                               \
        return Fails(FaultPlan::Open, path, EMFILE) ? -1 : Opened(real(path, flags, mode)); \
    }
OPEN_FUNCTION(open)
OPEN_FUNCTION(open64)

int openat(int directory, const char* path, int flags, ...) {
    REAL(openat);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    if (!IsWatched(path)) return real(directory, path, flags, mode);
    return Fails(FaultPlan::Open, path, EMFILE) ? -1 : Opened(real(directory, path, flags, mode));
}

#define FOPEN_FUNCTION(name)                                                              \
    std::FILE* name(const char* path, const char* mode) {                                 \
        REAL(name);                                                                       \
        if (!IsWatched(path)) return real(path, mode);                                    \
        return Fails(FaultPlan::Open, path, EMFILE) ? nullptr : Opened(real(path, mode)); \
    }
FOPEN_FUNCTION(fopen)
FOPEN_FUNCTION(fopen64)

// -- Read and write

ssize_t read(int descriptor, void* buffer, std::size_t bytes) {
    REAL(read);
    return Transferred(FaultPlan::Read, descriptor, bytes,
                       [=](std::size_t some) { return real(descriptor, buffer, some); });
}

ssize_t write(int descriptor, const void* buffer, std::size_t bytes) {
    REAL(write);
    return Transferred(FaultPlan::Write, descriptor, bytes,
                       [=](std::size_t some) { return real(descriptor, buffer, some); });
}

#define POSITIONED_FUNCTION(name, calls, Buffer, Offset)                                              \
    ssize_t name(int descriptor, Buffer* buffer, std::size_t bytes, Offset offset) {                  \
        REAL(name);                                                                                   \
        return Transferred(calls, descriptor, bytes,                                                  \
                           [=](std::size_t some) { return real(descriptor, buffer, some, offset); }); \
    }
POSITIONED_FUNCTION(pread, FaultPlan::Read, void, off_t)
POSITIONED_FUNCTION(pread64, FaultPlan::Read, void, off64_t)
POSITIONED_FUNCTION(pwrite, FaultPlan::Write, const void, off_t)
POSITIONED_FUNCTION(pwrite64, FaultPlan::Write, const void, off64_t)

#define VECTOR_FUNCTION(name, calls)                                                                  \
    ssize_t name(int descriptor, const iovec* parts, int count) {                                     \
        REAL(name);                                                                                   \
        return TransferredParts(calls, descriptor, parts, count, [=](const iovec* some, int number) { \
            return real(descriptor, some, number);                                                    \
        });                                                                                           \
    }
VECTOR_FUNCTION(readv, FaultPlan::Read)
VECTOR_FUNCTION(writev, FaultPlan::Write)

#define POSITIONED_VECTOR_FUNCTION(name, calls)                                                       \
    ssize_t name(int descriptor, const iovec* parts, int count, off_t offset) {                       \
        REAL(name);                                                                                   \
        return TransferredParts(calls, descriptor, parts, count, [=](const iovec* some, int number) { \
            return real(descriptor, some, number, offset);                                            \
        });                                                                                           \
    }
POSITIONED_VECTOR_FUNCTION(preadv, FaultPlan::Read)
POSITIONED_VECTOR_FUNCTION(pwritev, FaultPlan::Write)

// -- Seek

off_t lseek(int descriptor, off_t offset, int from) noexcept {
    REAL(lseek);
    return Fails(FaultPlan::Seek, descriptor, EIO) ? -1 : real(descriptor, offset, from);
}

off64_t lseek64(int descriptor, off64_t offset, int from) noexcept {
    REAL(lseek64);
    return Fails(FaultPlan::Seek, descriptor, EIO) ? -1 : real(descriptor, offset, from);
}

// -- Close: a descriptor is gone also when closing reports a failure

int close(int descriptor) {
    REAL(close);
    const bool fails = Fails(FaultPlan::Close, descriptor, EIO);
    SetWatched(descriptor, false);
    const int result = real(descriptor);
    if (fails) errno = EIO;
    return fails ? -1 : result;
}

int fclose(std::FILE* file) {
    REAL(fclose);
    const int descriptor = fileno(file);
    const bool fails = Fails(FaultPlan::Close, descriptor, EIO);
    SetWatched(descriptor, false);
    const int result = real(file);
    if (fails) errno = EIO;
    return fails ? EOF : result;
}

// -- Change. Nothing is written through to the disk, which would take most of a test's time.

int fsync(int descriptor) {
    return Fails(FaultPlan::Change, descriptor, EIO) ? -1 : 0;
}

int fdatasync(int descriptor) {
    return Fails(FaultPlan::Change, descriptor, EIO) ? -1 : 0;
}

int rename(const char* from, const char* to) noexcept {
    REAL(rename);
    return Fails(FaultPlan::Change, to, EIO) ? -1 : real(from, to);
}

int ftruncate(int descriptor, off_t bytes) noexcept {
    REAL(ftruncate);
    return Fails(FaultPlan::Change, descriptor, EIO) ? -1 : real(descriptor, bytes);
}

int fchmod(int descriptor, mode_t mode) noexcept {
    REAL(fchmod);
    return Fails(FaultPlan::Change, descriptor, EIO) ? -1 : real(descriptor, mode);
}

int mkdir(const char* path, mode_t mode) noexcept {
    REAL(mkdir);
    return Fails(FaultPlan::Change, path, EIO) ? -1 : real(path, mode);
}

int unlink(const char* path) noexcept {
    REAL(unlink);
    return Fails(FaultPlan::Change, path, EIO) ? -1 : real(path);
}

// -- Look

#define STAT_FUNCTION(name, File)                                           \
    int name(File file, struct stat* status) noexcept {                     \
        REAL(name);                                                         \
        return Fails(FaultPlan::Look, file, EIO) ? -1 : real(file, status); \
    }
STAT_FUNCTION(stat, const char*)
STAT_FUNCTION(lstat, const char*)
STAT_FUNCTION(fstat, int)

int faccessat(int directory, const char* path, int mode, int flags) noexcept {
    REAL(faccessat);
    return Fails(FaultPlan::Look, path, EIO) ? -1 : real(directory, path, mode, flags);
}

// -- Print: standard output alone

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
