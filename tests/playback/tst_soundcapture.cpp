// What the media device really sends to the audio server, recorded from a null sink's
// monitor while it plays.
#include "SoundCapture.h"
#include "WavBuilder.h"
#include "playback/MediaDevice.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace kelvora;
using namespace kelvora::wavbuilder;
using namespace kelvora::soundcapture;

Q_DECLARE_METATYPE(kelvora::PcmFormat)

class SoundCaptureTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void dotGapDotIsHeardInOrder();
    void toneLengthIsKept_data();
    void toneLengthIsKept();
    void charactersOneAfterAnother();
    void pauseSilencesThenResumes();
    void stopThenPlayDoesNotRepeat();
    void lostOutputGoesOnInSilence_data();
    void lostOutputGoesOnInSilence();
    void outputGoneBeforePlayUsesTheDefault();

private:
    QList<Segment> record(MediaDevice &device, const std::function<void()> &whilePlaying = {});
    static QString describe(const QList<Segment> &runs);

    QTemporaryDir m_dir;
    std::unique_ptr<PrivateSink> m_sink;
    QAudioDevice m_device;
};

namespace {
constexpr int patience = 20000;

// Leading and trailing silence say nothing about the sound.
QList<Segment> trimmed(QList<Segment> runs)
{
    while (!runs.isEmpty() && !runs.first().tone)
        runs.removeFirst();
    while (!runs.isEmpty() && !runs.last().tone)
        runs.removeLast();
    return runs;
}

int toneTotal(const QList<Segment> &runs)
{
    int total = 0;
    for (const Segment &s : runs)
        total += s.tone ? s.lengthMs : 0;
    return total;
}
} // namespace

void SoundCaptureTest::initTestCase()
{
    if (MediaDevice::silenceForced())
        QSKIP("KELVORA_SILENT_AUDIO=1 is set: no real sound");
    if (const QString problem = serverProblem(); !problem.isEmpty())
        QSKIP(qPrintable(problem));
    QVERIFY(m_dir.isValid());
    m_sink = std::make_unique<PrivateSink>(QStringLiteral("capture"));
    QVERIFY2(m_sink->isValid(), "the audio server refused a null sink");
    m_device = m_sink->device(patience);
    QVERIFY2(!m_device.isNull(), "Qt never listed the new null sink");
}

void SoundCaptureTest::cleanupTestCase()
{
    m_sink.reset();
}

QString SoundCaptureTest::describe(const QList<Segment> &runs)
{
    QStringList parts;
    for (const Segment &s : runs)
        parts << QStringLiteral("%1 %2 ms").arg(s.tone ? "son" : "silence").arg(s.lengthMs);
    return parts.join(QStringLiteral(", "));
}

QList<Segment> SoundCaptureTest::record(MediaDevice &device, const std::function<void()> &whilePlaying)
{
    MonitorRecorder recorder(m_sink->name());
    if (!recorder.start(patience)) {
        QTest::qFail("parec delivered nothing", __FILE__, __LINE__);
        return {};
    }
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    if (whilePlaying)
        whilePlaying();
    if (!completed.wait(patience)) {
        QTest::qFail("the sound never completed", __FILE__, __LINE__);
        return {};
    }
    QTest::qWait(500); // the tail still travelling to the monitor
    recorder.stop();
    return trimmed(segments(recorder.samples(), MonitorRecorder::rate));
}

void SoundCaptureTest::dotGapDotIsHeardInOrder()
{
    const QString path = m_dir.filePath(QStringLiteral("e_e.wav"));
    QVERIFY(writeFile(path, wav(morseFormat, toneU8(300) + silenceU8(600) + toneU8(300))));
    MediaDevice device;
    device.setOutputDevice(m_device);
    QVERIFY(device.open(path));
    QVERIFY(!device.isSilent());
    const QList<Segment> runs = record(device);
    if (QTest::currentTestFailed())
        return;
    const QString seen = describe(runs);
    qInfo("heard: %s", qPrintable(seen));
    QCOMPARE(runs.size(), 3);
    QVERIFY2(runs[0].tone && !runs[1].tone && runs[2].tone, qPrintable(seen));
    QVERIFY2(std::abs(runs[0].lengthMs - 300) <= 40, qPrintable(seen));
    QVERIFY2(std::abs(runs[1].lengthMs - 600) <= 40, qPrintable(seen));
    QVERIFY2(std::abs(runs[2].lengthMs - 300) <= 40, qPrintable(seen));
}

void SoundCaptureTest::toneLengthIsKept_data()
{
    QTest::addColumn<PcmFormat>("format");
    QTest::addColumn<int>("ms");
    QTest::addRow("8-bit mono 8000 Hz") << morseFormat << 700;
    QTest::addRow("8-bit mono 11025 Hz") << PcmFormat{11025, 1, PcmSample::UInt8} << 700;
    QTest::addRow("16-bit stereo 44100 Hz") << PcmFormat{44100, 2, PcmSample::Int16} << 700;
    QTest::addRow("one dot shorter than the stream's buffer") << morseFormat << 60;
}

void SoundCaptureTest::toneLengthIsKept()
{
    QFETCH(PcmFormat, format);
    QFETCH(int, ms);
    const QString path = m_dir.filePath(QStringLiteral("tone.wav"));
    QVERIFY(writeFile(path, wav(format, pcmFor(format, ms))));
    MediaDevice device;
    device.setOutputDevice(m_device);
    QVERIFY(device.open(path));
    const QList<Segment> runs = record(device);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(runs.size(), 1);
    QVERIFY2(std::abs(runs[0].lengthMs - ms) <= 40, qPrintable(describe(runs)));
}

