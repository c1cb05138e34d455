#pragma once

#include "settings/SettingKeys.h"

#include <QHash>
#include <QString>

namespace kelvora {

class SettingsStore;

// A profile as the restore hands it to the controls: every key of the table with the
// stored text read as its kind says, or the key's default when absent.
class UserProfile {
public:
    // The profile of `user` in the store; defaults() is what a new user starts with.
    static UserProfile read(const SettingsStore &store, const QString &user);
    static UserProfile defaults();

    // The text the key's control shows.
    QString text(const SettingKey &key) const;
    // A flag or colour key as a number.
    qint64 number(const SettingKey &key) const;
    // The push-to-talk port: the port box's number, 0..255.
    int portNumber() const;

private:
    QHash<QString, QString> m_texts;
};

// Stored colours hold red in the low byte and blue in the high byte.
quint32 storedColour(int red, int green, int blue);
int redOf(quint32 stored);
int greenOf(quint32 stored);
int blueOf(quint32 stored);

} // namespace kelvora
