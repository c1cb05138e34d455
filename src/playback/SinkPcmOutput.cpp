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
// Silence kept queued between sounds: short, since a sound started then waits behind it.
constexpr int leadMs = 40;
// A stream whose server takes nothing for this long is waiting for its pre-buffer when
// it holds less (run dry): it is given that much.
constexpr int primeAfterMs = 60;
// Sounds shorter than this are characters of a correction, played one after another.
constexpr int shortSoundMs = 1000;
// How long an idle stream is kept for the next sound.
constexpr int lingerMs = 10000;

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
    m_linger.setSingleShot(true);
    m_linger.setInterval(lingerMs);
    connect(&m_linger, &QTimer::timeout, this, &SinkPcmOutput::closeStream);
}

SinkPcmOutput::~SinkPcmOutput()
{
    closeStream();
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
    m_next = m_pcm.size();
    if (m_stream && *format == m_format)
        return true; // same stream format as the last sound: the open stream serves again
    closeStream();
    m_format = *format;
    m_silence = QByteArray(qsizetype(m_format.bytesForMs(bufferMs)),
                           m_format.sample == PcmSample::UInt8 ? char(128) : char(0));
    return true;
}

// Each stream on a QAudioSink of its own: with Qt's PulseAudio backend, a sink started
// again after a stop plays worse each time (after about nine, only bursts of sound).
bool SinkPcmOutput::openStream()
{
    if (m_stream)
        return true;
    if (!m_format.isValid())
        return false;
    m_sink = new QAudioSink(m_device, toQt(m_format), this);
    m_sink->setBufferSize(qsizetype(m_format.bytesForMs(bufferMs)));
    connect(m_sink, &QAudioSink::stateChanged, this, &SinkPcmOutput::onStateChanged);
    m_written = 0;
    m_stream = m_sink->start();
    if (!m_stream || m_sink->state() == QAudio::StoppedState) {
        qCWarning(lcPlayback) << "audio sink did not start:" << m_sink->error();
        m_stream = nullptr;
        dropSink();
        return false;
    }
    m_feedProgress = -1;
    m_sinceFeedProgress.start();
    m_feeder.start();
    return true;
}

void SinkPcmOutput::closeStream()
{
    m_feeder.stop();
    m_watchdog.stop();
    m_linger.stop();
    m_stream = nullptr; // the sink deletes it on stop
    if (m_sink)
        m_sink->stop();
    dropSink();
}

void SinkPcmOutput::dropSink()
{
    if (!m_sink)
        return;
    m_sink->disconnect(this);
    m_sink->deleteLater(); // its destructor runs the event loop: not in here
    m_sink = nullptr;
}

bool SinkPcmOutput::start(qint64 fromMs)
{
    halt();
    if (!openStream())
        return false;
    m_linger.stop();
    m_startByte = qsizetype(qBound<qint64>(0, m_format.bytesForMs(fromMs), m_pcm.size()));
    m_next = m_startByte;
    if (m_written == 0) {
        // A new stream plays once the server holds its pre-buffer (nearly the whole
        // buffer): a shorter sound goes behind silence that makes it up, not before, so
        // that only the lead follows it. A short sound (a character, which another
        // follows) also finds before it the lead every later one finds, so that the
        // pause after it is exact; a long one (an exercise) starts at once.
        const int frame = m_format.bytesPerFrame();
        const qint64 prebuffer = m_sink->bufferSize();
        const qint64 sound = m_pcm.size() - m_startByte;
        const qint64 lead = sound < m_format.bytesForMs(shortSoundMs) ? m_format.bytesForMs(leadMs) : 0;
        const qsizetype missing = qsizetype(qMax(lead, prebuffer - sound)) / frame * frame;
        qsizetype written = 0;
        if (missing > 0 && !write(m_silence.constData(), qMin(missing, m_silence.size()), &written))
            qCWarning(lcPlayback) << "audio sink refused its first silence";
    }
    m_soundAt = m_written;
    m_active = true;
    m_suspended = false;
    m_bankedMs = 0;
    m_playedMs = 0;
    m_clock.start();
    feed();
    m_progress = -1;
    m_sinceProgress.start();
    m_watchdog.start();
    return true;
}

qint64 SinkPcmOutput::queuedBytes() const
{
    if (!m_stream)
        return 0;
    return qBound<qint64>(0, m_sink->bufferSize() - m_sink->bytesFree(), m_written);
}

qint64 SinkPcmOutput::consumedBytes() const
{
    return m_written - queuedBytes();
}

