#include "video/sources/avi_source.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

#include "platform/byte_order.h"
#include "platform/text.h"
#include "platform/vfw/compressor.h"
#include "platform/vfw/surface_format.h"
#include "video/avi/avi_file_parser.h"
#include "video/avi/avi_opendml_parser.h"
#include "video/avi/decompressed_frames.h"
#include "video/avi/raw_frames.h"
#include "video/avi/video_samples.h"
#include "video/color_space.h"
#include "video/raw_layout.h"

namespace {

constexpr std::array<const wchar_t*, 16> kErrorTexts = {
    L"No error occured!",       // NoError
    L"Error in decompressor!",  // DecompressorError
    L"Failed to open file! File is missed or corrupted or required codecs are not installed.",
    L"Failed to open video stream! File is missed or corrupted or required codecs are not installed.",
    L"Null pointer occured!",  // NullPointer
    L"Failed to read frame!",  // ReadFailed
    L"Failed to decompress frame! Maybe required codecs are not installed.",
    L"Failed to get stream format! File is missed or corrupted or required codecs are not installed.",
    L"Failed to start decompress! File is missed or corrupted or required codecs are not installed.",
    L"Not enough memory!",         // NoMemory
    L"Bad frame number occured!",  // BadFrameNumber
    L"Failed ro read from stream! File is missed or corrupted.",
    L"Stream contains bad format data!",
    L"Can't find suitable decompressor!",
    L"Can't start decompressing! File is missed or corrupted or required codecs are not installed.",
    L"This uncompressed avi has unsupported color space!",
};
static_assert(kErrorTexts.size() == rkAviSource::UnsupportedColorSpace + 1);

/// What `SampleLayout` answers where samples aren't frames of a layout.
constexpr int kCompressed = -1;
constexpr int kUnreadableDepth = -2;

/// The layout of the frames that a stream's samples are.
int SampleLayout(std::uint32_t handler, const BITMAPINFOHEADER& format, bool hasUsualMasks) {
    if (format.biCompression == kBitFields && !hasUsualMasks) return kUnreadableDepth;
    const std::uint32_t compression = format.biCompression == kBitFields ? 0 : format.biCompression;
    const bool isDib = handler == kFccDib || handler == kFccDibZero;
    if (handler == kFccYv12 || (compression == kFccYv12 && (isDib || handler == kFccYuy2 || handler == 0)))
        return YV12;
    if (handler == kFccYuy2 || (compression == kFccYuy2 && isDib)) return YUY2;
    // A code of a codec is right even if the handler claims an uncompressed stream.
    if (compression != 0 || (handler != 0 && !isDib)) return kCompressed;
    if (format.biBitCount == 24) return RGB24;
    return format.biBitCount == 32 ? RGB32 : kUnreadableDepth;
}

/// Whether the three masks behind the header, if there are any, are those of B, G, R bytes.
bool HasUsualMasks(const std::vector<std::uint8_t>& format) {
    constexpr std::uint32_t kMasks[] = {0xFF0000, 0xFF00, 0xFF};
    const std::uint8_t* mask = format.data() + kBitmapFormatBytes;
    if (format.size() < kBitmapFormatBytes + sizeof(kMasks)) return true;
    return std::all_of(std::begin(kMasks), std::end(kMasks), [&](std::uint32_t usual) {
        return LoadLe<std::uint32_t>(std::exchange(mask, mask + sizeof(usual))) == usual;
    });
}

/// Whether a packed frame of that layout has every sample that a file has: odd sides with halved chroma need
/// more.
bool FitsPackedFrame(int layout, int width, int height) {
    return rkIsRgb(layout) || (width % 2 == 0 && (layout == YUY2 || height % 2 == 0));
}

/// What decoders are asked for, in this order, as layouts and in their own terms.
constexpr struct {
    int layout;
    Surface surface;
} kDecoded[] = {{YV12, Surface::YV12}, {YUY2, Surface::YUY2}, {RGB24, Surface::RGB24}};

/// A side of the picture: the format's, or without one the distance of the frame rectangle's edges. 0 if it
/// is none.
int Side(std::int64_t inFormat, std::int64_t from, std::int64_t to) {
    const std::int64_t side = inFormat != 0 ? inFormat : std::abs(to - from);
    return side > 0 && side <= std::numeric_limits<int>::max() ? static_cast<int>(side) : 0;
}

}  // namespace

rkAviSource::rkAviSource() : rkFileSource(kErrorTexts, NoMemory) {}

int rkAviSource::Open(const std::wstring& name, bool preferPlanar, bool useAviFile) {
    Close();
    int result = NoError;
    try {
        result = OpenStream(name, useAviFile);
        if (result == NoError) result = OpenFrames(preferPlanar, useAviFile);
    } catch (const std::bad_alloc&) {
        result = NoMemory;
    }
    if (result != NoError) Close();
    fileName = name;
    return result;
}

int rkAviSource::OpenStream(const std::wstring& name, bool useAviFile) {
    if (useAviFile) {
        container = std::make_unique<rkAviFileParser>(name);
    } else {
        container = std::make_unique<rkAviOpenDMLParser>(name);
    }
    if (container->Failed()) return OpenFailed;
    stream = container->GetStream(0, rkStreamContainer::Video);
    if (stream == nullptr) return OpenStreamFailed;
    if (const int result = ReadFormat(); result != NoError) return result;

    firstFrame = position = stream->GetStart();
    const int count = stream->GetLength();
    if (count <= 0 || firstFrame < 0 || count > std::numeric_limits<int>::max() - firstFrame)
        return BadFormat;
    SetFrameCount(static_cast<std::uint64_t>(count));
    return NoError;
}

