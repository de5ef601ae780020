#include "tests/golden/clip_file.h"

#include <algorithm>
#include <stdexcept>

namespace {

enum class Kind { Planar, PackedUyvy, PackedYuy2, PackedWords };

/// How samples are stored. Chroma planes have the sides >> shift.
struct Form {
    const char* name;
    Kind kind;
    int bits;
    int planes;
    int shiftX, shiftY;
    bool firstV = false;  ///< V stands before U
};

constexpr Form kForms[] = {
    {"IYUV", Kind::Planar, 8, 3, 1, 1},      {"YV12", Kind::Planar, 8, 3, 1, 1, true},
    {"YV16", Kind::Planar, 8, 3, 1, 0},      {"YUV", Kind::Planar, 8, 3, 0, 0},
    {"Y", Kind::Planar, 8, 1, 0, 0},         {"UYVY", Kind::PackedUyvy, 8, 3, 1, 0},
    {"YUY2", Kind::PackedYuy2, 8, 3, 1, 0},  {"Y410", Kind::PackedWords, 10, 3, 1, 0},
    {"P010", Kind::Planar, 10, 3, 1, 1},     {"P014", Kind::Planar, 14, 3, 1, 1},
    {"P016", Kind::Planar, 16, 3, 1, 1},     {"P210", Kind::Planar, 10, 3, 1, 0},
    {"P214", Kind::Planar, 14, 3, 1, 0},     {"P216", Kind::Planar, 16, 3, 1, 0},
    {"P410", Kind::Planar, 10, 3, 0, 0},     {"P414", Kind::Planar, 14, 3, 0, 0},
    {"P416", Kind::Planar, 16, 3, 0, 0},     {"P410_RGB", Kind::Planar, 10, 3, 0, 0},
    {"P414_RGB", Kind::Planar, 14, 3, 0, 0}, {"P416_RGB", Kind::Planar, 16, 3, 0, 0},
    {"C420jpeg", Kind::Planar, 8, 3, 1, 1},  {"C422", Kind::Planar, 8, 3, 1, 0},
    {"C444", Kind::Planar, 8, 3, 0, 0},      {"C420p10", Kind::Planar, 10, 3, 1, 1},
    {"C422p12", Kind::Planar, 12, 3, 1, 0},  {"C444p16", Kind::Planar, 16, 3, 0, 0},
    {"BMP", Kind::Planar, 8, 3, 0, 0},
};

const Form& FormOf(const Clip& clip) {
    for (const Form& form : kForms)
        if (clip.form == form.name) return form;
    throw std::runtime_error("no clip can be made in the form " + clip.form);
}

void Append(std::string& bytes, int sample, int bits) {
    bytes += static_cast<char>(sample & 0xFF);
    if (bits > 8) bytes += static_cast<char>(sample >> 8);
}

/// One frame of a clip, sample by sample.
struct Frame {
    const Clip& clip;
    const Form& form;
    int version, number;

    int Sample(int plane, int x, int y) const {
        return SceneSample(clip.scene, version, plane, x, y, number) >> (16 - form.bits);
    }

    /// Y4M files round the sides of chroma up. Raw files cut them: a frame's bytes are a whole number a row,
    /// and what its last plane lacks, half a sample for one, isn't stored.
    void AppendPlanes(std::string& bytes, bool roundUp) const {
        const std::size_t start = bytes.size();
        for (int y = 0; y < clip.height; ++y)
            for (int x = 0; x < clip.width; ++x) Append(bytes, Sample(0, x, y), form.bits);
        if (form.planes == 1) return;
        const int shift = form.shiftX + form.shiftY, extraX = roundUp ? (1 << form.shiftX) - 1 : 0;
        const int columns = std::max(1, (clip.width + extraX) >> form.shiftX);
        const int rows = (clip.height + (1 << form.shiftY) - 1) >> form.shiftY;
        const int plane = roundUp ? columns * rows : clip.width * clip.height >> shift;
        const int lumaRowBytes = clip.width * (form.bits > 8 ? 2 : 1);
        for (int i = 0; i < plane + columns * rows; ++i) {
            const bool second = i >= plane;
            const int at = second ? i - plane : i;
            const int number = second == form.firstV ? 1 : 2;
            Append(bytes, Sample(number, at % columns << form.shiftX, at / columns << form.shiftY),
                   form.bits);
        }
        if (!roundUp)
            bytes.resize(
                start + static_cast<std::size_t>((lumaRowBytes + (2 * lumaRowBytes >> shift)) * clip.height));
    }

