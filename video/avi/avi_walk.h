#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "video/avi/avi_index.h"
#include "video/avi/riff_file.h"

/// The walk through an AVI file's first RIFF chunk, which collects its streams.
///
/// Legal order: `Run`, then the results. Throws `UnsoundFile`, and what a lack of memory throws.
class AviWalk {
public:
    explicit AviWalk(const std::wstring& fileName) : file(fileName), index(file) {}

    void Run();

    AviStreams streams;
    std::uint32_t totalFrames = 0;
    std::uint64_t baseOffset = 0;  // what the offsets in the streams' tables count from

private:
    /// A list that the walk is inside of, or the RIFF chunk.
    struct Container {
        std::uint32_t type;
        std::uint64_t end;
    };

    std::uint64_t Visit(const RiffChunk& chunk);
    std::uint64_t EnterRiff(const RiffChunk& chunk);
    std::uint64_t VisitList(const RiffChunk& chunk);
    void Enter(std::uint32_t type, std::uint64_t end);
    void LeaveEnded(std::uint64_t position);
    bool Inside(std::uint32_t type) const { return !open.empty() && open.back().type == type; }

    void ReadMainHeader(const RiffChunk& avih);
    void ReadExtendedHeader(const RiffChunk& dmlh);
    void ReadStreamHeader(const RiffChunk& strh);
    void ReadFormat(const RiffChunk& strf);
    void ReadStreamIndex(const RiffChunk& indx);
    void ReadFileIndex(const RiffChunk& idx1);

    RiffFile file;
    AviIndexReader index;
    std::vector<Container> open;
    bool riffSeen = false;
    std::uint32_t streamCount = 0;         // as the main header says
    rkOpenDMLRawStream* stream = nullptr;  // the last one of the `strl` list that the walk is in
    bool formatMissing = false;            // there was a stream header, its format must follow
    bool hasOpenDmlIndex = false;
    std::optional<std::uint64_t> moviOffset;  // of the list's type
};
