// Every sequence of the media device on a clock the test advances. What the real sound
// output receives is recorded in tst_soundcapture, tst_lostoutput and tst_correctionsound.
#include "WavBuilder.h"
#include "playback/MediaDevice.h"
#include "playback/PlayClock.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

using namespace kelvora;
using namespace kelvora::wavbuilder;

Q_DECLARE_METATYPE(kelvora::PcmFormat)

class MediaDeviceTest : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    SteppedPlayClock m_clock;

    std::unique_ptr<MediaDevice> device() { return std::make_unique<MediaDevice>(m_clock, nullptr); }
    void pass(int ms)
    {
        m_clock.advance(ms);
        QCoreApplication::processEvents();
    }
    // Lets time pass until `done`; false when it has not come within a minute of the clock.
    bool until(const std::function<bool()> &done)
    {
        for (int waited = 0; !done(); waited += 10) {
            if (waited > 60000)
                return false;
            pass(10);
        }
        return true;
    }
    QString file(const QString &name, int ms, const PcmFormat &format = morseFormat)
    {
        const QString path = m_dir.filePath(name);
        return writeFile(path, wav(format, pcmFor(format, ms))) ? path : QString();
    }

private slots:
    // Without a sound output the devices play on a clock and say so once per process.
    void silenceIsNoticedOnce()
    {
        qputenv("KELVORA_SILENT_AUDIO", "1");
        MediaDevice first, second;
        QSignalSpy notices1(&first, &MediaDevice::silentNotice), notices2(&second, &MediaDevice::silentNotice);
        QVERIFY(first.open(file("n1.wav", 200)) && second.open(file("n2.wav", 200)) && first.open(file("n1.wav", 200)));
        QCOMPARE(notices1.count() + notices2.count(), 1);
        QCOMPARE(notices1.value(0).value(0).toString(), QStringLiteral("Aucune sortie son : Kelvora joue en silence."));
        QVERIFY(MediaDevice::silentNoticeGiven() && first.isSilent());
        qunsetenv("KELVORA_SILENT_AUDIO");
    }

    void playsEachFormat_data()
    {
        QTest::addColumn<PcmFormat>("format");
        QTest::addColumn<int>("ms");
        QTest::addColumn<qint64>("length");
        QTest::addRow("8-bit mono 8000 Hz") << morseFormat << 700 << qint64(700);
        QTest::addRow("16-bit stereo 11025 Hz") << PcmFormat{11025, 2, PcmSample::Int16} << 500 << qint64(499);
    }
    void playsEachFormat()
    {
        QFETCH(PcmFormat, format);
        QFETCH(int, ms);
        QFETCH(qint64, length);
        const auto device = this->device();
        device->setNotifyPeriod(40);
        const QString path = file("format.wav", ms, format);
        QVERIFY(device->open(path) && device->isOpen() && !device->isPlaying());
        QCOMPARE(device->fileName(), path);
        QCOMPARE(device->lengthMs(), length);
        QCOMPARE(device->positionMs(), qint64(0));
        QList<qint64> positions;
        connect(device.get(), &MediaDevice::statusUpdate, this, [&] { positions << device->positionMs(); });
        QSignalSpy completed(device.get(), &MediaDevice::completed), errors(device.get(), &MediaDevice::errorOccurred);
        const qint64 start = m_clock.nowMs();
        device->play();
        QVERIFY(until([&] { return completed.count() > 0; }));
        QVERIFY(m_clock.nowMs() - start >= length); // not over before it has been heard
        QVERIFY(!device->isPlaying() && device->isOpen());
        QCOMPARE(device->positionMs(), length);
        // Status updates see growing positions, some between the two ends, then P = L.
        QVERIFY(until([&] { return !positions.isEmpty() && positions.last() == length; }));
        QVERIFY(std::is_sorted(positions.begin(), positions.end()));
        const auto between = std::count_if(positions.begin(), positions.end(), [&](qint64 p) { return p > 0 && p < length; });
        QVERIFY2(between >= (length > 0 ? 2 : 0), qPrintable(QString::number(between)));
        pass(200);
        QCOMPARE(completed.count(), 1);
        QCOMPARE(errors.count(), 0);
    }

    void transport_data()
    {
        QTest::addColumn<QString>("action");
        for (const char *action : {"pause", "stop", "prev"})
            QTest::addRow("%s", action) << QString(action);
    }
    // Pause and stop hold the position, prev rewinds; play goes on from there. At the end,
    // stop keeps the position, play completes again at once, prev and play start over.
    void transport()
    {
        QFETCH(QString, action);
        const auto made = this->device();
        MediaDevice &device = *made;
        QVERIFY(device.open(file("transport.wav", 1500)));
        QSignalSpy completed(&device, &MediaDevice::completed);
        device.pause(); // not playing: nothing to pause
        QVERIFY(!device.isPaused());
        device.play();
        QVERIFY(until([&] { return device.positionMs() >= 200; }));
        (device.*(action == "pause" ? &MediaDevice::pause : action == "stop" ? &MediaDevice::stop : &MediaDevice::prev))();
        QVERIFY(!device.isPlaying());
        QCOMPARE(device.isPaused(), action == "pause");
        const qint64 held = device.positionMs();
        QVERIFY2(action == "prev" ? held == 0 : held >= 200 && held < 1500, qPrintable(QString::number(held)));
        pass(400);
        QCOMPARE(device.positionMs(), held);
        QCOMPARE(completed.count(), 0);
        device.play();
        QVERIFY(device.isPlaying());
        QVERIFY(until([&] { return completed.count() == 1; }));
        device.stop();
        QCOMPARE(device.positionMs(), qint64(1500));
        device.play();
        QVERIFY(until([&] { return completed.count() == 2; }));
        QCOMPARE(device.positionMs(), qint64(1500));
        device.prev();
        QCOMPARE(device.positionMs(), qint64(0));
        device.play();
        QVERIFY(until([&] { return device.positionMs() > 0; }));
        QVERIFY(device.isPlaying());
    }

    void reopen_data()
    {
        QTest::addColumn<QString>("bad"); // the bad file opened instead of closing, if any
        QTest::addColumn<QString>("expected");
        QTest::addRow("closed") << "" << "";
        QTest::addRow("missing file") << "absent.wav" << "est introuvable.";
        QTest::addRow("not a WAV file") << "texte.wav" << "n'est pas un fichier WAV";
    }
    // Playing, then closed (or a bad file opened); the renderer deletes the file, writes
    // it again and reopens it.
    void reopen()
    {
        QFETCH(QString, bad);
        QFETCH(QString, expected);
        const auto made = this->device();
        MediaDevice &device = *made;
        const QString path = file("test.wav", 1500), badPath = m_dir.filePath(bad);
        QVERIFY(writeFile(m_dir.filePath("texte.wav"), "VVV = EXERCICE\r\n") && device.open(path));
        QSignalSpy errors(&device, &MediaDevice::errorOccurred), completed(&device, &MediaDevice::completed);
        device.play();
        QVERIFY(until([&] { return device.positionMs() >= 100; }));
        if (bad.isEmpty())
            device.close();
        else
            QVERIFY(!device.open(badPath));
        device.play(); // nothing open: ignored
        QVERIFY(!device.isOpen() && !device.isPlaying());
        QCOMPARE(device.lengthMs() + device.positionMs(), qint64(0));
        QCOMPARE(errors.count(), bad.isEmpty() ? 0 : 1);
        const QString message = errors.value(0).value(0).toString(); // the file's name, then why
        QCOMPARE(device.errorString(), message);
        const QString start = bad.isEmpty() ? "" : "Le fichier « " + QDir::toNativeSeparators(badPath) + " » " + expected;
        QCOMPARE(message.left(start.size()), start);
        QVERIFY(QFile::remove(path) && writeFile(path, wav(morseFormat, toneU8(250))));
        QVERIFY(device.open(path));
        QCOMPARE(device.lengthMs(), qint64(250));
        device.play();
        QVERIFY(until([&] { return completed.count() > 0; }));
        QCOMPARE(completed.count(), 1);
        QCOMPARE(errors.count(), bad.isEmpty() ? 0 : 1);
    }

};

QTEST_GUILESS_MAIN(MediaDeviceTest)
#include "tst_mediadevice.moc"
