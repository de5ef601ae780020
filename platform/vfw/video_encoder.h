#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/vfw/codec.h"
#include "platform/vfw/encoder_table.h"
#include "platform/vfw/frame_intake.h"

/// The encoder behind `ICOpen`; see there. Throws std::bad_alloc only.
class VideoEncoder : public Codec {
public:
    explicit VideoEncoder(const EncoderEntry& entry) : entry(entry) {}

    ICINFO GetInfo() const override;
    /// The format with the codec's bytes; empty for an input it can't encode.
    std::vector<std::uint8_t> Format(FormatView input) const;
    int FrameBytes(FormatView input) const;

    std::vector<std::uint8_t> State() const;
    int SetState(const std::vector<std::uint8_t>& state);
    int SetRate(const CompressRate& wanted);

    int Begin(FormatView input);
    void End() { context = nullptr; }
    int Compress(std::uint32_t wanted, const std::uint8_t* frame, std::uint8_t* compressed, int& bytes,
                 std::uint32_t& flags);

private:
    CodecContextPtr Open(FormatView input) const;

    const EncoderEntry& entry;
    CompressRate rate{.quality = 7500, .keyFrameRate = 100};

    CodecContextPtr context;  ///< null unless begun
    std::optional<FrameIntake> intake;
    std::int64_t framesDone = 0;
};
