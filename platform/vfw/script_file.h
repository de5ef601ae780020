#pragma once

#include "platform/script_host/clip.h"
#include "platform/vfw/avi_file_base.h"

/// A script's clip as a file with one uncompressed video stream.
///
/// The stream's handler and compression are "YV12" or "YUY2", or "DIB " and 0 for RGB24; its name is the
/// clip's description. Every sample is a key frame of `SurfaceBytes` bytes.
class ScriptFile : public AviFile {
public:
    /// Runs the script. Null if `path` doesn't end in ".avs" or can't be read.
    static std::shared_ptr<ScriptFile> Open(const std::wstring& path);

    std::uint32_t StreamCount() const override { return clip ? 1 : 0; }
    std::shared_ptr<AviStream> GetStream(const std::shared_ptr<AviFile>& self, int number) override;
    const std::string& ScriptError() const override { return error; }

private:
    explicit ScriptFile(ScriptResult result);

    std::unique_ptr<Clip> clip;
    std::string error;
};
