#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/file.h"
#include "platform/media/complaints.h"
#include "platform/media/libav.h"

struct AVBSFContext;

/// A container file, as the packets of its first video stream in the file's order. Covers and other still
/// pictures that go with music aren't video.
///
/// What the file is shows in its content, not in its name. It is read through one regular file; a container
/// that refers to other files or addresses doesn't get them. Not for two threads at once. Throws
/// std::bad_alloc.
class MediaFile {
public:
    enum class Container { Any, Avi };

    MediaFile();
    ~MediaFile();
    MediaFile(const MediaFile&) = delete;
    MediaFile& operator=(const MediaFile&) = delete;

    /// Once. Why it can't be opened, in UTF-8; empty if it is open. `Avi` refuses all other containers.
    std::string Open(const std::wstring& path, Container container);

    bool IsAvi() const { return isAvi; }
    const AVStream& Stream() const { return *input->streams[streamNumber]; }
    /// What a decoder of these packets needs to know.
    const AVCodecParameters& CodecParameters() const;

    /// The next packet; it has AV_PKT_FLAG_CORRUPT if bytes of it, or packets in front of it, are missing.
    /// False at the end, and where the file can't be read any further.
    bool ReadPacket(AVPacket& packet);
    /// Whether the last `ReadPacket` that answered false met something else than the container's own end.
    bool EndsEarly() const { return endsEarly; }
    /// Whether the file has bytes that couldn't be read, as on a broken disk. What was read of it isn't all that it holds.
    bool HasReadError() const;

    /// Goes to a packet near this time of the stream's clock, at or before it if the container can; the next
    /// `ReadPacket` tells where that was. False if it can't go anywhere.
    bool Seek(std::int64_t time);
    /// Goes to the first packet: everything comes as after `Open`. False if the file can't be read any more; then
    /// nothing but another `Rewind` leads anywhere.
    bool Rewind();
    /// False behind a `Rewind` that failed: there is no stream.
    bool HasStream() const { return input != nullptr; }

private:
    struct ByteReader;
    struct BitstreamFilterDeleter {
        void operator()(AVBSFContext* filter) const;
    };

    std::string OpenInput();
    std::string ChooseStream();
    void AddUnpacking();
    bool ReadStreamPacket(AVPacket& packet);

    Container wanted = Container::Any;
    ReadOnlyFile file;
    std::unique_ptr<ByteReader> bytes;  // outlives the input, which reads through it
    Complaints complaints;
    InputPtr input;
    unsigned streamNumber = 0;
    bool isAvi = false;
    bool endsEarly = false;
    /// Gives each picture a packet of its own where two were put into one; null where that doesn't occur.
    std::unique_ptr<AVBSFContext, BitstreamFilterDeleter> unpacking;
};
