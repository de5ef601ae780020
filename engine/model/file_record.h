#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "video/video_source.h"

/// One input file and how it is opened. Plain values, copied freely.
struct FileRecord {
    std::wstring name;              ///< the path as shown and as logged
    std::wstring sourceName;        ///< the path to open; set together with `name`
    bool useAvs = false;            ///< open it through a generated script
    bool onlyPreferred = false;     ///< by `filter` or not at all
    bool customParameters = false;  ///< `parameters` were written by the user
    int filter = 0;                 ///< the preferred script source, 0 to 7
    std::wstring parameters;        ///< arguments of the preferred script source
    int width = 0;                  ///< raw frame size in pixels; 0 by 0 for a file that describes itself
    int height = 0;
    int yuvType = 0;  ///< an `rkColorSpace`, the layout of a raw file

    /// Opens the file: a new source, or null if it can't be opened; the reason isn't told. A record with only
    /// one of `width` and `height` above 0 doesn't open. `preferPlanar` asks a source that can choose for
    /// planar YUV. Any thread; it waits while another one opens a file.
    std::unique_ptr<rkIVideoSource> OpenSource(bool preferPlanar) const;

    friend bool operator==(const FileRecord&, const FileRecord&) = default;
};

/// Held while a file is opened. That is done one at a time in the whole program: scripts and codecs bring
/// libraries that aren't made for more.
std::mutex& FileOpeningMutex();
