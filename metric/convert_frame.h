#pragma once

class rkVideoImage;

namespace Metric {

class CMetricImage;

/// Fills `image` for `component` from a frame as its source delivered it: the one road from a frame to float
/// planes.
///
/// `matrix` is the colour matrix, 0 REC.601 or 1 PC.601. False if there is no conversion for the frame's
/// layout, and for a frame without pixels or of another size than the image; then `image` keeps the planes
/// that it has made. A layout that is neither of the YUV nor of the RGB family fills nothing and returns
/// true.
///
/// The image makes its planes from the frame's own samples when they are asked for, so the frame stays as it
/// is until the next call for that image. A layout that can't be read in place is unpacked into
/// `scratchFirst`, which then has to stay too; no layout takes the two steps that `scratchSecond` is for. The
/// scratch images belong to the caller, who reuses them from frame to frame. The frame is only read: several
/// images may be filled from it at once, each with scratch images of its own.
bool ConvertFrame(const rkVideoImage& frame, rkVideoImage& scratchFirst, rkVideoImage& scratchSecond,
                  CMetricImage& image, int matrix, int component);

/// Whether `ConvertFrame` has to unpack such a frame; otherwise it only notes where the samples lie.
bool NeedsUnpacking(const rkVideoImage& frame);

}  // namespace Metric
