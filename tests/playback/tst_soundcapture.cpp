// What the media device really sends to the audio server when a sound is paused or
// stopped and played again, recorded from a null sink's monitor.
#include "SoundCapture.h"
#include "WavBuilder.h"
#include "playback/MediaDevice.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

using namespace kelvora;
using namespace kelvora::wavbuilder;
using namespace kelvora::soundcapture;

namespace {
constexpr int patience = 20000;

bool playToEnd(MediaDevice &device)
{
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    return completed.wait(patience);
}
} // namespace

class SoundCaptureTest : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    // One recorder for the whole run: parec takes about two seconds to deliver.
    RecordedSink m_sink;

    // The tone and silence runs heard while `play` runs.
    QList<Segment> record(const std::function<void()> &play)
    {
        const qsizetype from = m_sink.recorder->samples().size();
        play();
        QTest::qWait(200); // the tail still travelling to the monitor
        return toneRuns(m_sink.recorder->samples().mid(from));
    }
    QString file(const QString &name, const QByteArray &pcm)
    {
        return writeFile(m_dir.filePath(name), wav(morseFormat, pcm)) ? m_dir.filePath(name) : QString();
    }

private slots:
    void initTestCase()
    {
        if (const QString problem = serverProblem(); !problem.isEmpty())
            QSKIP(qPrintable(problem));
        QVERIFY2(m_sink.start("capture", patience), "no null sink, no samples from parec, or the sink never listed");
    }

    // Tone 400 ms, silence 100, tone 200: stopped within the first tone, resumed after a
    // pause, every part is heard once, in order.
    void resumeNeitherRepeatsNorLoses_data()
    {
        QTest::addColumn<bool>("pause"); // or stop
        QTest::addRow("pause, play") << true;
        QTest::addRow("stop, play") << false;
    }
    void resumeNeitherRepeatsNorLoses()
    {
        QFETCH(bool, pause);
        MediaDevice device;
        device.setOutputDevice(m_sink.output);
        QVERIFY(device.open(file(QStringLiteral("long.wav"), toneU8(400) + silenceU8(100) + toneU8(200))));
        const QList<Segment> runs = record([&] {
            device.play();
            QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 150, patience);
            pause ? device.pause() : device.stop();
            QTest::qWait(300);
            QVERIFY(playToEnd(device));
        });
        QVERIFY2(runs.size() == 5 && !runs[1].tone && runs[1].lengthMs >= 250 && std::abs(runs[0].lengthMs + runs[2].lengthMs - 400) <= 80
                     && std::abs(runs[3].lengthMs - 100) <= 40 && std::abs(runs[4].lengthMs - 200) <= 40,
                 qPrintable(describe(runs)));
    }
};

QTEST_GUILESS_MAIN(SoundCaptureTest)
#include "tst_soundcapture.moc"