int rkAviSource::ReadFormat() {
    if (!stream->GetStreamInfo(&streamInfo)) return NoFormat;
    const int size = stream->GetFormatSize();
    if (size < kBitmapFormatBytes) return NoFormat;
    formatBytes.resize(static_cast<std::size_t>(size));
    if (!stream->GetFormat(formatBytes.data(), size)) return NoFormat;
    format = LoadBitmapFormat(formatBytes.data());

    const auto& rect = streamInfo.rcFrame;
    width = Side(format.biWidth, rect.left, rect.right);
    height = Side(std::abs(std::int64_t{format.biHeight}), rect.top, rect.bottom);
    return width > 0 && height > 0 ? NoError : BadFormat;
}

int rkAviSource::OpenFrames(bool preferPlanar, bool useAviFile) {
    const int layout = SampleLayout(streamInfo.fccHandler, format, HasUsualMasks(formatBytes));
    if (layout == kUnreadableDepth) return OpenFailed;
    const bool isRaw = layout != kCompressed && FitsPackedFrame(layout, width, height);
    const bool planar = preferPlanar && width % 4 == 0 && height % 2 == 0;
    const int result = isRaw ? OpenRaw(layout) : OpenCompressed(planar, useAviFile);
    if (result != NoError) return result;
    holdsFrame = true;
    return NoError;
}

int rkAviSource::OpenRaw(int layout) {
    if (PackedFrameBytes(layout, width, height) == 0) return BadFormat;
    colorSpace = layout;
    frames = std::make_unique<RawFrames>(*stream, layout, width, height, format.biHeight < 0);
    return NoError;
}

int rkAviSource::OpenCompressed(bool planar, bool useAviFile) {
    if (PackedFrameBytes(RGB24, width, height) == 0) return BadFormat;
    // Streams behind the file interface number their key samples as all others.
    VideoSamples samples(*stream, !useAviFile);
    DecompressInput firstSample;
    const auto bytes = samples.ReadFirstFilled(firstSample.sample);
    firstSample.data = bytes.data();
    firstSample.size = static_cast<int>(bytes.size());

    DecoderFormats formats = {formatBytes, std::vector<std::uint8_t>(kBitmapFormatBytes)};
    HIC decoder;
    for (const auto& [layout, surface] : kDecoded) {
        if (!planar && layout != RGB24) continue;
        colorSpace = layout;
        StoreBitmapFormat(FormatOf(surface, width, height), formats.output.data());
        decoder = ICLocate(kFccVideoCodec, streamInfo.fccHandler, formats.Input(), formats.Output(),
                           IcMode::Decompress, firstSample);
        if (decoder) break;
    }
    if (!decoder) return NoDecompressor;
    if (ICDecompressBegin(decoder, formats.Input(), formats.Output()) != ICERR_OK)
        return planar ? StartFailed : StartRgbFailed;

    const auto frameBytes = static_cast<std::size_t>(PackedFrameBytes(colorSpace, width, height));
    frames = std::make_unique<DecompressedFrames>(std::move(samples), std::move(decoder), std::move(formats),
                                                  frameBytes);
    return NoError;
}

int rkAviSource::ReadNextFrame(std::uint8_t* buffer) {
    if (IsEndOfVideo()) return NoError;
    if (buffer == nullptr) return NullPointer;
    const FrameResult result = frames->Read(position, buffer);
    if (result == FrameResult::Ok) ++position;
    return static_cast<int>(result);
}

int rkAviSource::ReadFrame(std::uint8_t* buffer, int frame) {
    if (IsBadFrameNumber(frame)) return BadFrameNumber;
    position = frame;
    return ReadNextFrame(buffer);
}

int rkAviSource::Close() {
    frames.reset();
    stream = nullptr;
    container.reset();
    streamInfo = {};
    formatBytes.clear();
    format = {};
    firstFrame = 0;
    return rkFileSource::Close();
}

/// A rate that can't be told in two ints is unknown.
bool rkAviSource::HasRate() const {
    constexpr std::uint32_t kMax = std::numeric_limits<int>::max();
    return streamInfo.dwScale > 0 && streamInfo.dwScale <= kMax && streamInfo.dwRate <= kMax;
}

int rkAviSource::GetRate() {
    return HasRate() ? static_cast<int>(streamInfo.dwRate) : 0;
}

int rkAviSource::GetScale() {
    return HasRate() ? static_cast<int>(streamInfo.dwScale) : 1;
}

std::wstring rkAviSource::Description() const {
    if (!frames) return L"";
    const wchar_t* layout = colorSpace == RGB24   ? L"RGB24"
                            : colorSpace == RGB32 ? L"RGB32"
                                                  : rkColorSpaceName(colorSpace);
    std::wstring text = std::wstring(L"reading ") + layout + L", " + frames->Description();
    // A script's stream tells by its name how its samples came to this layout.
    const std::wstring name(streamInfo.szName, wcsnlen(streamInfo.szName, std::size(streamInfo.szName)));
    return name.empty() ? text : text + L", " + name;
}

void rkAviSource::GetFullDescription(wchar_t* buffer, int size) {
    const std::wstring file = fileName.empty() ? L"" : L"file \"" + fileName + L"\", ";
    CopyText(file + Description(), buffer, size);
}
