#pragma once

#include <fontconfig/fontconfig.h>

#include <memory>
#include <string>

/// The outline fonts that the system has, best first: DejaVu Sans, then what the system takes for sans serif,
/// then those that add further characters. Readable by any thread.
class FontList {
public:
    struct File {
        std::string path;
        int face = 0;  ///< in a file of several
    };

    /// Those of this process, found at the first call.
    static const FontList& System();

    bool IsEmpty() const { return Count() == 0; }
    /// The position of the first font that has the character; -1 if none has.
    int FontOf(char32_t character) const;
    File FileOf(int font) const;

private:
    struct Destroy {
        void operator()(FcFontSet* set) const;
    };

    FontList();
    int Count() const;

    std::unique_ptr<FcFontSet, Destroy> fonts;  // null without any
};
