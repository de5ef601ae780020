#pragma once

#include <map>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "metric/metric_image.h"
#include "metric/metric_interface.h"
#include "output/taken_paths.h"
#include "output/visualization_file.h"
#include "video/video_image.h"
#include "video/video_source.h"

/// The index of the mask among the opened files.
constexpr int kMaskFile = -1;

/// A file's frame as float planes for one colour component, which all metrics of that component read. Made
/// once and refilled for every frame; the scratch images are the conversion's own, so that components convert
/// side by side.
struct ComponentImage {
    bool failed = false;  ///< a mask that couldn't be converted: out of use for the rest of the run
    boost::shared_ptr<rkVideoImage> scratchFirst;
    boost::shared_ptr<rkVideoImage> scratchSecond;
    boost::shared_ptr<Metric::CMetricImage> image;
};

struct OpenedFile {
    boost::shared_ptr<rkIVideoSource> source;    ///< touched by the run's own thread only
    boost::shared_ptr<rkVideoImage> frameImage;  ///< the frame just read
    std::map<int, ComponentImage> components;    ///< by colour component, one for each of the selection
    bool failed = false;  ///< a frame couldn't be read: out of use for the rest of the run
    bool isMask = false;
};

/// The opened files of a run by their index, the mask first if there is one.
using OpenedFiles = std::map<int, OpenedFile>;

/// A metric at work on one file or a pair of files. One thread at a time.
struct ScheduledMetric {
    boost::shared_ptr<Metric::IMetric> metric;
    int component = 0;
    std::vector<int> resultIds = {};  ///< what it gives a value for at every frame
    /// Frames by which the metric is behind: it answers at frame n with the value of frame n minus this, and
    /// its answers before that count are dropped.
    int lag = 0;
    bool gaveInvalidValues = false;  ///< and the log says so
    bool paints = false;             ///< it is asked for pictures, also when they can't be kept
    boost::shared_ptr<CVisualizationFile> visualization = {};  ///< where they go; null for nowhere
};

struct OneFileSet {
    int file = 0;
    std::vector<ScheduledMetric> metrics;
};

struct TwoFileSet {
    int first = 0;
    int second = 0;
    std::vector<ScheduledMetric> metrics;
};

/// What a run keeps for its length.
struct RunState {
    OpenedFiles opened;
    std::vector<OneFileSet> oneFileSchedule;
    std::vector<TwoFileSet> twoFileSchedule;
    int width = 0;  ///< of every file's pictures
    int height = 0;
    int length = 0;  ///< in frames, of the shortest file
    bool originalOpened = true;
    std::vector<std::wstring> visualizationPaths;  ///< of the files that are complete
    TakenPaths takenPaths;                         ///< what the visualization files must not be
};
