#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/vfw/avi_header.h"
#include "platform/vfw/output_file.h"

/// An AVI file with one video stream that is being written: OpenDML with RIFF chunks of at most 1 GiB (or one
/// sample), up to about 1.5 TiB; the first chunk also has the old index, for old readers.
///
/// Samples go to the file at once, so a full disk fails the very write. Every 1/64 of the file, at first
/// every 16 samples, an index chunk follows and the headers are brought up to date: however the process ends,
/// the samples up to there can be read. After a failure nothing more is written, and `Close` completes the
/// file with the samples that got through, as far as the disk lets it. `Start` and `Write` throw
/// std::bad_alloc.
class AviWriter {
public:
    AviWriter() = default;
    ~AviWriter() { Close(); }
    AviWriter(const AviWriter&) = delete;
    AviWriter& operator=(const AviWriter&) = delete;

    /// Makes the file, or empties it.
    bool Open(const std::wstring& path) { return file.Open(path); }
    /// Writes the headers of `stream` with a bitmap format of at least 40 bytes. Once, before the first
    /// sample.
    bool Start(const AVISTREAMINFOW& stream, std::span<const std::uint8_t> format);
    /// Appends a sample of less than 2 GiB.
    bool Write(std::span<const std::uint8_t> sample, bool isKey);
    /// Completes the file. False if that or any write before failed.
    bool Close();

    std::uint32_t Samples() const { return header.samples; }

private:
    struct Entry {
        std::uint64_t offset;  ///< of the sample's chunk header in the file
        std::uint32_t bytes;
        bool isKey;
    };

    bool IsFirstRiff() const { return riffStart == 0; }
    bool Append(std::span<const std::uint8_t> bytes);
    bool AppendSample(std::span<const std::uint8_t> sample);
    bool List(const Entry& entry);
    bool MakeRoom(std::size_t sampleBytes);
    bool BringUpToDate();
    bool WriteIndexChunk();
    bool WriteOldIndex();
    bool WriteRiffHeader();
    bool BeginRiff();
    bool EndRiff();

    OutputFile file;
    AviHeader header;
    bool started = false;
    bool failed = false;
    std::uint64_t end = 0;        ///< where the next chunk goes
    std::uint64_t riffStart = 0;  ///< of the RIFF chunk that is being written
    std::vector<Entry> unindexed;
    std::vector<Entry> firstRiff;  ///< for the old index
};
