#include "output/output_path.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/text.h"

namespace {

/// Items that differ, in the order of their first appearance.
class DistinctItems {
public:
    void Add(const std::wstring& item) {
        if (std::find(items.begin(), items.end(), item) == items.end()) items.push_back(item);
    }

    std::wstring Joined() const {
        std::wstring joined;
        for (const std::wstring& item : items) {
            if (&item != &items.front()) joined += L'_';
            joined += item;
        }
        return joined;
    }

private:
    std::vector<std::wstring> items;
};

std::wstring LowerCase(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(), AsciiLower);
    return text;
}

}  // namespace

std::wstring MetricNameItem(const ResultRecord& record, const Metric::CMetricList& metrics) {
    return metrics.GetId(record.metricIndex) + L"_" + LowerCase(Metric::ComponentName(record.component));
}

std::wstring MetricNamePart(const CResultsStore& store, const Metric::CMetricList& metrics) {
    DistinctItems items;
    ResultRecord record;
    for (const int id : store.GetResultIds()) {
        store.GetResultRecord(id, record);
        items.Add(MetricNameItem(record, metrics));
    }
    return items.Joined();
}

std::wstring VideoNamePart(const CResultsStore& store) {
    DistinctItems items;
    ResultRecord record;
    for (const int id : store.GetResultIds()) {
        store.GetResultRecord(id, record);
        for (const FileRecord& file : record.files) items.Add(BaseName(file.name));
    }
    return items.Joined();
}

std::wstring BaseName(const std::wstring& path) {
    const std::wstring_view name = FileNamePart(path);
    return std::wstring(name.substr(0, name.rfind(L'.')));
}

void EndWithSeparator(std::wstring& directory) {
    if (directory.empty()) return;
    if (directory.back() == L'\\') directory.back() = L'/';
    if (directory.back() != L'/') directory += L'/';
}

void PrepareOutputDirectory(std::wstring& directory) {
    EndWithSeparator(directory);
    if (directory.empty()) return;
    std::error_code ignored;
    std::filesystem::create_directories(ToUtf8(directory), ignored);
}
