#include "platform/media/picture_format.h"

#include <gtest/gtest.h>

namespace {

TEST(PictureFormat, ChoosesTheSurfaceAndSaysWhatItCosts) {
    const auto kFull = AVCOL_RANGE_JPEG;
    const auto kVideo = AVCOL_RANGE_MPEG;
    const struct {
        AVPixelFormat format;
        AVColorRange range;
        int width, height;
        Surface surface;
        const char* words;
    } kCases[] = {
        {AV_PIX_FMT_YUV420P, kVideo, 16, 8, Surface::YV12, ""},
        {AV_PIX_FMT_NV12, AVCOL_RANGE_UNSPECIFIED, 16, 8, Surface::YV12, ""},
        {AV_PIX_FMT_YUV420P, kVideo, 15, 8, Surface::RGB24, "4:2:0 converted to RGB"},
        {AV_PIX_FMT_YUV420P, kVideo, 16, 7, Surface::RGB24, "4:2:0 converted to RGB"},
        {AV_PIX_FMT_YUVJ420P, AVCOL_RANGE_UNSPECIFIED, 16, 8, Surface::YV12,
         "full range converted to video range"},
        {AV_PIX_FMT_YUV420P, kFull, 16, 8, Surface::YV12, "full range converted to video range"},
        {AV_PIX_FMT_YUV420P10LE, kVideo, 16, 8, Surface::YV12, "10-bit 4:2:0 rounded to 8 bits"},
        {AV_PIX_FMT_P010BE, kFull, 16, 8, Surface::YV12,
         "10-bit 4:2:0 rounded to 8 bits, full range converted to video range"},
        {AV_PIX_FMT_YUVA420P, kVideo, 16, 8, Surface::YV12, "transparency dropped"},
        {AV_PIX_FMT_UYVY422, kVideo, 2, 7, Surface::YUY2, ""},
        {AV_PIX_FMT_YUV422P, kVideo, 3, 8, Surface::RGB24, "4:2:2 converted to RGB"},
        {AV_PIX_FMT_YUV422P12LE, kVideo, 16, 7, Surface::YUY2, "12-bit 4:2:2 rounded to 8 bits"},
        {AV_PIX_FMT_YUV444P, kVideo, 16, 8, Surface::RGB24, "4:4:4 converted to RGB"},
        {AV_PIX_FMT_YUV444P16BE, kVideo, 16, 8, Surface::RGB24, "16-bit 4:4:4 converted to 8-bit RGB"},
        {AV_PIX_FMT_YUV411P, kVideo, 16, 8, Surface::RGB24, "4:1:1 converted to RGB"},
        {AV_PIX_FMT_GRAY8, kVideo, 16, 8, Surface::RGB24, "grey converted to RGB"},
        {AV_PIX_FMT_MONOWHITE, kVideo, 16, 8, Surface::RGB24, "grey converted to RGB"},
        {AV_PIX_FMT_GBRP, kFull, 15, 7, Surface::RGB24, ""},
        {AV_PIX_FMT_BGR0, kVideo, 16, 8, Surface::RGB24, ""},
        {AV_PIX_FMT_PAL8, kFull, 16, 8, Surface::RGB24, ""},
        {AV_PIX_FMT_RGBA, kFull, 16, 8, Surface::RGB24, "transparency dropped"},
        {AV_PIX_FMT_RGB555LE, kFull, 16, 8, Surface::RGB24, "5-bit RGB widened to 8 bits"},
        {AV_PIX_FMT_GBRP10LE, kFull, 16, 8, Surface::RGB24, "10-bit RGB rounded to 8 bits"},
        {AV_PIX_FMT_XYZ12LE, kFull, 16, 8, Surface::RGB24, "12-bit XYZ converted to 8-bit RGB"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(av_get_pix_fmt_name(c.format));
        EXPECT_EQ(c.surface, NaturalSurface(c.format, c.width, c.height));
        EXPECT_EQ(c.words, DescribeConversion(c.format, c.range, c.surface));
        EXPECT_TRUE(CanConvert(c.format, c.width, c.height, c.surface));
        EXPECT_TRUE(CanConvert(c.format, c.width, c.height, Surface::RGB24));
        for (const Surface other : {Surface::YV12, Surface::YUY2}) {
            EXPECT_EQ(other == c.surface, CanConvert(c.format, c.width, c.height, other));
        }
    }
    EXPECT_FALSE(CanConvert(AV_PIX_FMT_NONE, 16, 8, Surface::RGB24));
    EXPECT_FALSE(CanConvert(AV_PIX_FMT_VAAPI, 16, 8, Surface::RGB24));
}

}  // namespace
