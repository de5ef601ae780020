#include "video/color_space.h"

#include <cwchar>
#include <iterator>

namespace {

struct Tag {
    int colorSpace;
    const wchar_t* name;  // null: no raw file has this layout
    int unit;
    rkPlaneShape shape;
};

constexpr rkPlaneShape Interleaved(int pixelBytes) {
    return {1, pixelBytes, 0, 0};
}

constexpr rkPlaneShape kFull = {3, 1, 0, 0};
constexpr rkPlaneShape kHalf = {3, 1, 1, 0};
constexpr rkPlaneShape kQuarter = {3, 1, 1, 1};
constexpr rkPlaneShape kDeepFull = {3, 2, 0, 0};
constexpr rkPlaneShape kDeepHalf = {3, 2, 1, 0};
constexpr rkPlaneShape kDeepQuarter = {3, 2, 1, 1};

constexpr Tag kTags[] = {
    {RGB24, nullptr, 3, Interleaved(3)},
    {RGB32, nullptr, 4, Interleaved(4)},
    {YUV, L"YUV", 3, kFull},
    {YUY2, L"YUY2", 2, Interleaved(2)},
    {UYVY, L"UYVY", 2, Interleaved(2)},
    {YV12, L"YV12", 2, kQuarter},
    {IYUV, L"IYUV", 2, kQuarter},
    {Y, L"Y", 1, {1, 1, 0, 0}},
    {YV16, L"YV16", 2, kHalf},
    {RGBP, nullptr, 3, kFull},
    {GDIF, nullptr, 3, kFull},
    {YUVQ, nullptr, 3, kFull},
    {YRGN, nullptr, 3, kFull},
    {Y410, L"Y410", 4, Interleaved(4)},  // the room of a row; its blocks fill two thirds of it
    {Packed422Deep, nullptr, 4, Interleaved(8)},
    {VYUY, nullptr, 4, {}},
    {YVYU, nullptr, 4, {}},
    {P010, L"P010", 3, kDeepQuarter},
    {P014, L"P014", 3, kDeepQuarter},
    {P016, L"P016", 3, kDeepQuarter},
    {P210, L"P210", 4, kDeepHalf},
    {P214, L"P214", 4, kDeepHalf},
    {P216, L"P216", 4, kDeepHalf},
    {P410, L"P410", 6, kDeepFull},
    {P414, L"P414", 6, kDeepFull},
    {P416, L"P416", 6, kDeepFull},
    {P410_RGB, L"P410_RGB", 6, kDeepFull},
    {P414_RGB, L"P414_RGB", 6, kDeepFull},
    {P416_RGB, L"P416_RGB", 6, kDeepFull},
};
constexpr int kTagCount = static_cast<int>(std::size(kTags));

constexpr bool IsIndexedByTag() {
    for (int i = 0; i < kTagCount; ++i) {
        if (kTags[i].colorSpace != i) return false;
    }
    return true;
}
static_assert(IsIndexedByTag());

constexpr Tag kNoTag = {-1, nullptr, 0, {}};

const Tag& TagOf(int colorSpace) {
    return colorSpace >= 0 && colorSpace < kTagCount ? kTags[colorSpace] : kNoTag;
}

}  // namespace

int rkPixelUnit(int colorSpace) {
    return TagOf(colorSpace).unit;
}

rkPlaneShape rkPlaneShapeOf(int colorSpace) {
    return TagOf(colorSpace).shape;
}

bool rkIsDeepRgb(int colorSpace) {
    return colorSpace >= P410_RGB && colorSpace <= P416_RGB;
}

bool rkIsDeepYuv(int colorSpace) {
    return colorSpace >= P010 && colorSpace <= P416;
}

bool rkIsRgb(int colorSpace) {
    return colorSpace == RGB24 || colorSpace == RGB32 || colorSpace == RGBP || rkIsDeepRgb(colorSpace);
}

bool rkIsYuv(int colorSpace) {
    return (colorSpace >= YUV && colorSpace <= YV16) || colorSpace == Y410 || colorSpace == Packed422Deep ||
           rkIsDeepYuv(colorSpace);
}

int rkSampleBits(int colorSpace) {
    if (!rkIsDeepYuv(colorSpace) && !rkIsDeepRgb(colorSpace)) return 8;
    constexpr int kBits[] = {10, 14, 16};  // every family of deep tags has the three depths in this order
    return kBits[(colorSpace - P010) % 3];
}

const wchar_t* rkColorSpaceName(int colorSpace) {
    const wchar_t* name = TagOf(colorSpace).name;
    return name ? name : L"unknown";
}

int rkColorSpaceByName(const wchar_t* name) {
    for (const Tag& tag : kTags) {
        if (tag.name && std::wcscmp(tag.name, name) == 0) return tag.colorSpace;
    }
    return -1;
}
