#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "engine/model/file_record.h"
#include "engine/model/interruption_token.h"
#include "engine/model/log.h"
#include "engine/model/output_settings.h"
#include "engine/model/progress.h"
#include "engine/model/selected_metric.h"

/// What a run found in a file that it opened.
struct OpenedInput {
    int file = 0;  ///< its index, -1 for the mask
    int frameCount = 0;
    std::wstring description;  ///< of the source: kind, layout, rate
};

/// What one run of `RunMeasurement` gets.
///
/// A file's position in `inputFiles` is its index everywhere in the engine. Index 0 counts as the original,
/// also when nobody named one; index -1 is the mask.
struct RunParameters {
    std::unique_ptr<IProgress> progress;              ///< may be null
    std::unique_ptr<ILog> log;                        ///< may be null
    std::unique_ptr<InterruptionToken> interruption;  ///< may be null; a new one for each run
    std::vector<FileRecord> inputFiles;   ///< original, first processed, second processed, as far as given
    int yuvTable = 0;                     ///< colour matrix, 0 REC.601 or 1 PC.601
    VisualizationSettings visualization;  ///< this run's copy
    bool useMask = false;
    bool blackMask = false;  ///< the mask's marked pixels are the black ones, otherwise those without a 0
    FileRecord maskFile;
    std::vector<std::wstring> reservedPaths;  ///< files that others write: the run's own get another name

    // Set by the run once its files are open: the pictures' size, the number of frames to measure, and
    // whether the mask is used.
    int width = 0;
    int height = 0;
    int length = 0;
    bool maskOpened = false;
    std::vector<OpenedInput> openedInputs;         ///< in ascending order of their index
    std::vector<std::wstring> visualizationPaths;  ///< of the files that are complete; set at the run's end
};

struct MaskSlot : FileRecord {
    bool useMask = false;
    bool blackMask = false;
};

/// Everything the user chose: the one job record of a process.
///
/// It isn't locked. Its owner edits it between runs; during a run only the worker's thread touches it, except
/// for the operations of `run.interruption`.
struct MeasurementJob {
    CsvSettings csv;
    VisualizationSettings visualization;
    CaptionSettings caption;
    BadFramesSettings badFrames;
    RunParameters run;
    MetricSelection selection;
    std::array<FileRecord, 3> fileSlots;  ///< original, first processed, second processed
    MaskSlot maskSlot;
    std::vector<std::wstring> metricSettings;  ///< one settings string for each entry of the metric list
    bool comparativeAnalysis = false;
    bool autoCloseProgress = false;
};
