#include "platform/media/indexed_video.h"

#include <algorithm>

namespace {

using Result = NumberedDecoder::Result;

constexpr int kMaxAhead = 16;     // pictures that may be decoded before one and displayed behind it
constexpr int kNearPackets = 16;  // so many are decoded sooner than passed over by a seek

bool IsSet(AVRational rate) {
    return rate.num > 0 && rate.den > 0;
}

bool IsPredicted(const AVFrame& frame) {
    const bool isType = frame.pict_type == AV_PICTURE_TYPE_P || frame.pict_type == AV_PICTURE_TYPE_B;
    return isType && frame.key_frame == 0;
}

}  // namespace

std::unique_ptr<IndexedVideo> IndexedVideo::Open(const std::wstring& path, MediaFile::Container container,
                                                 std::string& error) {
    std::unique_ptr<IndexedVideo> video(new IndexedVideo);
    error = video->OpenFile(path, container);
    return error.empty() ? std::move(video) : nullptr;
}

std::string IndexedVideo::OpenFile(const std::wstring& path, MediaFile::Container container) {
    std::string error = file.Open(path, container);
    if (!error.empty()) return error;
    const AVCodecID codec = file.CodecParameters().codec_id;
    if (avcodec_find_decoder(codec) == nullptr)
        return std::string("there is no decoder for ") + avcodec_get_name(codec);
    error = index.Build(file);
    return error.empty() ? ReadProperties() : error;
}

std::string IndexedVideo::ReadProperties() {
    for (int i = 0; i < index.PacketCount(); ++i) {
        if (index.Packet(i).isDamaged) damaged.insert(i);
    }
    const AVStream& stream = file.Stream();
    properties.frameCount = index.FrameCount();
    properties.isCutOff = index.IsCutOff();
    const AVRational rate = IsSet(stream.avg_frame_rate) ? stream.avg_frame_rate : stream.r_frame_rate;
    if (IsSet(rate)) {
        properties.rate = static_cast<std::uint32_t>(rate.num);
        properties.scale = static_cast<std::uint32_t>(rate.den);
    }
    properties.width = file.CodecParameters().width;
    properties.height = file.CodecParameters().height;
    properties.format = static_cast<AVPixelFormat>(file.CodecParameters().format);
    properties.range = file.CodecParameters().color_range;

    packet = MakePacket();
    frame = MakeFrame();
    reader = std::make_unique<PacketReader>(file, index);
    // The pictures themselves know better than the container what they are.
    if (index.StartOf(0) >= 0 && Decode(0) == Found::Yes) {
        const AVFrame& first = *held.begin()->second;
        properties.width = first.width;
        properties.height = first.height;
        properties.format = static_cast<AVPixelFormat>(first.format);
        properties.range = first.color_range;
    }
    const bool isKnown = properties.width > 0 && properties.height > 0 && properties.format >= 0;
    return isKnown ? "" : "the video stream can't be decoded";
}

const AVFrame* IndexedVideo::ReadFrame(int number) {
    const int picture = index.PictureOf(number);
    if (picture < 0 || index.StartOf(picture) < 0 || missing.count(picture) > 0 || IsSpoiled(picture))
        return nullptr;
    const Found found = Decode(picture);
    if (found == Found::No) missing.insert(picture);
    if (found != Found::Yes) return nullptr;
    const AVFrame* decoded = held.begin()->second.get();
    return decoded->width == properties.width && decoded->height == properties.height ? decoded : nullptr;
}

/// Decodes so far that `picture` is the first one in `held`.
IndexedVideo::Found IndexedVideo::Decode(int picture) {
    int start = index.StartOf(picture);
    if (!CanContinue(picture) && !BeginRun(start)) return Found::No;
    Found found = Search(picture, start);
    // What a longer run lost by an error it met before may come out of one of its own.
    if (found == Found::No && runStart < start && BeginRun(start)) found = Search(picture, start);
    // Otherwise decoding can't begin there, although the container says so; the further back, the surer.
    for (int keys = 1; found == Found::No && index.KeyBefore(start) >= 0; keys *= 2) {
        for (int i = 0; i < keys && index.KeyBefore(start) >= 0; ++i) start = index.KeyBefore(start);
        if (!BeginRun(start)) break;
        found = Search(picture, start);
    }
    return found;
}

