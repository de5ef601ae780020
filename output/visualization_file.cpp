#include "output/visualization_file.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include <boost/algorithm/string/join.hpp>

#include "output/caption.h"
#include "output/output_path.h"
#include "output/picture_file.h"
#include "platform/file.h"
#include "video/file_kind.h"
#include "video/video_image.h"

namespace {

// Frames a second, whatever the inputs have.
constexpr int kScale = 1;
constexpr int kRate = 25;

}  // namespace

CVisualizationFile::CVisualizationFile(VisualizationSettings visualizationSettings,
                                       std::vector<int> metricResultIds, const CResultsStore& store,
                                       const TakenPaths& taken, const Metric::CMetricList& metricList)
    : settings(std::move(visualizationSettings)), resultIds(std::move(metricResultIds)), metrics(metricList) {
    EndWithSeparator(settings.outputDir);
    const std::wstring name = FileName(store);
    const std::size_t extension = std::min(name.rfind(L'.'), name.size());
    for (int attempt = 1; attempt == 1 || taken.Has(path); ++attempt) {
        path = settings.outputDir + NumberedName(name.substr(0, extension), attempt) + name.substr(extension);
        isNumbered = attempt > 1;
    }
}

std::wstring CVisualizationFile::FileName(const CResultsStore& store) const {
    if (settings.nameGeneration == NameCustom) return settings.customName;

    bool isPicture = false;
    std::wstring metric;
    std::vector<std::wstring> videos;
    for (const int id : resultIds) {
        ResultRecord record;
        store.GetResultRecord(id, record);
        if (id == resultIds.front()) metric = MetricNameItem(record, metrics);
        for (const FileRecord& file : record.files) {
            isPicture |= rkIsBmpName(file.name);
            videos.push_back(BaseName(file.name));
        }
    }
    const std::wstring video = boost::algorithm::join(videos, L"_");
    const std::wstring extension = isPicture ? L".bmp" : L".avi";
    return settings.nameGeneration == NamePrefix ? metric + L"_" + video + extension
                                                 : video + L"_" + metric + extension;
}

bool CVisualizationFile::Open() {
    if (rkIsBmpName(path)) return CanReplaceFile(path);  // each frame makes the file anew
    hasFile = video.OpenWriterWithSettings(path, settings.width, settings.height, kScale, kRate,
                                           settings.compressor);
    return hasFile;
}

bool CVisualizationFile::WriteFrame(rkVideoImage& picture, int frame,
                                    const std::vector<Metric::MetricValue>& values,
                                    const CResultsStore& store) {
    try {
        if (!picture.FlipVertical()) return false;
        DrawCaption(raster, Bitmap24::BottomUp(picture), settings.caption,
                    {.frame = frame, .values = values, .store = store, .metrics = metrics});
        if (!rkIsBmpName(path)) return video.WriteImage(picture);
        const bool isWritten = ReplacePicture(path, picture);
        hasFile |= isWritten;
        return isWritten;
    } catch (const std::bad_alloc&) {  // a picture less is no reason to lose values
        return false;
    }
}
