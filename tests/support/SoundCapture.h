#pragma once

#include <QAudioDevice>
#include <QByteArray>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QList>
#include <QMediaDevices>
#include <QProcess>
#include <QString>
#include <QThread>

#include <algorithm>
#include <cstdlib>

// Listening to what really reaches the audio server: a null sink of one's own (so that
// no other program's sound mixes in) recorded through its monitor with parec.
namespace kelvora::soundcapture {

inline QString runTool(const QString &program, const QStringList &args, bool *ok)
{
    QProcess p;
    p.start(program, args);
    *ok = p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    if (!*ok)
        qInfo("%s %s: %s", qPrintable(program), qPrintable(args.join(' ')), p.readAllStandardError().constData());
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

// Empty when the server answers, otherwise why not.
inline QString serverProblem()
{
    bool ok = false;
    runTool(QStringLiteral("pactl"), {QStringLiteral("info")}, &ok);
    if (!ok)
        return QStringLiteral("no audio server answers pactl: run the tests with scripts/run-tests.sh");
    runTool(QStringLiteral("parec"), {QStringLiteral("--version")}, &ok);
    if (!ok)
        return QStringLiteral("parec is not installed (pulseaudio-utils)");
    return {};
}

class PrivateSink {
public:
    explicit PrivateSink(const QString &tag)
        : m_name(QStringLiteral("kelvora_%1_%2").arg(tag).arg(QCoreApplication::applicationPid()))
    {
        bool ok = false;
        m_module = runTool(QStringLiteral("pactl"),
                           {QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
                            QStringLiteral("sink_name=") + m_name},
                           &ok);
        if (!ok)
            m_module.clear();
    }
    ~PrivateSink() { unload(); }
    PrivateSink(const PrivateSink &) = delete;
    PrivateSink &operator=(const PrivateSink &) = delete;

    bool isValid() const { return !m_module.isEmpty(); }
    QString name() const { return m_name; }
    void unload()
    {
        if (m_module.isEmpty())
            return;
        bool ok = false;
        runTool(QStringLiteral("pactl"), {QStringLiteral("unload-module"), m_module}, &ok);
        m_module.clear();
    }
    // Stops consuming sound, as a device that hangs.
    bool suspend(bool on) const
    {
        bool ok = false;
        runTool(QStringLiteral("pactl"),
                {QStringLiteral("suspend-sink"), m_name, on ? QStringLiteral("1") : QStringLiteral("0")}, &ok);
        return ok;
    }
    // Ends every stream playing on this sink, as when its device goes away under them.
    int killStreams() const
    {
        bool ok = false;
        const QString sinks = runTool(QStringLiteral("pactl"),
                                      {QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sinks")}, &ok);
        QString index;
        for (const QString &line : sinks.split(u'\n')) {
            const QStringList f = line.split(u'\t');
            if (f.size() > 1 && f[1] == m_name)
                index = f[0];
        }
        const QString inputs = runTool(QStringLiteral("pactl"),
                                       {QStringLiteral("list"), QStringLiteral("short"),
                                        QStringLiteral("sink-inputs")}, &ok);
        int killed = 0;
        for (const QString &line : inputs.split(u'\n')) {
            const QStringList f = line.split(u'\t');
            if (!index.isEmpty() && f.size() > 1 && f[1] == index) {
                runTool(QStringLiteral("pacmd"), {QStringLiteral("kill-sink-input"), f[0]}, &ok);
                killed += ok;
            }
        }
        return killed;
    }
    // The sink as Qt lists it, once Qt has heard of it.
    QAudioDevice device(int timeoutMs) const
    {
        QDeadlineTimer deadline(timeoutMs);
        do {
            for (const QAudioDevice &d : QMediaDevices::audioOutputs()) {
                if (d.id() == m_name.toUtf8())
                    return d;
            }
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
        m_process.start(QStringLiteral("parec"),
                        {QStringLiteral("-d"), m_sink + QStringLiteral(".monitor"),
                         QStringLiteral("--format=u8"), QStringLiteral("--rate=8000"),
                         QStringLiteral("--channels=1"), QStringLiteral("--latency-msec=10")});
    }
    // Starts parec and waits until samples flow.
    bool start(int timeoutMs)
    {
        begin();
        if (!m_process.waitForStarted(timeoutMs))
            return false;
        QDeadlineTimer deadline(timeoutMs);
        while (m_samples.isEmpty() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return !m_samples.isEmpty();
    }
    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.kill();
        m_process.waitForFinished(5000);
    }

    const QByteArray &samples() const { return m_samples; }
    qint64 nowNs() const { return m_clock.nsecsElapsed(); }
    // When the sample at `index` reached this process, in the clock of nowNs(): the
    // arrival of the read that brought it, so parec's own delivery time is included.
    qint64 arrivalNs(qsizetype index) const
    {
        for (const auto &a : m_arrivals) {
            if (a.second > index)
                return a.first;
        }
        return -1;
    }

private:
    QString m_sink;
    QProcess m_process;
    QElapsedTimer m_clock;
    QByteArray m_samples;
    QList<std::pair<qint64, qsizetype>> m_arrivals; // (ns, samples so far)
};

struct Segment {
    bool tone;
    int startMs;
    int lengthMs;
};

// Tone and silence runs of 8-bit unsigned samples, in windows of `windowMs`; silences
// shorter than `bridgeMs` inside a tone are taken as part of it.
inline QList<Segment> segments(const QByteArray &u8, int rate, int windowMs = 5, int threshold = 12,
                               int bridgeMs = 30)
{
    const int window = rate * windowMs / 1000;
    QList<Segment> runs;
    for (qsizetype start = 0; start + window <= u8.size(); start += window) {
        int level = 0;
        for (qsizetype i = start; i < start + window; ++i)
            level = std::max(level, std::abs(int(uchar(u8[i])) - 128));
        const bool tone = level > threshold;
        const int at = int(start * 1000 / rate);
        if (!runs.isEmpty() && runs.last().tone == tone)
            runs.last().lengthMs += windowMs;
        else
            runs.append({tone, at, windowMs});
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

// Index of the first sample of `u8` from `from` on that is clearly not silence, or -1.
inline qsizetype firstSound(const QByteArray &u8, qsizetype from, int threshold = 12)
{
    for (qsizetype i = from; i < u8.size(); ++i) {
        if (std::abs(int(uchar(u8[i])) - 128) > threshold)
            return i;
    }
    return -1;
}

} // namespace kelvora::soundcapture
