#include "playback/MediaDevice.h"

#include "core/Logging.h"
#include "playback/ClockPcmOutput.h"
#include "playback/PlayClock.h"
#include "playback/SinkPcmOutput.h"
#include "audio/WavReader.h"

#include <QMediaDevices>

#include <atomic>

namespace kelvora {

namespace {

std::atomic<bool> g_silentNoticeGiven{false};

// How often a playing device looks for its end: completion must follow the sound
// closely (the correction replay waits on it), whatever the status period.
constexpr int endCheckMs = 10;

} // namespace

MediaDevice::MediaDevice(QObject *parent)
    : MediaDevice(nullptr, false, parent)
{
}

MediaDevice::MediaDevice(PlayClock &clock, QObject *parent)
    : MediaDevice(&clock, true, parent)
{
    // Time moves only when the clock is advanced: look for the end at once.
    connect(&clock, &PlayClock::advanced, this, [this] {
        if (m_state == State::Closed)
            return;
        if (m_notifyMs > 0)
            emit statusUpdate();
        checkEnd();
    });
}

MediaDevice::MediaDevice(PlayClock *clock, bool silentOnly, QObject *parent)
    : QObject(parent)
    , m_silentOnly(silentOnly)
    , m_clock(new ClockPcmOutput(clock ? *clock : *new SteadyPlayClock(this), this))
{
    m_output = m_clock;
    connect(&m_statusTimer, &QTimer::timeout, this, &MediaDevice::statusUpdate);
    m_endTimer.setTimerType(Qt::PreciseTimer);
    m_endTimer.setInterval(endCheckMs);
    connect(&m_endTimer, &QTimer::timeout, this, &MediaDevice::checkEnd);
}

MediaDevice::~MediaDevice()
{
    close();
    if (m_sink) {
        // A sink's destructor runs pending events: let it do so while this object is whole.
        m_sink->disconnect(this);
        delete m_sink;
    }
}

QString MediaDevice::silentNoticeText()
{
    return QStringLiteral("Aucune sortie son : Kelvora joue en silence.");
}

bool MediaDevice::silentNoticeGiven()
{
    return g_silentNoticeGiven.load();
}

bool MediaDevice::silenceForced()
{
    return qEnvironmentVariableIntValue("KELVORA_SILENT_AUDIO") == 1;
}

bool MediaDevice::open(const QString &fileName)
{
    close();
    QString error;
    const std::optional<WavSound> sound = WavReader::read(fileName, &error);
    if (!sound) {
        fail(error);
        return false;
    }
    m_fileName = fileName;
    m_sound = *sound;
    m_lengthMs = m_sound.lengthMs();
    m_positionMs = 0;
    m_output = nullptr; // so that route() hands the new sound to the sink
    route();
    m_state = State::Stopped;
    if (m_notifyMs > 0)
        m_statusTimer.start(m_notifyMs);
    qCDebug(lcPlayback) << "opened" << fileName << m_lengthMs << "ms" << (isSilent() ? "(silent)" : "");
    return true;
}

void MediaDevice::close()
{
    if (m_state == State::Closed)
        return;
    m_output->halt();
    m_outputRunning = false;
    m_statusTimer.stop();
    m_endTimer.stop();
    m_state = State::Closed;
    m_fileName.clear();
    m_sound = WavSound();
    m_lengthMs = 0;
    m_positionMs = 0;
}

void MediaDevice::play()
{
    switch (m_state) {
    case State::Closed:
        qCDebug(lcPlayback) << "play on a closed device ignored";
        return;
    case State::Playing:
        return;
    case State::Paused:
        if (m_outputRunning)
            m_output->resume();
        break;
    case State::Stopped:
        // At the end already: nothing to sound, the first check completes.
        m_outputRunning = false;
        if (m_positionMs < m_lengthMs)
            startOutput(m_positionMs);
        break;
    }
    m_state = State::Playing;
    m_endTimer.start();
}

void MediaDevice::pause()
{
    if (m_state != State::Playing)
        return;
    if (m_outputRunning)
        m_output->suspend();
    m_state = State::Paused;
    m_endTimer.stop();
}

void MediaDevice::stop()
{
    if (m_state != State::Playing && m_state != State::Paused)
        return;
    m_positionMs = positionMs();
    m_output->halt();
    m_outputRunning = false;
    m_state = State::Stopped;
    m_endTimer.stop();
}

void MediaDevice::prev()
{
    stop();
    m_positionMs = 0;
}

bool MediaDevice::isOpen() const
{
    return m_state != State::Closed;
}

bool MediaDevice::isPlaying() const
{
    return m_state == State::Playing;
}

bool MediaDevice::isPaused() const
{
    return m_state == State::Paused;
}

bool MediaDevice::isSilent() const
{
    return m_state != State::Closed && m_output == m_clock;
}

QString MediaDevice::fileName() const
{
    return m_fileName;
}

qint64 MediaDevice::lengthMs() const
{
    return m_lengthMs;
}

qint64 MediaDevice::positionMs() const
{
    if (m_state != State::Playing && m_state != State::Paused)
        return m_positionMs;
    const qint64 played = m_outputRunning ? m_output->playedMs() : 0;
    return qMin(m_lengthMs, m_positionMs + played);
}

QString MediaDevice::errorString() const
{
    return m_error;
}

int MediaDevice::notifyPeriod() const
{
    return m_notifyMs;
}

void MediaDevice::setNotifyPeriod(int ms)
{
    m_notifyMs = qMax(0, ms);
    if (m_state == State::Closed)
        return;
    if (m_notifyMs > 0)
        m_statusTimer.start(m_notifyMs);
    else
        m_statusTimer.stop();
}

void MediaDevice::setOutputDevice(const QAudioDevice &device)
{
    m_requestedDevice = device;
}

QAudioDevice MediaDevice::outputDevice() const
{
    return m_requestedDevice;
}

void MediaDevice::checkEnd()
{
    if (m_state == State::Playing && positionMs() >= m_lengthMs)
        finish();
}

void MediaDevice::finish()
{
    m_output->halt();
    m_outputRunning = false;
    m_positionMs = m_lengthMs;
    m_state = State::Stopped;
    m_endTimer.stop();
    emit completed();
}

void MediaDevice::startOutput(qint64 fromMs)
{
    route();
    m_positionMs = fromMs;
    m_outputRunning = m_output->start(fromMs);
    if (!m_outputRunning && m_output != m_clock) {
        useOutput(m_clock);
        m_outputRunning = m_clock->start(fromMs);
    }
}

QAudioDevice MediaDevice::currentOutput() const
{
    if (m_silentOnly || silenceForced())
        return {};
    // Starting a stream on an output that has gone can hang the audio layer: only a
    // device the system still lists is used.
    if (!m_requestedDevice.isNull() && QMediaDevices::audioOutputs().contains(m_requestedDevice))
        return m_requestedDevice;
    return QMediaDevices::defaultAudioOutput();
}

// Picks the output for the sound: the sink of the current device (made again when the
// device changed), or the clock when there is no device or it cannot take the sound.
void MediaDevice::route()
{
    const QAudioDevice device = currentOutput();
    if (device.isNull()) {
        useOutput(m_clock);
        return;
    }
    if (m_output == m_sink && m_sink && m_sink->device() == device)
        return;
    if (m_sink && m_sink->device() != device) {
        m_sink->disconnect(this);
        m_sink->deleteLater();
        m_sink = nullptr;
    }
    if (!m_sink) {
        m_sink = new SinkPcmOutput(device, this);
        connect(m_sink, &PcmOutput::failed, this, &MediaDevice::onOutputFailed);
    }
    useOutput(m_sink->prepare(m_sound) ? static_cast<PcmOutput *>(m_sink) : m_clock);
}

void MediaDevice::useOutput(PcmOutput *output)
{
    m_output = output;
    if (output == m_clock)
        goSilent();
}

void MediaDevice::goSilent()
{
    if (m_silentOnly)
        return; // silent by choice: nothing to tell
    if (g_silentNoticeGiven.exchange(true))
        return;
    qCWarning(lcPlayback) << silentNoticeText();
    emit silentNotice(silentNoticeText());
}

void MediaDevice::onOutputFailed(const QString &reason)
{
    if (m_output != m_sink || (m_state != State::Playing && m_state != State::Paused))
        return;
    const qint64 position = positionMs();
    const bool paused = m_state == State::Paused;
    fail(QStringLiteral("La sortie son s'est interrompue (%1) : la lecture continue en silence.")
             .arg(reason));
    if (m_state != State::Playing && m_state != State::Paused)
        return; // a handler of the error stopped or closed the device
    useOutput(m_clock);
    m_positionMs = position;
    m_outputRunning = m_clock->start(position);
    if (paused)
        m_clock->suspend();
}

void MediaDevice::fail(const QString &message)
{
    m_error = message;
    qCWarning(lcPlayback) << message;
    emit errorOccurred(message);
}

} // namespace kelvora
