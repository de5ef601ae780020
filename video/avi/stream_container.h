#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "video/raw_data_stream.h"

/// A file taken apart into its streams. The parsers do their work in the constructor and let no exception
/// out; the caller then asks `Failed`.
class rkStreamContainer {
public:
    enum StreamKind { Audio = 0, Video = 1, Other = 2 };

    virtual ~rkStreamContainer() = default;
    rkStreamContainer(const rkStreamContainer&) = delete;
    rkStreamContainer& operator=(const rkStreamContainer&) = delete;

    /// The file couldn't be opened or isn't sound; there are no streams then. A sound file may have none too.
    bool Failed() const { return failed; }

    /// The n-th stream of that kind, counted from 0, or null. It belongs to the container.
    rkIRawDataStream* GetStream(int n, StreamKind kind) const;

    /// What a stream is by the `fccType` of its header.
    static StreamKind KindOf(std::uint32_t type);

protected:
    rkStreamContainer() = default;

    bool failed = false;
    std::vector<std::unique_ptr<rkIRawDataStream>> streams;  // null where a stream can't be had
};
