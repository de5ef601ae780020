#include "platform/qt/wide_text.h"

#include <QTextDocument>
#include <Qt>

namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;
constexpr QChar kZeroWidthSpace(0x200B);
constexpr int kLongPiece = 60;  // a message box takes so many letters at its least width

}  // namespace

QString ToQString(std::wstring_view text) {
    QString result;
    result.reserve(static_cast<qsizetype>(text.size()));
    for (wchar_t c : text) {
        const auto codePoint = static_cast<char32_t>(c);
        if (codePoint > kLastCodePoint) {
            result += QChar(QChar::ReplacementCharacter);
        } else if (QChar::requiresSurrogates(codePoint)) {
            result += QChar(QChar::highSurrogate(codePoint));
            result += QChar(QChar::lowSurrogate(codePoint));
        } else {
            result += QChar(static_cast<char16_t>(codePoint));
        }
    }
    return result;
}

std::wstring ToWide(QStringView text) {
    std::wstring result;
    result.reserve(static_cast<std::size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            result += static_cast<wchar_t>(QChar::surrogateToUcs4(unit, text[++i]));
        } else {
            result += static_cast<wchar_t>(unit.unicode());
        }
    }
    return result;
}

QString PlainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

QString LiteralLabel(QString text) {
    return text.replace(u'&', QStringLiteral("&&"));
}

QString BreakableText(const QString& text) {
    QString result;
    int pieceLength = 0;
    qsizetype pieceStart = 0;
    for (QChar c : text) {
        result += c;
        if (c.isSpace()) {
            pieceLength = 0;
            pieceStart = result.size();
        } else if (++pieceLength == kLongPiece) {
            result.insert(pieceStart + kLongPiece, kZeroWidthSpace);
            pieceLength = 0;
            pieceStart = result.size();
        }
    }
    return result;
}
