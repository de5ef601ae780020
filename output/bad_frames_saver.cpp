#include "output/bad_frames_saver.h"

#include <algorithm>
#include <utility>

#include "output/bad_frame_selection.h"
#include "output/caption.h"
#include "output/output_path.h"
#include "output/picture_file.h"
#include "video/display_picture.h"

namespace {

std::wstring Padded(std::size_t number, std::size_t digits) {
    const std::wstring text = std::to_wstring(number);
    return std::wstring(digits - std::min(digits, text.size()), L'0') + text;
}

/// Of the decisive results alone: the picture has no room for more.
std::vector<Metric::MetricValue> ValuesOf(const CResultsStore& store, int frame,
                                          const std::vector<int>& ids) {
    std::vector<Metric::MetricValue> values = store.GetFrameValues(frame);
    std::erase_if(values, [&ids](const Metric::MetricValue& value) {
        return std::find(ids.begin(), ids.end(), value.resultId) == ids.end();
    });
    return values;
}

}  // namespace

BadFramesSaver::BadFramesSaver(BadFramesSettings badFramesSettings, ILog* runLog,
                               const Metric::CMetricList& metricList, TakenPaths takenPaths)
    : settings(std::move(badFramesSettings)), log(runLog), metrics(metricList), taken(std::move(takenPaths)) {
    EndWithSeparator(settings.outputDir);
}

std::vector<int> BadFramesSaver::Save(const CResultsStore& store,
                                      const std::map<std::wstring, FileRecord>& fileRecords, int yuvTable) {
    // 1. The frames, and the files whose pictures of them are saved.
    const std::vector<int> selected = SelectFrames(settings, store, metrics);
    const std::vector<int> ids = DecisiveResults(store);
    std::vector<File> files = FilesOf(store, ids);

    // 2. Where the pictures come from and go to.
    for (const auto& [name, record] : fileRecords) taken.TakeInput(record.sourceName);
    int frameCount = 0;
    store.GetCommonFrameCount(frameCount);
    for (File& file : files) {
        if (!selected.empty()) OpenSource(file, fileRecords);
        file.paths = ChoosePaths(file.name, selected.size(), std::to_wstring(frameCount).size());
    }

    // 3. The pictures.
    for (std::size_t index = 0; index < selected.size(); ++index) {
        const int frame = selected[index];
        const std::vector<Metric::MetricValue> values = ValuesOf(store, frame, ids);
        for (File& file : files) {
            if (!MakePicture(file, frame, yuvTable)) continue;
            DrawCaption(raster, Bitmap24::BottomUp(picture), settings.caption,
                        {frame, values, file.name == settings.original.name, store, metrics});
            const std::wstring& path = file.paths[index];
            if (ReplacePicture(path, picture))
                paths.push_back(path);
            else
                Report(file, L"Failed to write \"" + path + L"\"");
        }
    }
    complete = paths.size() == selected.size() * files.size();
    return selected;
}

std::vector<BadFramesSaver::File> BadFramesSaver::FilesOf(const CResultsStore& store,
                                                          const std::vector<int>& ids) const {
    std::vector<File> files;
    for (const int id : ids) {
        ResultRecord record;
        store.GetResultRecord(id, record);
        for (const FileRecord& held : record.files) {
            const bool isKnown = std::any_of(files.begin(), files.end(),
                                             [&](const File& file) { return file.name == held.name; });
            if (!isKnown) files.push_back({held.name, nullptr, {}});
        }
    }
    return files;
}

void BadFramesSaver::OpenSource(File& file, const std::map<std::wstring, FileRecord>& fileRecords) {
    const auto hasRole = [&file](const FileRecord& record) { return record.name == file.name; };
    const auto found = fileRecords.find(file.name);
    if (found != fileRecords.end() &&
        (hasRole(settings.original) || hasRole(settings.firstProcessed) || hasRole(settings.secondProcessed)))
        file.source = found->second.OpenSource(true);
    if (file.source == nullptr) Report(file, L"Failed to open file \"" + file.name + L"\"");
}

std::vector<std::wstring> BadFramesSaver::ChoosePaths(const std::wstring& name, std::size_t count,
                                                      std::size_t digits) {
    std::vector<std::wstring> chosen;
    std::wstring base;
    const auto isFree = [this](const std::wstring& path) { return !taken.Has(path); };
    int attempt = 0;
    do {
        base = NumberedName(BaseName(name), ++attempt);
        chosen.clear();
        for (std::size_t index = 0; index < count; ++index)
            chosen.push_back(settings.outputDir + base + L"_fr_" + Padded(index, digits) + L".bmp");
    } while (!std::all_of(chosen.begin(), chosen.end(), isFree));

    for (const std::wstring& path : chosen) taken.TakeOutput(path);
    if (attempt > 1 && log != nullptr)
        log->Log(L"Bad frames of \"" + name + L"\" are saved as \"" + base + L"\", its own name is taken");
    return chosen;
}

/// False leaves `picture` of no use.
bool BadFramesSaver::MakePicture(File& file, int frame, int yuvTable) {
    if (file.source == nullptr) return false;
    if (file.source->ReadFrameImage(image, frame) == 0 &&
        MakeDisplayPicture(image, yuvTable, scratch, picture))
        return true;
    Report(file, L"Failed to read frame " + std::to_wstring(frame) + L" from \"" + file.name + L"\"");
    return false;
}

void BadFramesSaver::Report(const File& file, const std::wstring& line) {
    if (reported.insert(file.name).second && log != nullptr) log->Log(line);
}
