#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/rules/file_rows.h"

struct RoutedFile {
    FileRow row;
    std::wstring path;
    friend bool operator==(const RoutedFile&, const RoutedFile&) = default;
};

/// Where dragged files, by their paths, would go: `target` is the row under the pointer, nothing for the rest
/// of the window. Empty: the drop is refused.
///
/// A row that is open takes one file. The window takes one for the first empty slot of original, processed
/// and, with comparative analysis, second processed; or two for the first two of them; or with comparative
/// analysis three.
std::vector<RoutedFile> RouteDrop(const std::vector<std::wstring>& paths, std::optional<FileRow> target,
                                  const MeasurementJob& job);
