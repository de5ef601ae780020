#include "metric/convert_frame.h"

#include "metric/metric_image.h"
#include "video/color_space.h"
#include "video/video_image.h"

namespace Metric {

namespace {

bool LoadYuv(const rkVideoImage& frame, rkVideoImage& scratch, CMetricImage& image) {
    const int bits = rkSampleBits(frame.ColorSpace());
    switch (frame.ColorSpace()) {
        case P010:
        case P014:
        case P016:
            image.LoadYuvDeep420(frame.Data(), bits);
            return true;
        case P210:
        case P214:
        case P216:
            image.LoadYuvDeep422(frame.Data(), bits);
            return true;
        case P410:
        case P414:
        case P416:
            image.LoadYuvDeep444(frame.Data(), bits);
            return true;
        default:
            break;
    }

    const bool isPlanar = frame.ColorSpace() == YUV;
    if (!isPlanar && !scratch.Convert(frame, YUV, 0, false)) return false;
    const rkVideoImage& planar = isPlanar ? frame : scratch;
    image.LoadYuvBytes(planar.Data(), planar.Stride(), planar.PlaneOffset(1));
    return true;
}

bool LoadRgb(const rkVideoImage& frame, rkVideoImage& flipped, rkVideoImage& planar, CMetricImage& image) {
    if (rkIsDeepRgb(frame.ColorSpace())) {
        image.LoadRgbDeep(frame.Data(), rkSampleBits(frame.ColorSpace()));
        return true;
    }
    if (!flipped.Convert(frame, RGB24, 0, false) || !flipped.FlipVertical()) return false;
    if (!planar.Convert(flipped, RGBP, 0, false)) return false;
    image.LoadRgbBytes(planar.Data(), planar.Stride(), planar.PlaneOffset(1));
    return true;
}

}  // namespace

bool ConvertFrame(const rkVideoImage& frame, rkVideoImage& scratchFirst, rkVideoImage& scratchSecond,
                  CMetricImage& image, int matrix, int component) {
    const bool isYuv = rkIsYuv(frame.ColorSpace());
    if (!isYuv && !rkIsRgb(frame.ColorSpace())) return true;
    if (frame.Data() == nullptr || frame.VisibleWidth() != image.GetWidth() ||
        frame.VisibleHeight() != image.GetHeight())
        return false;

    const bool loaded =
        isYuv ? LoadYuv(frame, scratchFirst, image) : LoadRgb(frame, scratchFirst, scratchSecond, image);
    if (!loaded) return false;

    // Only a change of family is asked for: the converters set the peak also when there is nothing to
    // convert.
    const bool wantsRgb = component == ComponentR || component == ComponentG || component == ComponentB;
    const bool wantsYuv = component == ComponentY || component == ComponentU || component == ComponentV;
    if (component == ComponentL) image.ToL(matrix);
    if (wantsRgb && isYuv) image.ToRgb(matrix);
    if (wantsYuv && !isYuv) image.ToYuv(matrix);
    return true;
}

}  // namespace Metric
