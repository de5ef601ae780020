#include "app/rules/drop.h"

namespace {

std::vector<FileRow> OpenFileRows(const MeasurementJob& job) {
    std::vector<FileRow> rows = {RowOriginal, RowProcessed};
    if (job.comparativeAnalysis) rows.push_back(RowSecond);
    return rows;
}

/// The rows that `count` files over the window go to; none if they aren't taken.
std::vector<FileRow> RowsFor(std::size_t count, const MeasurementJob& job) {
    std::vector<FileRow> rows = OpenFileRows(job);
    if (count == 1) std::erase_if(rows, [&](FileRow row) { return !SlotOf(job, row).name.empty(); });
    if (rows.size() < count) return {};
    rows.resize(count);
    return rows;
}

}  // namespace

std::vector<RoutedFile> RouteDrop(const std::vector<std::wstring>& paths, std::optional<FileRow> target,
                                  const MeasurementJob& job) {
    std::vector<FileRow> rows;
    if (!target)
        rows = RowsFor(paths.size(), job);
    else if (paths.size() == 1 && IsRowOpen(job, *target))
        rows = {*target};

    std::vector<RoutedFile> files;
    for (std::size_t i = 0; i < rows.size(); ++i) files.push_back({rows[i], paths[i]});
    return files;
}
