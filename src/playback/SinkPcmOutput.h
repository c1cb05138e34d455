#pragma once

#include "playback/PcmOutput.h"

#include <QAudio>
#include <QAudioDevice>
#include <QAudioFormat>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <optional>

class QAudioSink;

namespace kelvora {

// Plays through a QAudioSink on one audio device, pushing the sound held in memory as
// the stream asks for it. The stream is opened once and kept: after a sound that ends,
// it carries a short lead of silence for a while, so that the next sound (the next
// character of a correction) follows at once on the same stream; reopening a stream per
// character garbles the sound after a few of them. Played time is the sound's samples
// the server has taken (see takenBytes), never ahead of the wall clock since start: the
// server's own latency does not stretch it.
class SinkPcmOutput final : public PcmOutput {
    Q_OBJECT
public:
    explicit SinkPcmOutput(const QAudioDevice &device, QObject *parent = nullptr);
    ~SinkPcmOutput() override;

    bool prepare(const WavSound &sound) override;
    bool start(qint64 fromMs) override;
    void suspend() override;
    void resume() override;
    void halt() override;
    qint64 playedMs() const override;

    const QAudioDevice &device() const { return m_device; }
    PcmFormat outputFormat() const { return m_format; }

    // A stream that plays nothing for this long while it should is taken as lost
    // (4 s; tests shorten it).
    static int stallLimitMs();
    static void setStallLimitMs(int ms);

private:
    void onStateChanged(QAudio::State state);
    bool openStream();
    void closeStream();
    void dropSink();
    void feed();
    bool write(const char *data, qsizetype size, qsizetype *written);
    qint64 queuedBytes() const;
    qint64 consumedBytes() const; // of the whole stream
    qint64 takenBytes() const;    // of this sound
    bool soundConsumed() const;
    void watch();
    void lose(const QString &reason);
    std::optional<PcmFormat> chooseFormat(const PcmFormat &file) const;

    QAudioDevice m_device;
    PcmFormat m_format;           // what the sink receives
    QByteArray m_pcm;             // the sound, converted to m_format when needed
    qsizetype m_next = 0;         // next byte of m_pcm to send
    qsizetype m_startByte = 0;    // where this start began
    QByteArray m_silence;         // one buffer of silence in m_format
    QIODevice *m_stream = nullptr; // the sink's input while the stream is open, owned by the sink
    QPointer<QAudioSink> m_sink;
    qint64 m_written = 0;         // bytes handed to the open stream
    qint64 m_soundAt = 0;         // m_written when this sound's first byte went in
    bool m_active = false;        // a sound started and not halted
    bool m_suspended = false;
    QElapsedTimer m_clock;        // since start or resume
    qint64 m_bankedMs = 0;        // played before the last pause
    mutable qint64 m_playedMs = 0;
    qint64 m_progress = -1;       // consumed bytes the watchdog saw last
    QElapsedTimer m_sinceProgress;
    qint64 m_feedProgress = -1;   // consumed bytes at the last feed that moved
    QElapsedTimer m_sinceFeedProgress;
    QTimer m_feeder;
    QTimer m_watchdog;
    QTimer m_linger;              // closes a stream left idle
};

} // namespace kelvora
