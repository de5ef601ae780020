#pragma once

#include <cstdint>
#include <string>

#include "video/sources/file_source.h"

/// A bitmap of 24 bits a pixel as a video of one `RGB24` frame, which lies in memory from `Open` to `Close`.
///
/// The frame can be asked for by its number as often as needed, and once in sequence. Rows come bottom-up,
/// whatever their order in the file. Other depths, other headers, compressed and cut bitmaps are `BadFile`.
class rkBmpSource : public rkFileSource {
public:
    enum Error {
        NoError = 0,
        ReaderError = kReaderError,
        OpenFailed = 2,
        NoMemory = 3,
        BadFile = 4,
        BadFrameNumber = 5
    };

    rkBmpSource();

    int Open(const std::wstring& name);

    int ReadFrame(std::uint8_t* buffer, int frame) override;
    /// `ReaderError` once the frame was delivered.
    int ReadNextFrame(std::uint8_t* buffer) override;

    int Close() override;

private:
    std::wstring Description() const override;
    int OpenFile(const std::wstring& name);

    Kernels::BytePlane picture;  // the packed frame
};
