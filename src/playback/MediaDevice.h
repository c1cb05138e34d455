#pragma once

#include "audio/WavSound.h"

#include <QAudioDevice>
#include <QObject>
#include <QString>
#include <QTimer>

namespace kelvora {

class ClockPcmOutput;
class PlayClock;
class PcmOutput;
class SinkPcmOutput;

// A "WaveAudio" multimedia device: one WAV file, opened, played, paused, stopped and
// rewound, with times in milliseconds. Without a sound output (none on the machine, a
// sink that will not start, or KELVORA_SILENT_AUDIO=1) it plays in silence on a clock,
// so that everything that waits for the end of a sound still runs; an output lost while
// playing is reported (errorOccurred) and the sound goes on in silence. Several devices
// play at once, each on its own stream.
class MediaDevice : public QObject {
    Q_OBJECT
public:
    static constexpr int defaultNotifyPeriodMs = 100;

    // A device on the system's sound output.
    explicit MediaDevice(QObject *parent = nullptr);
    // A silent device keeping time on `clock` (a test advances it).
    MediaDevice(PlayClock &clock, QObject *parent);
    ~MediaDevice() override;

    // "Open": reads the whole file (which is then no longer held), prepares the output;
    // the length is known on return. A device already open is closed first. On failure
    // returns false and emits errorOccurred with a French message.
    bool open(const QString &fileName);
    // "Close": stops and forgets the sound; the file may then be deleted and rewritten.
    void close();
    // "play": from the current position; resumes after pause. At the end of the sound
    // the position stays at the length and completed() is emitted.
    void play();
    void pause();
    // "stop": stops playing and keeps the position, so that play goes on from there.
    void stop();
    // "Prev": stops if playing and rewinds to the beginning.
    void prev();

    bool isOpen() const;
    bool isPlaying() const; // paused is not playing
    bool isPaused() const;
    bool isSilent() const;  // this sound keeps time on a clock, no sound is heard
    QString fileName() const;
    qint64 lengthMs() const;
    qint64 positionMs() const;
    QString errorString() const; // the last error, French

    // Period of statusUpdate() while open; 0 turns the updates off.
    int notifyPeriod() const;
    void setNotifyPeriod(int ms);

    // The output to play on; a null device, or one that has gone, means the system's
    // default output. Takes effect at the next open or play.
    void setOutputDevice(const QAudioDevice &device);
    QAudioDevice outputDevice() const;

    // The notice given once per process when sound falls back to silence.
    static QString silentNoticeText();
    static bool silentNoticeGiven();
    static bool silenceForced(); // KELVORA_SILENT_AUDIO=1

signals:
    void statusUpdate();
    void completed();
    void errorOccurred(const QString &message);
    void silentNotice(const QString &message); // emitted by the first device to go silent

private:
    enum class State { Closed, Stopped, Playing, Paused };

    // `clock` null: a clock of its own that follows the real time.
    MediaDevice(PlayClock *clock, bool silentOnly, QObject *parent);

    void checkEnd();
    void finish();
    void startOutput(qint64 fromMs);
    QAudioDevice currentOutput() const;
    void route();
    void goSilent();
    void onOutputFailed(const QString &reason);
    void fail(const QString &message);
    void useOutput(PcmOutput *output);

    State m_state = State::Closed;
    QString m_fileName;
    WavSound m_sound;
    QString m_error;
    qint64 m_lengthMs = 0;
    qint64 m_positionMs = 0;  // while stopped; the start point while playing or paused
    bool m_outputRunning = false;
    int m_notifyMs = defaultNotifyPeriodMs;
    QAudioDevice m_requestedDevice;
    QTimer m_statusTimer;
    QTimer m_endTimer;
    bool m_silentOnly = false;
    ClockPcmOutput *m_clock = nullptr; // children of this object
    SinkPcmOutput *m_sink = nullptr;
    PcmOutput *m_output = nullptr;     // one of the two above
};

} // namespace kelvora
