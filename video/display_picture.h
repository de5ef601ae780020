#pragma once

class rkVideoImage;

/// Makes `picture` the frame as people see it, whatever its layout: `RGB24` with its rows bottom-up, as
/// bitmaps have them. `matrix` is that of `rkYuvPlanesToRgb24`. False for a frame without pixels or of a
/// layout that can't be shown; `picture` is of no use then. `scratch` is what the conversion works with.
/// Throws std::bad_alloc.
bool MakeDisplayPicture(const rkVideoImage& frame, int matrix, rkVideoImage& scratch, rkVideoImage& picture);
