#include "metric/metric_plugin.h"

#include <algorithm>

#include "metric/metric_base.h"
#include "metric/metric_image.h"
#include "video/video_image.h"

namespace Metric {

namespace {

// Entries behind the part of a buffer that is read. A plug-in tells how much it wrote only when it has
// written it; too much by less than this does no harm.
constexpr int kSlack = 1024;

constexpr int kFileListSize = kMaxPluginFiles + 1;  // the count stands in front
constexpr int kMaxSettingsDoublings = 5;

using TextBuffer = std::array<wchar_t, kPluginTextSize + kSlack>;
using FileListBuffer = std::array<int, kFileListSize + kSlack>;

/// The text up to its 0 or to the last place of the buffer as the plug-in knows it.
std::wstring TextOf(TextBuffer& buffer) {
    buffer[kPluginTextSize - 1] = 0;
    return buffer.data();
}

std::vector<int> FilesOf(const FileListBuffer& list) {
    return {list.begin() + 1, list.begin() + 1 + std::clamp(list[0], 0, kMaxPluginFiles)};
}

std::vector<IMetricImage*> InterfacesOf(const std::vector<CMetricImage*>& images) {
    return {images.begin(), images.end()};
}

bool IsResultCount(int count) {
    return count >= 1 && count <= kMaxPluginResults;
}

}  // namespace

struct CMetricPlugin::Buffers {
    std::array<int, kMaxPluginResults + kSlack> idBuffer{};
    std::array<float, kMaxPluginResults + kSlack> valueBuffer{};
    std::array<int, kMaxPluginComponents + kSlack> componentBuffer{};
    // One more than is read: all lists and names too many go there.
    std::array<FileListBuffer, kMaxPluginResults + 1> fileLists{};
    std::array<TextBuffer, kMaxPluginResults + 1> resultNames{};
    std::array<int*, kMaxPluginResults + kSlack> fileListAddresses{};
    std::array<wchar_t*, kMaxPluginResults + kSlack> resultNameAddresses{};
    TextBuffer textBuffer{};

    Buffers() {
        for (std::size_t i = 0; i < fileListAddresses.size(); ++i) {
            const auto row = std::min<std::size_t>(i, kMaxPluginResults);
            fileListAddresses[i] = fileLists[row].data();
            resultNameAddresses[i] = resultNames[row].data();
        }
    }

    void ClearResultInfo() {
        for (auto& list : fileLists) list[0] = 0;
        for (auto& name : resultNames) name[0] = 0;
    }
};

CMetricPlugin::CMetricPlugin() = default;

CMetricPlugin::~CMetricPlugin() {
    const auto release = module.Find<void(void*)>("ReleaseMetric");
    if (release != nullptr && plugin != nullptr) Guarded([&] { release(plugin); });
}

bool CMetricPlugin::Load(const std::wstring& path) {
    if (!module.Open(path)) return false;
    const auto create = module.Find<void(void**)>("CreateMetric");
    if (create == nullptr) return false;

    void* object = nullptr;
    try {
        create(&object);
    } catch (...) {
        return false;
    }
    plugin = static_cast<IMetricPlugin*>(object);
    if (plugin != nullptr) buffers = std::make_unique<Buffers>();
    return plugin != nullptr;
}

/// Makes the call if there is a plug-in; false if there is none or it throws. Nothing of an exception may be
/// kept: its type and its text are the plug-in's.
template <class Call>
bool CMetricPlugin::Guarded(Call call) {
    if (plugin == nullptr) return false;
    try {
        call();
        return true;
    } catch (...) {
        return false;
    }
}

template <class Answer>
Answer CMetricPlugin::Ask(Answer (IMetricPlugin::*question)()) {
    Answer answer{};
    Guarded([&] { answer = (plugin->*question)(); });
    return answer;
}

std::wstring CMetricPlugin::Text(void (IMetricPlugin::*question)(wchar_t*)) {
    if (plugin == nullptr) return {};
    buffers->textBuffer[0] = 0;
    return Guarded([&] { (plugin->*question)(buffers->textBuffer.data()); }) ? TextOf(buffers->textBuffer)
                                                                             : std::wstring();
}

/// The results of a call that takes the buffers for ids and values and the place for their count.
template <class Call>
std::vector<MetricValue> CMetricPlugin::Values(Call call) {
    int count = 0;
    const auto run = [&] { call(buffers->idBuffer.data(), buffers->valueBuffer.data(), &count); };
    if (!Guarded(run) || !IsResultCount(count)) return {};
    std::vector<MetricValue> values;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        values.push_back({buffers->idBuffer[i], buffers->valueBuffer[i]});
    }
    return values;
}

