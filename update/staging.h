#pragma once

#include "update/file_tree.h"
#include "update/update_list.h"

/// The states of a download in the program's directory, and the steps between them. Each step leaves one of
/// these states wherever it is broken off:
///
///   nothing pending   no staging directory, or one without the mark, which is of no more use
///   ready             the staging directory with the mark, hence with the list and every file, whole and on
///                     the disk
///   tried             the same, and an install of it has failed
///   set aside         under another name, where the user may look at it

std::string StagedName(const UpdateEntry& entry);

/// From whatever is there to an empty staging directory without the mark.
bool BeginStaging(FileTree& program);
/// To "ready". `listText` is the list as fetched.
bool CompleteStaging(FileTree& program, const std::string& listText);
bool IsStagingComplete(const FileTree& program);
/// The list of a complete download; nothing if it is missing or wrong.
std::optional<UpdateList> ReadStagedList(const FileTree& program);

/// From "ready" to "tried"; false if it is there already, or if that can't be noted.
bool MarkTried(FileTree& program);
/// To "set aside", in place of an earlier one; at least to "nothing pending" if that is possible. False if it
/// may stay "ready" or "tried".
bool SetStagingAside(FileTree& program);
/// To no staging directory. False if it stays "ready".
bool EndStaging(FileTree& program);
