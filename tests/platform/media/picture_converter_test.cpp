#include "platform/media/picture_converter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace {

FramePtr MakePicture(AVPixelFormat format, int width, int height, AVColorRange range = AVCOL_RANGE_MPEG) {
    FramePtr frame = MakeFrame();
    frame->format = format;
    frame->width = width;
    frame->height = height;
    frame->color_range = range;
    EXPECT_EQ(0, av_frame_get_buffer(frame.get(), 0));
    for (const AVBufferRef* buffer : frame->buf)
        if (buffer != nullptr) std::fill_n(buffer->data, buffer->size, std::uint8_t{0});
    return frame;
}

/// Random samples of the three components, written by the library into a frame that is zero.
struct Samples {
    Samples(AVFrame& frame, unsigned seed) {
        const auto format = static_cast<AVPixelFormat>(frame.format);
        const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
        std::mt19937 random(seed);
        for (int i = 0; i < std::min<int>(3, descriptor->nb_components); ++i) {
            const bool isYuv =
                (descriptor->flags & AV_PIX_FMT_FLAG_RGB) == 0 && descriptor->nb_components > 2;
            const bool chroma = i > 0 && isYuv;
            width[i] = chroma ? frame.width >> descriptor->log2_chroma_w : frame.width;
            height[i] = chroma ? frame.height >> descriptor->log2_chroma_h : frame.height;
            depth[i] = descriptor->comp[i].depth;
            for (int y = 0; y < height[i]; ++y) {
                std::vector<std::uint16_t> row(static_cast<std::size_t>(width[i]));
                for (auto& sample : row)
                    sample = static_cast<std::uint16_t>(random() & ((1U << depth[i]) - 1));
                av_write_image_line2(row.data(), frame.data, frame.linesize, descriptor, 0, y, i, width[i],
                                     2);
                values[i].insert(values[i].end(), row.begin(), row.end());
            }
        }
    }
    double At(int component, int x, int y) const {
        return values[component][static_cast<std::size_t>(y * width[component] + x)];
    }

    std::vector<std::uint16_t> values[3];
    int width[3] = {}, height[3] = {}, depth[3] = {};
};

std::uint8_t Byte(double value) {
    return static_cast<std::uint8_t>(std::clamp(std::round(value), 0.0, 255.0));
}

/// The definitions of ITU-R BT.601 and BT.2100 for samples of n bits, in floating point.
std::uint8_t ExpectedYuv(const Samples& samples, int i, int x, int y, bool full) {
    const double largest = std::exp2(samples.depth[i]) - 1;
    const double unit = std::exp2(samples.depth[i] - 8);
    const double v = samples.At(i, x, y);
    if (!full) return Byte(v / unit);
    return i == 0 ? Byte(16 + 219 * v / largest) : Byte(128 + 224 * (v - 128 * unit) / largest);
}

std::uint8_t ExpectedRgb(const Samples& samples, int i, int x, int y) {
    return Byte(255 * samples.At(i, x, y) / (std::exp2(samples.depth[i]) - 1));
}

std::vector<std::uint8_t> Expected(const Samples& samples, Surface surface, bool full, bool isGrey) {
    std::vector<std::uint8_t> out;
    const auto add = [&](int i, int x, int y) {
        const bool isRgb = surface == Surface::RGB24;
        out.push_back(isRgb ? ExpectedRgb(samples, isGrey ? 0 : i, x, y)
                            : ExpectedYuv(samples, i, x, y, full));
    };
    if (surface == Surface::YV12) {
        for (const int i : {0, 2, 1}) {
            for (int y = 0; y < samples.height[i]; ++y)
                for (int x = 0; x < samples.width[i]; ++x) add(i, x, y);
        }
        return out;
    }
    for (int row = 0; row < samples.height[0]; ++row) {
        const int y = surface == Surface::RGB24 ? samples.height[0] - 1 - row : row;
        for (int x = 0; x < samples.width[0]; ++x) {
            if (surface == Surface::YUY2) {
                add(0, x, y);
                add(x % 2 == 0 ? 1 : 2, x / 2, y);
            } else {
                for (const int i : {2, 1, 0}) add(i, x, y);
            }
        }
        out.resize((out.size() + 3) / 4 * 4);  // rows end in zeros
    }
    return out;
}

