#include "metric/convert_frame.h"

#include "metric/frame_samples.h"
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

    if (const auto samples = SamplesInPlace(frame)) {
        image.LoadBytes(CMetricImage::FamilyYuv, *samples);
        return true;
    }
    if (!scratch.Convert(frame, YUV, 0, false)) return false;
    image.LoadYuvBytes(scratch.Data(), scratch.Stride(), scratch.PlaneOffset(1));
    return true;
}

bool LoadRgb(const rkVideoImage& frame, CMetricImage& image) {
    if (rkIsDeepRgb(frame.ColorSpace())) {
        image.LoadRgbDeep(frame.Data(), rkSampleBits(frame.ColorSpace()));
        return true;
    }
    const auto samples = SamplesInPlace(frame);
    if (samples) image.LoadBytes(CMetricImage::FamilyRgb, *samples);
    return samples.has_value();
}

}  // namespace

bool NeedsUnpacking(const rkVideoImage& frame) {
    return frame.HasPixels() && rkSampleBits(frame.ColorSpace()) == 8 && !SamplesInPlace(frame);
}

bool ConvertFrame(const rkVideoImage& frame, rkVideoImage& scratchFirst, rkVideoImage& /*scratchSecond*/,
                  CMetricImage& image, int matrix, int component) {
    image.DropFrame();  // it may be gone or another one by now
    const bool isYuv = rkIsYuv(frame.ColorSpace());
    if (!isYuv && !rkIsRgb(frame.ColorSpace())) return true;
    if (!frame.HasPixels() || frame.VisibleWidth() != image.GetWidth() ||
        frame.VisibleHeight() != image.GetHeight())
        return false;

    if (!(isYuv ? LoadYuv(frame, scratchFirst, image) : LoadRgb(frame, image))) return false;

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
