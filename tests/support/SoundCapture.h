#pragma once

#include "playback/MediaDevice.h"

#include <QAudioDevice>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QMediaDevices>
#include <QProcess>
#include <QStringList>
#include <QThread>

#include <algorithm>
#include <cstdlib>
#include <memory>

// Listening to what really reaches the audio server: a null sink of one's own (so that
// no other program's sound mixes in) recorded through its monitor with parec.
namespace kelvora::soundcapture {

inline QString runTool(const QString &program, const QStringList &args, bool *ok = nullptr)
{
    QProcess p;
    p.start(program, args);
    const bool done = p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    if (!done)
        qInfo("%s %s: %s", qPrintable(program), qPrintable(args.join(' ')), p.readAllStandardError().constData());
    if (ok)
        *ok = done;
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

// Empty when real sound can be played and recorded here, otherwise why not.
inline QString serverProblem()
{
    if (MediaDevice::silenceForced())
        return QStringLiteral("KELVORA_SILENT_AUDIO=1 is set: no real sound");
    bool ok = false;
    runTool("pactl", {"info"}, &ok);
    if (!ok)
        return QStringLiteral("no audio server answers pactl: run the tests with scripts/run-tests.sh");
    runTool("parec", {"--version"}, &ok);
    return ok ? QString() : QStringLiteral("parec is not installed (pulseaudio-utils)");
}

class PrivateSink {
public:
    explicit PrivateSink(const QString &tag) : m_name(QStringLiteral("kelvora_%1_%2").arg(tag).arg(QCoreApplication::applicationPid()))
    {
        bool ok = false;
        m_module = runTool("pactl", {"load-module", "module-null-sink", "sink_name=" + m_name}, &ok);
        if (!ok)
            m_module.clear();
    }
    ~PrivateSink()
    {
        if (!m_module.isEmpty())
            runTool("pactl", {"unload-module", m_module});
    }
    PrivateSink(const PrivateSink &) = delete;
    PrivateSink &operator=(const PrivateSink &) = delete;

    bool isValid() const { return !m_module.isEmpty(); }
    QString name() const { return m_name; }
    // Stops consuming sound, as a device that hangs.
    bool suspend(bool on) const
    {
        bool ok = false;
        runTool("pactl", {"suspend-sink", m_name, on ? "1" : "0"}, &ok);
        return ok;
    }
    // Ends every stream playing on this sink, as when its device goes away under them.
    int killStreams() const
    {
        QString index;
        for (const QString &line : runTool("pactl", {"list", "short", "sinks"}).split(u'\n'))
            if (line.section(u'\t', 1, 1) == m_name)
                index = line.section(u'\t', 0, 0);
        int killed = 0;
        for (const QString &line : runTool("pactl", {"list", "short", "sink-inputs"}).split(u'\n')) {
            bool ok = false;
            if (!index.isEmpty() && line.section(u'\t', 1, 1) == index)
                runTool("pacmd", {"kill-sink-input", line.section(u'\t', 0, 0)}, &ok);
            killed += ok;
        }
        return killed;
    }
    // The sink as Qt lists it, once Qt has heard of it.
    QAudioDevice device(int timeoutMs) const
    {
        QDeadlineTimer deadline(timeoutMs);
        do {
            for (const QAudioDevice &d : QMediaDevices::audioOutputs())
                if (d.id() == m_name.toUtf8())
                    return d;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            QThread::msleep(20);
        } while (!deadline.hasExpired());
        return {};
    }

private:
    QString m_name;
    QString m_module;
};

// parec on a sink's monitor: 8000 samples per second, 8-bit unsigned, mono.
class MonitorRecorder {
public:
    static constexpr int rate = 8000;

    explicit MonitorRecorder(const QString &sinkName) : m_sink(sinkName)
    {
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, [this] {
            m_samples += m_process.readAllStandardOutput();
            m_arrivals.append({m_clock.nsecsElapsed(), m_samples.size()});
        });
    }
    ~MonitorRecorder() { stop(); }

    // Starts parec without waiting: a sink whose monitor is read keeps its clock running.
    void begin()
    {
        m_clock.start();
        m_process.start("parec", {"-d", m_sink + ".monitor", "--format=u8", "--rate=8000", "--channels=1", "--latency-msec=10"});
    }
    // Starts parec and waits until samples flow.
    bool start(int timeoutMs)
    {
        begin();
        return waitForSamples(timeoutMs);
    }
    bool waitForSamples(int timeoutMs)
    {
        QDeadlineTimer deadline(timeoutMs);
        while (m_process.waitForStarted(timeoutMs) && m_samples.isEmpty() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return !m_samples.isEmpty();
    }
    void stop()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    const QByteArray &samples() const { return m_samples; }
    qint64 nowNs() const { return m_clock.nsecsElapsed(); }
    // When the sample at `index` reached this process, in the clock of nowNs(): the
    // arrival of the read that brought it, so parec's own delivery time is included.
    qint64 arrivalNs(qsizetype index) const
    {
        for (const auto &a : m_arrivals)
            if (a.second > index)
                return a.first;
        return -1;
    }

private:
    QString m_sink;
    QProcess m_process;
    QElapsedTimer m_clock;
    QByteArray m_samples;
    QList<std::pair<qint64, qsizetype>> m_arrivals; // (ns, samples so far)
};

// A private sink recorded from its monitor, and the sink as Qt lists it.
struct RecordedSink {
    std::unique_ptr<PrivateSink> sink;
    std::unique_ptr<MonitorRecorder> recorder;
    QAudioDevice output;
    // False when the sink was refused, parec delivered nothing or Qt never listed it.
    bool start(const QString &tag, int timeoutMs)
    {
        sink = std::make_unique<PrivateSink>(tag);
        recorder = std::make_unique<MonitorRecorder>(sink->name());
        if (sink->isValid() && recorder->start(timeoutMs))
            output = sink->device(timeoutMs);
        return !output.isNull();
    }
};

struct Segment {
    bool tone;
    int startMs;
    int lengthMs;
};

// Tone and silence runs of 8-bit unsigned samples, in windows of `windowMs`; silences
// shorter than `bridgeMs` inside a tone are taken as part of it.
inline QList<Segment> segments(const QByteArray &u8, int rate, int windowMs = 5, int threshold = 12, int bridgeMs = 30)
{
    const int window = rate * windowMs / 1000;
    QList<Segment> runs;
    for (qsizetype start = 0; start + window <= u8.size(); start += window) {
        int level = 0;
        for (qsizetype i = start; i < start + window; ++i)
            level = std::max(level, std::abs(int(uchar(u8[i])) - 128));
        const bool tone = level > threshold;
        if (!runs.isEmpty() && runs.last().tone == tone)
            runs.last().lengthMs += windowMs;
        else
            runs.append({tone, int(start * 1000 / rate), windowMs});
    }
    for (qsizetype i = 1; i + 1 < runs.size();) {
        if (!runs[i].tone && runs[i].lengthMs < bridgeMs && runs[i - 1].tone && runs[i + 1].tone) {
            runs[i - 1].lengthMs += runs[i].lengthMs + runs[i + 1].lengthMs;
            runs.remove(i, 2);
        } else {
            ++i;
        }
    }
    return runs;
}

// The runs of a recording at MonitorRecorder::rate, without the silence around them.
inline QList<Segment> toneRuns(const QByteArray &u8, int bridgeMs = 30)
{
    QList<Segment> runs = segments(u8, MonitorRecorder::rate, 5, 12, bridgeMs);
    while (!runs.isEmpty() && !runs.first().tone)
        runs.removeFirst();
    while (!runs.isEmpty() && !runs.last().tone)
        runs.removeLast();
    return runs;
}

inline QString describe(const QList<Segment> &runs)
{
    QStringList parts;
    for (const Segment &s : runs)
        parts << QStringLiteral("%1 %2 ms").arg(s.tone ? "son" : "silence").arg(s.lengthMs);
    return parts.join(QStringLiteral(", "));
}

// Index of the first sample of `u8` from `from` on that is clearly not silence, or -1.
inline qsizetype firstSound(const QByteArray &u8, qsizetype from, int threshold = 12)
{
    for (qsizetype i = from; i < u8.size(); ++i)
        if (std::abs(int(uchar(u8[i])) - 128) > threshold)
            return i;
    return -1;
}

} // namespace kelvora::soundcapture
