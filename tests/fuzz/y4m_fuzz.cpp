#include <cwchar>
#include <vector>

#include "tests/fuzz/fuzz_input.h"
#include "video/raw_layout.h"
#include "video/sources/y4m_source.h"
#include "video/video_image.h"

namespace {

constexpr int kFrames = 6;
constexpr int kMaxBuffer = 1 << 20;

/// The bytes of a frame, or nothing if it can't be read or is too large for a fuzzer.
std::vector<std::uint8_t> Read(rkY4mSource& source, int frame, bool byNumber) {
    const int bytes = RawFrameBytes(source.GetColorSpace(), source.GetWidth(), source.GetHeight());
    Require(bytes > 0);
    if (bytes > kMaxBuffer) return {};
    std::vector<std::uint8_t> buffer(static_cast<std::size_t>(bytes));
    const int code = byNumber ? source.ReadFrame(buffer.data(), frame) : source.ReadNextFrame(buffer.data());
    return code == rkY4mSource::NoError ? buffer : std::vector<std::uint8_t>{};
}

}  // namespace

/// Opens the bytes as a Y4M file. Frames read in sequence and by number, the last first, must be the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size);
    rkY4mSource inSequence, byNumber;
    if (inSequence.Open(file.Path()) != rkY4mSource::NoError) return 0;
    Require(byNumber.Open(file.Path()) == rkY4mSource::NoError);

    std::vector<std::vector<std::uint8_t>> frames;
    for (int i = 0; i < kFrames; ++i) frames.push_back(Read(inSequence, i, false));
    for (int i = kFrames; i-- > 0;) {
        if (!byNumber.IsBadFrameNumber(i))
            Require(Read(byNumber, i, true) == frames[static_cast<std::size_t>(i)]);
    }

    rkVideoImage image;
    const bool read = inSequence.ReadFrameImage(image, 0) == rkY4mSource::NoError;
    if (read) Require(image.VisibleWidth() == inSequence.GetWidth() && image.Data() != nullptr);
    wchar_t text[40];
    inSequence.GetFullDescription(text, 40);
    Require(std::wcslen(text) < 40);
    return 0;
}
