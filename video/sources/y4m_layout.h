#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "video/color_space.h"
#include "video/sources/y4m_header.h"

/// How the chroma planes of a picture are stored. They differ where a side is odd that chroma is halved
/// along.
enum class Y4mChroma {
    AsInRawFiles,  ///< as a raw file of the frame's layout has them
    RoundedUp,     ///< both sides rounded up
    RowsCut,       ///< of words: as many bytes a row as pixels, so it ends within a sample; rows rounded up
};

/// How a Y4M file stores a picture, and the frame that is made of it.
///
/// Most pictures are handed over as stored. Two kinds are not:
/// - Chroma other than in raw files: none of our layouts has such planes. Chroma is replicated to full size
///   and the frame is 4:4:4: the pixel at x, y has the sample at x/2, y/2 (4:2:2: x/2, y), or the last whole
///   one of that row.
/// - Depths without a layout of their own: samples are shifted left to the next depth that has one, 10, 14
///   or 16 bits.
struct Y4mLayout {
    int width = 0;
    int height = 0;
    int colorSpace = IYUV;  // of the frame handed over
    int frameBytes = 0;     // of the frame handed over, `RawFrameBytes` of the above
    int storedBytes = 0;    // of the picture in the file
    int storedBits = 8;     // significant bits of a sample in the file; words of 16 bits above 8
    int depthShift = 0;     // bits by which a sample is shifted left
    Y4mChroma chroma = Y4mChroma::AsInRawFiles;
    rkPlaneShape storedShape;  // of the picture in the file
    int chromaRowBytes = 0;    // in the file; 0 for `AsInRawFiles`

    bool IsStoredAsHandedOver() const { return chroma == Y4mChroma::AsInRawFiles && depthShift == 0; }
};

/// The layouts that a file with this header can have, in the order in which to try them:
///   1. 8-bit samples, chroma as in raw files; also for a file that none of these fits
///   2. 8-bit samples, chroma rounded up; only where that differs
///   3., 4. the same at the depth that the colour word names, if it names one; but at an odd width 3. is
///   chroma with cut rows. That is what ffmpeg writes, and mostly as large as in raw files.
/// None if a frame has 2^31 bytes or more.
std::vector<Y4mLayout> Y4mLayouts(const Y4mHeader& header);

/// Makes the frame of `frameBytes` out of the picture of `storedBytes`. The blocks don't overlap.
void UnpackY4mPicture(const Y4mLayout& layout, const std::uint8_t* picture, std::uint8_t* frame);

/// What a description says behind the layout's name, with a comma in front; empty if nothing was changed.
std::wstring Y4mLayoutRemark(const Y4mLayout& layout);