TEST(PictureConverter, TakesEveryArrangementSampleBySample) {
    int formats = 0;
    for (int number = 0; number < AV_PIX_FMT_NB; ++number) {
        const auto format = static_cast<AVPixelFormat>(number);
        const PixelKind kind = PixelKindOf(format);
        if (kind == PixelKind::Other || kind == PixelKind::Palette) continue;
        ++formats;
        for (const bool full : {false, true}) {
            SCOPED_TRACE(std::string(av_get_pix_fmt_name(format)) + (full ? " full" : ""));
            const int width = kind == PixelKind::Rgb || kind == PixelKind::Grey ? 13 : 14;
            const FramePtr frame = MakePicture(format, width, 6, full ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG);
            const Samples samples(*frame, static_cast<unsigned>(number));
            const Surface surface = NaturalSurface(format, width, 6);
            std::vector<std::uint8_t> out(SurfaceBytes(surface, width, 6), 0xAA);
            if (kind == PixelKind::Grey) frame->color_range = AVCOL_RANGE_UNSPECIFIED;
            ASSERT_TRUE(PictureConverter(surface, width, 6).Convert(*frame, out.data()));
            const bool isFull = IsFullRange(format, frame->color_range);
            ASSERT_TRUE(Expected(samples, surface, isFull, kind == PixelKind::Grey) == out);
        }
    }
    EXPECT_GT(formats, 80);
}

using Color = std::array<int, 3>;

/// One colour everywhere, as RGB.
Color ToRgb(const FramePtr& frame, Color yuv) {
    for (std::size_t i = 0; i < 3; ++i) {
        const int rows =
            i == 0 || frame->format == AV_PIX_FMT_YUV444P ? frame->height : (frame->height + 1) / 2;
        std::fill_n(frame->data[i], frame->linesize[i] * rows, static_cast<std::uint8_t>(yuv[i]));
    }
    std::vector<std::uint8_t> out(SurfaceBytes(Surface::RGB24, frame->width, frame->height));
    EXPECT_TRUE(PictureConverter(Surface::RGB24, frame->width, frame->height).Convert(*frame, out.data()));
    const std::size_t stride = out.size() / static_cast<std::size_t>(frame->height);
    for (std::size_t i = 0; i < out.size(); ++i) {
        const bool isPadding = i % stride >= 3 * static_cast<std::size_t>(frame->width);
        EXPECT_TRUE(isPadding || out[i] == out[i % stride % 3]) << "flat stays flat";
    }
    return {out[2], out[1], out[0]};
}

TEST(PictureConverter, TurnsYuvIntoRgbByThePicturesMatrix) {
    // Expected: the matrices of the recommendations, worked by hand; the scaler's fixed point may be off by one.
    const std::tuple<const char*, AVColorSpace, AVColorRange, Color, Color> kCases[] = {
        {"black", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, {16, 128, 128}, {0, 0, 0}},
        {"white", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG, {235, 128, 128}, {255, 255, 255}},
        {"grey, full range", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_JPEG, {77, 128, 128}, {77, 77, 77}},
        {"601 where it isn't told", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG, {81, 90, 240}, {254, 0, 0}},
        {"709", AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, {81, 90, 240}, {255, 24, 0}},
        {"601, full range", AVCOL_SPC_SMPTE170M, AVCOL_RANGE_JPEG, {100, 100, 180}, {173, 72, 50}},
    };
    for (const auto& [what, matrix, range, yuv, expected] : kCases) {
        for (const AVPixelFormat format : {AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV420P}) {
            SCOPED_TRACE(what);
            const FramePtr frame = MakePicture(format, 7, 5, range);
            frame->colorspace = matrix;
            const auto rgb = ToRgb(frame, yuv);
            for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(expected[i], rgb[i], 1);
        }
    }
}

