#include "video/sources/yuv_source.h"

#include "video/frame_bytes.h"
#include "video/raw_layout.h"

#include <array>

namespace {

constexpr std::array<const wchar_t*, 5> kErrorTexts = {
    L"No error occured!",                                  // NoError
    L"Error in YUV reader!",                               // ReaderError
    L"Failed to open file! File is missed or corrupted.",  // OpenFailed
    L"Failed to read frame!",                              // ReadFailed
    L"Bad frame number occured!",                          // BadFrameNumber
};
static_assert(kErrorTexts.size() == rkYuvSource::BadFrameNumber + 1);

}  // namespace

rkYuvSource::rkYuvSource() : rkFileSource(kErrorTexts) {}

int rkYuvSource::Open(const std::wstring& name, int layout, int pictureWidth, int pictureHeight) {
    Close();
    fileName = name;
    const int bytes = RawFrameBytes(layout, pictureWidth, pictureHeight);
    if (bytes == 0 || !file.Open(name)) return OpenFailed;

    const std::uint64_t frames = file.Size() / static_cast<std::uint64_t>(bytes);
    holdsFrame = frames > 0;
    SetShape(layout, pictureWidth, pictureHeight);
    SetFrameCount(frames);
    frameBytes = bytes;
    return NoError;
}

int rkYuvSource::ReadFrame(std::uint8_t* buffer, int frame) {
    if (IsBadFrameNumber(frame)) return BadFrameNumber;
    position = frame;
    return ReadNextFrame(buffer);
}

int rkYuvSource::ReadNextFrame(std::uint8_t* buffer) {
    if (IsEndOfVideo()) return NoError;
    const auto bytes = static_cast<std::size_t>(frameBytes);
    const std::uint64_t offset = static_cast<std::uint64_t>(position) * bytes;
    ++position;
    const std::size_t needed = BytesToRead(bytes);
    return buffer != nullptr && ReadFrameBytes(file, offset, buffer, needed) == needed ? NoError : ReadFailed;
}

int rkYuvSource::Close() {
    file.Close();
    frameBytes = 0;
    return rkFileSource::Close();
}
