#include "video/display_picture.h"

#include "video/color_space.h"
#include "video/display.h"
#include "video/video_image.h"

namespace {

// Frames of YUV and of deep RGB come with their rows from the top, the 8-bit RGB of AVI and bitmap files
// bottom-up.

bool ShowYuv(const rkVideoImage& frame, int matrix, rkVideoImage& planes, rkVideoImage& picture) {
    if (!planes.Convert(frame, YUV, 0, false)) return false;
    picture.Create(planes.VisibleWidth(), planes.VisibleHeight(), RGB24, 0);
    rkYuvPlanesToRgb24(planes.Data(), picture.Data(), planes.VisibleWidth(), planes.Height(), planes.Stride(),
                       picture.Stride(), matrix);
    return picture.FlipVertical();
}

bool ShowDeepRgb(const rkVideoImage& frame, rkVideoImage& planes, rkVideoImage& picture) {
    return planes.Convert(frame, RGBP, 0, false) && picture.Convert(planes, RGB24, 0, false) &&
           picture.FlipVertical();
}

}  // namespace

bool MakeDisplayPicture(const rkVideoImage& frame, int matrix, rkVideoImage& scratch, rkVideoImage& picture) {
    if (rkIsYuv(frame.ColorSpace())) return ShowYuv(frame, matrix, scratch, picture);
    if (rkIsDeepRgb(frame.ColorSpace())) return ShowDeepRgb(frame, scratch, picture);
    return picture.Convert(frame, RGB24, 0, false);
}
