#pragma once

#include <climits>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/media/media_file.h"
#include "platform/media/numbered_decoder.h"
#include "platform/media/packet_index.h"
#include "platform/media/packet_reader.h"

/// A container file's first video stream, by frame numbers: frame n asked for alone equals frame n of a
/// sequential read, also where pictures are stored out of their display order.
///
/// Frames are numbered from 0 in display order and counted exactly. A frame that can't be decoded as it was
/// encoded isn't handed over, nor what refers to it. Sequential reading never goes back in the file and uses
/// several threads. Memory is bounded, whatever the length, but for the index. Not for two threads at once.
/// Throws std::bad_alloc.
class IndexedVideo {
public:
    struct Properties {
        int width = 0;  ///< of the decoded pictures: neither turned nor scaled to square pixels
        int height = 0;
        AVPixelFormat format = AV_PIX_FMT_NONE;
        AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
        int frameCount = 0;
        bool isCutOff = false;  ///< the end of the file is missing, and frames with it
        /// Frames a second are `rate / scale`: the average that the container states.
        std::uint32_t rate = 25;
        std::uint32_t scale = 1;
    };

    /// Reads through the whole file once. Null with `error`, in UTF-8, if it can't be had.
    static std::unique_ptr<IndexedVideo> Open(const std::wstring& path, MediaFile::Container container,
                                              std::string& error);

    const Properties& GetProperties() const { return properties; }
    /// The decoded picture, valid until the next call; null if it can't be had.
    const AVFrame* ReadFrame(int frame);

private:
    enum class Found { Yes, Spoiled, No };
    enum class Step { Picture, End, Error };

    IndexedVideo() = default;
    std::string OpenFile(const std::wstring& path, MediaFile::Container container);
    std::string ReadProperties();

    bool CanContinue(int picture) const;
    bool BeginRun(int start);
    Found Decode(int picture);
    Found Search(int picture, int start);
    Step NextPicture();
    bool Feed();
    void Keep();
    void RecordDamage(int packetNumber);
    int LastNeeded(int picture) const;
    bool IsSpoiled(int picture) const;

    MediaFile file;
    PacketIndex index;
    std::unique_ptr<PacketReader> reader;
    Properties properties;

    // A run decodes packets in order from a key packet on.
    NumberedDecoder decoder;
    PacketPtr packet;
    FramePtr frame;
    int runStart = -1;  ///< -1: there is no run
    bool isDraining = false;
    bool isFalseStart = false;     ///< decoding can't begin there, although the container says so
    bool isCareful = false;        ///< because something is wrong ahead
    int carefulUntil = -1;         ///< the packet up to which there was reason to be
    int taintedBy = INT_MAX;       ///< the run's first packet with damage: what follows isn't to be trusted
    int received = -1;             ///< the highest number of the run's pictures so far
    std::map<int, FramePtr> held;  ///< the picture that was asked for last, and those that came behind it

    std::set<int> damaged;  ///< packets that can't be decoded as they were encoded
    std::set<int> missing;  ///< pictures that no way leads to
};
