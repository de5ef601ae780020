#include "video/sources/y4m_source.h"

#include "video/frame_bytes.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace {

constexpr std::array<const wchar_t*, 6> kErrorTexts = {
    L"No error occured!",                                  // NoError
    L"Error in YUV reader!",                               // ReaderError
    L"Failed to open file! File is missed or corrupted.",  // OpenFailed
    L"Failed to read frame!",                              // ReadFailed
    L"Bad frame number occured!",                          // BadFrameNumber
    L"Cannot poarse y4m header!",                          // BadHeader
};
static_assert(kErrorTexts.size() == rkY4mSource::BadHeader + 1);

/// The shortest frame line: the mark and its line feed.
constexpr std::size_t kShortestFrameLine = kY4mFrameMark.size() + 1;

using FrameLineText = std::array<char, kY4mLongestFrameLine>;

}  // namespace

rkY4mSource::rkY4mSource() : rkFileSource(kErrorTexts) {}

int rkY4mSource::Open(const std::wstring& name) {
    Close();
    const int result = OpenFile(name);
    if (result != NoError) Close();
    fileName = name;
    return result;
}

int rkY4mSource::OpenFile(const std::wstring& name) {
    if (!file.Open(name)) return OpenFailed;
    if (!ReadHeader()) return BadHeader;
    const std::vector<Y4mLayout> layouts = Y4mLayouts(header);
    if (layouts.empty()) return BadHeader;
    layout = FittingLayout(layouts);

    const std::uint64_t available = std::max(file.Size(), frameOffsets[0]) - frameOffsets[0];
    const auto pictureBytes = static_cast<std::uint64_t>(layout.storedBytes);
    if (available >= pictureBytes) {
        holdsFrame = true;
        if (!layout.IsStoredAsHandedOver() && !Allocate(storedPicture, layout.storedBytes)) return OpenFailed;
    }
    SetShape(layout.colorSpace, layout.width, layout.height);
    SetFrameCount(available / (pictureBytes + kShortestFrameLine));
    if (FrameLineHasParameters()) CountFrames();
    return TakeFailure() ? OpenFailed : NoError;
}

/// Reads the text from `offset` on, at most the array's size.
template <std::size_t size>
std::string_view rkY4mSource::ReadText(std::uint64_t offset, std::array<char, size>& text) {
    const std::size_t read = file.ReadAt(offset, text.data(), size);
    if (read < size && offset + read < file.Size()) hasFailed = true;
    return {text.data(), read};
}

bool rkY4mSource::FrameLineHasParameters() {
    FrameLineText text;
    return FindY4mFrameLine(ReadText(frameOffsets[0], text)).bytes > kShortestFrameLine;
}

/// Longer frame lines than the shortest: the size alone says too many frames, so the file is walked.
void rkY4mSource::CountFrames() {
    if (!FindFrame(frameCount)) frameCount = static_cast<int>(frameOffsets.size()) - 1;
}

/// Parses the header and learns where frame 0 starts.
bool rkY4mSource::ReadHeader() {
    std::array<char, kY4mSignature.size() + kY4mMaxParameters> text;
    std::string_view line = ReadText(0, text);
    const auto end = line.find('\n');
    if (!line.starts_with(kY4mSignature) || end == line.npos) return false;

    const auto parsed = ParseY4mParameters(line.substr(kY4mSignature.size(), end - kY4mSignature.size()));
    if (!parsed) return false;
    header = *parsed;
    return AppendOffset(end + 1);
}

Y4mLayout rkY4mSource::FittingLayout(const std::vector<Y4mLayout>& layouts) {
    FrameLineText text;
    const std::uint64_t picture = frameOffsets[0] + FindY4mFrameLine(ReadText(frameOffsets[0], text)).bytes;
    const auto fits = [&](const Y4mLayout& candidate) {
        return StartsFrame(picture + static_cast<std::uint64_t>(candidate.storedBytes));
    };
    const auto found = std::find_if(layouts.begin(), layouts.end(), fits);
    return found != layouts.end() ? *found : layouts.front();
}

/// Whether the file ends at `offset` or goes on with a frame mark, or with what a cut file has of one.
bool rkY4mSource::StartsFrame(std::uint64_t offset) {
    if (offset > file.Size()) return false;
    std::array<char, kY4mFrameMark.size()> mark;
    return kY4mFrameMark.starts_with(ReadText(offset, mark));
}

int rkY4mSource::ReadFrame(std::uint8_t* buffer, int frame) {
    if (IsBadFrameNumber(frame)) return BadFrameNumber;
    if (!FindFrame(frame)) {
        TakeFailure();
        position = 0;
        return ReadFailed;
    }
    position = frame;
    return ReadNextFrame(buffer);
}

/// Learns the starts of the frames up to this one. False if the file ends before it, or after a failure.
bool rkY4mSource::FindFrame(int frame) {
    while (frameOffsets.size() <= static_cast<std::size_t>(frame)) {
        FrameLineText text;
        const std::uint64_t start = frameOffsets.back();
        const std::uint64_t end = start + FindY4mFrameLine(ReadText(start, text)).bytes +
                                  static_cast<std::uint64_t>(layout.storedBytes);
        if (hasFailed || end > file.Size()) return false;
        hasFailed = !AppendOffset(end);
    }
    return !hasFailed;
}

int rkY4mSource::ReadNextFrame(std::uint8_t* buffer) {
    const auto frame = static_cast<std::size_t>(position);
    if (position < std::numeric_limits<int>::max()) ++position;
    // Behind a frame that couldn't be read there is no knowing where the next one starts.
    if (frame >= frameOffsets.size()) return ReadFailed;

    FrameLineText text;
    const Y4mFrameLine line = FindY4mFrameLine(ReadText(frameOffsets[frame], text));
    if (TakeFailure()) return ReadFailed;  // where the picture starts is unknown
    TakeY4mComment(line.parameters, header.comment);

    const std::uint64_t offset = frameOffsets[frame] + line.bytes;
    const auto bytes = static_cast<std::size_t>(layout.storedBytes);
    const bool isAsHandedOver = layout.IsStoredAsHandedOver();
    std::uint8_t* picture = isAsHandedOver ? buffer : storedPicture.get();
    const std::size_t needed = isAsHandedOver ? BytesToRead(bytes) : bytes;
    if (buffer == nullptr || picture == nullptr) return ReadFailed;
    if (ReadFrameBytes(file, offset, picture, needed) != needed) return ReadFailed;
    if (picture != buffer) UnpackY4mPicture(layout, picture, buffer);

    if (frame + 1 == frameOffsets.size() && !AppendOffset(offset + bytes)) return ReaderError;
    frameCount = std::max(frameCount, position);
    return NoError;
}

/// False without memory.
bool rkY4mSource::AppendOffset(std::uint64_t offset) {
    try {
        frameOffsets.push_back(offset);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

int rkY4mSource::Close() {
    file.Close();
    hasFailed = false;
    header = {};
    layout = {};
    storedPicture.reset();
    frameOffsets.clear();
    return rkFileSource::Close();
}

std::wstring rkY4mSource::Description() const {
    return rkFileSource::Description() + Y4mLayoutRemark(layout);
}
