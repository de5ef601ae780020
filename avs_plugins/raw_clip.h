#pragma once

#include <string>

#include "platform/script_host/clip.h"

/// A headerless file of 8-bit frames without gaps as a clip. `format` in any case:
///
/// YV12, I420              planar 4:2:0, Y, V, U and Y, U, V; handed over as YV12
/// Y8                      luma alone; YV12 with all chroma 128
/// YUYV, YVYU, UYVY, VYUY  interleaved 4:2:2 in the order of the letters; YUY2
///
/// A surface's sizes hold for the file too: both even for YV12, an even width for YUY2; others are refused, for readers
/// don't agree where the chroma of a last odd row or column stands. A partial last frame isn't counted. 25 frames a
/// second. `path` is UTF-8.
ScriptResult OpenRawClip(const std::string& path, int width, int height, const std::string& format);
