#include "output/font_list.h"

namespace {

struct Destroy {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using ConfigPtr = std::unique_ptr<FcConfig, Destroy>;
using PatternPtr = std::unique_ptr<FcPattern, Destroy>;

const FcChar8* FcText(const char* text) {
    return reinterpret_cast<const FcChar8*>(text);
}

PatternPtr WantedFont(FcConfig* config) {
    PatternPtr pattern(FcPatternCreate());
    if (pattern == nullptr) return pattern;
    FcPatternAddString(pattern.get(), FC_FAMILY, FcText("DejaVu Sans"));
    FcPatternAddString(pattern.get(), FC_FAMILY, FcText("sans-serif"));
    FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
    FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    return pattern;
}

}  // namespace

const FontList& FontList::System() {
    static const FontList list;
    return list;
}

FontList::FontList() {
    const ConfigPtr config(FcInitLoadConfigAndFonts());
    if (config == nullptr) return;
    const PatternPtr wanted = WantedFont(config.get());
    if (wanted == nullptr) return;
    FcResult result = FcResultMatch;
    fonts.reset(FcFontSort(config.get(), wanted.get(), FcTrue, nullptr, &result));
}

void FontList::Destroy::operator()(FcFontSet* set) const {
    FcFontSetDestroy(set);
}

int FontList::Count() const {
    return fonts == nullptr ? 0 : fonts->nfont;
}

int FontList::FontOf(char32_t character) const {
    for (int font = 0; font < Count(); ++font) {
        FcCharSet* characters = nullptr;
        if (FcPatternGetCharSet(fonts->fonts[font], FC_CHARSET, 0, &characters) == FcResultMatch &&
            FcCharSetHasChar(characters, character) == FcTrue)
            return font;
    }
    return -1;
}

FontList::File FontList::FileOf(int font) const {
    FcChar8* path = nullptr;
    int face = 0;
    if (FcPatternGetString(fonts->fonts[font], FC_FILE, 0, &path) != FcResultMatch) return {};
    FcPatternGetInteger(fonts->fonts[font], FC_INDEX, 0, &face);
    return {reinterpret_cast<const char*>(path), face};
}
