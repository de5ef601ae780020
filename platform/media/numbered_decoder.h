#pragma once

#include "platform/media/complaints.h"
#include "platform/media/libav.h"

/// Decodes packets into pictures that carry their packets' numbers. Not for two threads at once. Throws
/// std::bad_alloc.
class NumberedDecoder {
public:
    /// How many threads it takes.
    ///
    /// Swift    some; an error is known some packets later.
    /// Careful  one; errors and damaged pictures are told with their packet.
    enum class Mode { Swift, Careful };
    enum class Result { Done, NeedsPacket, End, Error };

    NumberedDecoder() = default;
    NumberedDecoder(const NumberedDecoder&) = delete;
    NumberedDecoder& operator=(const NumberedDecoder&) = delete;

    /// Readies it for a key packet; what came before leaves no trace. `reorderDepth` is how many pictures the
    /// stream makes it hold back. False if no decoder takes the stream.
    bool Start(const AVStream& stream, const AVCodecParameters& parameters, int reorderDepth, Mode mode);

    /// Feeds a packet whose picture has the number `number`, or none if that is below 0.
    Result Send(AVPacket& packet, int number);
    /// No more packets will come: hands out what was held back.
    void Drain();
    /// The next picture in display order, its number in `pts`. Done, NeedsPacket, End after `Drain`, or
    /// Error. `Swift` also answers Error, in place of a picture, when any of the pictures so far may be
    /// damaged.
    Result Receive(AVFrame& frame);

private:
    bool Open(const AVStream& stream, const AVCodecParameters& parameters, int reorderDepth);

    Mode mode = Mode::Swift;
    Complaints complaints;
    bool isTainted = false;  // there was damage since the context was opened
    CodecContextPtr context;
};
