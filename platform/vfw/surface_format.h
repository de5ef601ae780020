#pragma once

#include <optional>

#include "platform/media/surface.h"
#include "platform/vfw/bitmap_format.h"

/// The surface that a bitmap format stands for; none for another compression or bit count.
std::optional<Surface> SurfaceOf(const BITMAPINFOHEADER& format);

/// The bitmap format of pictures on a surface.
BITMAPINFOHEADER FormatOf(Surface surface, int width, int height);