/// Whether the run leads to the picture, and soon enough.
bool IndexedVideo::CanContinue(int picture) const {
    const int start = index.StartOf(picture);
    if (runStart < 0 || runStart > start || isFalseStart || taintedBy < start) return false;
    if (held.count(picture) > 0) return true;
    if (isCareful && start >= carefulUntil) return false;
    return picture > received && start - reader->Next() <= kNearPackets;
}

bool IndexedVideo::BeginRun(int start) {
    runStart = -1;
    received = -1;
    taintedBy = INT_MAX;
    isDraining = false;
    isFalseStart = false;
    held.clear();
    isCareful = start < carefulUntil;
    if (!file.HasStream() && !file.Rewind()) return false;  // a file that was away may be back
    const auto mode = isCareful ? NumberedDecoder::Mode::Careful : NumberedDecoder::Mode::Swift;
    if (!decoder.Start(file.Stream(), file.CodecParameters(), index.ReorderDepth(), mode)) return false;
    if (!reader->GoTo(start)) return false;
    runStart = start;
    return true;
}

/// Goes on until the picture is there, or can't come any more. If something is wrong on the way, everything
/// from `start` on is decoded again with care.
IndexedVideo::Found IndexedVideo::Search(int picture, int start) {
    held.erase(held.begin(), held.lower_bound(picture));
    const int last = LastNeeded(picture);
    while (held.empty() || held.rbegin()->first < last) {
        const Step step = NextPicture();
        if (step == Step::End) break;
        if (step == Step::Error) {
            carefulUntil = std::max({carefulUntil, start + 1, reader->Next()});
            if (!BeginRun(start)) return Found::No;
        }
        held.erase(held.begin(), held.lower_bound(picture));
    }
    if (isFalseStart || taintedBy < start) return Found::No;
    if (IsSpoiled(picture)) return Found::Spoiled;
    return held.count(picture) > 0 ? Found::Yes : Found::No;
}

/// The decoder's next picture goes to `held`.
IndexedVideo::Step IndexedVideo::NextPicture() {
    for (;;) {
        const Result result = decoder.Receive(*frame);
        if (result == Result::Done) {
            Keep();
            return Step::Picture;
        }
        if (result == Result::End) return Step::End;
        if (result == Result::NeedsPacket && Feed()) continue;
        // The decoder refuses a packet: with one thread the last one, otherwise one of the last.
        if (!isCareful) return Step::Error;
        RecordDamage(reader->Next() - 1);
        if (isDraining) return Step::End;
    }
}

bool IndexedVideo::Feed() {
    if (isDraining) return false;
    if (reader->Read(*packet))
        return decoder.Send(*packet, index.PictureOfPacket(reader->Next() - 1)) == Result::Done;
    isDraining = true;
    decoder.Drain();
    return true;
}

void IndexedVideo::Keep() {
    const std::int64_t number = frame->pts;
    if (number >= 0 && number < index.PictureCount()) {
        const int picture = static_cast<int>(number);
        if (IsDamaged(*frame)) RecordDamage(index.PacketOf(picture));
        if (index.PacketOf(picture) == runStart && IsPredicted(*frame)) isFalseStart = true;
        received = std::max(received, picture);
        held[picture] = std::move(frame);
        frame = MakeFrame();
    }
    av_frame_unref(frame.get());
}

void IndexedVideo::RecordDamage(int packetNumber) {
    // What needs more than the run has is no damage.
    if (packetNumber < 0 || index.StartOfPacket(packetNumber) < runStart) return;
    damaged.insert(packetNumber);
    taintedBy = std::min(taintedBy, packetNumber);
}

/// The last of the pictures that were decoded before this one and may have gone into it: only when they have
/// come out it is known whether they were sound.
int IndexedVideo::LastNeeded(int picture) const {
    int last = std::min(picture + kMaxAhead, index.PictureCount() - 1);
    while (last > picture && index.PacketOf(last) > index.PacketOf(picture)) --last;
    return last;
}

/// Whether a damaged packet may have gone into the picture: one behind its start that doesn't itself need
/// more than that.
bool IndexedVideo::IsSpoiled(int picture) const {
    const int start = index.StartOf(picture);
    const auto end = damaged.upper_bound(index.PacketOf(picture));
    return std::any_of(damaged.lower_bound(start), end,
                       [&](int packetNumber) { return index.StartOfPacket(packetNumber) >= start; });
}
