#include "video/sources/file_source.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <new>

#include "platform/text.h"
#include "video/color_space.h"
#include "video/raw_layout.h"
#include "video/video_image.h"

/// `read` fills a buffer with a packed frame; `isRead` tells then whether it did.
template <class Read, class IsRead>
int rkFileSource::ReadImage(rkVideoImage& image, const Read& read, const IsRead& isRead) {
    if (!holdsFrame) return read(nullptr);
    try {
        image.Create(width, height, colorSpace, 0);
    } catch (const std::exception&) {
        return noMemoryCode;
    }
    const int result = read(image.Data());
    if (result == 0 && isRead()) image.UnpackFrame(lumaOnly ? 1 : 3);
    return result;
}

int rkFileSource::ReadFrameImage(rkVideoImage& image, int frame) {
    return ReadImage(
        image, [this, frame](std::uint8_t* buffer) { return ReadFrame(buffer, frame); }, [] { return true; });
}

int rkFileSource::ReadNextFrameImage(rkVideoImage& image) {
    // Behind the last frame some sources have no error and no frame.
    return ReadImage(
        image, [this](std::uint8_t* buffer) { return ReadNextFrame(buffer); },
        [this, before = position] { return position != before; });
}

int rkFileSource::Close() {
    fileName.clear();
    holdsFrame = lumaOnly = false;
    SetShape(0, 0, 0);
    frameCount = 0;
    position = 0;
    return 0;
}

std::wstring rkFileSource::Description() const {
    return L"width " + std::to_wstring(width) + L" height " + std::to_wstring(height) + L" colorspace " +
           rkColorSpaceName(colorSpace);
}

void rkFileSource::GetDescription(wchar_t* buffer, int size) {
    CopyText(Description(), buffer, size);
}

void rkFileSource::GetFullDescription(wchar_t* buffer, int size) {
    const std::wstring file = fileName.empty() ? L"" : L"file \"" + fileName + L"\" ";
    CopyText(file + Description(), buffer, size);
}

void rkFileSource::GetErrorText(int code, wchar_t* buffer, int size) {
    const std::wstring file = fileName.empty() ? L"" : L"Error when reading file \"" + fileName + L"\": ";
    const auto index = static_cast<std::size_t>(code);
    const bool known = code >= 0 && index < errorTexts.size();
    CopyText(file + (known ? errorTexts[index] : L"Unrecognized error!"), buffer, size);
}

void rkFileSource::SetShape(int layout, int pictureWidth, int pictureHeight) {
    colorSpace = layout;
    width = pictureWidth;
    height = pictureHeight;
}

std::size_t rkFileSource::BytesToRead(std::size_t frameBytes) const {
    const bool isApart = rkIsYuv(colorSpace) && rkPlaneShapeOf(colorSpace).planes == 3;
    return lumaOnly && isApart ? PackedPlaneOf(colorSpace, width, height, 1).offset : frameBytes;
}

void rkFileSource::SetFrameCount(std::uint64_t frames) {
    frameCount = static_cast<int>(std::min<std::uint64_t>(frames, std::numeric_limits<int>::max()));
}

bool rkFileSource::Allocate(Kernels::BytePlane& block, int bytes) {
    try {
        block.reset(static_cast<std::uint8_t*>(Kernels::AllocZeroed(static_cast<std::size_t>(bytes))));
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}
