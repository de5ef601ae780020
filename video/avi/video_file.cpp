#include "video/avi/video_file.h"

#include <iterator>
#include <utility>

#include "platform/text.h"
#include "platform/vfw/surface_format.h"
#include "video/avi/avi_file_writer.h"
#include "video/file_kind.h"
#include "video/sources/bmp_writer.h"

namespace {

constexpr wchar_t kDefaultTitle[] = L"Created by RKVideoLibrary rkVideoFile";

// The frame rate of a file that nobody gave one: 29.97 a second.
constexpr int kDefaultScale = 100;
constexpr int kDefaultRate = 2997;

AVISTREAMINFOW StreamInfo(int width, int height, int scale, int rate, const std::wstring& title) {
    AVISTREAMINFOW info = {};
    info.fccType = kFccVideo;
    info.dwScale = static_cast<std::uint32_t>(scale);
    info.dwRate = static_cast<std::uint32_t>(rate);
    info.rcFrame = {0, 0, width, height};
    CopyText(title.empty() ? kDefaultTitle : title, info.szName, static_cast<int>(std::size(info.szName)));
    return info;
}

}  // namespace

bool rkVideoFile::Fail(Error error) {
    lastError = error;
    return false;
}

template <class Writer, class Open>
bool rkVideoFile::OpenWith(const Open& open) {
    auto opened = std::make_unique<Writer>();
    writerResult = open(*opened);
    if (writerResult != 0) return Fail(WriterFailed);
    framesWritten = 0;
    writer = std::move(opened);
    return true;
}

bool rkVideoFile::OpenWriter(const std::wstring& fileName, int width, int height) {
    if (!writer && rkIsBmpName(fileName))
        return OpenWith<rkBmpWriter>([&](rkBmpWriter& bmp) { return bmp.Open(fileName, width, height); });
    return OpenWriterWithSettings(fileName, width, height, kDefaultScale, kDefaultRate, {});
}

bool rkVideoFile::OpenWriterWithSettings(const std::wstring& fileName, int width, int height, int scale,
                                         int rate, const rkCompressorSettings& settings) {
    if (writer) return Fail(AlreadyOpen);
    if (width <= 0 || height <= 0 || scale <= 0 || rate <= 0) return Fail(BadSize);
    const AVISTREAMINFOW info = StreamInfo(width, height, scale, rate, streamTitle);
    const BITMAPINFOHEADER format = FormatOf(Surface::RGB24, width, height);
    return OpenWith<rkAviFileWriter>(
        [&](rkAviFileWriter& avi) { return avi.OpenWithSettings(fileName, &format, &info, settings); });
}

bool rkVideoFile::WriteImage(rkVideoImage& image) {
    if (!writer) return Fail(NotOpen);
    writerResult = writer->WriteFrameImage(image);
    if (writerResult != 0) return Fail(WriterFailed);
    ++framesWritten;
    return true;
}

bool rkVideoFile::CloseWriter() {
    if (!writer) return true;
    writerResult = std::exchange(writer, nullptr)->Close();
    return writerResult == 0 || Fail(WriterFailed);
}
