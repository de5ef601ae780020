#include "output/bad_frame_selection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>

namespace {

enum Role : std::size_t { RoleOriginal, RoleFirst, RoleSecond, kRoles };

/// For each role the id of the result that has it, if one does.
using RoleIds = std::array<std::optional<int>, kRoles>;

bool Holds(const ResultRecord& record, const FileRecord& file) {
    return std::any_of(record.files.begin(), record.files.end(),
                       [&file](const FileRecord& held) { return held.name == file.name; });
}

/// Gives the roles out, a role to a result.
class Casting {
public:
    explicit Casting(const CResultsStore& store) {
        for (const int id : DecisiveResults(store)) store.GetResultRecord(id, free[id]);
    }

    std::size_t ResultCount() const { return free.size(); }
    std::size_t FileCount() const { return free.empty() ? 0 : free.begin()->second.files.size(); }

    /// To the first result that has none and holds both files.
    void Give(Role role, const FileRecord& file, const FileRecord& other) {
        const auto found = std::find_if(free.begin(), free.end(), [&](const auto& entry) {
            return Holds(entry.second, file) && Holds(entry.second, other);
        });
        if (found == free.end()) return;
        roles[role] = found->first;
        free.erase(found);
    }
    void Give(Role role, const FileRecord& file) {
        if (!file.name.empty()) Give(role, file, file);
    }

    const RoleIds& Roles() const { return roles; }

private:
    std::map<int, ResultRecord> free;
    RoleIds roles;
};

RoleIds FindRoles(const BadFramesSettings& settings, const CResultsStore& store) {
    Casting casting(store);
    const std::size_t results = casting.ResultCount();
    const std::size_t files = casting.FileCount();
    if (files == 1) {
        casting.Give(RoleOriginal, settings.original);
        casting.Give(RoleFirst, settings.firstProcessed);
        casting.Give(RoleSecond, settings.secondProcessed);
    } else if (files == 2 && results == 2) {
        casting.Give(RoleFirst, settings.firstProcessed, settings.original);
        casting.Give(RoleSecond, settings.secondProcessed, settings.original);
    } else if (files == 2 && results == 1) {
        casting.Give(RoleFirst, settings.firstProcessed);
    }
    return casting.Roles();
}

std::vector<FrameValue> Difference(const std::vector<FrameValue>& first,
                                   const std::vector<FrameValue>& second) {
    std::vector<FrameValue> differences;
    for (std::size_t i = 0; i < std::min(first.size(), second.size()); ++i)
        differences.push_back({first[i].frame, second[i].value - first[i].value});
    return differences;
}

bool IsDescending(int frameType, bool differences, bool higherIsBetter) {
    if (frameType == BadFirstBetter || (frameType == BadOriginalProcessed && !differences))
        return !higherIsBetter;
    if (frameType == BadSecondBetter) return higherIsBetter;
    return true;
}

void SortByBadness(std::vector<FrameValue>& values, bool descending) {
    std::stable_sort(values.begin(), values.end(), [descending](const FrameValue& a, const FrameValue& b) {
        const bool isNumber = !std::isnan(a.value);
        if (!isNumber || std::isnan(b.value)) return isNumber && std::isnan(b.value);
        return descending ? a.value > b.value : a.value < b.value;
    });
}

}  // namespace

std::vector<int> DecisiveResults(const CResultsStore& store) {
    std::vector<int> ids;
    ResultRecord first;
    for (const int id : store.GetResultIds()) {
        ResultRecord record;
        store.GetResultRecord(id, record);
        if (ids.empty()) first = record;
        if (record.metricIndex == first.metricIndex && record.component == first.component) ids.push_back(id);
    }
    return ids;
}

std::vector<int> SelectFrames(const BadFramesSettings& settings, const CResultsStore& store,
                              const Metric::CMetricList& metrics) {
    const std::vector<int> ids = DecisiveResults(store);
    if (ids.empty()) return {};
    ResultRecord record;
    store.GetResultRecord(ids.front(), record);
    const bool higherIsBetter = metrics.IsHigherBetter(record.metricIndex);

    const RoleIds roles = FindRoles(settings, store);
    const auto isGiven = [](const std::optional<int>& id) { return id.has_value(); };
    if (std::count_if(roles.begin(), roles.end(), isGiven) == 1) {
        const int id = **std::find_if(roles.begin(), roles.end(), isGiven);
        return SelectBadFrames(store.GetSeries(id), false, settings, higherIsBetter);
    }
    const auto series = [&](Role role) {
        return roles[role] ? store.GetSeries(*roles[role]) : std::vector<FrameValue>();
    };
    const std::vector<FrameValue> first = series(RoleFirst);
    const std::vector<FrameValue> second = series(RoleSecond);
    const std::vector<FrameValue> differences =
        second.empty() ? Difference(series(RoleOriginal), first) : Difference(first, second);
    return SelectBadFrames(differences, true, settings, higherIsBetter);
}

std::vector<int> SelectBadFrames(std::vector<FrameValue> values, bool differences,
                                 const BadFramesSettings& settings, bool higherIsBetter) {
    if (values.empty()) return {};
    const int first = values.front().frame;
    std::vector<bool> excluded(values.size());  // by the frame's distance from the first one
    const auto exclude = [&](std::int64_t from, std::int64_t end) {
        const auto size = static_cast<std::int64_t>(excluded.size());
        for (auto i = std::max<std::int64_t>(from - first, 0); i < std::min(end - first, size); ++i)
            excluded[static_cast<std::size_t>(i)] = true;
    };

    if (differences && (settings.frameType == BadOriginalProcessed || settings.frameType == BadFirstSecond))
        for (FrameValue& entry : values) entry.value = std::abs(entry.value);
    SortByBadness(values, IsDescending(settings.frameType, differences, higherIsBetter));

    std::vector<int> selected;
    for (const FrameValue& entry : values) {
        if (excluded[static_cast<std::size_t>(entry.frame - first)]) continue;
        selected.push_back(entry.frame);
        if (static_cast<int>(selected.size()) == settings.count) break;
        const std::int64_t frame = entry.frame;
        exclude(frame - settings.radius, frame + std::max(settings.radius, 1));
    }
    return selected;
}
