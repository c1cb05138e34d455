// Every sequence of the media device, run twice: on the real sound output (the test
// command provides a private audio server) and silent, on a clock the test advances.
#include "WavBuilder.h"
#include "playback/MediaDevice.h"
#include "playback/PlayClock.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMediaDevices>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using namespace kelvora;
using namespace kelvora::wavbuilder;

Q_DECLARE_METATYPE(kelvora::PcmFormat)

namespace {
constexpr int patience = 20000; // a generous limit for anything that must happen
const char *modeName(bool silent) { return silent ? "stepped clock" : "sound"; }
} // namespace

class MediaDeviceTest : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    bool m_userForcedSilence = MediaDevice::silenceForced();
    bool m_silent = false;
    SteppedPlayClock m_clock;
    QElapsedTimer m_realTime;

    static void modes()
    {
        QTest::addColumn<bool>("silent");
        QTest::addRow("sound") << false;
        QTest::addRow("stepped clock") << true;
    }
    // Sets the mode of the current row; false when it is skipped here.
    bool enterMode()
    {
        QFETCH(bool, silent);
        m_silent = silent;
        m_realTime.start();
        silent ? qputenv("KELVORA_SILENT_AUDIO", "1") : qunsetenv("KELVORA_SILENT_AUDIO");
        const bool skip = !silent && (m_userForcedSilence || QMediaDevices::defaultAudioOutput().isNull());
        if (skip)
            QTest::qSkip("no real sound: KELVORA_SILENT_AUDIO=1 is set, or no audio server (use scripts/run-tests.sh)",
                         __FILE__, __LINE__);
        return !skip;
    }
    // A device of the row's mode: on the sound output, or silent on the stepped clock.
    std::unique_ptr<MediaDevice> device()
    {
        return m_silent ? std::make_unique<MediaDevice>(m_clock, nullptr) : std::make_unique<MediaDevice>();
    }
    // Lets `ms` of time pass.
    void pass(int ms)
    {
        if (m_silent) {
            m_clock.advance(ms);
            QCoreApplication::processEvents();
        } else {
            QTest::qWait(ms);
        }
    }
    // Lets time pass until `done`; false when it never comes.
    bool until(const std::function<bool()> &done)
    {
        QElapsedTimer waited;
        waited.start();
        while (!done()) {
            if (waited.elapsed() > patience)
                return false;
            pass(10);
        }
        return true;
    }
    qint64 now() const { return m_silent ? m_clock.nowMs() : m_realTime.elapsed(); }

    QString file(const QString &name, int ms, const PcmFormat &format = morseFormat)
    {
        const QString path = m_dir.filePath(name);
        return writeFile(path, wav(format, pcmFor(format, ms))) ? path : QString();
    }

