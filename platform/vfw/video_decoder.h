#pragma once

#include <climits>
#include <deque>
#include <memory>
#include <optional>

#include "platform/media/complaints.h"
#include "platform/media/picture_converter.h"
#include "platform/vfw/codec.h"
#include "platform/vfw/decoder_parameters.h"
#include "platform/vfw/turn_order.h"

/// The decoder behind `ICLocate`; see there. Throws std::bad_alloc only.
class VideoDecoder : public Codec {
public:
    /// Null for what `ICLocate` refuses.
    static std::shared_ptr<VideoDecoder> Locate(std::uint32_t handler, FormatView input, FormatView output,
                                                const DecompressInput& firstSample);

    ICINFO GetInfo() const override;
    int Begin(FormatView input, FormatView output);
    void End() { started = false; }
    int Decompress(std::uint32_t flags, const DecompressInput& input, std::uint8_t* output,
                   int& sampleOfPicture);

private:
    struct Target {
        Surface surface;
        int width, height;
        bool operator==(const Target&) const = default;
    };

    /// What the decoder lets see of its work, through the context's field `opaque`.
    struct Watch : Complaints {
        bool pictureBegun = false;  ///< by the last sample
    };
    struct Form {
        AVPixelFormat pixels = AV_PIX_FMT_NONE;
        AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    };

    VideoDecoder(std::uint32_t handler, const Target& target);
    static std::optional<Target> TargetOf(FormatView input, FormatView output);

    bool LearnForm(const DecompressInput& firstSample);
    bool TryFirstSample(const DecompressInput& sample);
    bool OpenContext();
    static int TakeBuffer(AVCodecContext* context, AVFrame* frame, int flags);

    PacketPtr MakeSample(std::uint32_t flags, const DecompressInput& input);
    void Feed(std::uint32_t flags, const DecompressInput& input);
    void Finish();
    bool ReceivePictures(std::int64_t tag);
    void NoteDamage(const AVFrame& frame);
    bool HasDelay() const;
    bool TellsDamage();
    void SettlePictureless(const DecompressInput& input);
    void Fail(int sample);
    int HandOver(std::uint8_t* output, int& sampleOfPicture);
    std::optional<TurnOrder::Turn> NextTurn();
    bool AreReferencesKnown(int sample) const;
    void TakePicture();
    bool IsKeyPicture(const AVFrame& frame) const;

    std::uint32_t handler;
    Target target;
    PictureConverter converter;
    CodecParametersPtr parameters;
    std::optional<Palette> palette;
    Watch watch;  ///< outlives the context
    CodecContextPtr context;
    Form form;  ///< of the last picture that was decoded

    bool started = false;
    bool finished = false;     ///< no more samples until the next start
    bool paletteSent = false;  ///< it goes with the first sample
    bool pictureCame = false;  ///< since the start
    bool keyCame = false;      ///< and one of a key frame
    bool broken = true;        ///< no sound key frame since the start or the last failure
    int brokenBy = -1;         ///< the sample that failed: only a key frame behind it ends that
    int taintedBy = INT_MAX;   ///< the first sample with a damaged picture: only a new start ends that
    std::deque<FramePtr> ready;
    FramePtr last;  ///< the sound picture of the turn before; null if there is none
    TurnOrder turns;
};
