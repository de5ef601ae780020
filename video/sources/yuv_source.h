#pragma once

#include <cstdint>
#include <string>

#include "platform/file.h"
#include "video/sources/file_source.h"

/// Headerless raw video: frames of one fixed size, nothing between them. A partial last frame isn't counted.
/// Closed until `Open` succeeds.
class rkYuvSource : public rkFileSource {
public:
    enum Error {
        NoError = 0,
        ReaderError = kReaderError,
        OpenFailed = 2,
        ReadFailed = 3,
        BadFrameNumber = 4
    };

    rkYuvSource();

    /// `OpenFailed` also for a layout that no raw file has, a side below 1 and a frame of 2^31 bytes or more.
    int Open(const std::wstring& name, int layout, int pictureWidth, int pictureHeight);

    /// `buffer` has room for `RawFrameBytes` of the layout and the sides.
    int ReadFrame(std::uint8_t* buffer, int frame) override;

    /// Leaves the buffer as it is behind the last frame, which is no error.
    int ReadNextFrame(std::uint8_t* buffer) override;

    int Close() override;

private:
    ReadOnlyFile file;
    int frameBytes = 0;
};
