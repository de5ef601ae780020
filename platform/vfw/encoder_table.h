#pragma once

#include <cstdint>
#include <span>

#include "platform/media/libav.h"

/// What an encoder of ours is made of.
struct EncoderEntry {
    std::uint32_t handler;
    const char* encoder;      ///< the library's name for it
    AVPixelFormat pixels;     ///< what it is fed with
    AVPixelFormat oddPixels;  ///< the same where a side is odd
    int leastSide;            ///< the library spoils smaller pictures
    bool lossless;
    bool intraOnly;  ///< every frame is a key frame
    const wchar_t* description;
};

std::span<const EncoderEntry> EncoderTable();

/// Null for a code that isn't in the table, or whose encoder the libraries lack.
const EncoderEntry* FindEncoder(std::uint32_t handler);