// The correction replay: for each character, Close, Open on its file, play, and the
// next one once the completion has come.
void SoundCaptureTest::charactersOneAfterAnother()
{
    const QList<int> lengths{60, 180, 60};
    QStringList files;
    for (int i = 0; i < lengths.size(); ++i) {
        files << m_dir.filePath(QStringLiteral("char%1.wav").arg(i));
        QVERIFY(writeFile(files.last(), wav(morseFormat, toneU8(lengths[i]))));
    }
    MediaDevice device;
    device.setOutputDevice(m_device);
    MonitorRecorder recorder(m_sink->name());
    QVERIFY(recorder.start(patience));
    QSignalSpy completed(&device, &MediaDevice::completed);
    for (const QString &file : files) {
        device.close();
        QVERIFY(device.open(file));
        device.play();
        QVERIFY(completed.wait(patience));
        QTest::qWait(150); // the delay between characters
    }
    QTest::qWait(500);
    recorder.stop();
    const QList<Segment> runs = trimmed(segments(recorder.samples(), MonitorRecorder::rate));
    const QString seen = describe(runs);
    QCOMPARE(runs.size(), 5);
    for (int i = 0; i < lengths.size(); ++i) {
        QVERIFY2(runs[2 * i].tone, qPrintable(seen));
        QVERIFY2(std::abs(runs[2 * i].lengthMs - lengths[i]) <= 30, qPrintable(seen));
    }
    QVERIFY2(runs[1].lengthMs >= 100 && runs[3].lengthMs >= 100, qPrintable(seen));
}

void SoundCaptureTest::pauseSilencesThenResumes()
{
    const QString path = m_dir.filePath(QStringLiteral("long.wav"));
    QVERIFY(writeFile(path, wav(morseFormat, toneU8(1500))));
    MediaDevice device;
    device.setOutputDevice(m_device);
    QVERIFY(device.open(path));
    const QList<Segment> runs = record(device, [&] {
        QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 500, patience);
        device.pause();
        QTest::qWait(800);
        device.play();
    });
    if (QTest::currentTestFailed())
        return;
    const QString seen = describe(runs);
    QCOMPARE(runs.size(), 3);
    QVERIFY2(!runs[1].tone && runs[1].lengthMs >= 500, qPrintable(seen));
    QVERIFY2(std::abs(toneTotal(runs) - 1500) <= 60, qPrintable(seen));
}

void SoundCaptureTest::stopThenPlayDoesNotRepeat()
{
    const QString path = m_dir.filePath(QStringLiteral("long.wav"));
    QVERIFY(writeFile(path, wav(morseFormat, toneU8(1500))));
    MediaDevice device;
    device.setOutputDevice(m_device);
    QVERIFY(device.open(path));
    const QList<Segment> runs = record(device, [&] {
        QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 500, patience);
        device.stop();
        QTest::qWait(800);
        device.play();
    });
    if (QTest::currentTestFailed())
        return;
    const QString seen = describe(runs);
    QCOMPARE(runs.size(), 3);
    QVERIFY2(!runs[1].tone && runs[1].lengthMs >= 500, qPrintable(seen));
    QVERIFY2(std::abs(toneTotal(runs) - 1500) <= 80, qPrintable(seen));
}

void SoundCaptureTest::lostOutputGoesOnInSilence_data()
{
    QTest::addColumn<bool>("killed");
    QTest::addRow("stream killed by the server") << true;
    QTest::addRow("output hangs") << false;
}

void SoundCaptureTest::lostOutputGoesOnInSilence()
{
    QFETCH(bool, killed);
    PrivateSink doomed(QStringLiteral("doomed"));
    QVERIFY(doomed.isValid());
    const QAudioDevice output = doomed.device(patience);
    QVERIFY(!output.isNull());
    const QString path = m_dir.filePath(QStringLiteral("lost.wav"));
    QVERIFY(writeFile(path, wav(morseFormat, toneU8(2000))));
    MediaDevice device;
    device.setOutputDevice(output);
    QVERIFY(device.open(path));
    QSignalSpy errors(&device, &MediaDevice::errorOccurred);
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 300, patience);
    if (killed)
        QCOMPARE(doomed.killStreams(), 1);
    else
        QVERIFY(doomed.suspend(true));
    QVERIFY(errors.wait(patience));
    const QString message = errors.first().first().toString();
    QVERIFY2(message.startsWith(QStringLiteral("La sortie son s'est interrompue")), qPrintable(message));
    QVERIFY(device.isSilent());
    QVERIFY(device.isPlaying());
    QVERIFY(completed.wait(patience));
    QCOMPARE(device.positionMs(), qint64(2000));

    // The next sound plays again on a real output.
    device.setOutputDevice(m_device);
    QVERIFY(device.open(path));
    QVERIFY(!device.isSilent());
}

void SoundCaptureTest::outputGoneBeforePlayUsesTheDefault()
{
    auto doomed = std::make_unique<PrivateSink>(QStringLiteral("unplugged"));
    QVERIFY(doomed->isValid());
    const QAudioDevice output = doomed->device(patience);
    QVERIFY(!output.isNull());
    const QString path = m_dir.filePath(QStringLiteral("unplugged.wav"));
    QVERIFY(writeFile(path, wav(morseFormat, toneU8(400))));
    MediaDevice device;
    device.setOutputDevice(output);
    QVERIFY(device.open(path));
    QVERIFY(!device.isSilent());
    doomed.reset(); // unplugged between the preparation and the play
    QTRY_VERIFY_WITH_TIMEOUT(!QMediaDevices::audioOutputs().contains(output), patience);
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    QVERIFY(!device.isSilent()); // on the default output
    QVERIFY(completed.wait(patience));
    QCOMPARE(device.positionMs(), qint64(400));
}

QTEST_GUILESS_MAIN(SoundCaptureTest)
#include "tst_soundcapture.moc"
