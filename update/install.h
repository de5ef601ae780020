#pragma once

#include "update/file_tree.h"
#include "update/update_list.h"

#include <string>

/// Moves the staged files of a complete download over those of the program, in the order of the list but its
/// own file (`ownName`) last; false at the first that can't be moved.
///
/// Looks at all of them first: as long as a staged file is missing or hasn't the size of the list, or a
/// target is a directory or lies behind a symbolic link, nothing is moved.
///
/// A file is at every moment the old one or the new one, whole. It can be broken off anywhere and called
/// again: what has been moved is known by its place. Of a program (see `IsProgramFile`) the version before
/// stays beside it with ".bak" behind its name; of another file it goes to `temporary`, if it can, under its
/// name without directories. The new file takes the permissions of the old one; a new program may be
/// executed.
bool InstallStagedFiles(FileTree& program, FileTree& temporary, const UpdateList& list,
                        const std::wstring& ownName);