    void AppendPairs(std::string& bytes) const {
        for (int y = 0; y < clip.height; ++y) {
            for (int x = 0; x < clip.width; ++x) {
                const int luma = Sample(0, x, y), chroma = Sample(1 + x % 2, x & ~1, y);
                Append(bytes, form.kind == Kind::PackedUyvy ? chroma : luma, 8);
                Append(bytes, form.kind == Kind::PackedUyvy ? luma : chroma, 8);
            }
        }
    }

    /// Words of three samples from the top bit down, the highest byte first, in the first two thirds of a
    /// row.
    void AppendWords(std::string& bytes) const {
        for (int y = 0; y < clip.height; ++y) {
            std::string row;
            unsigned word = 0;
            for (int i = 0; i < 2 * clip.width; ++i) {
                const int x = i / 2;
                const int sample = i % 2 == 1 ? Sample(0, x, y) : Sample(1 + x % 2, x & ~1, y);
                word = word << 10 | static_cast<unsigned>(sample);
                if (i % 3 != 2) continue;
                word <<= 2;
                for (int shift = 24; shift >= 0; shift -= 8) row += static_cast<char>(word >> shift & 0xFF);
                word = 0;
            }
            row.resize(static_cast<std::size_t>(4 * clip.width));
            bytes += row;
        }
    }
};

std::string Bitmap(const Clip& clip, int version) {
    const int rowBytes = (3 * clip.width + 3) / 4 * 4;
    std::string bytes = "BM";
    const auto append = [&](std::initializer_list<int> numbers) {
        for (const int number : numbers)
            for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFF);
    };
    append({54 + rowBytes * clip.height, 0, 54, 40, clip.width, clip.height, 24 << 16 | 1, 0,
            rowBytes * clip.height, 0, 0, 0, 0});
    const Frame frame{clip, FormOf(clip), version, 0};
    for (int y = clip.height - 1; y >= 0; --y) {
        for (int i = 0; i < rowBytes; ++i)
            bytes += static_cast<char>(i < 3 * clip.width ? frame.Sample(2 - i % 3, i / 3, y) : 0);
    }
    return bytes;
}

bool IsY4m(const Clip& clip) {
    return clip.form[0] == 'C';
}

}  // namespace

std::string ClipEnding(const Clip& clip) {
    return clip.form == "BMP" ? ".bmp" : IsY4m(clip) ? ".y4m" : ".yuv";
}

bool IsRaw(const Clip& clip) {
    return ClipEnding(clip) == ".yuv";
}

std::string ClipFile(const Clip& clip, int version) {
    if (clip.form == "BMP") return Bitmap(clip, version);
    const Form& form = FormOf(clip);
    std::string bytes;
    if (IsY4m(clip))
        bytes = "YUV4MPEG2 W" + std::to_string(clip.width) + " H" + std::to_string(clip.height) +
                " F25:1 Ip A1:1 " + clip.form + "\n";
    for (int number = 0; number < clip.frames; ++number) {
        const Frame frame{clip, form, version, number};
        if (IsY4m(clip)) bytes += "FRAME\n";
        if (form.kind == Kind::Planar)
            frame.AppendPlanes(bytes, IsY4m(clip));
        else if (form.kind == Kind::PackedWords)
            frame.AppendWords(bytes);
        else
            frame.AppendPairs(bytes);
    }
    return bytes;
}
