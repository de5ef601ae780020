#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "catalogue/metric_list.h"
#include "engine/model/log.h"
#include "engine/model/output_settings.h"
#include "engine/model/results_store.h"
#include "output/taken_paths.h"
#include "output/text_raster.h"
#include "video/video_image.h"
#include "video/video_source.h"

/// Chooses the bad frames of a complete run and saves them as bitmaps, one for each frame and file, with
/// captions: "proc_fr_0003.bmp" is the fourth worst frame of proc.avi. No directory is made.
///
/// Made for one save. Throws std::bad_alloc only.
class BadFramesSaver {
public:
    /// `log` may be null. No picture goes to one of the taken paths.
    explicit BadFramesSaver(BadFramesSettings settings, ILog* log = nullptr,
                            const Metric::CMetricList& metrics = Metric::GetMetricList(),
                            TakenPaths taken = {});

    /// The bad frames, the worst first. Opens the files of the roles anew, by the records under their names.
    /// What can't be read or written is logged, once a file, and left out.
    std::vector<int> Save(const CResultsStore& store, const std::map<std::wstring, FileRecord>& fileRecords,
                          int yuvTable);

    /// Every picture is saved.
    bool IsComplete() const { return complete; }
    /// The pictures that are saved.
    const std::vector<std::wstring>& GetPaths() const { return paths; }

private:
    struct File {
        std::wstring name;
        std::unique_ptr<rkIVideoSource> source;  // null for one that isn't to be had
        std::vector<std::wstring> paths;         // of its pictures
    };

    std::vector<File> FilesOf(const CResultsStore& store, const std::vector<int>& ids) const;
    void OpenSource(File& file, const std::map<std::wstring, FileRecord>& fileRecords);
    std::vector<std::wstring> ChoosePaths(const std::wstring& name, std::size_t count, std::size_t digits);
    bool MakePicture(File& file, int frame, int yuvTable);
    void Report(const File& file, const std::wstring& line);

    BadFramesSettings settings;
    ILog* log;
    const Metric::CMetricList& metrics;
    bool complete = false;
    std::vector<std::wstring> paths;

    TakenPaths taken;
    TextRaster raster;
    rkVideoImage image;               // as read
    rkVideoImage scratch;             // of the conversion
    rkVideoImage picture;             // as saved
    std::set<std::wstring> reported;  // the names of files that the log tells a failure of
};
