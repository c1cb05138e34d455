#include "playback/SinkPcmOutput.h"

#include <QLocale>

#include "core/Logging.h"
#include "audio/PcmConverter.h"

#include <QAudioSink>

namespace kelvora {

namespace {
int g_stallLimitMs = 4000;
} // namespace

int SinkPcmOutput::stallLimitMs()
{
    return g_stallLimitMs;
}

void SinkPcmOutput::setStallLimitMs(int ms)
{
    g_stallLimitMs = ms;
}


namespace {

// Enough to ride over a busy moment of the user-interface thread, short enough that
// positions and a pause stay close to what is heard.
constexpr int bufferMs = 250;
// How often the stream is topped up: well inside the buffer.
constexpr int feedMs = 10;

QAudioFormat toQt(const PcmFormat &f)
{
    QAudioFormat q;
    q.setSampleRate(f.sampleRate);
    q.setChannelCount(f.channels);
    q.setSampleFormat(f.sample == PcmSample::UInt8   ? QAudioFormat::UInt8
                      : f.sample == PcmSample::Int16 ? QAudioFormat::Int16
                                                     : QAudioFormat::Float);
    return q;
}

std::optional<PcmFormat> fromQt(const QAudioFormat &q)
{
    switch (q.sampleFormat()) {
    case QAudioFormat::UInt8:
        return PcmFormat{q.sampleRate(), q.channelCount(), PcmSample::UInt8};
    case QAudioFormat::Int16:
        return PcmFormat{q.sampleRate(), q.channelCount(), PcmSample::Int16};
    case QAudioFormat::Float:
        return PcmFormat{q.sampleRate(), q.channelCount(), PcmSample::Float32};
    default:
        return std::nullopt;
    }
}

QString reasonFor(QAudio::Error error)
{
    switch (error) {
    case QAudio::OpenError:
        return QStringLiteral("la sortie son ne peut pas être ouverte");
    case QAudio::IOError:
        return QStringLiteral("erreur d'écriture vers la sortie son");
    case QAudio::UnderrunError:
        return QStringLiteral("la sortie son manque de données");
    case QAudio::FatalError:
        return QStringLiteral("la sortie son a disparu");
    case QAudio::NoError:
        break;
    }
    return QStringLiteral("la sortie son s'est arrêtée");
}

} // namespace

SinkPcmOutput::SinkPcmOutput(const QAudioDevice &device, QObject *parent)
    : PcmOutput(parent), m_device(device)
{
    m_feeder.setTimerType(Qt::PreciseTimer);
    m_feeder.setInterval(feedMs);
    connect(&m_feeder, &QTimer::timeout, this, &SinkPcmOutput::feed);
    m_watchdog.setInterval(200);
    connect(&m_watchdog, &QTimer::timeout, this, &SinkPcmOutput::watch);
}

SinkPcmOutput::~SinkPcmOutput()
{
    halt();
}

std::optional<PcmFormat> SinkPcmOutput::chooseFormat(const PcmFormat &file) const
{
    const PcmFormat preferred = fromQt(m_device.preferredFormat()).value_or(PcmFormat{});
    const PcmFormat candidates[] = {
        file,
        {file.sampleRate, file.channels, PcmSample::Int16},
        {preferred.sampleRate, file.channels, PcmSample::Int16},
        {preferred.sampleRate, preferred.channels, PcmSample::Int16},
        preferred,
    };
    for (const PcmFormat &c : candidates) {
        if (c.isValid() && m_device.isFormatSupported(toQt(c)))
            return c;
    }
    return std::nullopt;
}

bool SinkPcmOutput::prepare(const WavSound &sound)
{
    halt();
    const std::optional<PcmFormat> format = chooseFormat(sound.format);
    if (!format) {
        qCWarning(lcPlayback) << "no format of" << m_device.description() << "fits the sound";
        return false;
    }
    m_pcm = PcmConverter::convert(sound.pcm, sound.format, *format);
    if (m_sink && *format == m_format)
        return true; // same stream format as the last sound: the sink serves again

    if (m_sink) {
        m_sink->disconnect(this);
        m_sink->deleteLater(); // its destructor runs the event loop: not in here
    }
    m_format = *format;
    m_silence = QByteArray(qsizetype(m_format.bytesForMs(bufferMs)),
                           m_format.sample == PcmSample::UInt8 ? char(128) : char(0));
    m_sink = new QAudioSink(m_device, toQt(m_format), this);
    m_sink->setBufferSize(qsizetype(m_format.bytesForMs(bufferMs)));
    connect(m_sink, &QAudioSink::stateChanged, this, &SinkPcmOutput::onStateChanged);
    return true;
}

bool SinkPcmOutput::start(qint64 fromMs)
{
    halt();
    if (!m_sink)
        return false;
    m_startByte = qsizetype(qBound<qint64>(0, m_format.bytesForMs(fromMs), m_pcm.size()));
    m_next = m_startByte;
    m_playedUs = 0;
    m_stream = m_sink->start();
    if (!m_stream || m_sink->state() == QAudio::StoppedState) {
        qCWarning(lcPlayback) << "audio sink did not start:" << m_sink->error();
        m_stream = nullptr;
        return false;
    }
    m_active = true;
    m_suspended = false;
    feed();
    m_feeder.start();
    m_progressUs = -1;
    m_sinceProgress.start();
    m_watchdog.start();
    return true;
}

void SinkPcmOutput::feed()
{
    if (!m_active || m_suspended || !m_stream)
        return;
    const int frame = m_format.bytesPerFrame();
    // A stream that has failed reports no room (or a negative one): nothing is written.
    qsizetype room = m_sink->bytesFree() / frame * frame;
    // A write may report the stream lost, which halts this output: m_stream is then gone.
    while (room > 0 && m_stream) {
        const bool sound = m_next < m_pcm.size();
        const char *from = sound ? m_pcm.constData() + m_next : m_silence.constData();
        const qsizetype wanted = qMin(room, sound ? m_pcm.size() - m_next : m_silence.size());
        const qint64 written = m_stream->write(from, wanted);
        if (written <= 0)
            return;
        if (sound)
            m_next += qsizetype(written);
        room -= qsizetype(written);
    }
}

void SinkPcmOutput::suspend()
{
    if (!m_active || m_suspended)
        return;
    playedMs(); // the value heard so far stays while paused
    m_suspended = true;
    m_feeder.stop();
    m_watchdog.stop();
    m_sink->suspend();
}

void SinkPcmOutput::resume()
{
    if (!m_active || !m_suspended)
        return;
    m_suspended = false;
    m_sink->resume();
    feed();
    m_feeder.start();
    m_progressUs = -1;
    m_sinceProgress.start();
    m_watchdog.start();
}

void SinkPcmOutput::halt()
{
    m_feeder.stop();
    m_watchdog.stop();
    if (!m_active)
        return;
    playedMs(); // kept: a stopped sink reports 0
    m_active = false;
    m_suspended = false;
    m_stream = nullptr; // the sink deletes it on stop
    if (m_sink)
        m_sink->stop();
}

qint64 SinkPcmOutput::playedMs() const
{
    if (m_active && m_sink && m_sink->state() != QAudio::StoppedState)
        m_playedUs = qMax(m_playedUs, m_sink->processedUSecs());
    return m_playedUs / 1000;
}

void SinkPcmOutput::onStateChanged(QAudio::State state)
{
    if (!m_active || !m_sink)
        return;
    const QAudio::Error error = m_sink->error();
    if (state == QAudio::StoppedState && error != QAudio::NoError)
        lose(reasonFor(error));
}

void SinkPcmOutput::watch()
{
    if (!m_active || m_suspended)
        return;
    const qint64 us = m_sink->processedUSecs();
    const qint64 total = m_format.msForBytes(m_pcm.size() - m_startByte) * 1000;
    if (us > m_progressUs || us >= total) {
        m_progressUs = us;
        m_sinceProgress.start();
    } else if (m_sinceProgress.elapsed() > g_stallLimitMs) {
        lose(QStringLiteral("aucun son n'est passé depuis %1 secondes")
                 .arg(QLocale(QLocale::French).toString(g_stallLimitMs / 1000.0, 'g', 3)));
    }
}

void SinkPcmOutput::lose(const QString &reason)
{
    qCWarning(lcPlayback) << "audio output lost:" << reason;
    halt();
    emit failed(reason);
}

} // namespace kelvora
