#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/vfw/compressor.h"
#include "video/avi/avi_frames.h"
#include "video/avi/video_samples.h"

/// A stream's own format, and the one that its decoder gives pictures in; both as in files.
struct DecoderFormats {
    std::vector<std::uint8_t> input;
    std::vector<std::uint8_t> output;

    FormatView Input() const { return {input.data(), static_cast<int>(input.size())}; }
    FormatView Output() const { return {output.data(), static_cast<int>(output.size())}; }
};

/// The pictures of a compressed stream in the order of display: frame i is the i-th picture.
///
/// Each sample gives one picture (an empty one that before it once more), but where pictures are stored out
/// of their order the decoder lags behind. So samples are fed ahead of the frame wanted, and at the end the
/// decoder is emptied.
///
/// Any other frame than the next is reached from a key sample. All samples before a key are displayed before
/// all from it on, so counting goes on from the key's number. Pictures that are displayed before the key but
/// stored behind it may refer to samples before it; then decoding starts again from keys before that one.
///
/// `DecodeFailed` for a sample that can't be decoded and for what refers to it or to samples before the first
/// one. Before the first key the decoder itself tells: a codec without references has its pictures there too.
class DecompressedFrames : public AviFrames {
public:
    /// `decoder` was located with these formats; `bytes` is the size of a frame.
    DecompressedFrames(VideoSamples samples, HIC decoder, DecoderFormats formats, std::size_t bytes);
    ~DecompressedFrames() override { ICDecompressEnd(decoder); }

    FrameResult Read(int frame, std::uint8_t* buffer) override;
    std::wstring Description() const override;

private:
    bool IsAhead(int frame);
    FrameResult DecodeFrom(int sample, int frame, std::uint8_t* buffer);
    FrameResult DecodeTo(int frame, std::uint8_t* buffer);
    int Feed(std::uint8_t* picture);

    VideoSamples samples;
    HIC decoder;
    DecoderFormats formats;
    std::size_t frameBytes;
    std::unique_ptr<std::uint8_t[]> passedOver;  // room for pictures on the way to the one wanted

    bool running = false;
    bool reorders = false;                     // the decoder lagged behind
    int start = 0;                             // the sample that decoding started at
    int nextSample = 0;                        // to be fed
    int nextFrame = 0;                         // to come out
    FrameResult readResult = FrameResult::Ok;  // of the last sample
    int unreadable;                            // the last sample that couldn't be read
};
