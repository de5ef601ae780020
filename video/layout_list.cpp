#include "video/layout_list.h"

#include "video/color_space.h"

#include <cstddef>

namespace {

constexpr rkLayoutItem kInternalReader[] = {
    {L"IYUV (I420)", IYUV},
    {L"YV12", YV12},
    {L"YUV", YUV},
    {L"UYVY", UYVY},
    {L"Y", Y},
    {L"YUY2 (YUYV)", YUY2},
    {L"YV16", YV16},
    {L"10 bit 4:2:0 yuv", P010},
    {L"14 bit 4:2:0 yuv", P014},
    {L"16 bit 4:2:0 yuv", P016},
    {L"10 bit 4:2:2 yuv", P210},
    {L"14 bit 4:2:2 yuv", P214},
    {L"16 bit 4:2:2 yuv", P216},
    {L"10 bit 4:4:4 yuv", P410},
    {L"14 bit 4:4:4 yuv", P414},
    {L"16 bit 4:4:4 yuv", P416},
    {L"10 bit 4:4:4 rgb", P410_RGB},
    {L"14 bit 4:4:4 rgb", P414_RGB},
    {L"16 bit 4:4:4 rgb", P416_RGB},
};

constexpr rkLayoutItem kScriptReader[] = {
    {L"IYUV (I420)", IYUV}, {L"YV12", YV12}, {L"YUV", YUV},          {L"Y", Y},
    {L"UYVY", UYVY},        {L"VYUY", VYUY}, {L"YUY2 (YUYV)", YUY2}, {L"YVYU", YVYU},
};

}  // namespace

std::span<const rkLayoutItem> rkInternalReaderLayouts() {
    return kInternalReader;
}

std::span<const rkLayoutItem> rkScriptReaderLayouts() {
    return kScriptReader;
}

int rkLayoutPosition(std::span<const rkLayoutItem> list, int colorSpace) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].colorSpace == colorSpace) return static_cast<int>(i);
    }
    return 0;
}
