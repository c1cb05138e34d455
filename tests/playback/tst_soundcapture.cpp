// What the media device really sends to the audio server, recorded from a null sink's
// monitor while it plays.
#include "SoundCapture.h"
#include "WavBuilder.h"
#include "playback/MediaDevice.h"
#include "playback/SinkPcmOutput.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

using namespace kelvora;
using namespace kelvora::wavbuilder;
using namespace kelvora::soundcapture;

Q_DECLARE_METATYPE(kelvora::PcmFormat)

namespace {
constexpr int patience = 20000;

bool playToEnd(MediaDevice &device)
{
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    return completed.wait(patience);
}

QString describe(const QList<Segment> &runs)
{
    QStringList parts;
    for (const Segment &s : runs)
        parts << QStringLiteral("%1 %2 ms").arg(s.tone ? "son" : "silence").arg(s.lengthMs);
    return parts.join(QStringLiteral(", "));
}
} // namespace

class SoundCaptureTest : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    std::unique_ptr<PrivateSink> m_sink;
    // One recorder for the whole run: parec takes about two seconds to deliver.
    std::unique_ptr<MonitorRecorder> m_recorder;
    QAudioDevice m_output;

    // The tone and silence runs heard while `play` runs, without the silence around them.
    QList<Segment> record(const std::function<void()> &play)
    {
        const qsizetype from = m_recorder->samples().size();
        play();
        QTest::qWait(300); // the tail still travelling to the monitor
        QList<Segment> runs = segments(m_recorder->samples().mid(from), MonitorRecorder::rate);
        while (!runs.isEmpty() && !runs.first().tone)
            runs.removeFirst();
        while (!runs.isEmpty() && !runs.last().tone)
            runs.removeLast();
        return runs;
    }
    QString file(const QString &name, const QByteArray &pcm, const PcmFormat &format = morseFormat)
    {
        return writeFile(m_dir.filePath(name), wav(format, pcm)) ? m_dir.filePath(name) : QString();
    }

