#include "platform/qt/elide_path.h"
#include "platform/qt/wide_text.h"

#include <gtest/gtest.h>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QTextDocument>

namespace {

TEST(WideText, CrossesUnchanged) {
    const std::wstring texts[] = {L"",
                                  L"a<b>&.yuv",
                                  L"\u00e9\u20ac\uffff",
                                  L"\U0001F600x\U0010FFFF",
                                  L"\xdc80\xdcff end",
                                  std::wstring(L"a\0b", 3)};
    for (const std::wstring& text : texts) EXPECT_EQ(text, ToWide(ToQString(text)));
    EXPECT_EQ(2, ToQString(L"\U0001F600").size());
    EXPECT_EQ(L"\ufffd", ToWide(ToQString(std::wstring(1, wchar_t{0x110000}))));
}

TEST(WideText, ToolTipsShowLettersNotMarkup) {
    for (const char* text : {"plain", "a<b>x</b>.yuv", "<i>&amp;</i>", "two\nlines"}) {
        SCOPED_TRACE(text);
        const QString toolTip = PlainToolTip(QString::fromUtf8(text));
        QTextDocument shown;
        if (Qt::mightBeRichText(toolTip)) {
            shown.setHtml(toolTip);
        } else {
            shown.setPlainText(toolTip);
        }
        EXPECT_EQ(text, shown.toPlainText().toStdString());
    }
}

TEST(WideText, LongPiecesCanBeBroken) {
    const QString sentence = QStringLiteral("a sentence of short words ").repeated(10);
    EXPECT_EQ(sentence, BreakableText(sentence));

    QString path = QStringLiteral("Could not open ") + QStringLiteral("/0123456789").repeated(20) + u'!';
    const QStringList pieces = BreakableText(path).split(QChar(0x200B));
    EXPECT_EQ(4, pieces.size());  // 221 letters without a blank, 60 a piece
    EXPECT_EQ(path, pieces.join(QString()));
}

TEST(ElidePath, KeepsStartAndFileName) {
    const QFontMetrics metrics(QGuiApplication::font());
    const QString dots(QChar(0x2026));
    const QString letters(60, u'w');
    const struct {
        const char* what;
        QString path, keptStart, keptEnd;
        int letters;  // the width, in "w"
    } cases[] = {
        {"fits", QStringLiteral("/a/b.yuv"), QStringLiteral("/a/b.yuv"), QString(), 20},
        {"directories go first", QStringLiteral("/data/") + letters + QStringLiteral("/clip.y4m"),
         QStringLiteral("/data/"), dots + QStringLiteral("/clip.y4m"), 20},
        {"both separators", QStringLiteral("c:\\data\\") + letters + QStringLiteral("\\clip.y4m"),
         QStringLiteral("c:\\data\\"), dots + QStringLiteral("\\clip.y4m"), 20},
        {"a name too long", QStringLiteral("/data/") + letters + QStringLiteral(".y4m"),
         QStringLiteral("/data/"), QStringLiteral("w.y4m"), 20},
        {"a name alone", letters + QStringLiteral(".y4m"), QStringLiteral("w"), QStringLiteral("w.y4m"), 20},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const int width = c.letters * metrics.horizontalAdvance(u'w');
        const QString elided = ElidePath(c.path, metrics, width);
        EXPECT_TRUE(elided.startsWith(c.keptStart)) << elided.toStdString();
        EXPECT_TRUE(elided.endsWith(c.keptEnd)) << elided.toStdString();
        EXPECT_LE(metrics.horizontalAdvance(elided), width);
        EXPECT_EQ(c.keptEnd.isEmpty(), !elided.contains(dots));
    }
}

}  // namespace
