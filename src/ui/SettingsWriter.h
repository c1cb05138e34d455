#pragma once

#include "settings/SettingKeys.h"

#include <QObject>
#include <QString>

class QAbstractButton;
class QComboBox;
class QWidget;

namespace kelvora {

class SettingsStore;
struct Session;

// Saves each key of the current user's profile at the moment its control changes, and
// the seventeen keys of "Mémoriser ces paramètres". While a profile is being restored
// nothing is written: the controls then only show what the store already holds.
class SettingsWriter : public QObject {
    Q_OBJECT
public:
    SettingsWriter(SettingsStore &store, const Session &session, QObject *parent = nullptr);

    // Writes one key in the current user's section and the file through; false when it
    // was not written (during a restore, for a section the store refuses, or a file that
    // cannot be written: writeFailed then says why).
    bool save(const SettingKey &key, const QString &value);

    // Every change of the combo's text (typed or picked) is saved.
    void saveOnChange(QComboBox *box, const SettingKey &key);
    // A click in the combo (its box or its arrow) saves its text as it stands.
    void saveOnClick(QComboBox *box, const SettingKey &key);
    // Every change of the check box's value is saved as "1" or "0".
    void saveOnToggle(QAbstractButton *box, const SettingKey &key);

    // "Mémoriser ces paramètres": each memorised key with its control's text, in order.
    // `root` holds the controls (by object name).
    void memorise(const QWidget *root);

    // Blocks the writers while it lives.
    class Restoring {
    public:
        explicit Restoring(SettingsWriter &writer);
        ~Restoring();
        Restoring(const Restoring &) = delete;
        Restoring &operator=(const Restoring &) = delete;

    private:
        SettingsWriter &m_writer;
    };
    bool isRestoring() const { return m_restoring > 0; }

signals:
    // The settings file could not be written: the French message naming it and why.
    void writeFailed(const QString &message);

private:
    SettingsStore &m_store;
    const Session &m_session;
    int m_restoring = 0;
};

} // namespace kelvora
