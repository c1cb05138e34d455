#pragma once

#include "exercises/CorrectionStepper.h"

#include <QObject>
#include <QTimer>

class QAction;
class QComboBox;
class QListWidget;
class QPlainTextEdit;

namespace kelvora {

class MediaDevice;
class PatternLookup;
class MediaDeviceFactory;
struct AppPaths;
class PushToTalkControl;
class ViewSwitcher;

// The correction replay: Timer5 steps through the exercise text, growing its selection
// by one character per step and playing that character's own sound (the wav folder and
// the `wav` column of its `ref` row) through the second player, playerc. The next step
// waits for the end of the character's sound, then for the delay of cdelai.
class CorrectionReplay : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QPlainTextEdit *exercise = nullptr; // EXO
        QListWidget *wordList = nullptr;    // List1, the words of the drills
        QComboBox *delay = nullptr;         // cdelai, in milliseconds
        QAction *wordLoop = nullptr;        // motenboucle
        QAction *play = nullptr;            // cjouer
        QAction *pause = nullptr;           // cpause
        QAction *stop = nullptr;            // cstop
    };

    CorrectionReplay(const Controls &controls, ViewSwitcher &views, PushToTalkControl &ptt,
                     PatternLookup &lookup, const AppPaths &paths,
                     const MediaDeviceFactory &devices, QTimer *wordTimer,
                     QObject *parent = nullptr);

    // cjouer, from the menu (userActed) or at the end of an exercise.
    void cjouer(bool userActed = true);
    void cpause();
    void cstop();

    bool isRunning() const { return m_stepper.isRunning(); }
    qsizetype stopLength() const { return m_stepper.stopLength(); }
    MediaDevice *player() const { return m_player; }

signals:
    // One step: the character selected last and the file it is played from (empty when
    // no row of `ref` was ever found).
    void characterPlayed(const QString &character, const QString &file);
    void notice(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tick();
    void onSoundEnded();
    void finishSilently();
    void arm();
    int delay() const;
    CorrectionStepper::Selection selection() const;
    void select(CorrectionStepper::Selection s);

    Controls m_controls;
    ViewSwitcher &m_views;
    PushToTalkControl &m_ptt;
    PatternLookup &m_lookup;
    const AppPaths &m_paths;
    QTimer *m_wordTimer;
    CorrectionStepper m_stepper; // Timer5's interval and StopLength
    QTimer *m_timer;             // Timer5: runs while enabled with an interval
    bool m_enabled = true;       // a timer starts enabled; its interval keeps it still
    MediaDevice *m_player; // playerc, child of this object
};

} // namespace kelvora
