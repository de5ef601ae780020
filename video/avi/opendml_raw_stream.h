#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/file.h"
#include "video/avi/avi_records.h"
#include "video/avi/stream_container.h"
#include "video/raw_data_stream.h"

/// A stream of an AVI file, read through an open file of its own.
///
/// The parser fills it and then calls `Open`; until then it is neither video nor audio. A sample that the
/// file doesn't hold whole answers false, with `actualBytes` as many bytes as there are.
class rkOpenDMLRawStream : public rkIRawDataStream {
public:
    explicit rkOpenDMLRawStream(const AviStreamHeader& streamHeader)
        : header(streamHeader), kind(rkStreamContainer::KindOf(header.type)) {}

    void SetFormat(std::vector<std::uint8_t> bytes) { format = std::move(bytes); }
    void AddEntry(const AviIndexEntry& entry) { entries.push_back(entry); }

    /// `index` is the stream's number in its file, `base` the position that the entries' offsets count from.
    /// False if the file can't be opened.
    bool Open(const std::wstring& fileName, int index, std::uint64_t base);

    bool IsVideo() override { return streamIndex >= 0 && kind == rkStreamContainer::Video; }
    bool IsAudio() override { return streamIndex >= 0 && kind == rkStreamContainer::Audio; }
    bool ReadSample(int sample, std::uint8_t* buffer, int bufferSize, int* actualBytes) override;
    bool GetStreamInfo(AVISTREAMINFOW* info) override;
    bool IsKeyFrame(int sample) override;
    int GetLength() override { return static_cast<int>(entries.size()); }
    int GetStart() override { return static_cast<int>(header.start); }
    int GetEnd() override { return GetStart() + GetLength() - 1; }
    int GetFormatSize() override { return static_cast<int>(format.size()); }
    bool GetFormat(std::uint8_t* buffer, int size) override;

private:
    ReadOnlyFile file;
    std::uint64_t fileSize = 0;
    int streamIndex = -1;
    AviStreamHeader header;
    rkStreamContainer::StreamKind kind;
    std::vector<std::uint8_t> format;
    std::deque<AviIndexEntry> entries;  // hundreds of thousands, which don't move as the table grows
    std::uint64_t baseOffset = 0;
};
