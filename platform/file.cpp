#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "platform/text.h"
#include "platform/write_all.h"

namespace {

constexpr mode_t kNewFileMode = 0666;

void CloseDescriptor(int& descriptor) {
    if (descriptor >= 0) close(descriptor);
    descriptor = -1;
}

/// A new file beside `target` under a name that nobody has; its descriptor, or -1.
int OpenTemporary(const std::string& target, std::string& name) {
    constexpr int kTries = 100;
    const std::string directory = target.substr(0, target.rfind('/') + 1);
    for (int i = 0; i < kTries; ++i) {
        name = directory + ".tolvane-" + std::to_string(getpid()) + "-" + std::to_string(i);
        const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
        if (descriptor >= 0 || errno != EEXIST) return descriptor;
    }
    return -1;
}

bool WriteInPlace(const std::string& path, std::string_view bytes) {
    // Without O_NONBLOCK a pipe without a reader would hang here; one with a reader is waited for as it
    // reads.
    int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, kNewFileMode);
    if (descriptor < 0) return false;
    const bool waits = fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK) == 0;
    const bool written = waits && WriteAll(descriptor, bytes);
    return close(descriptor) == 0 && written;
}

/// The file that is to be replaced.
struct Target {
    std::string path;
    mode_t mode = 0;
    bool exists = false;
    bool isElsewhere = false;  ///< a device or a pipe: what is written to it goes elsewhere
    bool isProtected = false;
};

Target TargetOf(const std::wstring& path) {
    Target target;
    target.path = ToUtf8(path);
    struct stat status = {};
    if (stat(target.path.c_str(), &status) != 0) return target;
    target.exists = true;
    target.mode = status.st_mode & 07777;
    target.isElsewhere = !S_ISREG(status.st_mode);
    // A rename would pass over the protection of the file itself.
    target.isProtected =
        S_ISDIR(status.st_mode) || faccessat(AT_FDCWD, target.path.c_str(), W_OK, AT_EACCESS) != 0;

    // A link stays a link: its file is the one that is replaced.
    if (char* resolved = target.isElsewhere ? nullptr : realpath(target.path.c_str(), nullptr)) {
        target.path = resolved;
        std::free(resolved);
    }
    return target;
}

}  // namespace

bool ReadOnlyFile::Open(const std::wstring& path) {
    Close();
    // Without O_NONBLOCK a pipe would wait here for its writer.
    descriptor = open(ToUtf8(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status = {};
    if (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) Close();
    firstSize = static_cast<std::uint64_t>(status.st_size);
    return IsOpen();
}

void ReadOnlyFile::Close() {
    CloseDescriptor(descriptor);
}

std::uint64_t ReadOnlyFile::Size() const {
    struct stat status = {};
    if (!IsOpen()) return 0;
    return fstat(descriptor, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : firstSize;
}

std::size_t ReadOnlyFile::ReadAt(std::uint64_t offset, void* buffer, std::size_t bytes) const {
    std::size_t done = 0;
    while (done < bytes && offset + done <= static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) {
        const ssize_t count = pread(descriptor, static_cast<char*>(buffer) + done, bytes - done,
                                    static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

bool AppendFile::Open(const std::wstring& path) {
    Close();
    // Without O_NONBLOCK a pipe without a reader would hang here.
    descriptor =
        open(ToUtf8(path).c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, kNewFileMode);
    return IsOpen();
}

void AppendFile::Close() {
    CloseDescriptor(descriptor);
}

bool AppendFile::Append(std::string_view bytes) {
    return IsOpen() && WriteAll(descriptor, bytes);
}

bool ReplaceFile(const std::wstring& path, std::string_view bytes) {
    const Target target = TargetOf(path);
    if (target.isElsewhere) return WriteInPlace(target.path, bytes);
    if (target.isProtected) return false;

    std::string temporary;
    const int descriptor = OpenTemporary(target.path, temporary);
    if (descriptor < 0)
        return target.exists && WriteInPlace(target.path, bytes);  // the directory is closed, the file open
    const bool modeKept = !target.exists || fchmod(descriptor, target.mode) == 0;
    const bool written = WriteAll(descriptor, bytes) && fsync(descriptor) == 0;
    const bool closed = close(descriptor) == 0;
    if (modeKept && written && closed && std::rename(temporary.c_str(), target.path.c_str()) == 0)
        return true;
    unlink(temporary.c_str());
    return false;
}

bool CanReplaceFile(const std::wstring& path) {
    const Target target = TargetOf(path);
    if (target.isProtected || target.isElsewhere) return !target.isProtected;

    std::string temporary;
    const int descriptor = OpenTemporary(target.path, temporary);
    if (descriptor < 0) return target.exists;
    close(descriptor);
    unlink(temporary.c_str());
    return true;
}
