#pragma once

#include <cstdint>

/// The layout of a frame's samples. The numbers are stored in settings; the byte geometry of each stands in
/// `video/raw_layout.h`, its place in an image in `video/video_image.h`.
enum rkColorSpace : int {
    RGB24 = 0,           ///< interleaved bytes B, G, R; bottom-up when they come from an AVI or BMP file
    RGB32 = 1,           ///< interleaved bytes B, G, R and a fourth byte; bottom-up
    YUV = 2,             ///< three full planes Y, U, V
    YUY2 = 3,            ///< interleaved 4:2:2, bytes Y0 U Y1 V
    UYVY = 4,            ///< interleaved 4:2:2, bytes U Y0 V Y1
    YV12 = 5,            ///< planar 4:2:0: Y, then V, then U
    IYUV = 6,            ///< planar 4:2:0: Y, then U, then V
    Y = 7,               ///< one plane
    YV16 = 8,            ///< planar 4:2:2: Y, U, V
    RGBP = 9,            ///< three full planes R, G, B
    GDIF = 10,           ///< three full planes G, R minus G, B minus G, each difference modulo 256
    YUVQ = 11,           ///< three full planes, Y by an integer formula
    YRGN = 12,           ///< three full planes: Y, normalised red, normalised green
    Y410 = 13,           ///< packed 10-bit 4:2:2, 16 bytes for 6 pixels
    Packed422Deep = 14,  ///< packed 16-bit 4:2:2; nothing here produces it
    VYUY = 15,           ///< interleaved 4:2:2; known to script readers only
    YVYU = 16,           ///< interleaved 4:2:2; known to script readers only
    // Planar 16-bit little-endian samples of 10, 14 and 16 significant bits.
    P010 = 17,  ///< 4:2:0
    P014 = 18,
    P016 = 19,
    P210 = 20,  ///< 4:2:2
    P214 = 21,
    P216 = 22,
    P410 = 23,  ///< 4:4:4
    P414 = 24,
    P416 = 25,
    P410_RGB = 26,  ///< planes G, B, R
    P414_RGB = 27,
    P416_RGB = 28,
};

/// Bytes a pixel is budgeted when a block is allocated, by allocated width and height. 0 for no known tag.
int rkPixelUnit(int colorSpace);

/// How a layout's samples are spread over planes, in an image and in a packed frame alike.
struct rkPlaneShape {
    int planes = 0;       ///< 1 or 3; 0 for `VYUY`, `YVYU` and what is no tag
    int sampleBytes = 1;  ///< of an interleaved pixel, or of one sample of a planar tag
    int shiftX = 0;       ///< the second and third plane have the picture's columns >> shiftX
    int shiftY = 0;       ///< and its rows >> shiftY, both rounded up
};
rkPlaneShape rkPlaneShapeOf(int colorSpace);

/// Families of layouts; false for what is no tag.
bool rkIsRgb(int colorSpace);
bool rkIsDeepRgb(int colorSpace);
bool rkIsYuv(int colorSpace);
bool rkIsDeepYuv(int colorSpace);

/// Significant bits of a sample of a deep tag (17 to 28): 10, 14 or 16; 8 for every other.
int rkSampleBits(int colorSpace);

/// The tag's name as descriptions and options spell it ("IYUV", "P410_RGB"); "unknown" for a tag without one.
/// Static storage.
const wchar_t* rkColorSpaceName(int colorSpace);

/// The raw layout of that name, exact spelling; -1 for none. Only layouts that `rkYuvSource` reads have names
/// here.
int rkColorSpaceByName(const wchar_t* name);
