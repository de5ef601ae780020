#pragma once

#include <string>
#include <vector>

#include "catalogue/metric_list.h"
#include "engine/model/output_settings.h"
#include "engine/model/results_store.h"
#include "output/taken_paths.h"
#include "output/text_raster.h"
#include "video/avi/video_file.h"

/// The file that a metric's pictures go to, frame after frame: an AVI file of 25 frames a second or, if one
/// of the metric's files is a bitmap, a bitmap of the last frame. A caption is painted over each picture.
///
/// Legal order: `Open`, `WriteFrame` for each frame, `Close`. One thread at a time, not always the same one;
/// several files are written side by side. Only the constructor and `Open` throw, std::bad_alloc.
class CVisualizationFile {
public:
    /// Chooses the path: by the settings, from the metric and the files of `resultIds`, which aren't empty,
    /// and with a number behind the name if that is one of the taken paths. No directory is made.
    CVisualizationFile(VisualizationSettings settings, std::vector<int> resultIds, const CResultsStore& store,
                       const TakenPaths& taken = {},
                       const Metric::CMetricList& metrics = Metric::GetMetricList());

    const std::wstring& GetPath() const { return path; }
    /// The name got a number.
    bool IsNumbered() const { return isNumbered; }

    /// False if the file can't be made, as in a directory that doesn't exist or may not be written to. A
    /// bitmap isn't there yet behind it.
    bool Open();

    /// Writes a metric's picture, an `RGB24` image of the settings' size with its rows from the top, under
    /// its caption; turns the picture over on the way. False if the frame isn't in the file; what was written
    /// before it is sound.
    bool WriteFrame(rkVideoImage& picture, int frame, const std::vector<Metric::MetricValue>& values,
                    const CResultsStore& store);

    /// Completes the file. False if that failed.
    bool Close() { return video.CloseWriter(); }

    /// There is a file: a video once it is open, a bitmap from its first frame on.
    bool HasFile() const { return hasFile; }

private:
    std::wstring FileName(const CResultsStore& store) const;

    rkVideoFile video;
    std::wstring path;
    VisualizationSettings settings;
    std::vector<int> resultIds;
    const Metric::CMetricList& metrics;
    bool isNumbered = false;
    bool hasFile = false;
    TextRaster raster;
};