private slots:
    // First, so that no silent device of another test has given the notice yet.
    void silenceIsNoticedOnce_data() { modes(); }
    void silenceIsNoticedOnce()
    {
        if (!enterMode())
            return;
        const bool givenBefore = MediaDevice::silentNoticeGiven();
        MediaDevice first, second;
        QSignalSpy notices1(&first, &MediaDevice::silentNotice), notices2(&second, &MediaDevice::silentNotice);
        QVERIFY(first.open(file(QStringLiteral("n1.wav"), 200)) && second.open(file(QStringLiteral("n2.wav"), 200)));
        QVERIFY(first.open(file(QStringLiteral("n1.wav"), 200))); // again
        QCOMPARE(notices1.count() + notices2.count(), m_silent && !givenBefore ? 1 : 0);
        QCOMPARE(MediaDevice::silentNoticeGiven(), m_silent || givenBefore);
        QCOMPARE(MediaDevice::silentNoticeText(), QStringLiteral("Aucune sortie son : Kelvora joue en silence."));
        for (const QSignalSpy *spy : {&notices1, &notices2}) {
            for (const QVariantList &args : *spy)
                QCOMPARE(args.at(0).toString(), MediaDevice::silentNoticeText());
        }
    }

    void playsEachFormat_data()
    {
        QTest::addColumn<bool>("silent");
        QTest::addColumn<PcmFormat>("format");
        QTest::addColumn<int>("ms");
        QTest::addColumn<qint64>("length");
        // The exercise's format and the noises' on the sound output; every format on the clock.
        for (const bool silent : {false, true}) {
            const char *mode = modeName(silent);
            QTest::addRow("%s, 8-bit mono 8000 Hz", mode) << silent << morseFormat << 700 << qint64(700);
            QTest::addRow("%s, 16-bit stereo 11025 Hz", mode)
                << silent << PcmFormat{11025, 2, PcmSample::Int16} << 500 << qint64(499);
        }
        QTest::addRow("stepped clock, 16-bit mono 44100 Hz")
            << true << PcmFormat{44100, 1, PcmSample::Int16} << 800 << qint64(800);
        QTest::addRow("stepped clock, empty sound") << true << morseFormat << 0 << qint64(0);
    }
    void playsEachFormat()
    {
        if (!enterMode())
            return;
        QFETCH(PcmFormat, format);
        QFETCH(int, ms);
        QFETCH(qint64, length);
        const auto made = this->device();
        MediaDevice &device = *made;
        device.setNotifyPeriod(40);
        const QString path = file(QStringLiteral("format.wav"), ms, format);
        QVERIFY(device.open(path) && device.isOpen() && !device.isPlaying());
        QCOMPARE(device.fileName(), path);
        QCOMPARE(device.lengthMs(), length);
        QCOMPARE(device.positionMs(), qint64(0));
        QCOMPARE(device.isSilent(), m_silent);
        QList<qint64> positions;
        connect(&device, &MediaDevice::statusUpdate, this, [&] { positions << device.positionMs(); });
        QSignalSpy completed(&device, &MediaDevice::completed), errors(&device, &MediaDevice::errorOccurred);
        const qint64 start = now();
        device.play();
        QVERIFY(until([&] { return completed.count() > 0; }));
        // Not over before it has been heard (the sink may report up to its latency ahead).
        QVERIFY2(now() - start >= (m_silent ? length : length / 2), qPrintable(QString::number(now() - start)));
        QVERIFY(!device.isPlaying() && device.isOpen());
        QCOMPARE(device.positionMs(), length);
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
        QTest::addColumn<bool>("silent");
        QTest::addColumn<QString>("action");
        // On the stepped clock only: pausing and resuming a real stream is heard in
        // tst_soundcapture.
        for (const char *action : {"pause", "stop", "prev"})
            QTest::addRow("%s", action) << true << QString(action);
    }
    // Pause and stop hold the position, prev rewinds; play goes on from there. At the end,
    // stop keeps the position, play completes again at once, prev and play start over.
    void transport()
    {
        if (!enterMode())
            return;
        QFETCH(QString, action);
        const auto made = this->device();
        MediaDevice &device = *made;
        QVERIFY(device.open(file(QStringLiteral("transport.wav"), 1500)));
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
        QVERIFY(until([&] { return device.positionMs() > held; }));
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

    void statusUpdatesWhileOpen_data() { modes(); }
    void statusUpdatesWhileOpen()
    {
        if (!enterMode())
            return;
        MediaDevice device;
        QSignalSpy status(&device, &MediaDevice::statusUpdate);
        const auto expectUpdates = [&](int period, bool some) {
            device.setNotifyPeriod(period);
            status.clear();
            if (some) {
                QTRY_VERIFY_WITH_TIMEOUT(status.count() >= 3, patience);
            } else {
                QTest::qWait(200);
                QCOMPARE(status.count(), 0);
            }
        };
        expectUpdates(30, false); // closed
        QVERIFY(device.open(file(QStringLiteral("status.wav"), 500)));
        expectUpdates(30, true); // open but idle
        expectUpdates(0, false);
        expectUpdates(30, true);
        device.close();
        expectUpdates(30, false);
    }

    void reopen_data()
    {
        QTest::addColumn<bool>("silent");
        QTest::addColumn<QString>("bad"); // the bad file opened instead of closing, if any
        QTest::addColumn<QString>("expected");
        // The reading of the file is the same for both outputs: on the stepped clock only.
        QTest::addRow("closed") << true << "" << "";
        QTest::addRow("missing file") << true << "absent.wav" << "est introuvable.";
        QTest::addRow("not a WAV file") << true << "texte.wav" << "n'est pas un fichier WAV";
    }
    // Playing, then closed (or a bad file opened); the renderer deletes the file, writes
    // it again and reopens it.
    void reopen()
    {
        if (!enterMode())
            return;
        QFETCH(QString, bad);
        QFETCH(QString, expected);
        const auto made = this->device();
        MediaDevice &device = *made;
        const QString path = file(QStringLiteral("test.wav"), 1500), badPath = m_dir.filePath(bad);
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

    // An exercise, three noises and a character: lengths 300, 600... ms end one after the other.
    void severalDevicesAtOnce_data() { modes(); }
    void severalDevicesAtOnce()
    {
        if (!enterMode())
            return;
        std::vector<std::unique_ptr<MediaDevice>> devices;
        QList<int> order;
        for (int i = 0; i < 5; ++i) {
            auto &d = devices.emplace_back(device());
            QVERIFY(d->open(file(QStringLiteral("multi%1.wav").arg(i), 300 * (i + 1))));
            QCOMPARE(d->isSilent(), m_silent);
            connect(d.get(), &MediaDevice::completed, this, [&order, i] { order << i; });
        }
        for (auto &d : devices)
            d->play();
        for (auto &d : devices) // all advance together
            QVERIFY(until([&] { return d->isPlaying() && d->positionMs() > 0; }));
        QVERIFY(until([&] { return order.size() == 5; }));
        QCOMPARE(order, (QList<int>{0, 1, 2, 3, 4}));
        for (int i = 0; i < 5; ++i)
            QCOMPARE(devices[size_t(i)]->positionMs(), qint64(300 * (i + 1)));
    }
};

QTEST_GUILESS_MAIN(MediaDeviceTest)
#include "tst_mediadevice.moc"
