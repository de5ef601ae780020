#include "metric/metric_list.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "metric/metric_plugin.h"
#include "platform/text.h"

namespace Metric {

namespace {

constexpr int kSampleSize = 160;  // any picture size will do for reading what a metric is
constexpr const wchar_t* kPluginEnding = L".tlp";

MetricInfo Describe(int kind, IMetric& sample) {
    MetricInfo info;
    info.kind = kind;
    info.id = sample.GetId();
    info.name = sample.GetName();
    info.infoUrl = sample.GetInfoUrl();
    info.unit = sample.GetUnit();
    info.components = sample.GetComponents();
    info.inputCountPlain = sample.GetInputCount(false);
    info.inputCountVisual = sample.GetInputCount(true);
    info.higherIsBetter = sample.IsHigherBetter();
    info.configurable = sample.IsConfigurable();
    info.needsGpu = sample.NeedsGpu();
    if (info.configurable) info.defaultSettings = sample.GetDefaultSettings();
    return info;
}

/// Whether a run could be made of what a plug-in says. The id becomes a part of file names.
bool IsMeasurable(const MetricInfo& info) {
    const auto isInputCount = [](int count) { return count == 1 || count == 2; };
    return !info.id.empty() && info.id.find_first_of(L"/\\") == info.id.npos && !info.components.empty() &&
           isInputCount(info.inputCountPlain) && isInputCount(info.inputCountVisual);
}

std::unique_ptr<IMetric> CreatePlugin(const std::wstring& path, const MetricParameters& parameters) {
    auto plugin = std::make_unique<CMetricPlugin>();
    if (!plugin->Load(path) || !plugin->Init(parameters)) return nullptr;
    return plugin;
}

/// The names of the directory's plug-in files, sorted: the order in which a directory is read is an accident.
std::vector<std::string> PluginNames(const std::filesystem::path& directory) {
    std::vector<std::string> names;
    std::error_code error;  // of a directory that can't be read: it holds no plug-ins
    for (std::filesystem::directory_iterator file(directory, error), end; !error && file != end;
         file.increment(error)) {
        const std::string name = file->path().filename().native();
        if (EndsWithNoCase(FromUtf8(name), kPluginEnding)) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

void CMetricList::Append(int kind, MetricFactory create, const MetricFactory& createSample) {
    MetricParameters parameters;
    parameters.width = kSampleSize;
    parameters.height = kSampleSize;
    const auto sample = createSample(parameters);
    if (sample != nullptr) entries.push_back({Describe(kind, *sample), std::move(create)});
}

void CMetricList::AppendPlugins(const std::wstring& directory) {
    const std::filesystem::path path = ToUtf8(directory);
    for (const std::string& name : PluginNames(path)) AppendPlugin(FromUtf8((path / name).native()));
}

void CMetricList::AppendPlugin(const std::wstring& path) {
    CMetricPlugin sample;
    if (!sample.Load(path)) return;
    MetricInfo info = Describe(kPluginKind, sample);
    info.pluginPath = path;
    if (!IsMeasurable(info)) return;
    entries.push_back({std::move(info), [path](const MetricParameters& parameters) {
                           return CreatePlugin(path, parameters);
                       }});
}

int CMetricList::GetInputCount(int index, bool visualize) const {
    const MetricInfo& info = Info(index);
    return visualize ? info.inputCountVisual : info.inputCountPlain;
}

const MetricInfo& CMetricList::Info(int index) const {
    static const MetricInfo kNone;
    return Has(index) ? entries[static_cast<std::size_t>(index)].info : kNone;
}

bool CMetricList::FindById(std::wstring_view id, int& index) const {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [id](const Entry& entry) { return entry.info.id == id; });
    if (found == entries.end()) return false;
    index = static_cast<int>(found - entries.begin());
    return true;
}

std::unique_ptr<IMetric> CMetricList::CreateInstance(int index, const MetricParameters& parameters) const {
    return Has(index) ? entries[static_cast<std::size_t>(index)].create(parameters) : nullptr;
}

}  // namespace Metric
