#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "video/avi/avi_frames.h"
#include "video/raw_data_stream.h"

/// Frames that stand in the samples as they are: `RGB24`, `RGB32`, `YUY2` of even widths, `YV12` of even
/// sides.
///
/// A sample is one frame without gaps between its rows, which `RGB24` fills up to a multiple of 4 bytes. One
/// of another size, an empty one included, is `ReadFailed`. Refers to the stream.
class RawFrames : public AviFrames {
public:
    /// `topDown` says that rows of RGB are stored from the top; they come out from the bottom. Planar and
    /// interleaved YUV rows are stored from the top always, and come out so. The frame is below 2 GiB.
    RawFrames(rkIRawDataStream& stream, int colorSpace, int width, int height, bool topDown);

    FrameResult Read(int frame, std::uint8_t* buffer) override;
    std::wstring Description() const override { return L"raw stream"; }

private:
    void SpreadRows(std::uint8_t* rows) const;

    rkIRawDataStream& stream;
    std::size_t storedRowBytes;  // of the first plane, in the sample
    std::size_t packedRowBytes;  // in the frame handed over
    std::size_t height;
    int sampleBytes;
    bool turned;
};
