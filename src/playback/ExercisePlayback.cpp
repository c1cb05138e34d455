#include "playback/ExercisePlayback.h"

#include "settings/Session.h"
#include "ui/UserPrompts.h"
#include "core/Logging.h"
#include "core/TextUtils.h"
#include "morse/RenderSound.h"
#include "playback/BackgroundNoise.h"
#include "audio/EndOfPlay.h"
#include "playback/MediaDevice.h"
#include "playback/MediaDeviceFactory.h"
#include "audio/PlayTime.h"
#include "playback/PushToTalkControl.h"

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QTimer>

#include <utility>

namespace kelvora {

ExercisePlayback::ExercisePlayback(const Controls &controls, PatternLookup &lookup,
                                   SettingsSource settings, Session &session,
                                   const MediaDeviceFactory &devices, BackgroundNoise &noise, PushToTalkControl &ptt,
                                   QTimer *wordTimer, UserPrompts &prompts, QObject *parent)
    : QObject(parent)
    , m_controls(controls)
    , m_lookup(lookup)
    , m_settings(std::move(settings))
    , m_session(session)
    , m_noise(noise)
    , m_ptt(ptt)
    , m_wordTimer(wordTimer)
    , m_prompts(prompts)
    , m_player(devices.create(this))
{
    // Hidden until the first preparation.
    m_controls.player->hide();
    wire();
    showDeviceState();
}

void ExercisePlayback::wire()
{
    const Controls &c = m_controls;
    connect(c.prepareButton, &QPushButton::clicked, this, [this] { prepare(true); });
    connect(c.prepareCommand, &QAction::triggered, this, [this] { prepare(true); });
    connect(c.playCommand, &QAction::triggered, this, &ExercisePlayback::play);
    connect(c.stopCommand, &QAction::triggered, m_player, &MediaDevice::stop);
    connect(c.pauseCommand, &QAction::triggered, this, &ExercisePlayback::togglePause);
    connect(c.rewind, &QAbstractButton::clicked, m_player, &MediaDevice::prev);
    connect(c.play, &QAbstractButton::clicked, this, &ExercisePlayback::playPressed);
    connect(c.pause, &QAbstractButton::clicked, this, &ExercisePlayback::togglePause);
    connect(c.stop, &QAbstractButton::clicked, this, &ExercisePlayback::stopPressed);
    for (QAction *command : {c.playCommand, c.stopCommand, c.pauseCommand})
        connect(command, &QAction::triggered, this, &ExercisePlayback::showDeviceState);
    connect(c.rewind, &QAbstractButton::clicked, this, &ExercisePlayback::showDeviceState);

    connect(m_player, &MediaDevice::statusUpdate, this, &ExercisePlayback::onStatusUpdate);
    connect(m_player, &MediaDevice::completed, this, [this] {
        m_noise.rewindAll();
        showDeviceState();
    });
    connect(m_player, &MediaDevice::errorOccurred, this, [this](const QString &message) {
        // A failed "Open" is told by whoever asked for it; anything else comes unasked.
        if (m_opening)
            m_openError = message;
        else
            emit notice(message);
    });

    connect(c.exercise, &QPlainTextEdit::textChanged, this, &ExercisePlayback::onExerciseChanged);
    // A text box receives its mouse events on its viewport.
    c.exercise->viewport()->installEventFilter(this);
}

bool ExercisePlayback::openPlayer(QString *error)
{
    m_opening = true;
    m_openError.clear();
    const bool opened = m_player->open(m_session.paths.testWavPath);
    m_opening = false;
    m_endSeen = false;
    if (!opened && error)
        *error = m_openError.isEmpty() ? m_player->errorString() : m_openError;
    showDeviceState();
    if (opened)
        m_controls.time->setText(playTime::lengthAndPosition(m_player->lengthMs(), 0));
    return opened;
}

bool ExercisePlayback::test(QString *error)
{
    // Released first, so that the file can be written again.
    m_player->close();
    showDeviceState();
    QString reason;
    if (!render(&reason) || !openPlayer(&reason)) {
        if (error)
            *error = reason;
        return false;
    }
    return true;
}

bool ExercisePlayback::render(QString *error)
{
    QPlainTextEdit &box = *m_controls.exercise;
    const QString text = box.toPlainText();
    const QTextCursor cursor = box.textCursor();
    SoundText sound{text};
    // The box counts UTF-16 units; the renderer counts characters.
    sound.selectionStart = text::utf16ToCharacter(text, cursor.selectionStart());
    sound.selectionLength = text::utf16ToCharacter(text, cursor.selectionEnd()) - sound.selectionStart;

    const RenderResult r =
        renderSound(sound, m_settings(), m_lookup, SoundTarget::player(m_session.paths));
    if (!r.ok) {
        qCWarning(lcMorse) << "rendering failed:" << r.error;
        if (error)
            *error = r.error;
        return false;
    }
    if (r.trimmedText != text) {
        box.setPlainText(r.trimmedText);
        QTextCursor c = box.textCursor();
        c.setPosition(int(text::characterToUtf16(r.trimmedText, r.selectionStart)));
        c.setPosition(int(text::characterToUtf16(r.trimmedText, r.selectionStart + r.selectionLength)),
                      QTextCursor::KeepAnchor);
        box.setTextCursor(c);
    }
    emit rendered(r);
    return true;
}

bool ExercisePlayback::prepare(bool userActed)
{
    QString error;
    if (!test(&error)) {
        // No sound to play: not even the one of an earlier exercise.
        m_controls.player->hide();
        m_controls.prepareButton->show();
        emit soundDiscarded();
        if (userActed)
            m_prompts.message(m_controls.player->window(), error);
        else
            emit notice(error);
        return false;
    }
    m_controls.prepareButton->hide();
    m_controls.player->show();
    if (!m_controls.hideText->isChecked() && isShown(m_controls.exercise))
        m_controls.exercise->setFocus();
    return true;
}

void ExercisePlayback::playPressed()
{
    m_session.playerFree = false;
    m_keysOnly = false;
    m_ptt.openForPlay();
    m_noise.startTicked();
    m_endSeen = false;
    m_player->play();
    showDeviceState();
    emit playStarted();
}

void ExercisePlayback::stopPressed()
{
    // playerFree stays as it is: only the end of play gives the player back.
    m_ptt.closeIfOpen();
    m_noise.stopAll();
    m_player->prev();
    m_controls.wordLoop->setChecked(false);
    showDeviceState();
}

void ExercisePlayback::playKeys()
{
    play();
    m_keysOnly = true;
}

void ExercisePlayback::play()
{
    m_keysOnly = false;
    m_endSeen = false;
    m_player->play();
}

void ExercisePlayback::togglePause()
{
    // As a player's pause button: pressed again, it resumes.
    if (m_player->isPaused())
        m_player->play();
    else
        m_player->pause();
    showDeviceState();
}

void ExercisePlayback::onStatusUpdate()
{
    const qint64 length = m_player->lengthMs();
    const qint64 position = m_player->positionMs();
    m_controls.time->setText(playTime::lengthAndPosition(length, position));
    showDeviceState();
    if (position != length) {
        m_endSeen = false;
        return;
    }
    // A recording of length 0 stays at its end: its end is handled once, not at every tick.
    if (std::exchange(m_endSeen, true))
        return;
    endOfPlay();
}

void ExercisePlayback::endOfPlay()
{
    qCDebug(lcPlayback) << "end of play";
    m_session.playerFree = true;
    emit playEnded();
    m_ptt.closeIfOpen();
    const EndOfPlay next = EndOfPlay::after(m_controls.autoCorrection->isChecked() && !m_keysOnly,
                                            m_controls.wordLoop->isChecked() && !m_keysOnly);
    if (next.enableWordTimer)
        m_wordTimer->start();
    else
        m_wordTimer->stop();
    if (next.stopNoise)
        m_noise.stopAll();
    if (next.startCorrection)
        emit correctionRequested();
    m_player->stop();
    m_player->prev();
    showDeviceState();
}

void ExercisePlayback::onExerciseChanged()
{
    // A changed text must be prepared again before it can be played.
    m_player->stop();
    m_controls.prepareButton->show();
    m_controls.player->hide();
    showDeviceState();
    emit soundDiscarded();
}

void ExercisePlayback::onExerciseReleased()
{
    QString error;
    if (!test(&error))
        m_prompts.message(m_controls.player->window(), error);
    else {
        m_controls.prepareButton->hide();
        m_controls.player->show();
    }
    m_controls.exercise->setFocus();
}

bool ExercisePlayback::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_controls.exercise->viewport() && event->type() == QEvent::MouseButtonRelease
        && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
        onExerciseReleased();
        // Then the click: the noise stops.
        m_noise.stopAll();
    }
    return QObject::eventFilter(watched, event);
}

void ExercisePlayback::showDeviceState()
{
    const bool open = m_player->isOpen();
    const bool running = m_player->isPlaying() || m_player->isPaused();
    m_controls.rewind->setEnabled(open);
    m_controls.play->setEnabled(open && !m_player->isPlaying());
    m_controls.pause->setEnabled(running);
    m_controls.stop->setEnabled(running);
    m_controls.time->setEnabled(open);
    if (!open)
        m_controls.time->setText(playTime::lengthAndPosition(0, 0));
}

bool ExercisePlayback::isShown(const QWidget *widget) const
{
    return widget->isVisibleTo(widget->window());
}

} // namespace kelvora
