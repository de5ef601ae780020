#pragma once

#include <optional>
#include <string>
#include <vector>

class QWidget;

/// One choice of a file dialog's list of kinds.
struct FileKind {
    std::wstring name;                   // as shown, without the patterns
    std::vector<std::wstring> patterns;  // "*.avi"; "*.*" is any name, also one without a dot
};

/// Lets the user choose a file that exists, beginning at `path` (a file or a directory; what doesn't exist of
/// it is left out). Nothing if the user cancels. The process's current directory stays.
std::optional<std::wstring> ChooseFile(QWidget* parent, const std::wstring& title, const std::wstring& path,
                                       const std::vector<FileKind>& kinds);

/// Lets the user choose where to write a file, beginning at `path`, whose name is the one offered. A name
/// without an ending gets that of `kind`'s first pattern. The user has agreed to replace what exists.
std::optional<std::wstring> ChooseNewFile(QWidget* parent, const std::wstring& title,
                                          const std::wstring& path, const FileKind& kind);

/// Lets the user choose a directory, beginning at `path`.
std::optional<std::wstring> ChooseFolder(QWidget* parent, const std::wstring& title,
                                         const std::wstring& path);
