#pragma once

#include "app/rules/file_filters.h"
#include "platform/qt/file_chooser.h"

/// A file dialog's list of kinds, of what the rules say.
inline std::vector<FileKind> FileKindsOf(std::span<const FileFilter> filters) {
    std::vector<FileKind> kinds;
    for (const FileFilter& filter : filters)
        kinds.push_back({filter.text, {filter.patterns.begin(), filter.patterns.end()}});
    return kinds;
}
