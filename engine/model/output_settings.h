#pragma once

#include <string>

#include "engine/model/file_record.h"
#include "video/avi/compressor_settings.h"

/// How the name of an output file is made. The numbers are stored in settings.
enum NameGeneration : int {
    NamePrefix = 0,   ///< <metric>_<video_name>
    NamePostfix = 1,  ///< <video_name>_<metric>
    NameCustom = 2,   ///< `customName` as it stands
};

/// Where an output goes and what it is called.
struct OutputSettings {
    std::wstring outputDir;  ///< empty: the current directory
    std::wstring customName;
    int nameGeneration = NamePrefix;
};

struct CsvSettings : OutputSettings {
    int separator = 1;         ///< 1: cells are separated by ",", otherwise by ";"
    int decimalDelimiter = 0;  ///< 1: numbers have a decimal ",", otherwise a "."
    bool save = false;
    bool unicode = false;  ///< UTF-16LE without a byte order mark, otherwise one byte a character
};

/// The caption painted over a picture that is saved.
struct CaptionSettings {
    int position = 0;  ///< 0 top left, 1 bottom left, 2 top right, 3 bottom right
    bool drawMetricValue = true;
    bool drawFrameNumber = true;
};

struct VisualizationSettings : OutputSettings {
    bool save = false;
    CaptionSettings caption;
    int width = 0;  ///< the pictures' size in pixels, set by the run
    int height = 0;
    rkCompressorSettings compressor;  ///< of AVI files
};

/// Which frames count as bad. The numbers are stored in settings.
enum BadFramesType : int {
    BadOriginalProcessed = 0,  ///< with maximum difference between original and processed
    BadFirstSecond = 1,        ///< with maximum difference between first processed and second processed
    BadFirstBetter = 2,        ///< with maximum difference, where metric for first is better than for second
    BadSecondBetter = 3,       ///< with maximum difference, where metric for second is better than for first
};

struct BadFramesSettings : OutputSettings {
    int frameType = BadOriginalProcessed;
    int count = 10;  ///< how many frames to select; 0 for all
    int radius = 0;  ///< frames around a selected one that are passed over
    bool save = false;
    FileRecord firstProcessed;  ///< the files of the run by role, empty for a role that no file has
    FileRecord secondProcessed;
    FileRecord original;
    CaptionSettings caption;  ///< of the saved pictures; not the user's choice for visualization
};
