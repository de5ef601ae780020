#include "video/avi/avi_walk.h"

#include <algorithm>
#include <limits>

namespace {

// Beyond what any writer makes; a hostile file must not keep the walk busy.
constexpr int kMaxChunks = 1 << 20;
constexpr std::size_t kMaxDepth = 16;
constexpr std::size_t kMaxStreams = 100;  // a chunk's type has two digits for the stream's number
constexpr std::uint32_t kMaxFormatBytes = 1 << 20;
constexpr std::uint32_t kMaxStart = std::numeric_limits<int>::max() - AviIndexReader::kMaxEntries;

}  // namespace

void AviWalk::Run() {
    std::uint64_t position = 0;
    RiffChunk chunk;
    for (int i = 0; file.FindChunk(position, chunk); ++i) {
        Require(i < kMaxChunks);
        position = Visit(chunk);
        LeaveEnded(position);
        if (riffSeen && open.empty()) return;
    }
}

/// Where the walk goes on: behind the chunk or inside it.
std::uint64_t AviWalk::Visit(const RiffChunk& chunk) {
    switch (chunk.type) {
        case kFccRiff:
            return EnterRiff(chunk);
        case kFccList:
            return VisitList(chunk);
        case kFccAvih:
            if (Inside(kFccHdrl)) ReadMainHeader(chunk);
            break;
        case kFccDmlh:
            if (Inside(kFccOdml)) ReadExtendedHeader(chunk);
            break;
        case kFccStrh:
            if (Inside(kFccStrl)) ReadStreamHeader(chunk);
            break;
        case kFccStrf:
            if (Inside(kFccStrl)) ReadFormat(chunk);
            break;
        case kFccIndx:
            if (Inside(kFccStrl)) ReadStreamIndex(chunk);
            break;
        case kFccIdx1:
            if (Inside(kFccAvi) && !hasOpenDmlIndex) ReadFileIndex(chunk);
            break;
        default:
            break;
    }
    return chunk.Next();
}

std::uint64_t AviWalk::EnterRiff(const RiffChunk& chunk) {
    Require(open.empty() && chunk.size >= kListTypeBytes && file.ReadWord(chunk.offset) == kFccAvi);
    Enter(kFccAvi, chunk.End());
    riffSeen = true;
    return chunk.offset + kListTypeBytes;
}

std::uint64_t AviWalk::VisitList(const RiffChunk& chunk) {
    Require(chunk.size >= kListTypeBytes);
    const std::uint32_t type = file.ReadWord(chunk.offset);
    switch (type) {
        case kFccStrl:
            Require(!formatMissing);
            stream = nullptr;
            Enter(type, chunk.End());
            return chunk.offset + kListTypeBytes;
        case kFccHdrl:
        case kFccOdml:
            Enter(type, chunk.End());
            return chunk.offset + kListTypeBytes;
        case kFccRec:
            return chunk.offset + kListTypeBytes;
        case kFccMovi:
            moviOffset = chunk.offset;  // its samples are reached through the index
            return chunk.Next();
        default:
            return chunk.Next();
    }
}

void AviWalk::Enter(std::uint32_t type, std::uint64_t end) {
    Require(open.size() < kMaxDepth);
    open.push_back({type, end});
}

void AviWalk::LeaveEnded(std::uint64_t position) {
    while (!open.empty() && position >= open.back().end) {
        Require(!(Inside(kFccHdrl) && formatMissing));
        open.pop_back();
    }
}

void AviWalk::ReadMainHeader(const RiffChunk& avih) {
    const AviMainHeader header(file.ReadRecord<kMainHeaderBytes>(avih));
    totalFrames = header.totalFrames;
    streamCount = header.streams;
}

/// The main header counts the frames of the first RIFF chunk only.
void AviWalk::ReadExtendedHeader(const RiffChunk& dmlh) {
    Require(dmlh.size >= sizeof(std::uint32_t));
    totalFrames = std::max(totalFrames, file.ReadWord(dmlh.offset));
}

void AviWalk::ReadStreamHeader(const RiffChunk& strh) {
    Require(!formatMissing && streams.size() < std::min<std::size_t>(streamCount, kMaxStreams));
    AviStreamHeader header(file.ReadRecord<kStreamHeaderBytes>(strh));
    const bool isVideo = rkStreamContainer::KindOf(header.type) == rkStreamContainer::Video;
    if (!isVideo) header.start = std::min(header.start, kMaxStart);  // no reason to refuse the pictures
    Require(header.start <= kMaxStart);                              // so that every sample number is an int
    streams.push_back(std::make_unique<rkOpenDMLRawStream>(header));
    stream = streams.back().get();
    formatMissing = true;
}

void AviWalk::ReadFormat(const RiffChunk& strf) {
    Require(formatMissing && strf.size <= kMaxFormatBytes);
    std::vector<std::uint8_t> format(strf.size);
    file.Read(strf.offset, format.data(), format.size());
    stream->SetFormat(std::move(format));
    formatMissing = false;
}

void AviWalk::ReadStreamIndex(const RiffChunk& indx) {
    Require(stream != nullptr && !formatMissing);
    if (index.ReadOpenDml(indx, *stream)) hasOpenDmlIndex = true;
}

void AviWalk::ReadFileIndex(const RiffChunk& idx1) {
    Require(moviOffset.has_value());
    const bool offsetsAbsolute = index.ReadIdx1(idx1, *moviOffset, streams);
    baseOffset = offsetsAbsolute ? 0 : *moviOffset;
}
