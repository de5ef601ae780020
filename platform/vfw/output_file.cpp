#include "platform/vfw/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/text.h"

namespace {

/// A regular file without a name: deleted, or made without one.
bool HasNoName(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 0;
}

}  // namespace

bool OutputFile::Open(const std::wstring& path) {
    Close();
    // Without O_NONBLOCK a pipe without a reader would hang here.
    descriptor = open(ToUtf8(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666);
    isNameless = IsOpen() && HasNoName(descriptor);
    return IsOpen();
}

bool OutputFile::WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += static_cast<std::uint64_t>(written);
    }
    return true;
}

bool OutputFile::CutTo(std::uint64_t size) const {
    return ftruncate(descriptor, static_cast<off_t>(size)) == 0;
}

bool OutputFile::Close() {
    const int closing = std::exchange(descriptor, -1);
    if (closing < 0) return true;
    // What is written to a file that was deleted meanwhile goes through, and nobody can read it.
    const bool isDeleted = !isNameless && HasNoName(closing);
    return close(closing) == 0 && !isDeleted;
}
