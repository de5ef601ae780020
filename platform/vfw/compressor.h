#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/vfw/codec_types.h"

/// Video codecs by their four-character codes: decoders that give a wanted form of picture, encoders that
/// take bottom-up RGB24 (rows of (3 * width + 3) rounded down to a multiple of 4 bytes).
///
/// Functions answer ICERR_OK for success; nothing throws. A handle belongs to one thread at a time, and its
/// owner releases it by resetting the pointer, which also ends what was begun.
class Codec;
using HIC = std::shared_ptr<Codec>;

enum class IcMode { Compress, Decompress };

// ---- Decoding

/// A decoder of `input` (with the codec's bytes behind the header; if its biCompression names no codec, of
/// `handler`) that turns pictures into `output`: biCompression "YV12", "YUY2" or 0 with 24 bits. Null if
/// there is no such codec, or if it can't hand its samples over in this form without losing what they hold:
/// 4:2:0 of even sizes comes as YV12 or RGB24, 4:2:2 of an even width as YUY2 or RGB24, all else as RGB24
/// only. Rows of RGB24 come bottom-up.
///
/// Many codecs keep the form of their pictures in the samples. `firstSample`, the first sample of the stream
/// that isn't empty, is decoded for a trial to learn it; without it such a codec offers RGB24 only.
HIC ICLocate(std::uint32_t fccType, std::uint32_t handler, FormatView input, FormatView output, IcMode mode,
             const DecompressInput& firstSample = {});
/// The description of a decoder names the codec and, behind commas, what is done to its samples; it is
/// complete once a sample was decoded, be it the `firstSample`.
int ICGetInfo(const HIC& codec, ICINFO& info);

/// Readies the decoder for a new start: what it held of earlier samples is dropped. Another size than the one
/// it was located with is refused.
int ICDecompressBegin(const HIC& codec, FormatView input, FormatView output);
int ICDecompressEnd(const HIC& codec);

/// Feeds a sample, in the order of the stream, and takes at most one picture, the next one in display order.
/// ICERR_OK: `output` holds a picture, and `sampleOfPicture` is the number of the sample that it came from.
/// ICERR_NEEDMORE: none is ready. Without a sample, at the end: a held picture a call, then ICERR_ERROR; then
/// only a new start goes on.
///
/// Each sample since the start takes one turn in display order, so the i-th turn is the i-th frame: ICERR_OK,
/// or ICERR_DAMAGED for a damaged sample, for the pictures decoded after it up to the next key frame, and for
/// those that refer to samples before the start. That of H.264 isn't to be trusted after damage: then it
/// holds up to the next start. All samples before a key sample are displayed before all from it on that don't
/// refer to them.
int ICDecompress(const HIC& codec, std::uint32_t flags, const DecompressInput& input, std::uint8_t* output,
                 int& sampleOfPicture);

// ---- Encoding

/// The encoder of these codes; null if there is none, or for the code of uncompressed video.
HIC ICOpen(std::uint32_t fccType, std::uint32_t handler, IcMode mode);

/// The bytes of the output's format for frames of `input`. The size is 0 for an input it can't encode;
/// `output` has room for that size.
int ICCompressGetFormatSize(const HIC& codec, FormatView input);
int ICCompressGetFormat(const HIC& codec, FormatView input, void* output);
/// The most bytes that a compressed frame takes; 0 for an input it can't encode.
int ICCompressGetSize(const HIC& codec, FormatView input);
int ICCompressBegin(const HIC& codec, FormatView input);
int ICCompressEnd(const HIC& codec);
/// The encoder's private state, which is what the rate below can't be read from elsewhere: the key frame
/// distance. Bytes of another encoder or another version are refused and change nothing.
std::vector<std::uint8_t> ICGetState(const HIC& codec);
int ICSetState(const HIC& codec, const std::vector<std::uint8_t>& state);
/// Before `ICCompressBegin`. What isn't said (0 or below, for the quality below 0) stays as it was: at first
/// quality 7500, and a key frame every 100 frames.
int ICSetRate(const HIC& codec, const CompressRate& rate);

/// Encodes one frame, which comes out at once. `compressed` has room for `ICCompressGetSize`; `bytes` is what
/// was used and `flags` AVIIF_KEYFRAME for a key frame, else 0. Frames go in in order; their numbers are the
/// caller's own. A lossless encoder that can't keep a frame (noise alone, with Ut Video) refuses it.
int ICCompress(const HIC& codec, std::uint32_t wanted, const std::uint8_t* frame, int frameNumber,
               std::uint8_t* compressed, int& bytes, std::uint32_t& flags);

// ---- The choice

struct CompressorEntry {
    std::uint32_t handler;  ///< 0: uncompressed
    std::wstring description;
    bool lossless;
};
/// The encoders that the installed libraries have, uncompressed first.
std::vector<CompressorEntry> ListCompressors();

/// What a user chose. `codec` may be null (uncompressed).
struct COMPVARS {
    std::uint32_t fccType = 0;
    std::uint32_t fccHandler = 0;
    int lQ = -1;        ///< 0, the coarsest, to 10000; below 0: not said
    int lDataRate = 0;  ///< kilobytes a second; 0 goes by quality
    int lKey = 0;
    HIC hic;
};

/// Asks the user through what the program's shell has installed; false if there is nobody to ask or the user
/// refused.
bool ICCompressorChoose(COMPVARS& choice, const BITMAPINFOHEADER& format, const wchar_t* title);
void ICCompressorFree(COMPVARS& choice);

/// Who asks. Installed once at start by the program's shell.
using CompressorChooser = bool (*)(COMPVARS& choice, const BITMAPINFOHEADER& format, const wchar_t* title);
void SetCompressorChooser(CompressorChooser chooser);
