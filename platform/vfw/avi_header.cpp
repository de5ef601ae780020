#include "platform/vfw/avi_header.h"

#include "platform/byte_order.h"
#include "platform/text.h"
#include "platform/vfw/avi_format.h"
#include "platform/vfw/riff_bytes.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace {

constexpr std::uint32_t kHasIndex = 0x10;  // flags of `avih`
constexpr std::uint32_t kIsInterleaved = 0x100;
constexpr std::uint32_t kTrustChunkType = 0x800;

std::uint32_t MicrosecondsPerSample(const AVISTREAMINFOW& stream) {
    const std::uint64_t time = (std::uint64_t{1000000} * stream.dwScale + stream.dwRate / 2) / stream.dwRate;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(time, UINT32_MAX));
}

void WriteMainHeader(const AviHeader& header, RiffBytes& out) {
    const BITMAPINFOHEADER format = LoadBitmapFormat(header.format.data());
    const std::size_t chunk = out.BeginChunk(kFccAvih);
    out.U32(MicrosecondsPerSample(header.stream));
    out.U32(0);  // bytes a second, unknown
    out.U32(0);  // padding
    out.U32(kIsInterleaved | kTrustChunkType | (header.hasOldIndex ? kHasIndex : 0));
    out.U32(header.samplesInFirst);
    out.U32(0);  // initial frames
    out.U32(1);  // streams
    out.U32(header.largestSample);
    out.U32(static_cast<std::uint32_t>(format.biWidth));
    out.U32(static_cast<std::uint32_t>(format.biHeight < 0 ? -format.biHeight : format.biHeight));
    out.Zeros(16);
    out.EndChunk(chunk);
}

void WriteStreamHeader(const AviHeader& header, RiffBytes& out) {
    const AVISTREAMINFOW& stream = header.stream;
    const std::size_t chunk = out.BeginChunk(kFccStrh);
    out.U32(stream.fccType);
    out.U32(stream.fccHandler);
    out.U32(stream.dwFlags);
    out.U16(stream.wPriority);
    out.U16(stream.wLanguage);
    out.U32(stream.dwInitialFrames);
    out.U32(stream.dwScale);
    out.U32(stream.dwRate);
    out.U32(stream.dwStart);
    out.U32(header.samples);
    out.U32(header.largestSample);
    out.U32(stream.dwQuality);
    out.U32(stream.dwSampleSize);
    for (const std::int32_t side :
         {stream.rcFrame.left, stream.rcFrame.top, stream.rcFrame.right, stream.rcFrame.bottom}) {
        out.U16(static_cast<std::uint16_t>(side));
    }
    out.EndChunk(chunk);
}

void WriteChunk(std::uint32_t type, std::span<const std::uint8_t> bytes, RiffBytes& out) {
    const std::size_t chunk = out.BeginChunk(type);
    out.Append(bytes);
    out.EndChunk(chunk);
}

void WriteName(const AVISTREAMINFOW& stream, RiffBytes& out) {
    std::wstring_view name(stream.szName, std::size(stream.szName));
    name = name.substr(0, name.find(L'\0'));
    if (name.empty()) return;
    const std::string text = ToUtf8(name) + '\0';
    WriteChunk(kFccStrn, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, out);
}

/// The index of the index chunks, with room for all that may come.
void WriteSuperIndex(const AviHeader& header, RiffBytes& out) {
    const std::size_t chunk = out.BeginChunk(kFccIndx);
    out.U16(kSuperIndexEntryBytes / 4);
    out.U8(0);
    out.U8(kIndexOfIndexes);
    out.U32(static_cast<std::uint32_t>(header.indexChunks.size()));
    out.U32(header.SampleChunk());
    out.Zeros(12);
    for (const AviHeader::IndexChunk& index : header.indexChunks) {
        out.U64(index.offset);
        out.U32(index.bytes);
        out.U32(index.samples);
    }
    out.Zeros(kSuperIndexEntryBytes * (AviHeader::kMaxIndexChunks - header.indexChunks.size()));
    out.EndChunk(chunk);
}

void WriteTotal(const AviHeader& header, RiffBytes& out) {
    constexpr std::size_t kBytes = 248;
    const std::size_t list = out.BeginList(kFccList, kFccOdml);
    const std::size_t chunk = out.BeginChunk(kFccDmlh);
    out.U32(header.samples);
    out.Zeros(kBytes - 4);
    out.EndChunk(chunk);
    out.EndChunk(list);
}

}  // namespace

std::uint32_t AviHeader::SampleChunk() const {
    const bool compressed = LoadBitmapFormat(format.data()).biCompression != 0;
    return FourCC('0', '0', 'd', compressed ? 'c' : 'b');
}

std::vector<std::uint8_t> AviHeader::Bytes() const {
    RiffBytes out;
    const std::size_t riff = out.BeginList(kFccRiff, kFccAvi);
    const std::size_t headers = out.BeginList(kFccList, kFccHdrl);
    WriteMainHeader(*this, out);
    const std::size_t streamHeaders = out.BeginList(kFccList, kFccStrl);
    WriteStreamHeader(*this, out);
    WriteChunk(kFccStrf, format, out);
    WriteName(stream, out);
    WriteSuperIndex(*this, out);
    out.EndChunk(streamHeaders);
    WriteTotal(*this, out);
    out.EndChunk(headers);
    const std::size_t movi = out.BeginList(kFccList, kFccMovi);

    // These two hold what follows in the file.
    std::vector<std::uint8_t> bytes = out.Get();
    const std::uint64_t start = bytes.size();
    StoreLe(static_cast<std::uint32_t>(std::max(firstMoviEnd, start) - movi), bytes.data() + movi - 4);
    StoreLe(static_cast<std::uint32_t>(std::max(firstRiffEnd, start) - riff), bytes.data() + riff - 4);
    return bytes;
}
