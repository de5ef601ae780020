#pragma once

#include "platform/settings_store.h"

#include <QString>

/// The user's settings as a file in INI form, "~/.config/ORGANISATION/APPLICATION.ini" on this platform. It
/// has a section for the numbers and one for the texts, so that a value keeps its type.
///
/// Nothing is kept between calls: what another process has written meanwhile is read, and a write replaces
/// the one value under a lock. A value that is there already isn't written again.
class QtSettingsStore : public ISettingsStore {
public:
    QtSettingsStore(const QString& organisation, const QString& application);

    std::optional<int> ReadNumber(const std::string& name) const override;
    std::optional<std::wstring> ReadText(const std::string& name) const override;
    bool WriteNumber(const std::string& name, int number) override;
    bool WriteText(const std::string& name, const std::wstring& text) override;

    const QString& FilePath() const { return filePath; }

private:
    bool Replace(const QString& key, const QString& value, const QString& keyOfOtherType);

    QString filePath;
};
