#include "video/convert.h"
#include "video/video_image.h"

#include <algorithm>
#include <cstdint>

// Interleaved 4:2:2. At an odd width the last pair takes its missing bytes from the row's padding, and what
// it writes beyond the picture falls into the target's padding.

namespace {

// `luma` and `chroma` are the places of Y0 and U in the four bytes of a pair.
template <int luma, int chroma>
void SplitRow(const std::uint8_t* pairs, int pairCount, std::uint8_t* y, std::uint8_t* u, std::uint8_t* v) {
    for (int i = 0; i < pairCount; ++i) {
        y[2 * i] = pairs[4 * i + luma];
        y[2 * i + 1] = pairs[4 * i + luma + 2];
        u[2 * i] = u[2 * i + 1] = pairs[4 * i + chroma];
        v[2 * i] = v[2 * i + 1] = pairs[4 * i + chroma + 2];
    }
}

template <int luma, int chroma>
void SplitPairs(const rkVideoImage& source, rkVideoImage& target) {
    const int pairCount = (source.VisibleWidth() + 1) / 2;
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        SplitRow<luma, chroma>(source.Row(0, y), pairCount, target.Row(0, y), target.Row(1, y),
                               target.Row(2, y));
    }
}

constexpr int kBlockPixels = 6;
constexpr int kBlockBytes = 16;

// The upper eight bits of the three 10-bit fields that a big-endian word holds from its top.
struct Fields {
    std::uint8_t first, second, third;
};

Fields FieldsOf(const std::uint8_t* word) {
    const std::uint32_t bits = std::uint32_t{word[0]} << 24 | std::uint32_t{word[1]} << 16 |
                               std::uint32_t{word[2]} << 8 | std::uint32_t{word[3]};
    return {static_cast<std::uint8_t>(bits >> 24), static_cast<std::uint8_t>(bits >> 14),
            static_cast<std::uint8_t>(bits >> 4)};
}

// One block to six pixels of each plane; every chroma sample serves two of them.
void UnpackBlock(const std::uint8_t* block, std::uint8_t* y, std::uint8_t* u, std::uint8_t* v) {
    const auto [u01, y0, v01] = FieldsOf(block);
    const auto [y1, u23, y2] = FieldsOf(block + 4);
    const auto [v23, y3, u45] = FieldsOf(block + 8);
    const auto [y4, v45, y5] = FieldsOf(block + 12);
    const std::uint8_t luma[] = {y0, y1, y2, y3, y4, y5};
    const std::uint8_t blue[] = {u01, u01, u23, u23, u45, u45};
    const std::uint8_t red[] = {v01, v01, v23, v23, v45, v45};
    std::copy_n(luma, kBlockPixels, y);
    std::copy_n(blue, kBlockPixels, u);
    std::copy_n(red, kBlockPixels, v);
}

void UnpackRow(const std::uint8_t* bytes, int width, std::uint8_t* y, std::uint8_t* u, std::uint8_t* v) {
    const int whole = width / kBlockPixels * kBlockPixels;
    for (int x = 0; x < whole; x += kBlockPixels, bytes += kBlockBytes)
        UnpackBlock(bytes, y + x, u + x, v + x);

    const int rest = width - whole;  // a whole block may not fit behind these in the target
    if (rest == 0) return;
    std::uint8_t lastBlock[3][kBlockPixels];
    UnpackBlock(bytes, lastBlock[0], lastBlock[1], lastBlock[2]);
    std::copy_n(lastBlock[0], rest, y + whole);
    std::copy_n(lastBlock[1], rest, u + whole);
    std::copy_n(lastBlock[2], rest, v + whole);
}

}  // namespace

void rkYuy2ToYuv(const rkVideoImage& source, rkVideoImage& target) {
    SplitPairs<0, 1>(source, target);
}

void rkUyvyToYuv(const rkVideoImage& source, rkVideoImage& target) {
    SplitPairs<1, 0>(source, target);
}

void rkY410ToYuv(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        UnpackRow(source.Row(0, y), source.VisibleWidth(), target.Row(0, y), target.Row(1, y),
                  target.Row(2, y));
    }
}

void rkYv16ToYuy2(const rkVideoImage& source, rkVideoImage& target) {
    const int pairCount = (source.VisibleWidth() + 1) / 2;
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const std::uint8_t* luma = source.Row(0, y);
        const std::uint8_t* u = source.Row(1, y);
        const std::uint8_t* v = source.Row(2, y);
        std::uint8_t* pairs = target.Row(0, y);
        for (int i = 0; i < pairCount; ++i) {
            pairs[4 * i] = luma[2 * i];
            pairs[4 * i + 1] = u[i];
            pairs[4 * i + 2] = luma[2 * i + 1];
            pairs[4 * i + 3] = v[i];
        }
    }
}
