#include "metric/frame_samples.h"

#include "video/color_space.h"
#include "video/video_image.h"

namespace Metric {

namespace {

constexpr float kNeutralChroma = 128;

/// Plane `plane` of the frame's file order.
SamplePlane Planar(const rkVideoImage& frame, int plane, float centre) {
    const rkPlaneShape shape = rkPlaneShapeOf(frame.ColorSpace());
    SamplePlane samples = {frame.Row(plane, 0), frame.PlaneStride(plane)};
    if (plane > 0) {
        samples.shiftX = shape.shiftX;
        samples.shiftY = shape.shiftY;
    }
    samples.centre = centre;
    return samples;
}

SamplePlanes PlanarYuv(const rkVideoImage& frame, int u, int v) {
    return {Planar(frame, 0, 0), Planar(frame, u, kNeutralChroma), Planar(frame, v, kNeutralChroma)};
}

/// The chroma of a layout without one is 0, as far from neutral as can be.
SamplePlanes LumaOnly(const rkVideoImage& frame) {
    static constexpr std::uint8_t kNoChroma = 0;
    SamplePlane chroma = {&kNoChroma, 0};
    chroma.unitBytes = 0;
    chroma.centre = kNeutralChroma;
    return {Planar(frame, 0, 0), chroma, chroma};
}

/// Two pixels in four bytes: the places of Y0 and U; those of Y1 and V are two bytes on.
SamplePlanes Interleaved422(const rkVideoImage& frame, int luma, int chroma) {
    SamplePlane y = {frame.Row(0, 0), frame.Stride()};
    y.unitBytes = 2;
    y.offset = luma;
    SamplePlane u = {frame.Row(0, 0), frame.Stride()};
    u.unitBytes = 4;
    u.offset = chroma;
    u.shiftX = 1;
    u.centre = kNeutralChroma;
    SamplePlane v = u;
    v.offset = chroma + 2;
    return {y, u, v};
}

/// `plane` with the picture's last row first.
SamplePlane BottomUp(SamplePlane plane, int height) {
    plane.rows += (height - 1) * plane.rowBytes;
    plane.rowBytes = -plane.rowBytes;
    return plane;
}

/// Bytes B, G, R, perhaps with a fourth one.
SamplePlanes InterleavedRgb(const rkVideoImage& frame) {
    SamplePlane b = BottomUp({frame.Row(0, 0), frame.Stride()}, frame.VisibleHeight());
    b.unitBytes = rkPlaneShapeOf(frame.ColorSpace()).sampleBytes;
    SamplePlane g = b;
    g.offset = 1;
    SamplePlane r = b;
    r.offset = 2;
    return {r, g, b};
}

SamplePlanes PlanarRgb(const rkVideoImage& frame) {
    const int height = frame.VisibleHeight();
    return {BottomUp(Planar(frame, 0, 0), height), BottomUp(Planar(frame, 1, 0), height),
            BottomUp(Planar(frame, 2, 0), height)};
}

}  // namespace

std::optional<SamplePlanes> SamplesInPlace(const rkVideoImage& frame) {
    switch (frame.ColorSpace()) {
        case YUV:
        case IYUV:
        case YV16:
            return PlanarYuv(frame, 1, 2);
        case YV12:
            return PlanarYuv(frame, 2, 1);
        case Y:
            return LumaOnly(frame);
        case YUY2:
            return Interleaved422(frame, 0, 1);
        case UYVY:
            return Interleaved422(frame, 1, 0);
        case RGB24:
        case RGB32:
            return InterleavedRgb(frame);
        case RGBP:
            return PlanarRgb(frame);
        default:
            return std::nullopt;
    }
}

}  // namespace Metric
