#include "platform/qt/elide_path.h"
#include "platform/qt/wide_text.h"

#include <gtest/gtest.h>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QTextDocument>

namespace {

TEST(WideText, CrossesUnchanged) {
    for (const std::wstring& text :
         {std::wstring(), std::wstring(L"\u00e9\u20ac\uffff"), std::wstring(L"\U0001F600x\U0010FFFF"),
          std::wstring(L"\xdc80\xdcff end"), std::wstring(L"a\0b", 3)})
        EXPECT_EQ(text, ToWide(ToQString(text)));
    EXPECT_EQ(2, ToQString(L"\U0001F600").size());
    EXPECT_EQ(L"\ufffd", ToWide(ToQString(std::wstring(1, wchar_t{0x110000}))));
}

TEST(WideText, ToolTipsShowLettersNotMarkup) {
    for (const char* text : {"plain", "a<b>x</b>.yuv", "<i>&amp;</i>", "two\nlines"}) {
        const QString toolTip = PlainToolTip(QString::fromUtf8(text));
        QTextDocument shown(toolTip);
        if (Qt::mightBeRichText(toolTip)) shown.setHtml(toolTip);
        EXPECT_EQ(text, shown.toPlainText().toStdString());
    }
}

TEST(WideText, LongPiecesCanBeBroken) {
    const QString sentence = QStringLiteral("a sentence of short words ").repeated(10);
    EXPECT_EQ(sentence, BreakableText(sentence));
    const QString path = QStringLiteral("Can't open ") + QStringLiteral("/0123456789").repeated(20) + u'!';
    const QStringList pieces = BreakableText(path).split(QChar(0x200B));
    EXPECT_EQ(4, pieces.size());  // 221 letters without a blank, 60 a piece
    EXPECT_EQ(path, pieces.join(QString()));
}

TEST(ElidePath, KeepsStartAndFileName) {
    const QFontMetrics metrics(QGuiApplication::font());
    const int width = 20 * metrics.horizontalAdvance(u'w');
    const std::string letters(60, 'w'), dots = "\u2026";
    const struct {
        std::string path, keptStart, keptEnd;
    } cases[] = {
        {"/a/b.yuv", "/a/b.yuv", ""},
        {"/data/" + letters + "/clip.y4m", "/data/", dots + "/clip.y4m"},
        {"c:\\data\\" + letters + "\\clip.y4m", "c:\\data\\", dots + "\\clip.y4m"},
        {"/data/" + letters + ".y4m", "/data/", "w.y4m"},
        {letters + ".y4m", "w", "w.y4m"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const QString elided = ElidePath(QString::fromStdString(c.path), metrics, width);
        const std::string text = elided.toStdString();
        EXPECT_TRUE(text.starts_with(c.keptStart) && text.ends_with(c.keptEnd)) << text;
        EXPECT_LE(metrics.horizontalAdvance(elided), width);
        EXPECT_EQ(c.keptEnd.empty(), text.find(dots) == text.npos);
    }
}

}  // namespace
