#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file.h"
#include "video/sources/file_source.h"
#include "video/sources/y4m_header.h"
#include "video/sources/y4m_layout.h"

/// Reads YUV4MPEG2 files. The distance from the first frame mark to the second, or to the end of the file,
/// decides which of the layouts that the header allows the pictures are stored in; see `Y4mLayouts`.
///
/// Frame lines may be of any length, so where a frame starts is learnt by reading up to it. The frame count
/// comes from the file's size; if the first frame line carries parameters, from a walk over the frame lines.
/// Reading a frame that isn't there gives `ReadFailed`. Closed until `Open` succeeds.
class rkY4mSource : public rkFileSource {
public:
    enum Error {
        NoError = 0,
        ReaderError = kReaderError,
        OpenFailed = 2,
        ReadFailed = 3,
        BadFrameNumber = 4,
        BadHeader = 5
    };

    rkY4mSource();

    int Open(const std::wstring& name);

    /// `buffer` has room for `RawFrameBytes` of `GetColorSpace()` and the sides. A frame that wasn't read yet
    /// is reached by the frame lines alone.
    int ReadFrame(std::uint8_t* buffer, int frame) override;
    int ReadNextFrame(std::uint8_t* buffer) override;

    int Close() override;

    /// What the file says of itself. The comment is the last one read, frame lines included.
    const Y4mHeader& GetHeader() const { return header; }

private:
    std::wstring Description() const override;
    int OpenFile(const std::wstring& name);
    bool ReadHeader();
    Y4mLayout FittingLayout(const std::vector<Y4mLayout>& layouts);
    bool StartsFrame(std::uint64_t offset);
    bool FrameLineHasParameters();
    void CountFrames();
    bool FindFrame(int frame);
    bool AppendOffset(std::uint64_t offset);
    template <std::size_t size>
    std::string_view ReadText(std::uint64_t offset, std::array<char, size>& text);
    bool TakeFailure() { return std::exchange(hasFailed, false); }

    ReadOnlyFile file;
    bool hasFailed = false;  // bytes that the file holds, or memory, couldn't be had
    Y4mHeader header;
    Y4mLayout layout;
    Kernels::BytePlane storedPicture;         // a picture as in the file, if that isn't the frame
    std::vector<std::uint64_t> frameOffsets;  // starts of the frames known; one is the end of the one before
};
