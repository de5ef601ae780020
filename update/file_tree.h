#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// Called before each step that changes files, with its name and the file's; 0 to go on, or the error number
/// that the step is to fail with. Tests break and kill the updater here.
using FileHook = std::function<int(std::string_view step, const std::string& name)>;

/// A file descriptor with an owner.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number(number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number, other.number);
        return *this;
    }

    bool IsOpen() const { return number >= 0; }
    int Number() const { return number; }
    int Release() { return std::exchange(number, -1); }

private:
    int number = -1;
};

/// A file being written. What isn't finished may be cut.
class NewFile {
public:
    NewFile() = default;
    NewFile(Descriptor file, std::string name, const FileHook* hook)
        : file(std::move(file)), name(std::move(name)), hook(hook) {}

    bool IsOpen() const { return file.IsOpen(); }
    bool Write(std::string_view bytes);
    /// Brings it to the disk and closes it; false if that, or anything before, failed.
    bool Finish();

private:
    Descriptor file;
    std::string name;
    const FileHook* hook = nullptr;
    bool hasFailed = false;
};

/// The files below one directory. Names are relative to it, in UTF-8, parted by "/"; on the way to a file no
/// symbolic link is followed, wherever it leads, and none as a file either: it can be moved and removed like
/// a file.
///
/// Each change is whole or not done at all, and has reached the disk when the operation returns, except
/// `Rename`, `Link` and `RemoveFile`: for these call `SyncDirectoryOf`. For one thread at a time.
class FileTree {
public:
    enum class Kind { Missing, File, Link, Directory, Other, Unreachable };
    struct Found {
        Kind kind = Kind::Unreachable;
        struct stat status = {};

        bool IsFile(std::uint64_t size) const {
            return kind == Kind::File && static_cast<std::uint64_t>(status.st_size) == size;
        }
    };

    /// `root` exists; links on the way to it count as it. The hook outlives the tree.
    FileTree(const std::string& root, const FileHook& hook);
    bool IsOpen() const { return root.IsOpen(); }

    /// Waits until no other process has the tree locked, at most that long; false if one still has. The lock
    /// ends with the tree or the process. A file system that knows no locks gives none, and true.
    bool Lock(std::chrono::milliseconds patience);

    Found Look(const std::string& name) const;
    /// Nothing if it is no file, longer than `maxBytes`, or can't be read.
    std::optional<std::string> Read(const std::string& name, std::size_t maxBytes) const;

    bool MakeDirectory(const std::string& name);
    /// The directories that the name stands in, where they are missing.
    bool MakeDirectoriesFor(const std::string& name);
    /// A file that wasn't there before, with what the process gives new files of `mode`.
    NewFile Create(const std::string& name, mode_t mode);
    bool WriteWhole(const std::string& name, std::string_view bytes);
    bool SetMode(const std::string& name, mode_t mode);
    /// Gives the file the owner of another one, as far as the process may.
    void SetOwner(const std::string& name, const struct stat& owner);

    bool RemoveFile(const std::string& name);  // true if it is missing as well
    /// A file or a directory with all that is in it, deepest first; true if it is missing as well.
    bool RemoveAll(const std::string& name);
    /// An error number, 0 for success. Replaces what `newName` was.
    int Rename(const std::string& name, const std::string& newName);
    /// A second name for a file, in this tree or another one, where there must be none of it; by a copy with
    /// the file's permissions if there is no other way.
    bool Duplicate(const std::string& name, FileTree& tree, const std::string& newName);
    bool Copy(const std::string& name, FileTree& tree, const std::string& newName);
    bool SyncDirectoryOf(const std::string& name);

private:
    Descriptor OpenDirectoryOf(const std::string& name) const;
    Descriptor OpenFile(const std::string& name) const;
    bool MakeOne(int parent, const char* part, const std::string& name);
    bool RemoveWithin(int parent, const char* part, const std::string& name);
    int Ask(std::string_view step, const std::string& name) const { return hook ? hook(step, name) : 0; }

    Descriptor root;
    const FileHook& hook;
};
