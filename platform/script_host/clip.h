#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/media/surface.h"

/// A video with access by number, as a script's source function makes it. Frame n asked for alone equals
/// frame n of a sequential read. Not for two threads at once.
class Clip {
public:
    struct Properties {
        int width = 0;
        int height = 0;
        Surface surface = Surface::YV12;
        int frameCount = 0;
        std::uint32_t rate = 25;  ///< frames a second are `rate / scale`
        std::uint32_t scale = 1;
        std::string description;  ///< UTF-8: how the file's samples became this surface; empty if untouched
    };

    virtual ~Clip() = default;
    virtual const Properties& GetProperties() const = 0;
    /// Fills `buffer` with `SurfaceBytes` bytes. False if the frame can't be had: out of range, or the file
    /// is damaged there.
    virtual bool ReadFrame(int frame, std::uint8_t* buffer) = 0;
};

/// What became of a script: a clip, or the message that says why there is none.
struct ScriptResult {
    std::unique_ptr<Clip> clip;
    std::string error;  ///< UTF-8, empty if there is a clip
};

/// Runs the script file at `path`. Plug-ins are named relative to the directory of the program, with either
/// separator.
ScriptResult RunScript(const std::wstring& path);
