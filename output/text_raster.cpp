#include "output/text_raster.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <map>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "output/font_list.h"
#include "video/video_image.h"

namespace {

struct DoneLibrary {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
struct DoneFace {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using LibraryPtr = std::unique_ptr<std::remove_pointer_t<FT_Library>, DoneLibrary>;
using FacePtr = std::unique_ptr<std::remove_pointer_t<FT_Face>, DoneFace>;

constexpr char32_t kReplacementCharacter = 0xFFFD;
constexpr FT_Fixed kNatural = 1 << 16;  // the share of its own width that a character gets

/// Whether the library could do something. Without memory a text would lack characters and say something
/// else.
bool Succeeds(FT_Error error) {
    if (error == FT_Err_Out_Of_Memory) throw std::bad_alloc();
    return error == 0;
}

/// A character as it is drawn.
struct Glyph {
    int left = 0;  ///< of its first column, from where the character begins
    int top = 0;   ///< of its first row, from the line's top
    int advance = 0;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> coverage;  ///< row by row, 255 where it covers the whole pixel
};

std::uint8_t Blend(std::uint8_t below, std::uint8_t above, int coverage) {
    return static_cast<std::uint8_t>((below * (255 - coverage) + above * coverage + 127) / 255);
}

void DrawGlyph(const Bitmap24& bitmap, int x, int y, const Glyph& glyph, Metric::Bgr color) {
    const int firstColumn = std::max(0, -x);
    const int lastColumn = std::min(glyph.width, bitmap.width - x);
    const int firstRow = std::max(0, -y);
    const int lastRow = std::min(glyph.height, bitmap.height - y);
    for (int row = firstRow; row < lastRow; ++row) {
        const std::uint8_t* coverage = glyph.coverage.data() + std::ptrdiff_t{row} * glyph.width;
        std::uint8_t* pixels = bitmap.top + (y + row) * bitmap.rowStep + std::ptrdiff_t{3} * x;
        for (int column = firstColumn; column < lastColumn; ++column) {
            std::uint8_t* pixel = pixels + std::ptrdiff_t{3} * column;
            pixel[0] = Blend(pixel[0], color.b, coverage[column]);
            pixel[1] = Blend(pixel[1], color.g, coverage[column]);
            pixel[2] = Blend(pixel[2], color.r, coverage[column]);
        }
    }
}

}  // namespace

Bitmap24 Bitmap24::BottomUp(rkVideoImage& image) {
    const int height = image.VisibleHeight();
    return {image.Row(0, std::max(height, 1) - 1), image.VisibleWidth(), height, -image.Stride()};
}

/// The system's fonts at the size of a line, with the characters rendered so far.
class TextRaster::Font {
public:
    Font() {
        FT_Library opened = nullptr;
        if (FT_Init_FreeType(&opened) != 0)
            throw std::bad_alloc();  // the library knows no better name for it
        library.reset(opened);
        if (!list.IsEmpty()) FaceAt(0);
    }

    bool IsUsable() const { return !faces.empty() && faces.begin()->second != nullptr; }

    const Glyph& GlyphOf(char32_t character, FT_Fixed share) {
        const std::pair key(character, share);
        const auto found = glyphs.find(key);
        return found != glyphs.end() ? found->second
                                     : glyphs.emplace(key, Render(character, share)).first->second;
    }

    /// The share of their widths that characters get so that the text fits.
    FT_Fixed ShareFor(std::wstring_view text, int room) {
        if (room == kAnyWidth) return kNatural;
        FT_Fixed width = 0;
        for (const wchar_t character : text)
            width += GlyphOf(static_cast<char32_t>(character), kNatural).advance;
        return width > room ? kNatural * room / width : kNatural;
    }

private:
    Glyph Render(char32_t character, FT_Fixed share) {
        int font = list.FontOf(character);
        if (font < 0) {
            character = kReplacementCharacter;
            font = std::max(list.FontOf(character), 0);  // without one, what a font shows for any other
        }
        const FT_Face face = FaceAt(font);
        if (face == nullptr) return {};
        FT_Matrix squeeze = {share, 0, 0, kNatural};
        FT_Set_Transform(face, &squeeze, nullptr);
        if (!Succeeds(FT_Load_Char(face, character, FT_LOAD_RENDER | FT_LOAD_NO_BITMAP))) return {};

        const FT_GlyphSlot slot = face->glyph;
        Glyph glyph;
        glyph.advance = static_cast<int>((slot->advance.x + 32) >> 6);
        const FT_Bitmap& picture = slot->bitmap;
        if (picture.pixel_mode != FT_PIXEL_MODE_GRAY) return glyph;
        glyph.left = slot->bitmap_left;
        glyph.top = Baseline() - slot->bitmap_top;
        glyph.width = static_cast<int>(picture.width);
        glyph.height = static_cast<int>(picture.rows);
        for (int row = 0; row < glyph.height; ++row) {
            const std::uint8_t* pixels = picture.buffer + std::ptrdiff_t{row} * picture.pitch;
            glyph.coverage.insert(glyph.coverage.end(), pixels, pixels + picture.width);
        }
        return glyph;
    }

    /// Null for a font that can't be opened.
    FT_Face FaceAt(int font) {
        const auto found = faces.find(font);
        if (found != faces.end()) return found->second.get();
        return faces.emplace(font, Open(list.FileOf(font))).first->second.get();
    }

    FacePtr Open(const FontList::File& file) const {
        FT_Face opened = nullptr;
        if (!Succeeds(FT_New_Face(library.get(), file.path.c_str(), file.face, &opened))) return nullptr;
        FacePtr face(opened);
        // From the top of the highest letter to the foot of the lowest a line's height, whatever the design.
        FT_Size_RequestRec size = {FT_SIZE_REQUEST_TYPE_REAL_DIM, 0, kLineHeight * 64, 0, 0};
        return Succeeds(FT_Request_Size(opened, &size)) ? std::move(face) : nullptr;
    }

    /// Of the line, from its top: that of the first font, which the others stand on too.
    int Baseline() const {
        const FT_Face face = faces.begin()->second.get();
        return static_cast<int>((face->size->metrics.ascender + 32) >> 6);
    }

    const FontList& list = FontList::System();
    LibraryPtr library;
    std::map<int, FacePtr> faces;  // by position in the list; the first one always
    std::map<std::pair<char32_t, FT_Fixed>, Glyph> glyphs;
};

TextRaster::TextRaster() : font(std::make_unique<Font>()) {}

TextRaster::~TextRaster() = default;

bool TextRaster::HasFont() const {
    return font->IsUsable();
}

int TextRaster::Draw(const Bitmap24& bitmap, int x, int y, std::wstring_view text, Metric::Bgr color,
                     int room) {
    if (!HasFont()) return x;
    const FT_Fixed share = font->ShareFor(text, room);
    for (const wchar_t character : text) {
        if (x >= bitmap.width) break;  // a name may be as long as it likes
        const Glyph& glyph = font->GlyphOf(static_cast<char32_t>(character), share);
        DrawGlyph(bitmap, x + glyph.left, y + glyph.top, glyph, color);
        x += glyph.advance;
    }
    return x;
}
