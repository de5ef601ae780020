#include "update/staging.h"

#include "platform/text.h"
#include "update/staging_format.h"

std::string StagedName(const UpdateEntry& entry) {
    return std::string(kStaging) + "/" + ToUtf8(entry.name);
}

bool BeginStaging(FileTree& program) {
    // The mark first: a half-removed download must not count as one.
    if (IsStagingComplete(program) &&
        !(program.RemoveFile(kCompleteMark) && program.SyncDirectoryOf(kCompleteMark)))
        return false;
    return program.RemoveAll(kStaging) && program.MakeDirectory(kStaging);
}

bool CompleteStaging(FileTree& program, const std::string& listText) {
    return program.RemoveFile(kStagedList) && program.WriteWhole(kStagedList, listText) &&
           program.RemoveFile(kCompleteMark) && program.WriteWhole(kCompleteMark, {});
}

bool IsStagingComplete(const FileTree& program) {
    return program.Look(kCompleteMark).kind == FileTree::Kind::File;
}

std::optional<UpdateList> ReadStagedList(const FileTree& program) {
    const auto text = program.Read(kStagedList, kMaxListBytes);
    return text ? ParseUpdateList(*text) : std::nullopt;
}

bool MarkTried(FileTree& program) {
    return program.Look(kTriedMark).kind == FileTree::Kind::Missing && program.WriteWhole(kTriedMark, {});
}

bool SetStagingAside(FileTree& program) {
    if (program.RemoveAll(kSetAside) && program.Rename(kStaging, kSetAside) == 0)
        return program.SyncDirectoryOf(kSetAside);
    return program.RemoveFile(kCompleteMark) && program.SyncDirectoryOf(kCompleteMark);
}

bool EndStaging(FileTree& program) {
    if (!program.RemoveFile(kCompleteMark) || !program.SyncDirectoryOf(kCompleteMark)) return false;
    program.RemoveAll(kStaging);  // without the mark it does no harm, and the next download removes it
    return true;
}
