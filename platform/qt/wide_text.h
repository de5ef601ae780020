#pragma once

#include <QString>

#include <string>
#include <string_view>

/// Text crosses to Qt and back unchanged. That includes U+DC80 to U+DCFF, which stand for the bytes of a name
/// that isn't UTF-8 (see platform/text.h); Qt's own conversions make U+FFFD of them.
///
/// What is no code point becomes U+FFFD.
QString ToQString(std::wstring_view text);

std::wstring ToWide(QStringView text);

/// A tooltip that shows `text` letter for letter, also where Qt would take "a<b>.yuv" for markup.
QString PlainToolTip(const QString& text);

/// The label of a button, box or menu entry that shows `text` letter for letter: "&" is doubled.
QString LiteralLabel(QString text);

/// `text` in which a blank-free piece too long for a message box may be broken into lines: a zero-width space
/// behind every few characters of it. Other text comes back unchanged.
QString BreakableText(const QString& text);