TEST(PictureConverter, FollowsPicturesThatChange) {
    PictureConverter converter(Surface::YV12, 2, 2);
    std::uint8_t out[6];
    const FramePtr planar = MakePicture(AV_PIX_FMT_YUV420P, 2, 2);
    for (int i = 0; i < 3; ++i) planar->data[i][0] = static_cast<std::uint8_t>(100 + i);
    ASSERT_TRUE(converter.Convert(*planar, out));
    EXPECT_EQ(100, out[0]);
    EXPECT_EQ(102, out[4]) << "V before U";

    planar->color_range = AVCOL_RANGE_JPEG;
    ASSERT_TRUE(converter.Convert(*planar, out));
    EXPECT_EQ(102, out[0]) << "16 + 219 * 100 / 255 = 101.88";

    EXPECT_FALSE(converter.Convert(*MakePicture(AV_PIX_FMT_YUV444P, 2, 2), out));
    EXPECT_FALSE(converter.Convert(*MakePicture(AV_PIX_FMT_YUV420P, 4, 2), out));

    const FramePtr deep = MakePicture(AV_PIX_FMT_YUV420P10LE, 2, 2);
    reinterpret_cast<std::uint16_t*>(deep->data[0])[0] = 1023;
    ASSERT_TRUE(converter.Convert(*deep, out));
    EXPECT_EQ(255, out[0]) << "rounding up stops at the largest byte";
}

TEST(PictureConverter, LooksColoursUpInAPalette) {
    const FramePtr frame = MakePicture(AV_PIX_FMT_PAL8, 1, 2);
    frame->data[0][0] = 7;
    frame->data[0][frame->linesize[0]] = 200;
    auto* palette = reinterpret_cast<std::uint32_t*>(frame->data[1]);
    palette[7] = 0xFF010203;
    palette[200] = 0xFFF0E0D0;
    std::array<std::uint8_t, 8> out = {};
    ASSERT_TRUE(PictureConverter(Surface::RGB24, 1, 2).Convert(*frame, out.data()));
    EXPECT_EQ((std::array<std::uint8_t, 8>{0xD0, 0xE0, 0xF0, 0, 3, 2, 1, 0}), out) << "bottom-up";
}

TEST(PictureFormat, ChoosesTheSurfaceAndSaysWhatItCosts) {
    const auto kFull = AVCOL_RANGE_JPEG, kVideo = AVCOL_RANGE_MPEG, kUntold = AVCOL_RANGE_UNSPECIFIED;
    const char* const kSqueezed = "full range converted to video range";
    const std::tuple<AVPixelFormat, AVColorRange, int, int, Surface, const char*> kCases[] = {
        {AV_PIX_FMT_YUV420P, kVideo, 16, 8, Surface::YV12, ""},
        {AV_PIX_FMT_NV12, kUntold, 16, 8, Surface::YV12, ""},
        {AV_PIX_FMT_YUV420P, kVideo, 15, 8, Surface::RGB24, "4:2:0 converted to RGB"},
        {AV_PIX_FMT_YUV420P, kVideo, 16, 7, Surface::RGB24, "4:2:0 converted to RGB"},
        {AV_PIX_FMT_YUVJ420P, kUntold, 16, 8, Surface::YV12, kSqueezed},
        {AV_PIX_FMT_YUV420P, kFull, 16, 8, Surface::YV12, kSqueezed},
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
    for (const auto& [format, range, width, height, surface, words] : kCases) {
        SCOPED_TRACE(av_get_pix_fmt_name(format));
        EXPECT_EQ(surface, NaturalSurface(format, width, height));
        EXPECT_EQ(words, DescribeConversion(format, range, surface));
        EXPECT_TRUE(CanConvert(format, width, height, Surface::RGB24));
        for (const Surface other : {Surface::YV12, Surface::YUY2})
            EXPECT_EQ(other == surface, CanConvert(format, width, height, other));
    }
    for (const AVPixelFormat format : {AV_PIX_FMT_NONE, AV_PIX_FMT_VAAPI})
        EXPECT_FALSE(CanConvert(format, 16, 8, Surface::RGB24));
}

}  // namespace
