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
    for (const AVBufferRef* buffer : frame->buf) {
        if (buffer != nullptr) std::fill_n(buffer->data, buffer->size, std::uint8_t{0});
    }
    return frame;
}

/// Random samples of the three components, written by the library into a frame that is zero.
struct Samples {
    Samples(AVFrame& frame, unsigned seed) {
        const auto format = static_cast<AVPixelFormat>(frame.format);
        const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
        std::mt19937 random(seed);
        for (int i = 0; i < std::min<int>(3, descriptor->nb_components); ++i) {
            const bool chroma =
                i > 0 && (descriptor->flags & AV_PIX_FMT_FLAG_RGB) == 0 && descriptor->nb_components > 2;
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

int Byte(double value) {
    return static_cast<int>(std::clamp(std::round(value), 0.0, 255.0));
}

/// The definitions of ITU-R BT.601 and BT.2100 for samples of n bits, in floating point.
int ExpectedYuv(const Samples& samples, int i, int x, int y, bool full) {
    const double largest = std::exp2(samples.depth[i]) - 1;
    const double unit = std::exp2(samples.depth[i] - 8);
    const double v = samples.At(i, x, y);
    if (!full) return Byte(v / unit);
    return i == 0 ? Byte(16 + 219 * v / largest) : Byte(128 + 224 * (v - 128 * unit) / largest);
}

int ExpectedRgb(const Samples& samples, int i, int x, int y) {
    return Byte(255 * samples.At(i, x, y) / (std::exp2(samples.depth[i]) - 1));
}

void CheckYv12(const Samples& samples, const std::vector<std::uint8_t>& out, bool full) {
    std::size_t at = 0;
    for (const int i : {0, 2, 1}) {
        for (int y = 0; y < samples.height[i]; ++y) {
            for (int x = 0; x < samples.width[i]; ++x)
                ASSERT_EQ(ExpectedYuv(samples, i, x, y, full), out[at++]);
        }
    }
    EXPECT_EQ(out.size(), at);
}

void CheckYuy2(const Samples& samples, const std::vector<std::uint8_t>& out, bool full) {
    std::size_t at = 0;
    for (int y = 0; y < samples.height[0]; ++y) {
        for (int x = 0; x < samples.width[0]; ++x) {
            ASSERT_EQ(ExpectedYuv(samples, 0, x, y, full), out[at++]);
            ASSERT_EQ(ExpectedYuv(samples, x % 2 == 0 ? 1 : 2, x / 2, y, full), out[at++]);
        }
    }
    EXPECT_EQ(out.size(), at);
}

void CheckRgb(const Samples& samples, const std::vector<std::uint8_t>& out, bool grey) {
    const auto stride = out.size() / static_cast<std::size_t>(samples.height[0]);
    for (int y = 0; y < samples.height[0]; ++y) {
        const std::uint8_t* row = out.data() + stride * static_cast<std::size_t>(samples.height[0] - 1 - y);
        for (int x = 0; x < samples.width[0]; ++x) {
            for (int i = 0; i < 3; ++i)
                ASSERT_EQ(ExpectedRgb(samples, grey ? 0 : i, x, y), row[3 * x + 2 - i]);
        }
        for (std::size_t i = 3 * static_cast<std::size_t>(samples.width[0]); i < stride; ++i)
            ASSERT_EQ(0, row[i]);
    }
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
            switch (surface) {
                case Surface::YV12:
                    CheckYv12(samples, out, isFull);
                    break;
                case Surface::YUY2:
                    CheckYuy2(samples, out, isFull);
                    break;
                case Surface::RGB24:
                    CheckRgb(samples, out, kind == PixelKind::Grey);
                    break;
            }
        }
    }
    EXPECT_GT(formats, 80);
}

/// One colour everywhere, as RGB.
std::array<int, 3> ToRgb(AVPixelFormat format, AVColorSpace matrix, AVColorRange range,
                         std::array<int, 3> yuv) {
    const int width = 7, height = 5;
    const FramePtr frame = MakePicture(format, width, height, range);
    frame->colorspace = matrix;
    for (int i = 0; i < 3; ++i) {
        const auto bytes =
            static_cast<std::size_t>(frame->linesize[i]) * (i == 0 || format == AV_PIX_FMT_YUV444P ? 5 : 3);
        std::fill_n(frame->data[i], bytes, static_cast<std::uint8_t>(yuv[static_cast<std::size_t>(i)]));
    }
    std::vector<std::uint8_t> out(SurfaceBytes(Surface::RGB24, width, height));
    EXPECT_TRUE(PictureConverter(Surface::RGB24, width, height).Convert(*frame, out.data()));
    for (std::size_t y = 0; y < 5; ++y) {
        for (std::size_t x = 0; x < 21; ++x) EXPECT_EQ(out[x % 3], out[24 * y + x]) << "flat stays flat";
    }
    return {out[2], out[1], out[0]};
}

TEST(PictureConverter, TurnsYuvIntoRgbByThePicturesMatrix) {
    // Expected: the matrices of the recommendations, worked by hand; the scaler's fixed point may be off by one.
    const struct {
        const char* what;
        AVColorSpace matrix;
        AVColorRange range;
        std::array<int, 3> yuv, rgb;
    } kCases[] = {
        {"black", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, {16, 128, 128}, {0, 0, 0}},
        {"white", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG, {235, 128, 128}, {255, 255, 255}},
        {"grey, full range", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_JPEG, {77, 128, 128}, {77, 77, 77}},
        {"601 where it isn't told", AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG, {81, 90, 240}, {254, 0, 0}},
        {"709", AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, {81, 90, 240}, {255, 24, 0}},
        {"601, full range", AVCOL_SPC_SMPTE170M, AVCOL_RANGE_JPEG, {100, 100, 180}, {173, 72, 50}},
    };
    for (const auto& c : kCases) {
        for (const AVPixelFormat format : {AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV420P}) {
            SCOPED_TRACE(c.what);
            const auto rgb = ToRgb(format, c.matrix, c.range, c.yuv);
            for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(c.rgb[i], rgb[i], 1);
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

}  // namespace
