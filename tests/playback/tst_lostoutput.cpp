// A sound output lost while playing, or before: the media device says so once and plays
// on in silence to its end, on the real audio server.
#include "SoundCapture.h"
#include "WavBuilder.h"
#include "playback/MediaDevice.h"
#include "playback/SinkPcmOutput.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <map>
#include <memory>

using namespace kelvora;
using namespace kelvora::wavbuilder;
using namespace kelvora::soundcapture;

class LostOutputTest : public QObject {
    Q_OBJECT
    static constexpr int patience = 20000;
    QTemporaryDir m_dir;
    // A sink per way of losing it, made together so that Qt's listing is waited for once;
    // their monitors are read, since a null sink nobody reads stands still.
    std::map<QString, std::unique_ptr<PrivateSink>> m_sinks;
    std::map<QString, QAudioDevice> m_outputs;
    std::vector<std::unique_ptr<MonitorRecorder>> m_readers;

private slots:
    void initTestCase()
    {
        if (const QString problem = serverProblem(); !problem.isEmpty())
            QSKIP(qPrintable(problem));
        for (const char *tag : {"back", "killed", "hangs", "gone"}) {
            m_sinks[tag] = std::make_unique<PrivateSink>(QString::fromLatin1(tag));
            QVERIFY2(m_sinks[tag]->isValid(), "the audio server refused a null sink");
            m_readers.push_back(std::make_unique<MonitorRecorder>(m_sinks[tag]->name()));
            m_readers.back()->begin();
        }
        for (const auto &[tag, sink] : m_sinks) {
            m_outputs[tag] = sink->device(patience);
            QVERIFY2(!m_outputs[tag].isNull(), "Qt never listed the new null sink");
        }
        for (const auto &reader : m_readers) // the sinks' clocks run from now on
            QVERIFY2(reader->waitForSamples(patience), "parec delivered nothing");
        SinkPcmOutput::setStallLimitMs(600); // the sinks run, their monitors being read
    }
    void cleanupTestCase()
    {
        m_readers.clear();
        m_sinks.clear();
    }

    void goesOnInSilence_data()
    {
        QTest::addColumn<QString>("loss");
        QTest::addRow("stream killed by the server") << "killed";
        QTest::addRow("output hangs") << "hangs";
        QTest::addRow("output gone before play: the default one") << "gone";
    }
    void goesOnInSilence()
    {
        QFETCH(QString, loss);
        const QString path = m_dir.filePath("lost.wav");
        QVERIFY(writeFile(path, wav(morseFormat, toneU8(600))));
        MediaDevice device;
        device.setOutputDevice(m_outputs[loss]);
        QVERIFY(device.open(path) && !device.isSilent());
        QSignalSpy errors(&device, &MediaDevice::errorOccurred), completed(&device, &MediaDevice::completed);
        if (loss == "gone") {
            m_sinks[loss].reset();
            QTRY_VERIFY_WITH_TIMEOUT(!QMediaDevices::audioOutputs().contains(m_outputs[loss]), patience);
        }
        device.play();
        QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 200, patience);
        if (loss != "gone") {
            QVERIFY(loss == "killed" ? m_sinks[loss]->killStreams() == 1 : m_sinks[loss]->suspend(true));
            QVERIFY(errors.wait(patience));
            QVERIFY2(device.errorString().startsWith("La sortie son s'est interrompue"), qPrintable(device.errorString()));
        }
        QCOMPARE(device.isSilent(), loss != "gone");
        QVERIFY(device.isPlaying() && completed.wait(patience));
        QCOMPARE(device.positionMs(), qint64(600));
        QCOMPARE(errors.count(), loss == "gone" ? 0 : 1);
        device.setOutputDevice(m_outputs["back"]); // the next sound is heard again
        QVERIFY(device.open(path) && !device.isSilent());
    }
};

QTEST_GUILESS_MAIN(LostOutputTest)
#include "tst_lostoutput.moc"
