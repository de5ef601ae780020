#include "video/sources/y4m_layout.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "video/raw_layout.h"

namespace {

static_assert(std::endian::native == std::endian::little, "words of a file are taken as they stand");

constexpr std::array<int, 4> kDepths = {8, 10, 14, 16};

/// The layouts of one chroma sampling at these depths.
using Family = std::array<int, kDepths.size()>;
constexpr Family k420 = {IYUV, P010, P014, P016};
constexpr Family k422 = {YV16, P210, P214, P216};
constexpr Family k444 = {YUV, P410, P414, P416};

const Family& FamilyOf(int colorSpace) {
    return colorSpace == IYUV ? k420 : colorSpace == YV16 ? k422 : k444;
}

int RoundedUpShift(int side, int shift) {
    return (side + (1 << shift) - 1) >> shift;
}

/// Samples of `bits` bits. Too large a frame has 0 bytes.
Y4mLayout MakeLayout(const Y4mHeader& header, int bits, Y4mChroma chroma) {
    const Family& family = FamilyOf(header.colorSpace);
    const bool asStored = chroma == Y4mChroma::AsInRawFiles;
    const auto depth =
        static_cast<std::size_t>(std::lower_bound(kDepths.begin(), kDepths.end(), bits) - kDepths.begin());

    Y4mLayout layout;
    layout.width = header.width;
    layout.height = header.height;
    layout.colorSpace = asStored ? family[depth] : k444[depth];
    layout.frameBytes = RawFrameBytes(layout.colorSpace, layout.width, layout.height);
    layout.storedBytes = layout.frameBytes;
    layout.storedBits = bits;
    layout.depthShift = kDepths[depth] - bits;
    layout.chroma = chroma;
    layout.storedShape = rkPlaneShapeOf(family[depth]);
    if (asStored || layout.frameBytes == 0) return layout;

    // No product overflows: the whole 4:4:4 frame is larger, and its bytes fit an int.
    const rkPlaneShape& shape = layout.storedShape;
    layout.chromaRowBytes = chroma == Y4mChroma::RowsCut
                                ? layout.width * shape.sampleBytes >> shape.shiftX
                                : RoundedUpShift(layout.width, shape.shiftX) * shape.sampleBytes;
    const int chromaBytes = layout.chromaRowBytes * RoundedUpShift(layout.height, shape.shiftY);
    layout.storedBytes = layout.width * layout.height * shape.sampleBytes + 2 * chromaBytes;
    return layout;
}

/// The ways to store the chroma of samples of that many bits, in the order in which to try them.
std::vector<Y4mChroma> ChromaCandidates(const Y4mHeader& header, int bits) {
    const rkPlaneShape shape = rkPlaneShapeOf(header.colorSpace);
    const bool oddWidth = (header.width & shape.shiftX) != 0;
    const bool oddHeight = (header.height & shape.shiftY) != 0;
    const bool rowsCut = bits > 8 && oddWidth && header.width > 1;
    std::vector<Y4mChroma> candidates = {rowsCut ? Y4mChroma::RowsCut : Y4mChroma::AsInRawFiles};
    if (oddWidth || oddHeight) candidates.push_back(Y4mChroma::RoundedUp);
    return candidates;
}

template <class Sample>
Sample SampleAt(const std::uint8_t* samples, std::size_t index) {
    Sample sample;
    std::memcpy(&sample, samples + index * sizeof(Sample), sizeof(Sample));
    return sample;
}

template <class Sample>
void PutSample(std::uint8_t* samples, std::size_t index, Sample sample, int depthShift) {
    const auto scaled = static_cast<Sample>(sample << depthShift);
    std::memcpy(samples + index * sizeof(Sample), &scaled, sizeof(Sample));
}

/// Fills a plane of the picture's size: the sample at x, y is that at x >> shiftX, y >> shiftY of the stored
/// plane, or the last whole one of the row.
template <class Sample>
void ExpandPlane(const Y4mLayout& layout, int shiftX, int shiftY, const std::uint8_t* stored,
                 std::size_t rowBytes, std::uint8_t* plane) {
    const auto width = static_cast<std::size_t>(layout.width);
    const std::size_t last = rowBytes / sizeof(Sample) - 1;
    for (int y = 0; y < layout.height; ++y) {
        const std::uint8_t* row = stored + static_cast<std::size_t>(y >> shiftY) * rowBytes;
        for (std::size_t x = 0; x < width; ++x) {
            PutSample(plane, x, SampleAt<Sample>(row, std::min(x >> shiftX, last)), layout.depthShift);
        }
        plane += width * sizeof(Sample);
    }
}

template <class Sample>
void ExpandChroma(const Y4mLayout& layout, const std::uint8_t* stored, std::uint8_t* frame) {
    const rkPlaneShape& shape = layout.storedShape;
    const auto planeBytes = static_cast<std::size_t>(layout.frameBytes) / 3;
    const auto lumaRowBytes = static_cast<std::size_t>(layout.width) * sizeof(Sample);
    const auto rowBytes = static_cast<std::size_t>(layout.chromaRowBytes);
    const std::size_t chromaBytes = (static_cast<std::size_t>(layout.storedBytes) - planeBytes) / 2;
    ExpandPlane<Sample>(layout, 0, 0, stored, lumaRowBytes, frame);
    stored += planeBytes;
    frame += planeBytes;
    ExpandPlane<Sample>(layout, shape.shiftX, shape.shiftY, stored, rowBytes, frame);
    stored += chromaBytes;
    frame += planeBytes;
    ExpandPlane<Sample>(layout, shape.shiftX, shape.shiftY, stored, rowBytes, frame);
}

/// A frame that differs from the picture in the depth alone.
void ScaleWords(const Y4mLayout& layout, const std::uint8_t* picture, std::uint8_t* frame) {
    const auto bytes = static_cast<std::size_t>(layout.storedBytes);
    for (std::size_t i = 0; i < bytes / 2; ++i) {
        PutSample(frame, i, SampleAt<std::uint16_t>(picture, i), layout.depthShift);
    }
    if (bytes % 2 != 0) frame[bytes - 1] = picture[bytes - 1];  // 4:2:0 with both sides odd
}

}  // namespace

