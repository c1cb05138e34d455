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
// the stream asks for it, then silence until halted: a stream whose pre-buffer is never
// filled would not start, which a short sound (one character) could otherwise cause.
// Time is what the sink reports as played (processedUSecs), not a wall clock.
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
    void feed();
    void watch();
    void lose(const QString &reason);
    std::optional<PcmFormat> chooseFormat(const PcmFormat &file) const;

    QAudioDevice m_device;
    PcmFormat m_format;           // what the sink receives
    QByteArray m_pcm;             // the sound, converted to m_format when needed
    qsizetype m_next = 0;         // next byte of m_pcm to send
    qsizetype m_startByte = 0;    // where this start began
    QByteArray m_silence;         // one buffer of silence in m_format
    QIODevice *m_stream = nullptr; // the sink's input while active, owned by the sink
    QPointer<QAudioSink> m_sink;
    bool m_active = false;        // started and not halted
    bool m_suspended = false;
    mutable qint64 m_playedUs = 0;
    qint64 m_progressUs = -1;     // last value the watchdog saw
    QElapsedTimer m_sinceProgress;
    QTimer m_feeder;
    QTimer m_watchdog;
};

} // namespace kelvora
