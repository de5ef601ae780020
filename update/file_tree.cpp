#include "update/file_tree.h"

#include "platform/write_all.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr mode_t kNewDirectoryMode = 0777;
constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kPermissions = 0777;
constexpr std::size_t kCopyBytes = 65536;
constexpr std::chrono::milliseconds kLockPause{50};

/// The last part of a name.
const char* LeafOf(const std::string& name) {
    return name.c_str() + (name.rfind('/') + 1);
}

Descriptor OpenSubdirectory(int parent, const char* part) {
    return Descriptor(openat(parent, part, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// Some file systems have nothing to bring to the disk.
bool Sync(int descriptor) {
    return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
}

FileTree::Kind KindOf(mode_t mode) {
    if (S_ISREG(mode)) return FileTree::Kind::File;
    if (S_ISLNK(mode)) return FileTree::Kind::Link;
    return S_ISDIR(mode) ? FileTree::Kind::Directory : FileTree::Kind::Other;
}

struct DirectoryCloser {
    void operator()(DIR* directory) const { closedir(directory); }
};

/// The names in a directory but its own two; nothing if it can't be read. Read whole, since removing while
/// reading may skip some.
std::optional<std::vector<std::string>> NamesIn(const Descriptor& directory) {
    Descriptor again = OpenSubdirectory(directory.Number(), ".");
    const std::unique_ptr<DIR, DirectoryCloser> list(again.IsOpen() ? fdopendir(again.Number()) : nullptr);
    if (!list) return {};
    again.Release();
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* item = readdir(list.get())) {
        const std::string name = item->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    if (errno != 0) return {};
    return names;
}

ssize_t ReadSome(int descriptor, char* buffer, std::size_t bytes) {
    ssize_t count = 0;
    do {
        count = read(descriptor, buffer, bytes);
    } while (count < 0 && errno == EINTR);
    return count;
}

}  // namespace

Descriptor::~Descriptor() {
    if (IsOpen()) close(number);
}

bool NewFile::Write(std::string_view bytes) {
    hasFailed =
        hasFailed || !IsOpen() || (*hook && (*hook)("write", name) != 0) || !WriteAll(file.Number(), bytes);
    return !hasFailed;
}

bool NewFile::Finish() {
    hasFailed = hasFailed || !IsOpen() || (*hook && (*hook)("sync", name) != 0) || !Sync(file.Number());
    const int number = file.Release();
    if (number >= 0 && close(number) != 0) hasFailed = true;
    return !hasFailed;
}

FileTree::FileTree(const std::string& root, const FileHook& hook)
    : root(open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), hook(hook) {}

bool FileTree::Lock(std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (flock(root.Number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK) return IsOpen();
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(kLockPause);
    }
    return true;
}

/// With errno if it isn't open.
Descriptor FileTree::OpenDirectoryOf(const std::string& name) const {
    Descriptor directory = OpenSubdirectory(root.Number(), ".");
    std::size_t start = 0;
    for (std::size_t end = name.find('/'); end != std::string::npos && directory.IsOpen();
         start = end + 1, end = name.find('/', start)) {
        Descriptor next = OpenSubdirectory(directory.Number(), name.substr(start, end - start).c_str());
        if (!next.IsOpen()) return next;
        directory = std::move(next);
    }
    return directory;
}

Descriptor FileTree::OpenFile(const std::string& name) const {
    const Descriptor directory = OpenDirectoryOf(name);
    // Without O_NONBLOCK a pipe would wait here for its writer.
    Descriptor file(directory.IsOpen() ? openat(directory.Number(), LeafOf(name),
                                                O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)
                                       : -1);
    struct stat status = {};
    const bool isFile = file.IsOpen() && fstat(file.Number(), &status) == 0 && S_ISREG(status.st_mode);
    return isFile ? std::move(file) : Descriptor();
}

FileTree::Found FileTree::Look(const std::string& name) const {
    Found found;
    const Descriptor directory = OpenDirectoryOf(name);
    if (directory.IsOpen() &&
        fstatat(directory.Number(), LeafOf(name), &found.status, AT_SYMLINK_NOFOLLOW) == 0) {
        found.kind = KindOf(found.status.st_mode);
    } else if (errno == ENOENT) {
        found.kind = Kind::Missing;
    }
    return found;
}

std::optional<std::string> FileTree::Read(const std::string& name, std::size_t maxBytes) const {
    const Descriptor file = OpenFile(name);
    if (!file.IsOpen()) return {};
    std::string bytes(maxBytes + 1, '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        const ssize_t count = ReadSome(file.Number(), bytes.data() + length, bytes.size() - length);
        if (count < 0) return {};
        if (count == 0) break;
        length += static_cast<std::size_t>(count);
    }
    if (length > maxBytes) return {};
    bytes.resize(length);
    return bytes;
}

bool FileTree::MakeOne(int parent, const char* part, const std::string& name) {
    return Ask("make directory", name) == 0 && mkdirat(parent, part, kNewDirectoryMode) == 0 && Sync(parent);
}

bool FileTree::MakeDirectory(const std::string& name) {
    const Descriptor directory = OpenDirectoryOf(name);
    return directory.IsOpen() && MakeOne(directory.Number(), LeafOf(name), name);
}

bool FileTree::MakeDirectoriesFor(const std::string& name) {
    for (std::size_t end = name.find('/'); end != std::string::npos; end = name.find('/', end + 1)) {
        const std::string directory = name.substr(0, end);
        const Kind kind = Look(directory).kind;
        if (kind == Kind::Directory || (kind == Kind::Missing && MakeDirectory(directory))) continue;
        return false;
    }
    return true;
}

NewFile FileTree::Create(const std::string& name, mode_t mode) {
    const Descriptor directory = OpenDirectoryOf(name);
    if (!directory.IsOpen() || Ask("create", name) != 0) return {};
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    return {Descriptor(openat(directory.Number(), LeafOf(name), kFlags, mode)), name, &hook};
}

bool FileTree::WriteWhole(const std::string& name, std::string_view bytes) {
    NewFile file = Create(name, kNewFileMode);
    if (!file.IsOpen()) return false;
    if (file.Write(bytes) && file.Finish() && SyncDirectoryOf(name)) return true;
    RemoveFile(name);
    return false;
}

bool FileTree::SetMode(const std::string& name, mode_t mode) {
    const Descriptor file = OpenFile(name);
    return file.IsOpen() && Ask("set mode", name) == 0 && fchmod(file.Number(), mode & kPermissions) == 0 &&
           Sync(file.Number());
}

void FileTree::SetOwner(const std::string& name, const struct stat& owner) {
    const Descriptor file = OpenFile(name);
    struct stat status = {};
    if (!file.IsOpen() || fstat(file.Number(), &status) != 0) return;
    if (status.st_uid == owner.st_uid && status.st_gid == owner.st_gid) return;
    // Only the superuser may; for everybody else the file stays the user's own.
    if (fchown(file.Number(), owner.st_uid, owner.st_gid) != 0) return;
}

bool FileTree::RemoveFile(const std::string& name) {
    const Descriptor directory = OpenDirectoryOf(name);
    if (!directory.IsOpen()) return errno == ENOENT;
    return Ask("remove", name) == 0 &&
           (unlinkat(directory.Number(), LeafOf(name), 0) == 0 || errno == ENOENT);
}

bool FileTree::RemoveWithin(int parent, const char* part, const std::string& name) {
    if (const Descriptor directory = OpenSubdirectory(parent, part); directory.IsOpen()) {
        const auto names = NamesIn(directory);
        if (!names) return false;
        for (const std::string& inner : *names)
            if (!RemoveWithin(directory.Number(), inner.c_str(), name + "/" + inner)) return false;
        return Ask("remove directory", name) == 0 && unlinkat(parent, part, AT_REMOVEDIR) == 0;
    }
    return Ask("remove", name) == 0 && (unlinkat(parent, part, 0) == 0 || errno == ENOENT);
}

bool FileTree::RemoveAll(const std::string& name) {
    const Descriptor directory = OpenDirectoryOf(name);
    if (!directory.IsOpen()) return errno == ENOENT;
    return RemoveWithin(directory.Number(), LeafOf(name), name) && Sync(directory.Number());
}

int FileTree::Rename(const std::string& name, const std::string& newName) {
    const Descriptor from = OpenDirectoryOf(name);
    if (!from.IsOpen()) return errno;
    const Descriptor to = OpenDirectoryOf(newName);
    if (!to.IsOpen()) return errno;
    if (const int error = Ask("rename", name)) return error;
    return renameat(from.Number(), LeafOf(name), to.Number(), LeafOf(newName)) == 0 ? 0 : errno;
}

bool FileTree::Duplicate(const std::string& name, FileTree& tree, const std::string& newName) {
    const Descriptor from = OpenDirectoryOf(name);
    const Descriptor to = tree.OpenDirectoryOf(newName);
    if (!from.IsOpen() || !to.IsOpen()) return false;
    const bool isLinked = tree.Ask("link", newName) == 0 &&
                          linkat(from.Number(), LeafOf(name), to.Number(), LeafOf(newName), 0) == 0;
    return isLinked || Copy(name, tree, newName);
}

bool FileTree::Copy(const std::string& name, FileTree& tree, const std::string& newName) {
    const Descriptor from = OpenFile(name);
    struct stat status = {};
    if (!from.IsOpen() || fstat(from.Number(), &status) != 0) return false;
    NewFile to = tree.Create(newName, status.st_mode & kPermissions);
    if (!to.IsOpen()) return false;
    std::array<char, kCopyBytes> buffer;
    ssize_t count = 0;
    while ((count = ReadSome(from.Number(), buffer.data(), buffer.size())) > 0)
        if (!to.Write({buffer.data(), static_cast<std::size_t>(count)})) break;
    if (count == 0 && to.Finish() && tree.SetMode(newName, status.st_mode)) return true;
    tree.RemoveFile(newName);
    return false;
}

bool FileTree::SyncDirectoryOf(const std::string& name) {
    const Descriptor directory = OpenDirectoryOf(name);
    return directory.IsOpen() && Ask("sync directory", name) == 0 && Sync(directory.Number());
}
