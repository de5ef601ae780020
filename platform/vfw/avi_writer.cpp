#include "platform/vfw/avi_writer.h"

#include <algorithm>
#include <array>
#include <new>

#include "platform/byte_order.h"
#include "platform/vfw/avi_format.h"
#include "platform/vfw/riff_bytes.h"

namespace {

constexpr std::uint64_t kRiffBytes = std::uint64_t{1} << 30;
constexpr std::size_t kRiffHeaderBytes = 24;  // RIFF, size, form, LIST, size, type

}  // namespace

bool AviWriter::Start(const AVISTREAMINFOW& stream, std::span<const std::uint8_t> format) {
    if (!file.IsOpen() || started || failed) return false;
    header.stream = stream;
    header.format.assign(format.begin(), format.end());
    started = true;
    return Append(header.Bytes());
}

bool AviWriter::Write(std::span<const std::uint8_t> sample, bool isKey) {
    if (!started || failed || sample.size() >= kChunkIndexNoKey) return false;
    if (!MakeRoom(sample.size())) return false;

    const Entry entry = {end, static_cast<std::uint32_t>(sample.size()), isKey};
    if (!AppendSample(sample) || !List(entry)) {
        failed = true;
        file.CutTo(entry.offset);  // what is there stays a sound file
        end = entry.offset;
        return false;
    }
    ++header.samples;
    if (IsFirstRiff()) ++header.samplesInFirst;
    header.largestSample = std::max(header.largestSample, entry.bytes);

    constexpr std::uint32_t kShare = 64;
    constexpr std::uint32_t kLeast = 16;
    return unindexed.size() < std::max(kLeast, header.samples / kShare) || BringUpToDate();
}

bool AviWriter::Append(std::span<const std::uint8_t> bytes) {
    if (!file.WriteAt(end, bytes)) failed = true;
    if (!failed) end += bytes.size();
    return !failed;
}

bool AviWriter::AppendSample(std::span<const std::uint8_t> sample) {
    static constexpr std::uint8_t kPadding[1] = {};
    std::array<std::uint8_t, kChunkHeaderBytes> chunk;
    StoreLe(header.SampleChunk(), chunk.data());
    StoreLe(static_cast<std::uint32_t>(sample.size()), chunk.data() + 4);
    return Append(chunk) && Append(sample) && (sample.size() % 2 == 0 || Append(kPadding));
}

/// False without memory: then the sample is in no list.
bool AviWriter::List(const Entry& entry) {
    const std::size_t listed = unindexed.size();
    try {
        unindexed.push_back(entry);
        if (IsFirstRiff()) firstRiff.push_back(entry);
        return true;
    } catch (const std::bad_alloc&) {
        unindexed.resize(listed);
        return false;
    }
}

/// Goes on in a new RIFF chunk if this one would grow too large.
bool AviWriter::MakeRoom(std::size_t sampleBytes) {
    const std::uint64_t closing = kChunkHeaderBytes + kIndexHeadBytes +
                                  kChunkIndexEntryBytes * (unindexed.size() + 1) + kChunkHeaderBytes +
                                  kIdx1EntryBytes * (firstRiff.size() + 1);
    const std::uint64_t size = end - riffStart + kChunkHeaderBytes + sampleBytes + closing;
    const bool empty =
        unindexed.empty() && (IsFirstRiff() ? header.samples == 0 : end == riffStart + kRiffHeaderBytes);
    return size <= kRiffBytes || empty || (EndRiff() && BeginRiff());
}

bool AviWriter::BeginRiff() {
    riffStart = end;
    end += kRiffHeaderBytes;
    return WriteRiffHeader();
}

bool AviWriter::EndRiff() {
    const bool indexed = WriteIndexChunk() && (!IsFirstRiff() || WriteOldIndex());
    return WriteRiffHeader() && indexed;  // the headers tell of what got through in any case
}

/// Lists the samples so far and tells all headers of them.
bool AviWriter::BringUpToDate() {
    return WriteIndexChunk() && WriteRiffHeader();
}

bool AviWriter::WriteIndexChunk() {
    if (unindexed.empty()) return true;
    if (header.indexChunks.size() == AviHeader::kMaxIndexChunks) return !(failed = true);

    RiffBytes out;
    const std::size_t chunk = out.BeginChunk(FourCC('i', 'x', '0', '0'));
    out.U16(kChunkIndexEntryBytes / 4);
    out.U8(0);
    out.U8(kIndexOfChunks);
    out.U32(static_cast<std::uint32_t>(unindexed.size()));
    out.U32(header.SampleChunk());
    out.U64(riffStart);
    out.U32(0);
    for (const Entry& entry : unindexed) {
        out.U32(static_cast<std::uint32_t>(entry.offset + kChunkHeaderBytes - riffStart));
        out.U32(entry.bytes | (entry.isKey ? 0 : kChunkIndexNoKey));
    }
    out.EndChunk(chunk);

    const std::uint64_t offset = end;
    if (!Append(out.Get())) return false;
    header.indexChunks.push_back(
        {offset, static_cast<std::uint32_t>(out.Get().size()), static_cast<std::uint32_t>(unindexed.size())});
    unindexed.clear();
    if (IsFirstRiff()) header.firstMoviEnd = header.firstRiffEnd = end;
    return true;
}

bool AviWriter::WriteOldIndex() {
    // Offsets count from the type of the list of samples, the last word of the headers.
    const std::uint64_t base = header.Bytes().size() - 4;
    RiffBytes out;
    const std::size_t chunk = out.BeginChunk(kFccIdx1);
    for (const Entry& entry : firstRiff) {
        out.U32(header.SampleChunk());
        out.U32(entry.isKey ? AVIIF_KEYFRAME : 0);
        out.U32(static_cast<std::uint32_t>(entry.offset - base));
        out.U32(entry.bytes);
    }
    out.EndChunk(chunk);
    if (!Append(out.Get())) return false;
    firstRiff.clear();
    header.hasOldIndex = true;
    header.firstRiffEnd = end;
    return true;
}

/// The headers of the file, and those of the RIFF chunk that is being written.
bool AviWriter::WriteRiffHeader() {
    if (!IsFirstRiff()) {
        RiffBytes out;
        out.U32(kFccRiff);
        out.U32(static_cast<std::uint32_t>(end - riffStart - 8));
        out.U32(kFccAvix);
        out.U32(kFccList);
        out.U32(static_cast<std::uint32_t>(end - riffStart - 20));
        out.U32(kFccMovi);
        if (!file.WriteAt(riffStart, out.Get())) failed = true;
    }
    if (!file.WriteAt(0, header.Bytes())) failed = true;
    return !failed;
}

bool AviWriter::Close() {
    if (!file.IsOpen()) return !failed;
    const bool sound = started && !failed;
    failed = false;  // one more try, for what got through
    bool completed = false;
    try {
        completed = started && EndRiff();
    } catch (const std::bad_alloc&) {  // the headers keep to what they told last
    }
    const bool cut = file.CutTo(end);
    const bool closed = file.Close();
    failed = !(sound && completed && cut && closed);
    return !failed;
}
