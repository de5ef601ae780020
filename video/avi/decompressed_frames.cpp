#include "video/avi/decompressed_frames.h"

#include <new>
#include <utility>

namespace {

/// A frame that fails after a start so many samples before it can't fail for being stored out of order:
/// codecs hold back at most 16 pictures.
constexpr int kRunUp = 64;

}  // namespace

DecompressedFrames::DecompressedFrames(VideoSamples videoSamples, HIC codec, DecoderFormats bothFormats,
                                       std::size_t bytes)
    : samples(std::move(videoSamples)),
      decoder(std::move(codec)),
      formats(std::move(bothFormats)),
      frameBytes(bytes),
      unreadable(samples.First() - 1) {}

FrameResult DecompressedFrames::Read(int frame, std::uint8_t* buffer) {
    const int from = samples.StartFor(frame);
    if (unreadable >= from && unreadable <= frame) return FrameResult::ReadFailed;

    FrameResult result = IsAhead(frame) ? DecodeTo(frame, buffer) : DecodeFrom(from, frame, buffer);
    // A decoder that has met damage on its way may need a new start to be trusted again.
    if (result == FrameResult::DecodeFailed && start < from) result = DecodeFrom(from, frame, buffer);
    while (result == FrameResult::DecodeFailed && reorders && start > samples.First() &&
           frame - start < kRunUp)
        result = DecodeFrom(samples.StartFor(start - 1), frame, buffer);
    return result;
}

/// Whether decoding comes to the frame as it goes on, with no key sample on the way that is a shorter one.
bool DecompressedFrames::IsAhead(int frame) {
    return running && (frame == nextFrame || (frame > nextFrame && samples.StartFor(frame) < nextSample));
}

FrameResult DecompressedFrames::DecodeFrom(int sample, int frame, std::uint8_t* buffer) {
    start = nextSample = nextFrame = sample;
    running = ICDecompressBegin(decoder, formats.Input(), formats.Output()) == ICERR_OK;
    return running ? DecodeTo(frame, buffer) : FrameResult::DecodeFailed;
}

FrameResult DecompressedFrames::DecodeTo(int frame, std::uint8_t* buffer) {
    if (nextFrame < frame && !passedOver) {
        passedOver.reset(new (std::nothrow) std::uint8_t[frameBytes]);
        if (!passedOver) return FrameResult::NoMemory;
    }
    while (true) {
        const bool isWanted = nextFrame == frame;
        const int answer = Feed(isWanted ? buffer : passedOver.get());
        if (answer == ICERR_NEEDMORE) {
            reorders = true;
            continue;
        }
        if (answer != ICERR_OK && answer != ICERR_DAMAGED) {
            running = false;
            return readResult != FrameResult::Ok ? readResult : FrameResult::DecodeFailed;
        }
        ++nextFrame;
        if (isWanted) return answer == ICERR_OK ? FrameResult::Ok : FrameResult::DecodeFailed;
    }
}

/// The decoder's answer to the next sample, or to the question for what it holds when there are no more.
int DecompressedFrames::Feed(std::uint8_t* picture) {
    DecompressInput input;
    std::uint32_t flags = 0;
    if (nextSample <= samples.Last()) {
        std::span<const std::uint8_t> bytes;
        readResult = samples.Read(nextSample, bytes);
        if (readResult == FrameResult::ReadFailed) unreadable = nextSample;
        if (readResult != FrameResult::Ok) return ICERR_ERROR;
        input = {bytes.data(), static_cast<int>(bytes.size()), nextSample};
        if (!samples.IsKey(nextSample)) flags = ICDECOMPRESS_NOTKEYFRAME;
        ++nextSample;
    }
    int sampleOfPicture = 0;
    return ICDecompress(decoder, flags, input, picture, sampleOfPicture);
}

std::wstring DecompressedFrames::Description() const {
    ICINFO info;
    const bool known = ICGetInfo(decoder, info) == ICERR_OK;
    return std::wstring(L"decompressor ") + (known ? info.szDescription : L"");
}