bool CMetricPlugin::Init(const MetricParameters& parameters) {
    return Guarded([&] {
        plugin->Init(parameters.component, parameters.width, parameters.height, CMetric::ResultIdCounter());
    });
}

std::vector<MetricValue> CMetricPlugin::Measure(const std::vector<CMetricImage*>& images) {
    auto interfaces = InterfacesOf(images);
    const int imageCount = static_cast<int>(interfaces.size());
    return Values([&](int* ids, float* values, int* count) {
        plugin->Measure(interfaces.data(), imageCount, ids, values, count);
    });
}

std::vector<MetricValue> CMetricPlugin::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                            rkVideoImage& target) {
    if (target.Data() == nullptr) return Measure(images);
    auto interfaces = InterfacesOf(images);
    const int imageCount = static_cast<int>(interfaces.size());
    return Values([&](int* ids, float* values, int* count) {
        plugin->MeasureAndVisualize(interfaces.data(), imageCount, ids, values, count, target.Data(),
                                    target.Stride());
    });
}

std::vector<MetricResultInfo> CMetricPlugin::GetResultInfo(bool visualize) {
    if (plugin == nullptr) return {};
    buffers->ClearResultInfo();
    int count = 0;
    const auto run = [&] {
        plugin->GetResultInfo(&count, buffers->idBuffer.data(), buffers->fileListAddresses.data(),
                              buffers->resultNameAddresses.data(), visualize);
    };
    if (!Guarded(run) || !IsResultCount(count)) return {};
    std::vector<MetricResultInfo> infos;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        infos.push_back(
            {buffers->idBuffer[i], FilesOf(buffers->fileLists[i]), TextOf(buffers->resultNames[i])});
    }
    return infos;
}

std::vector<MetricValue> CMetricPlugin::GetAverages(bool visualize) {
    return Values(
        [&](int* ids, float* values, int* count) { plugin->GetAverages(ids, values, count, visualize); });
}

int CMetricPlugin::GetInputCount(bool visualize) {
    int count = 0;
    Guarded([&] { count = plugin->GetInputCount(visualize); });
    return count;
}

std::vector<int> CMetricPlugin::GetComponents() {
    int count = 0;
    if (!Guarded([&] { plugin->GetComponents(buffers->componentBuffer.data(), &count); })) return {};
    const auto first = buffers->componentBuffer.begin();
    std::vector<int> components;
    std::copy_if(first, first + std::clamp(count, 0, kMaxPluginComponents), std::back_inserter(components),
                 [](int component) { return component >= 0 && component < kComponentCount; });
    return components;
}

bool CMetricPlugin::IsHigherBetter() {
    return Ask(&IMetricPlugin::IsHigherBetter);
}

int CMetricPlugin::GetBlockWidth() {
    return std::max(1, Ask(&IMetricPlugin::GetBlockWidth));
}

int CMetricPlugin::GetBlockHeight() {
    return std::max(1, Ask(&IMetricPlugin::GetBlockHeight));
}

bool CMetricPlugin::IsConfigurable() {
    return Ask(&IMetricPlugin::IsConfigurable);
}

bool CMetricPlugin::Configure(const std::wstring& settings) {
    bool accepted = false;
    Guarded([&] { accepted = plugin->Configure(settings.c_str()); });
    return accepted;
}

std::wstring CMetricPlugin::GetDefaultSettings() {
    int size = kPluginTextSize;
    for (int doublings = 0; doublings <= kMaxSettingsDoublings; ++doublings, size *= 2) {
        std::vector<wchar_t> buffer(static_cast<std::size_t>(size + kSlack));
        bool fits = false;
        if (!Guarded([&] { fits = plugin->GetDefaultSettings(buffer.data(), size); })) return {};
        buffer[static_cast<std::size_t>(size - 1)] = 0;
        if (fits) return buffer.data();
    }
    return {};
}

}  // namespace Metric
