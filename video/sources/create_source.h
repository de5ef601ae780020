#pragma once

#include <memory>
#include <string>

#include "video/video_source.h"

/// The factories of the sources. Each returns a new open source, or null when the file can't be opened;
/// the reason goes with the source.

/// A headerless file of frames of `width` by `height` in the layout `colorSpace`.
std::unique_ptr<rkIVideoSource> rkCreateYuvSource(const std::wstring& fileName, int width, int height,
                                                  int colorSpace);

/// A file that describes itself, by the last three letters of its name in any case: `avi`, `avs`, `bmp`,
/// `y4m`. Null for any other name. `preferPlanar` asks a source that can choose for planar YUV.
std::unique_ptr<rkIVideoSource> rkCreateVideoSource(const std::wstring& fileName, bool preferPlanar);
