#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "video/color_space.h"

/// The text lines of a YUV4MPEG2 stream, without a file.
///
/// Stream  the signature, parameters, a line feed; then frames.
/// Frame   the frame mark, parameters, a line feed; then the picture's bytes.
/// Parameters are tokens, each a space, a letter and the token's text up to the next space.

inline constexpr std::string_view kY4mSignature = "YUV4MPEG2";
inline constexpr std::string_view kY4mFrameMark = "FRAME";
/// Bytes of a stream's parameters with their line feed; a longer line is refused.
inline constexpr std::size_t kY4mMaxParameters = 1024;
/// Bytes of a frame's mark and parameters with their line feed; a longer line is cut there.
inline constexpr std::size_t kY4mLongestFrameLine = kY4mFrameMark.size() + 80;
inline constexpr std::size_t kY4mMaxComment = 89;

/// The stream's parameters. Width and height are at least 1.
struct Y4mHeader {
    int colorSpace = IYUV;  // of 8-bit frames: IYUV, YV16 or YUV
    int sampleBits = 8;     // 9 to 16 if the colour word says so ("420p10"), else 8
    int width = -1;
    int height = -1;
    int rateNumerator = 0;  // 25:1 if neither number was above 0
    int rateDenominator = 0;
    int aspectNumerator = 0;  // of a pixel; 1:1 unless both numbers were above 0
    int aspectDenominator = 0;
    int interlacing = 0;   // 0 progressive, 1 top field first, 2 bottom field first
    std::wstring comment;  // of the last X token, a byte a character
};

/// Parses what stands between the signature and the line feed. Null if a token is none of the format's, the
/// colour word or the interlacing isn't supported, or a side is missing or isn't a number from 1 to 2^31 - 1.
std::optional<Y4mHeader> ParseY4mParameters(std::string_view parameters);

/// What precedes the picture of a frame.
struct Y4mFrameLine {
    std::size_t bytes = 0;        // from the frame's start to the picture's first byte
    std::string_view parameters;  // part of what was searched
};

/// Finds the frame line in `start`: the frame's first `kY4mLongestFrameLine` bytes, or what the file has of
/// them. The picture stands behind the line feed; without one behind `start`, without a frame mark where it
/// would have ended.
Y4mFrameLine FindY4mFrameLine(std::string_view start);

/// Takes the text of the line's last X token, if there is one. No other token of a frame means anything.
void TakeY4mComment(std::string_view parameters, std::wstring& comment);
