#pragma once

#include "settings/SettingKeys.h"

#include <QString>

#include <memory>

class QSettings;

namespace kelvora {

// The settings store: an INI file whose sections are "lastuser" and one per user name.
// Every value is text; a read gives its default when the key is absent. A section name
// that is empty or holds a separator is refused, so that no user name can ever write
// outside its own profile.
class SettingsStore {
public:
    explicit SettingsStore(const QString &iniPath);
    ~SettingsStore();
    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;

    QString fileName() const;

    QString value(const QString &section, const QString &key, const QString &defaultValue) const;
    QString value(const QString &section, const SettingKey &key) const;
    bool setValue(const QString &section, const QString &key, const QString &value);

    QString lastUser() const; // default "défaut"
    bool setLastUser(const QString &name);

    // Deletes the whole application: every profile and the last user.
    void removeAll();
    void sync();

private:
    std::unique_ptr<QSettings> m_settings;
};

} // namespace kelvora