// The server's read point plus the lead of silence kept queued: where the next sound
// would begin if it started now. Measured there, the pause between two sounds is the
// time between the end of one and the start of the other, whatever the lead.
qint64 SinkPcmOutput::takenBytes() const
{
    const qint64 taken = consumedBytes() + m_format.bytesForMs(leadMs) - m_soundAt;
    return qBound<qint64>(0, taken, m_next - m_startByte);
}

bool SinkPcmOutput::soundConsumed() const
{
    return m_next >= m_pcm.size() && takenBytes() >= m_pcm.size() - m_startByte;
}

bool SinkPcmOutput::write(const char *data, qsizetype size, qsizetype *written)
{
    const qint64 n = m_stream->write(data, size);
    if (n <= 0)
        return false;
    m_written += n;
    *written = qsizetype(n);
    return true;
}

void SinkPcmOutput::feed()
{
    if (!m_stream || m_suspended)
        return;
    const int frame = m_format.bytesPerFrame();
    const qint64 consumed = consumedBytes();
    if (consumed != m_feedProgress) {
        m_feedProgress = consumed;
        m_sinceFeedProgress.start();
    }
    // Between sounds only a short lead of silence; but a stream that takes nothing
    // while data waits (run dry, so waiting for its pre-buffer again) is given that.
    const qint64 prebuffer = m_sink->bufferSize();
    const bool priming = m_sinceFeedProgress.elapsed() > primeAfterMs && queuedBytes() < prebuffer;
    // A stream that has failed reports no room (or a negative one): nothing is written.
    qsizetype room = m_sink->bytesFree() / frame * frame;
    // A write may report the stream lost, which closes it: m_stream is then gone.
    while (room > 0 && m_stream) {
        qsizetype written = 0;
        if (m_active && m_next < m_pcm.size()) {
            if (!write(m_pcm.constData() + m_next, qMin(room, m_pcm.size() - m_next), &written))
                return;
            m_next += written;
        } else {
            const qint64 lead = (priming ? prebuffer : m_format.bytesForMs(leadMs)) - queuedBytes();
            const qsizetype wanted = qsizetype(qMin<qint64>(room, lead)) / frame * frame;
            if (wanted <= 0 || !write(m_silence.constData(), qMin(wanted, m_silence.size()), &written))
                return;
        }
        room -= written;
    }
}

void SinkPcmOutput::suspend()
{
    if (!m_active || m_suspended)
        return;
    playedMs(); // the value heard so far stays while paused
    m_bankedMs += m_clock.elapsed();
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
    m_clock.start();
    m_sink->resume();
    feed();
    m_feeder.start();
    m_progress = -1;
    m_sinceProgress.start();
    m_watchdog.start();
}

// A sound halted before the server has taken all of it stops at once (its stream goes,
// with what it still queues); one that has played out leaves the stream to the next.
void SinkPcmOutput::halt()
{
    m_watchdog.stop();
    if (!m_active)
        return;
    playedMs(); // kept after the halt
    const bool whole = !m_suspended && soundConsumed();
    m_active = false;
    m_suspended = false;
    if (whole)
        m_linger.start();
    else
        closeStream();
}

qint64 SinkPcmOutput::playedMs() const
{
    if (!m_active)
        return m_playedMs;
    const qint64 wall = m_bankedMs + (m_suspended ? 0 : m_clock.elapsed());
    qint64 taken = wall;
    if (!soundConsumed())
        taken = m_format.msForBytes(takenBytes());
    m_playedMs = qMax(m_playedMs, qMin(wall, taken));
    return m_playedMs;
}

void SinkPcmOutput::onStateChanged(QAudio::State state)
{
    if (!m_stream || !m_sink)
        return;
    const QAudio::Error error = m_sink->error();
    if (state != QAudio::StoppedState || error == QAudio::NoError)
        return;
    if (m_active)
        lose(reasonFor(error));
    else
        closeStream(); // lost while idle: the next sound opens a new one
}

void SinkPcmOutput::watch()
{
    if (!m_active || m_suspended)
        return;
    const qint64 consumed = consumedBytes();
    if (consumed > m_progress || soundConsumed()) {
        m_progress = consumed;
        m_sinceProgress.start();
    } else if (m_sinceProgress.elapsed() > g_stallLimitMs) {
        lose(QStringLiteral("aucun son n'est passé depuis %1 secondes")
                 .arg(QLocale(QLocale::French).toString(g_stallLimitMs / 1000.0, 'g', 3)));
    }
}

void SinkPcmOutput::lose(const QString &reason)
{
    qCWarning(lcPlayback) << "audio output lost:" << reason;
    playedMs();
    m_active = false;
    m_suspended = false;
    closeStream();
    emit failed(reason);
}

} // namespace kelvora
