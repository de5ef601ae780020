#include "platform/qt/qt_settings_store.h"

#include "platform/qt/wide_text.h"
#include "platform/text.h"

#include <QSettings>
#include <QStringList>

namespace {

QString NumberKey(const std::string& name) {
    return QStringLiteral("numbers/") + QString::fromStdString(name);
}

QString TextKey(const std::string& name) {
    return QStringLiteral("texts/") + QString::fromStdString(name);
}

std::optional<QString> Read(const QSettings& file, const QString& key) {
    const QVariant value = file.value(key);
    if (!value.isValid()) return {};
    return value.toStringList().join(u',');  // a comma without quotes, entered by hand, makes a list
}

// The file is UTF-8, so bytes that aren't stand in it as %FF, like other characters that it can't hold.
QString Escape(std::wstring_view text) {
    QString result;
    for (wchar_t c : text) {
        const bool isByte = c >= 0xDC80 && c <= 0xDCFF;
        if (isByte || c == L'%' || c < L' ') {
            result += QStringLiteral("%%1").arg(c & 0xFF, 2, 16, QLatin1Char('0'));
        } else {
            result += ToQString({&c, 1});
        }
    }
    return result;
}

std::wstring Unescape(const QString& text) {
    return FromUtf8(QByteArray::fromPercentEncoding(text.toUtf8()).toStdString());
}

}  // namespace

QtSettingsStore::QtSettingsStore(const QString& organisation, const QString& application)
    : filePath(QSettings(QSettings::IniFormat, QSettings::UserScope, organisation, application).fileName()) {}

std::optional<int> QtSettingsStore::ReadNumber(const std::string& name) const {
    const std::optional<QString> value = Read(QSettings(filePath, QSettings::IniFormat), NumberKey(name));
    if (!value) return {};
    bool isNumber = false;
    const int number = value->toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<std::wstring> QtSettingsStore::ReadText(const std::string& name) const {
    const std::optional<QString> value = Read(QSettings(filePath, QSettings::IniFormat), TextKey(name));
    return value ? std::optional(Unescape(*value)) : std::nullopt;
}

bool QtSettingsStore::WriteNumber(const std::string& name, int number) {
    return Replace(NumberKey(name), QString::number(number), TextKey(name));
}

bool QtSettingsStore::WriteText(const std::string& name, const std::wstring& text) {
    return Replace(TextKey(name), Escape(text), NumberKey(name));
}

bool QtSettingsStore::Replace(const QString& key, const QString& value, const QString& keyOfOtherType) {
    QSettings file(filePath, QSettings::IniFormat);
    if (!file.contains(keyOfOtherType) && Read(file, key) == value) return true;

    file.remove(keyOfOtherType);
    file.setValue(key, value);
    file.sync();
    return file.status() != QSettings::AccessError;  // the other error is of lines that the file had before
}
