#include "video/convert.h"
#include "video/interleave.h"
#include "video/video_image.h"

#include <cstdint>

// RGB bytes from one arrangement to another; interleaved pixels are B, G, R in memory.

using Byte = std::uint8_t;

void rkRgb24ToRgbp(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        rkSplitRow(source.Row(0, y), target.Row(2, y), target.Row(1, y), target.Row(0, y),
                   source.VisibleWidth());
    }
}

void rkRgbpToRgb24(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        rkJoinRow(source.Row(2, y), source.Row(1, y), source.Row(0, y), target.Row(0, y),
                  source.VisibleWidth());
    }
}

// Differences and sums are modulo 256, which the conversion to a byte does.

void rkRgb24ToGdif(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const Byte* bgr = source.Row(0, y);
        Byte* green = target.Row(0, y);
        Byte* redDifference = target.Row(1, y);
        Byte* blueDifference = target.Row(2, y);
        for (int x = 0; x < source.VisibleWidth(); ++x, bgr += 3) {
            green[x] = bgr[1];
            redDifference[x] = static_cast<Byte>(bgr[2] - bgr[1]);
            blueDifference[x] = static_cast<Byte>(bgr[0] - bgr[1]);
        }
    }
}

void rkGdifToRgb24(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const Byte* green = source.Row(0, y);
        const Byte* redDifference = source.Row(1, y);
        const Byte* blueDifference = source.Row(2, y);
        Byte* bgr = target.Row(0, y);
        for (int x = 0; x < source.VisibleWidth(); ++x, bgr += 3) {
            bgr[0] = static_cast<Byte>(green[x] + blueDifference[x]);
            bgr[1] = green[x];
            bgr[2] = static_cast<Byte>(green[x] + redDifference[x]);
        }
    }
}

void rkRgb24ToRgb32(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const Byte* from = source.Row(0, y);
        Byte* to = target.Row(0, y);
        for (int x = 0; x < source.VisibleWidth(); ++x, from += 3, to += 4) {
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
            to[3] = 0;
        }
    }
}

void rkRgb32ToRgb24(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const Byte* from = source.Row(0, y);
        Byte* to = target.Row(0, y);
        for (int x = 0; x < source.VisibleWidth(); ++x, from += 4, to += 3) {
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
        }
    }
}
