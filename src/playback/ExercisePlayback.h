#pragma once

#include "morse/SoundRenderer.h"
#include "morse/SoundSettings.h"

#include <QObject>

#include <functional>

class QAbstractButton;
class QAction;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTimer;
class QWidget;

namespace kelvora {

class BackgroundNoise;
class MediaDevice;
class MediaDeviceFactory;
class PatternLookup;
struct Session;
class PushToTalkControl;
class UserPrompts;

// The exercise player PLAYER: its bar (rewind, play, pause, stop and the time box TRB),
// the preparation (Command1, "Préparer", a click in the exercise text), the "Musique"
// menu, the work of the bar's Play and Stop buttons and what follows the end of play.
class ExercisePlayback : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QPushButton *prepareButton = nullptr; // Command1
        QWidget *player = nullptr;            // PLAYER, shown in Command1's place once prepared
        QAbstractButton *rewind = nullptr;
        QAbstractButton *play = nullptr;
        QAbstractButton *pause = nullptr;
        QAbstractButton *stop = nullptr;
        QLineEdit *time = nullptr;               // TRB
        QPlainTextEdit *exercise = nullptr;      // EXO
        QAbstractButton *hideText = nullptr;     // Check1
        QAbstractButton *autoCorrection = nullptr; // Fcorrection
        QAction *wordLoop = nullptr;             // motenboucle
        QAction *prepareCommand = nullptr;       // the "Musique" menu
        QAction *playCommand = nullptr;
        QAction *stopCommand = nullptr;
        QAction *pauseCommand = nullptr;
    };
    // The sound settings in force when the exercise is rendered.
    using SettingsSource = std::function<SoundSettings()>;

    ExercisePlayback(const Controls &controls, PatternLookup &lookup, SettingsSource settings,
                     Session &session,
                     const MediaDeviceFactory &devices, BackgroundNoise &noise,
                     PushToTalkControl &ptt, QTimer *wordTimer, UserPrompts &prompts,
                     QObject *parent = nullptr);

    MediaDevice *player() const { return m_player; }

    // "Open" on tmp/test.wav; false with the device's reason.
    bool openPlayer(QString *error = nullptr);
    // test: "Close", render tmp/test.wav from the exercise text (its selection only, when
    // there is one; the trimmed text goes back into the box with the same characters
    // selected), "Open". Reports nothing; false with the reason.
    bool test(QString *error = nullptr);
    // Command1: test, then the player in Command1's place and the focus in the text.
    // A failure is a message when the user asked, a status-bar notice otherwise.
    bool prepare(bool userActed = true);

    // The bar's own buttons.
    void playPressed();
    void stopPressed();
    // "Jouer" of the "Musique" menu: the prepared sound, without push-to-talk or noise.
    void play();
    // The keys of the keyboard window, played as "Jouer" does; their end starts neither
    // the correction nor the word loop (a key is no exercise).
    void playKeys();

signals:
    // The end of play hands over to the correction replay.
    void correctionRequested();
    // A sound was written (rendered() comes before the player opens it).
    void rendered(const RenderResult &result);
    // The sound prepared last is no longer the one to play (the text changed, or a new
    // preparation failed).
    void soundDiscarded();
    // The bar's Play started a sound; a sound came to its end.
    void playStarted();
    void playEnded();
    void notice(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void wire();
    bool render(QString *error);
    void onStatusUpdate();
    void endOfPlay();
    void onExerciseChanged();
    void onExerciseReleased();
    void togglePause();
    void showDeviceState();
    bool isShown(const QWidget *widget) const;

    Controls m_controls;
    PatternLookup &m_lookup;
    SettingsSource m_settings;
    Session &m_session;
    BackgroundNoise &m_noise;
    PushToTalkControl &m_ptt;
    QTimer *m_wordTimer;
    UserPrompts &m_prompts;
    MediaDevice *m_player; // child of this object
    bool m_endSeen = false; // the end of this recording has been handled
    bool m_keysOnly = false; // the sound playing is the keyboard's
    bool m_opening = false;
    QString m_openError;
};

} // namespace kelvora
