#pragma once

#include <cstdint>
#include <vector>

#include "platform/media/libav.h"
#include "platform/media/sample_table.h"

/// One component (luma, a chroma, a colour) of pictures of one format: where its samples lie, and what they become.
class Component {
public:
    Component(const AVPixFmtDescriptor& format, int number, SampleMap map);

    /// Puts the first `count` samples of a row of the component to `out[0]`, `out[step]`, `out[2 * step]` ...
    void CopyRow(const AVFrame& frame, int row, int count, std::uint8_t* out, int step) const;

private:
    template <int wordBytes>
    void CopyWords(const std::uint8_t* in, int count, std::uint8_t* out, int step) const;

    int plane;
    int offset;     ///< bytes from the row's start to the first word
    int inStep;     ///< bytes from sample to sample
    int shift;      ///< of the sample inside its word
    int wordBytes;  ///< 1, 2 or 4
    bool bigEndian;
    std::uint32_t mask;
    std::vector<std::uint8_t> table;  ///< empty: bytes as they are
};
