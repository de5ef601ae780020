#include "update/install.h"

#include "platform/text.h"
#include "update/program_file.h"
#include "update/staging.h"
#include "update/staging_format.h"

#include <algorithm>
#include <cerrno>
#include <vector>

namespace {

using Kind = FileTree::Kind;

class Installer {
public:
    Installer(FileTree& program, FileTree& temporary, const std::wstring& ownName)
        : program(program), temporary(temporary), ownName(ownName) {}

    bool CanInstall(const UpdateEntry& entry) const;
    bool Install(const UpdateEntry& entry);

private:
    std::string SourceOf(const UpdateEntry& entry) const;
    bool GiveRights(const std::string& source, const FileTree::Found& old, bool isProgram);
    bool KeepProgram(const std::string& target, const FileTree::Found& old);
    void KeepOther(const std::string& target, const FileTree::Found& old);
    bool Move(const std::string& source, const std::string& target);

    FileTree& program;
    FileTree& temporary;
    const std::wstring& ownName;
};

/// Where the new file is: staged, or on the target's volume already. Empty if there is none: then it has been
/// moved.
std::string Installer::SourceOf(const UpdateEntry& entry) const {
    for (const std::string& name : {StagedName(entry), ToUtf8(entry.name) + kArrivingEnding})
        if (program.Look(name).IsFile(entry.size)) return name;
    return {};
}

bool Installer::CanInstall(const UpdateEntry& entry) const {
    const Kind staged = program.Look(StagedName(entry)).kind;
    const FileTree::Found target = program.Look(ToUtf8(entry.name));
    if (SourceOf(entry).empty()) return staged == Kind::Missing && target.IsFile(entry.size);
    return target.kind == Kind::File || target.kind == Kind::Link || target.kind == Kind::Missing;
}

bool Installer::GiveRights(const std::string& source, const FileTree::Found& old, bool isProgram) {
    if (old.kind == Kind::File) {
        program.SetOwner(source, old.status);
        return program.SetMode(source, old.status.st_mode);
    }
    const mode_t mode = program.Look(source).status.st_mode;
    // Who may read it may execute it.
    return !isProgram || program.SetMode(source, mode | ((mode & 0444) >> 2));
}

bool Installer::KeepProgram(const std::string& target, const FileTree::Found& old) {
    const std::string previous = target + kPreviousEnding;
    return program.RemoveFile(previous) &&
           (old.kind == Kind::Missing || program.Duplicate(target, program, previous));
}

/// It is a courtesy: a full or foreign directory doesn't stop the update.
void Installer::KeepOther(const std::string& target, const FileTree::Found& old) {
    if (old.kind != Kind::File || !temporary.IsOpen()) return;
    const std::string name = target.substr(target.rfind('/') + 1);
    if (temporary.RemoveFile(name)) program.Duplicate(target, temporary, name);
}

bool Installer::Move(const std::string& source, const std::string& target) {
    int error = program.Rename(source, target);
    if (error == EXDEV) {
        // The staged file goes before its copy takes the target's place: as long as there is one, the copy
        // doesn't count.
        const std::string arriving = target + kArrivingEnding;
        const bool hasArrived = program.Copy(source, program, arriving) &&
                                program.SyncDirectoryOf(arriving) && program.RemoveFile(source) &&
                                program.SyncDirectoryOf(source);
        error = hasArrived ? program.Rename(arriving, target) : EXDEV;
    }
    return error == 0 && program.SyncDirectoryOf(target);
}

bool Installer::Install(const UpdateEntry& entry) {
    const std::string target = ToUtf8(entry.name);
    if (!program.MakeDirectoriesFor(target)) return false;
    const std::string source = SourceOf(entry);
    if (source.empty()) return true;  // moved before it was broken off
    const std::string arriving = target + kArrivingEnding;
    if (source != arriving && !program.RemoveFile(arriving)) return false;  // half a copy
    const FileTree::Found old = program.Look(target);
    const bool isProgram = IsProgramFile(entry.name, ownName);
    if (!GiveRights(source, old, isProgram)) return false;
    if (!isProgram) {
        KeepOther(target, old);
    } else if (!KeepProgram(target, old)) {
        return false;
    }
    return Move(source, target);
}

}  // namespace

bool InstallStagedFiles(FileTree& program, FileTree& temporary, const UpdateList& list,
                        const std::wstring& ownName) {
    Installer installer(program, temporary, ownName);
    // The version is the running program's own: as long as that is the old one, a broken update is offered
    // again.
    std::vector<UpdateEntry> entries = list.entries;
    std::stable_partition(entries.begin(), entries.end(),
                          [&](const UpdateEntry& entry) { return entry.name != ownName; });
    return std::all_of(entries.begin(), entries.end(),
                       [&](const UpdateEntry& entry) { return installer.CanInstall(entry); }) &&
           std::all_of(entries.begin(), entries.end(),
                       [&](const UpdateEntry& entry) { return installer.Install(entry); });
}
