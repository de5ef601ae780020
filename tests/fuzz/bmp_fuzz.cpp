#include <vector>

#include "tests/fuzz/fuzz_input.h"
#include "video/raw_layout.h"
#include "video/sources/bmp_source.h"
#include "video/sources/bmp_writer.h"
#include "video/video_image.h"

namespace {

std::vector<std::uint8_t> ReadFrame(rkBmpSource& source) {
    const int bytes = PackedFrameBytes(RGB24, source.GetWidth(), source.GetHeight());
    std::vector<std::uint8_t> frame(static_cast<std::size_t>(bytes));
    Require(source.ReadFrame(frame.data(), 0) == rkBmpSource::NoError);
    return frame;
}

}  // namespace

/// Opens the bytes as a bitmap. A frame that is read, then written, must come back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size), copy(nullptr, 0);
    rkBmpSource source;
    if (source.Open(file.Path()) != rkBmpSource::NoError) return 0;
    std::vector<std::uint8_t> frame = ReadFrame(source);

    rkBmpWriter writer;
    Require(writer.Open(copy.Path(), source.GetWidth(), source.GetHeight()) == rkBmpWriter::NoError);
    Require(writer.WriteFrame(frame.data()) == rkBmpWriter::NoError);
    rkBmpSource again;
    Require(again.Open(copy.Path()) == rkBmpSource::NoError && ReadFrame(again) == frame);

    rkVideoImage image;
    Require(source.ReadFrameImage(image, 0) == rkBmpSource::NoError);
    Require(image.VisibleWidth() == source.GetWidth() && image.VisibleHeight() == source.GetHeight());
    return 0;
}
