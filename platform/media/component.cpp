#include "platform/media/component.h"

#include <algorithm>

namespace {

int WordBytes(const AVComponentDescriptor& component) {
    const int bits = component.shift + component.depth;
    return bits <= 8 ? 1 : bits <= 16 ? 2 : 4;
}

template <int bytes>
std::uint32_t LoadWord(const std::uint8_t* in, bool bigEndian) {
    std::uint32_t word = 0;
    for (int i = 0; i < bytes; ++i) word |= std::uint32_t{in[i]} << 8 * (bigEndian ? bytes - 1 - i : i);
    return word;
}

}  // namespace

Component::Component(const AVPixFmtDescriptor& format, int number, SampleMap map)
    : plane(format.comp[number].plane),
      offset(format.comp[number].offset),
      inStep(format.comp[number].step),
      shift(format.comp[number].shift),
      wordBytes(WordBytes(format.comp[number])),
      bigEndian((format.flags & AV_PIX_FMT_FLAG_BE) != 0),
      mask((1U << format.comp[number].depth) - 1),
      table(SampleTable(map, format.comp[number].depth)) {
    // Offsets of packed words are given for little-endian: a sample within the low byte lies one further.
    if (bigEndian && wordBytes == 1) ++offset;
}

void Component::CopyRow(const AVFrame& frame, int row, int count, std::uint8_t* out, int step) const {
    const std::uint8_t* in = frame.data[plane] + std::ptrdiff_t{frame.linesize[plane]} * row + offset;
    if (table.empty() && inStep == 1 && step == 1) {
        std::copy_n(in, count, out);
    } else if (table.empty()) {
        for (int x = 0; x < count; ++x) out[std::ptrdiff_t{x} * step] = in[std::ptrdiff_t{x} * inStep];
    } else {
        switch (wordBytes) {
            case 1:
                return CopyWords<1>(in, count, out, step);
            case 2:
                return CopyWords<2>(in, count, out, step);
            default:
                return CopyWords<4>(in, count, out, step);
        }
    }
}

template <int bytes>
void Component::CopyWords(const std::uint8_t* in, int count, std::uint8_t* out, int step) const {
    for (int x = 0; x < count; ++x) {
        *out = table[LoadWord<bytes>(in, bigEndian) >> shift & mask];
        in += inStep;
        out += step;
    }
}
