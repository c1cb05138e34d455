#pragma once

#include "settings/SettingKeys.h"

#include <QDateTime>
#include <QMap>
#include <QSet>
#include <QString>

namespace kelvora {

// The settings store: an INI file whose sections are "lastuser" and one per user name.
// Every value is text; a read gives its default when the key is absent. A section name
// that is empty or holds a separator is refused, so that no user name can ever write
// outside its own profile.
//
// The file is read and laid out as QSettings does (INI format), but written by this
// class: QSettings reports success when a full disk has cut the file short. Changes
// stay in memory until sync(), which merges them over the file as it is then on disk
// (another program may have written it) and writes the whole file the checked way.
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

    // Deletes the whole application: every profile and the last user. The file's error
    // as sync() gives it.
    QString removeAll();
    // Writes the changes to the file; empty on success, else the French message naming
    // the file and why. A settings file that is not a regular file is never written.
    QString sync();

private:
    QString m_path;
    QMap<QString, QString> m_values; // "section/key" -> value
    QSet<QString> m_changed;         // keys set since the last successful sync
    bool m_cleared = false;          // removeAll since the last successful sync
};

} // namespace kelvora
