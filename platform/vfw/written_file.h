#pragma once

#include "platform/vfw/avi_file_base.h"
#include "platform/vfw/avi_writer.h"

/// An AVI file that is being written, with one video stream.
class WrittenFile : public AviFile {
public:
    /// Makes or empties the file; null if it may not be written.
    static std::shared_ptr<WrittenFile> Open(const std::wstring& path);

    std::uint32_t StreamCount() const override { return hasStream ? 1 : 0; }
    /// Null for a second stream, for another kind than video, and without a rate.
    std::shared_ptr<AviStream> CreateStream(const std::shared_ptr<AviFile>& self,
                                            const AVISTREAMINFOW& info) override;
    bool Complete() override { return writer.Close(); }

private:
    AviWriter writer;
    bool hasStream = false;
};
