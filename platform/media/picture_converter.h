#pragma once

#include <cstdint>
#include <vector>

#include "platform/media/component.h"
#include "platform/media/picture_format.h"

/// Turns the decoded pictures of one stream into one surface; `DescribeConversion` says what that changes.
///
/// 4:2:0 and 4:2:2 keep their chroma form and go sample by sample through `SampleTable`, RGB and grey too. What else
/// becomes RGB goes through the library's scaler with exact rounding, by the picture's own matrix or, where it isn't
/// told, that of ITU-R BT.601. RGB uses the whole range of values.
///
/// Not for two threads at once. Throws std::bad_alloc.
class PictureConverter {
public:
    PictureConverter(Surface surface, int width, int height);

    /// Fills `picture` with the surface's bytes. Pictures may change their format from one to the next; false for one
    /// of another size, or that this surface can't hold.
    bool Convert(const AVFrame& frame, std::uint8_t* picture);

private:
    bool Prepare(const AVFrame& frame);
    void PrepareComponents(const AVFrame& frame);
    void PrepareScaler(const AVFrame& frame);
    void CopyYv12(const AVFrame& frame, std::uint8_t* picture) const;
    void CopyYuy2(const AVFrame& frame, std::uint8_t* picture) const;
    void CopyRgb(const AVFrame& frame, std::uint8_t* picture) const;
    void CopyPalette(const AVFrame& frame, std::uint8_t* picture) const;
    bool Scale(const AVFrame& frame);
    std::uint8_t* RgbRow(std::uint8_t* picture, int row) const;

    Surface surface;
    int width, height;

    // What the pictures were like so far, and what was made ready for them.
    int format = AV_PIX_FMT_NONE;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    std::vector<Component> components;  ///< Y, U, V or R, G, B
    ScalerPtr scaler;                   ///< null where samples are copied
    FramePtr scaled;                    ///< the scaler's result, top-down
};
