#pragma once

#include <cstdint>
#include <vector>

#include "bench/noise.h"
#include "video/color_space.h"
#include "video/video_image.h"

/// The layouts that there are frames of, with names for benchmarks: that some have none in the program is
/// because raw files don't have them.
inline constexpr struct {
    int layout;
    const char* name;
} kLayouts[] = {
    {RGB24, "RGB24"},       {RGB32, "RGB32"}, {YUV, "YUV"},   {YUY2, "YUY2"},         {UYVY, "UYVY"},
    {YV12, "YV12"},         {IYUV, "IYUV"},   {Y, "Y"},       {YV16, "YV16"},         {RGBP, "RGBP"},
    {GDIF, "GDIF"},         {YUVQ, "YUVQ"},   {YRGN, "YRGN"}, {Y410, "Y410"},         {P010, "P010"},
    {P014, "P014"},         {P016, "P016"},   {P210, "P210"}, {P214, "P214"},         {P216, "P216"},
    {P410, "P410"},         {P414, "P414"},   {P416, "P416"}, {P410_RGB, "P410_RGB"}, {P414_RGB, "P414_RGB"},
    {P416_RGB, "P416_RGB"},
};

/// Fills `image` with a frame of noise.
inline void CreateNoise(rkVideoImage& image, int layout, int width, int height, unsigned seed) {
    image.Create(width, height, layout, 0);
    std::vector<std::uint8_t> packed(image.PackedFrameBytes());
    const int bits = rkSampleBits(layout);
    if (bits > 8)
        FillWithNoise(reinterpret_cast<std::uint16_t*>(packed.data()), packed.size() / 2, seed, bits);
    else
        FillWithNoise(packed.data(), packed.size(), seed);
    image.LoadFrame(packed.data());
}