private slots:
    void initTestCase()
    {
        if (MediaDevice::silenceForced())
            QSKIP("KELVORA_SILENT_AUDIO=1 is set: no real sound");
        if (const QString problem = serverProblem(); !problem.isEmpty())
            QSKIP(qPrintable(problem));
        m_sink = std::make_unique<PrivateSink>(QStringLiteral("capture"));
        QVERIFY2(m_sink->isValid(), "the audio server refused a null sink");
        m_output = m_sink->device(patience);
        QVERIFY2(!m_output.isNull(), "Qt never listed the new null sink");
        m_recorder = std::make_unique<MonitorRecorder>(m_sink->name());
        QVERIFY2(m_recorder->start(patience), "parec delivered nothing");
        SinkPcmOutput::setStallLimitMs(2500); // above the ~2 s an idle null sink stands still
    }
    void cleanupTestCase()
    {
        m_recorder.reset();
        m_sink.reset();
    }

    void heard_data()
    {
        QTest::addColumn<PcmFormat>("format");
        QTest::addColumn<QList<int>>("lengths"); // ms: tones > 0, silences < 0, 0 the next file
        QTest::addRow("tone, silence, tone") << morseFormat << QList<int>{300, -600, 300};
        QTest::addRow("8-bit mono 11025 Hz") << PcmFormat{11025, 1, PcmSample::UInt8} << QList<int>{700};
        QTest::addRow("16-bit stereo 44100 Hz") << PcmFormat{44100, 2, PcmSample::Int16} << QList<int>{700};
        QTest::addRow("one dot shorter than the stream's buffer") << morseFormat << QList<int>{60};
        QTest::addRow("three characters in a row") << morseFormat << QList<int>{60, 0, 180, 0, 60};
    }
    // Each file in turn as the correction replay does: close, open, play, and the next one
    // a moment after the completion, which is heard as a silence of at least 100 ms.
    void heard()
    {
        QFETCH(PcmFormat, format);
        QFETCH(QList<int>, lengths);
        QList<QByteArray> pcms(1);
        for (const int ms : lengths) {
            if (ms == 0)
                pcms.append(QByteArray());
            else if (ms > 0)
                pcms.last() += pcmFor(format, ms);
            else
                pcms.last() += QByteArray(format.bytesForMs(-ms), char(format.sample == PcmSample::UInt8 ? 128 : 0));
        }
        MediaDevice device;
        device.setOutputDevice(m_output);
        const QList<Segment> runs = record([&] {
            for (qsizetype i = 0; i < pcms.size(); ++i) {
                device.close();
                QVERIFY(device.open(file(QStringLiteral("heard%1.wav").arg(i), pcms[i], format)) && !device.isSilent());
                QVERIFY(playToEnd(device));
                QTest::qWait(150);
            }
        });
        const QString seen = describe(runs);
        QCOMPARE(runs.size(), lengths.size());
        for (qsizetype i = 0; i < lengths.size(); ++i) {
            QVERIFY2(runs[i].tone == (lengths[i] > 0), qPrintable(seen));
            QVERIFY2(lengths[i] == 0 ? runs[i].lengthMs >= 100 : std::abs(runs[i].lengthMs - std::abs(lengths[i])) <= 40,
                     qPrintable(seen));
        }
    }

    void resumeNeitherRepeatsNorLoses_data()
    {
        QTest::addColumn<bool>("pause"); // or stop
        QTest::addRow("pause, play") << true;
        QTest::addRow("stop, play") << false;
    }
    // Tone 1000 ms, silence 100, tone 500: stopped within the first tone, resumed after a
    // pause, every part is heard once, in order.
    void resumeNeitherRepeatsNorLoses()
    {
        QFETCH(bool, pause);
        MediaDevice device;
        device.setOutputDevice(m_output);
        QVERIFY(device.open(file(QStringLiteral("long.wav"), toneU8(1000) + silenceU8(100) + toneU8(500))));
        const QList<Segment> runs = record([&] {
            device.play();
            QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 400, patience);
            pause ? device.pause() : device.stop();
            QTest::qWait(800);
            QVERIFY(playToEnd(device));
        });
        const QString seen = describe(runs);
        QCOMPARE(runs.size(), 5);
        QVERIFY2(!runs[1].tone && runs[1].lengthMs >= 500, qPrintable(seen));
        QVERIFY2(std::abs(runs[0].lengthMs + runs[2].lengthMs - 1000) <= 80 && std::abs(runs[3].lengthMs - 100) <= 40
                     && std::abs(runs[4].lengthMs - 500) <= 40, qPrintable(seen));
    }

    void lostOutputGoesOnInSilence_data()
    {
        QTest::addColumn<QString>("loss");
        QTest::addRow("stream killed by the server") << "killed";
        QTest::addRow("output hangs") << "hangs";
        QTest::addRow("output gone before play: the default one") << "gone";
    }
    void lostOutputGoesOnInSilence()
    {
        QFETCH(QString, loss);
        auto doomed = std::make_unique<PrivateSink>(QStringLiteral("doomed"));
        MonitorRecorder keepAwake(doomed->name());
        keepAwake.begin();
        const QAudioDevice output = doomed->isValid() ? doomed->device(patience) : QAudioDevice();
        QVERIFY(!output.isNull());
        const QString path = file(QStringLiteral("lost.wav"), toneU8(1000));
        MediaDevice device;
        device.setOutputDevice(output);
        QVERIFY(device.open(path) && !device.isSilent());
        QSignalSpy errors(&device, &MediaDevice::errorOccurred), completed(&device, &MediaDevice::completed);
        if (loss == "gone") {
            doomed.reset();
            QTRY_VERIFY_WITH_TIMEOUT(!QMediaDevices::audioOutputs().contains(output), patience);
        }
        device.play();
        QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 300, patience);
        if (loss != "gone") {
            QVERIFY(loss == "killed" ? doomed->killStreams() == 1 : doomed->suspend(true));
            QVERIFY(errors.wait(patience));
            QVERIFY2(device.errorString().startsWith("La sortie son s'est interrompue"), qPrintable(device.errorString()));
        }
        QCOMPARE(device.isSilent(), loss != "gone");
        QVERIFY(device.isPlaying() && completed.wait(patience));
        QCOMPARE(device.positionMs(), qint64(1000));
        QCOMPARE(errors.count(), loss == "gone" ? 0 : 1);
        device.setOutputDevice(m_output); // the next sound is heard again
        QVERIFY(device.open(path) && !device.isSilent());
    }
};

QTEST_GUILESS_MAIN(SoundCaptureTest)
#include "tst_soundcapture.moc"