std::vector<Y4mLayout> Y4mLayouts(const Y4mHeader& header) {
    std::vector<Y4mLayout> layouts;
    const auto add = [&](int bits) {
        for (const Y4mChroma chroma : ChromaCandidates(header, bits)) {
            const Y4mLayout layout = MakeLayout(header, bits, chroma);
            if (layout.frameBytes > 0) layouts.push_back(layout);
        }
    };
    add(8);
    if (header.sampleBits > 8) add(header.sampleBits);
    return layouts;
}

void UnpackY4mPicture(const Y4mLayout& layout, const std::uint8_t* picture, std::uint8_t* frame) {
    if (layout.chroma == Y4mChroma::AsInRawFiles) {
        ScaleWords(layout, picture, frame);
    } else if (layout.storedShape.sampleBytes == 2) {
        ExpandChroma<std::uint16_t>(layout, picture, frame);
    } else {
        ExpandChroma<std::uint8_t>(layout, picture, frame);
    }
}

std::wstring Y4mLayoutRemark(const Y4mLayout& layout) {
    std::wstring remark;
    if (layout.chroma == Y4mChroma::RoundedUp) remark += L", chroma sides rounded up in the file";
    if (layout.chroma == Y4mChroma::RowsCut) remark += L", chroma rows cut in the file";
    if (layout.depthShift > 0) {
        remark += L", " + std::to_wstring(layout.storedBits) + L"-bit samples scaled to " +
                  std::to_wstring(layout.storedBits + layout.depthShift) + L" bits";
    }
    return remark;
}
