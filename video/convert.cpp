#include "video/convert.h"

#include "video/color_space.h"

namespace {

struct Pair {
    int source;
    int target;
    rkConversion convert;
};

constexpr Pair kPairs[] = {
    {RGB24, YUV, rkRgb24ToYuv},        {RGB32, YUV, rkRgb32ToYuv},
    {YUY2, YUV, rkYuy2ToYuv},          {UYVY, YUV, rkUyvyToYuv},
    {YV12, YUV, rkPlanarToPlanes},     {IYUV, YUV, rkPlanarToPlanes},
    {YV16, YUV, rkPlanarToPlanes},     {Y, YUV, rkLumaToYuv},
    {Y410, YUV, rkY410ToYuv},          {P010, YUV, rkDeepToPlanes},
    {P014, YUV, rkDeepToPlanes},       {P016, YUV, rkDeepToPlanes},
    {P210, YUV, rkDeepToPlanes},       {P214, YUV, rkDeepToPlanes},
    {P216, YUV, rkDeepToPlanes},       {P410, YUV, rkDeepToPlanes},
    {P414, YUV, rkDeepToPlanes},       {P416, YUV, rkDeepToPlanes},

    {RGB32, RGB24, rkRgb32ToRgb24},    {YUV, RGB24, rkYuvToRgb24},
    {YUY2, RGB24, rkYuy2ToRgb24},      {YV12, RGB24, rkPlanar420ToRgb24},
    {IYUV, RGB24, rkPlanar420ToRgb24}, {RGBP, RGB24, rkRgbpToRgb24},
    {GDIF, RGB24, rkGdifToRgb24},

    {RGB24, RGBP, rkRgb24ToRgbp},      {P410_RGB, RGBP, rkDeepToPlanes},
    {P414_RGB, RGBP, rkDeepToPlanes},  {P416_RGB, RGBP, rkDeepToPlanes},

    {RGB24, RGB32, rkRgb24ToRgb32},    {YUV, RGB32, rkYuvToRgb32},
    {Y, RGB32, rkLumaToRgb32},         {RGB24, YUY2, rkRgb24ToYuy2},
    {YV16, YUY2, rkYv16ToYuy2},        {RGB32, Y, rkRgb32ToLuma},
    {RGB24, GDIF, rkRgb24ToGdif},      {RGB24, YUVQ, rkRgb24ToYuvq},
    {RGB24, YRGN, rkRgb24ToYrgn},
};

}  // namespace

rkConversion rkFindConversion(int sourceColorSpace, int targetColorSpace) {
    for (const Pair& pair : kPairs) {
        if (pair.source == sourceColorSpace && pair.target == targetColorSpace) return pair.convert;
    }
    return nullptr;
}
