#pragma once

#include "RefFixture.h"
#include "ScriptedPrompts.h"
#include "playback/MediaDeviceFactory.h"
#include "playback/PlayClock.h"
#include "settings/Session.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <utility>

class QWidget;

namespace kelvora {

class MainPF;
class SettingsStore;

namespace testsupport {

// A temporary installation root for the main window (db/ with the reference table and
// three word tables, tmp/, doc/ with the help page, textes/ with three texts, qrm/ with
// three 8-second noises, wav/ with a 30 ms sound per character) and a temporary
// settings file, and the session the window is given (its paths point at this root).
class MainWindowFixture {
public:
    MainWindowFixture();
    bool isValid() const;

    QString root() const { return m_root; }
    QString settingsPath() const { return m_ini; }
    QString path(const QString &relative) const { return m_root + u'/' + relative; }

    // Word tables of the database, besides `ref` and an engine table.
    static QStringList wordTables() { return {"animaux", "mot", "qcode"}; }
    QStringList words(const QString &table) const; // sorted as the window sorts them
    bool addWord(const QString &table, const QString &word);

    // From now on the windows' sound devices are silent and keep time on `clock`, which
    // the test advances (no waiting for a sound to end).
    void useSteppedClock() { devices = MediaDeviceFactory(clock); }
    // Advances the stepped clock 10 ms at a time, letting events (and the window's own
    // timers) run, until `done`; false when it has not come within 20 s of real time.
    bool runUntil(const std::function<bool()> &done);

    // A window loaded on the fixture's settings; questions go to `prompts`.
    std::unique_ptr<MainPF> openWindow();
    // Stores `values` (key, value) in the profile "défaut", then opens the window, shown.
    std::unique_ptr<MainPF> openShown(const QList<std::pair<QString, QString>> &values);
    // Writes a value straight into the settings file, as another program would.
    void store(const QString &section, const QString &key, const QString &value);
    QString stored(const QString &section, const QString &key) const;
    QStringList storedSections() const;

    ScriptedPrompts prompts;
    Session session;
    SteppedPlayClock clock;
    MediaDeviceFactory devices; // the system's sound output until useSteppedClock()

private:
    RefFixture m_ref;
    QTemporaryDir m_dir;
    QString m_root;
    QString m_ini;
};

QByteArray fileBytes(const QString &path);
// A left click where a check box has its box and a button its face.
void press(QWidget *control);

} // namespace testsupport
} // namespace kelvora
