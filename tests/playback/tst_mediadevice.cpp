// Every sequence of the media device, run twice: on the real sound output (the test
// command provides a private audio server) and on the silent clock.
#include "WavBuilder.h"
#include "playback/MediaDevice.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMediaDevices>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace kelvora;
using namespace kelvora::wavbuilder;

Q_DECLARE_METATYPE(kelvora::PcmFormat)

class MediaDeviceTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    // First, so that no silent device of another test has given the notice yet.
    void silenceIsNoticedOnce_data() { modes(); }
    void silenceIsNoticedOnce();
    void openGivesLength_data();
    void openGivesLength();
    void playsToTheEnd_data() { modes(); }
    void playsToTheEnd();
    void pauseFreezesPosition_data() { modes(); }
    void pauseFreezesPosition();
    void stopKeepsPosition_data() { modes(); }
    void stopKeepsPosition();
    void prevRewinds_data() { modes(); }
    void prevRewinds();
    void playAtTheEndCompletesAtOnce_data() { modes(); }
    void playAtTheEndCompletesAtOnce();
    void statusUpdatesWhileOpen_data() { modes(); }
    void statusUpdatesWhileOpen();
    void closeReleasesFile_data() { modes(); }
    void closeReleasesFile();
    void badFilesAreReported_data();
    void badFilesAreReported();
    void severalDevicesAtOnce_data();
    void severalDevicesAtOnce();

private:
    static void modes();
    QString enterMode(); // sets the mode of the current row; a reason to skip, or empty
    QString file(const QString &name, int ms, const PcmFormat &format = morseFormat);

    QTemporaryDir m_dir;
    bool m_userForcedSilence = false;
    bool m_silent = false;
};

#define ENTER_MODE()                                                                          \
    do {                                                                                      \
        const QString why = enterMode();                                                      \
        if (!why.isEmpty())                                                                   \
            QSKIP(qPrintable(why));                                                           \
    } while (false)

namespace {
constexpr int patience = 20000; // a generous limit for anything that must happen
}

void MediaDeviceTest::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_userForcedSilence = MediaDevice::silenceForced();
}

void MediaDeviceTest::cleanup()
{
    qunsetenv("KELVORA_SILENT_AUDIO");
    if (m_userForcedSilence)
        qputenv("KELVORA_SILENT_AUDIO", "1");
}

void MediaDeviceTest::modes()
{
    QTest::addColumn<bool>("silent");
    QTest::addRow("sound") << false;
    QTest::addRow("silent clock") << true;
}

QString MediaDeviceTest::enterMode()
{
    QFETCH(bool, silent);
    m_silent = silent;
    if (silent) {
        qputenv("KELVORA_SILENT_AUDIO", "1");
        return {};
    }
    if (m_userForcedSilence)
        return QStringLiteral("KELVORA_SILENT_AUDIO=1 is set: no real sound");
    if (QMediaDevices::defaultAudioOutput().isNull())
        return QStringLiteral("no audio server reachable: run the tests with scripts/run-tests.sh");
    qunsetenv("KELVORA_SILENT_AUDIO");
    return {};
}

QString MediaDeviceTest::file(const QString &name, int ms, const PcmFormat &format)
{
    const QString path = m_dir.filePath(name);
    const bool written = writeFile(path, wav(format, pcmFor(format, ms)));
    return written ? path : QString();
}

void MediaDeviceTest::openGivesLength_data()
{
    QTest::addColumn<bool>("silent");
    QTest::addColumn<PcmFormat>("format");
    QTest::addColumn<int>("ms");
    QTest::addColumn<qint64>("length");
    for (const bool silent : {false, true}) {
        const char *mode = silent ? "silent clock" : "sound";
        QTest::addRow("%s, 8-bit mono 8000 Hz", mode) << silent << morseFormat << 700 << qint64(700);
        QTest::addRow("%s, 16-bit stereo 11025 Hz", mode)
            << silent << PcmFormat{11025, 2, PcmSample::Int16} << 500 << qint64(499);
        QTest::addRow("%s, 16-bit mono 44100 Hz", mode)
            << silent << PcmFormat{44100, 1, PcmSample::Int16} << 300 << qint64(300);
        QTest::addRow("%s, empty sound", mode) << silent << morseFormat << 0 << qint64(0);
    }
}

void MediaDeviceTest::openGivesLength()
{
    ENTER_MODE();
    QFETCH(PcmFormat, format);
    QFETCH(int, ms);
    QFETCH(qint64, length);
    MediaDevice device;
    QVERIFY(!device.isOpen());
    QCOMPARE(device.lengthMs(), qint64(0));
    const QString path = file(QStringLiteral("open.wav"), ms, format);
    QVERIFY(device.open(path));
    QVERIFY(device.isOpen());
    QCOMPARE(device.fileName(), path);
    QCOMPARE(device.lengthMs(), length);
    QCOMPARE(device.positionMs(), qint64(0));
    QVERIFY(!device.isPlaying());
    QCOMPARE(device.isSilent(), m_silent);
}

void MediaDeviceTest::playsToTheEnd()
{
    ENTER_MODE();
    MediaDevice device;
    device.setNotifyPeriod(40);
    QVERIFY(device.open(file(QStringLiteral("end.wav"), 800)));
    QList<qint64> positions;
    connect(&device, &MediaDevice::statusUpdate, this, [&] { positions << device.positionMs(); });
    QSignalSpy completed(&device, &MediaDevice::completed);
    QSignalSpy errors(&device, &MediaDevice::errorOccurred);
    QElapsedTimer clock;
    clock.start();
    device.play();
    QVERIFY(device.isPlaying());
    QVERIFY(completed.wait(patience));
    const qint64 took = clock.elapsed();
    QCOMPARE(completed.count(), 1);
    QCOMPARE(errors.count(), 0);
    QVERIFY(!device.isPlaying());
    QVERIFY(device.isOpen());
    QCOMPARE(device.positionMs(), qint64(800));
    // The sound cannot be over before it has been heard (the sink may report up to its
    // latency ahead; the clock never does).
    QVERIFY2(took >= (m_silent ? 800 : 400), qPrintable(QString::number(took)));
    // Positions only grow, and some were seen between the two ends.
    int between = 0;
    for (qsizetype i = 0; i < positions.size(); ++i) {
        if (i > 0)
            QVERIFY(positions[i] >= positions[i - 1]);
        between += positions[i] > 0 && positions[i] < 800;
    }
    QVERIFY2(between >= 2, qPrintable(QString::number(between)));
    // The end is reported by the status updates too: P = L while the device stays open.
    QTRY_VERIFY_WITH_TIMEOUT(positions.size() > 0 && positions.last() == 800, patience);
    QTest::qWait(200);
    QCOMPARE(completed.count(), 1);
}

void MediaDeviceTest::pauseFreezesPosition()
{
    ENTER_MODE();
    MediaDevice device;
    QVERIFY(device.open(file(QStringLiteral("pause.wav"), 1500)));
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.pause(); // not playing: nothing to pause
    QVERIFY(!device.isPaused());
    device.play();
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 200, patience);
    device.pause();
    QVERIFY(device.isPaused());
    QVERIFY(!device.isPlaying());
    const qint64 held = device.positionMs();
    QVERIFY(held >= 200 && held < 1500);
    QTest::qWait(400);
    QCOMPARE(device.positionMs(), held);
    QCOMPARE(completed.count(), 0);
    device.play();
    QVERIFY(device.isPlaying());
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() > held, patience);
    QVERIFY(completed.wait(patience));
    QCOMPARE(device.positionMs(), qint64(1500));
}

void MediaDeviceTest::stopKeepsPosition()
{
    ENTER_MODE();
    MediaDevice device;
    QVERIFY(device.open(file(QStringLiteral("stop.wav"), 1500)));
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 200, patience);
    device.stop();
    QVERIFY(!device.isPlaying());
    QVERIFY(!device.isPaused());
    const qint64 held = device.positionMs();
    QVERIFY(held >= 200 && held < 1500);
    QTest::qWait(400);
    QCOMPARE(device.positionMs(), held);
    QCOMPARE(completed.count(), 0);
    device.play(); // goes on from where it stopped
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() > held, patience);
    QVERIFY(completed.wait(patience));
    QCOMPARE(completed.count(), 1);
    QCOMPARE(device.positionMs(), qint64(1500));
}

void MediaDeviceTest::prevRewinds()
{
    ENTER_MODE();
    MediaDevice device;
    QVERIFY(device.open(file(QStringLiteral("prev.wav"), 1500)));
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 200, patience);
    device.prev();
    QVERIFY(!device.isPlaying());
    QCOMPARE(device.positionMs(), qint64(0));
    QTest::qWait(300);
    QCOMPARE(device.positionMs(), qint64(0));
    QCOMPARE(completed.count(), 0);
    // The end sequence: stop, then Prev, then a new play from the start.
    device.play();
    QVERIFY(completed.wait(patience));
    QCOMPARE(device.positionMs(), qint64(1500));
    device.stop();
    QCOMPARE(device.positionMs(), qint64(1500));
    device.prev();
    QCOMPARE(device.positionMs(), qint64(0));
    device.play();
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() > 0, patience);
    QVERIFY(device.isPlaying());
}

void MediaDeviceTest::playAtTheEndCompletesAtOnce()
{
    ENTER_MODE();
    MediaDevice device;
    QVERIFY(device.open(file(QStringLiteral("empty.wav"), 0)));
    QSignalSpy completed(&device, &MediaDevice::completed);
    QSignalSpy status(&device, &MediaDevice::statusUpdate);
    device.play();
    QVERIFY(completed.wait(patience));
    QCOMPARE(device.positionMs(), device.lengthMs());
    // A recording of length 0: the first status update already sees P = L.
    QVERIFY(status.wait(patience));
    QCOMPARE(device.positionMs(), qint64(0));

    QVERIFY(device.open(file(QStringLiteral("short.wav"), 300)));
    QSignalSpy again(&device, &MediaDevice::completed);
    device.play();
    QVERIFY(again.wait(patience));
    device.play(); // without Prev: already at the end
    QVERIFY(again.wait(patience));
    QCOMPARE(again.count(), 2);
    QCOMPARE(device.positionMs(), qint64(300));
}

void MediaDeviceTest::statusUpdatesWhileOpen()
{
    ENTER_MODE();
    MediaDevice device;
    QCOMPARE(device.notifyPeriod(), MediaDevice::defaultNotifyPeriodMs);
    QSignalSpy status(&device, &MediaDevice::statusUpdate);
    device.setNotifyPeriod(30);
    QTest::qWait(150);
    QCOMPARE(status.count(), 0); // closed: no updates
    QVERIFY(device.open(file(QStringLiteral("status.wav"), 500)));
    QTRY_VERIFY_WITH_TIMEOUT(status.count() >= 3, patience); // open but idle: updates
    device.setNotifyPeriod(0);
    status.clear();
    QTest::qWait(200);
    QCOMPARE(status.count(), 0);
    device.setNotifyPeriod(30);
    QTRY_VERIFY_WITH_TIMEOUT(status.count() >= 3, patience);
    device.close();
    status.clear();
    QTest::qWait(200);
    QCOMPARE(status.count(), 0);
}

void MediaDeviceTest::closeReleasesFile()
{
    ENTER_MODE();
    MediaDevice device;
    const QString path = file(QStringLiteral("test.wav"), 1500);
    QVERIFY(device.open(path));
    QSignalSpy completed(&device, &MediaDevice::completed);
    device.play();
    QTRY_VERIFY_WITH_TIMEOUT(device.positionMs() >= 100, patience);
    device.close();
    QVERIFY(!device.isOpen());
    QVERIFY(!device.isPlaying());
    QCOMPARE(device.lengthMs(), qint64(0));
    QCOMPARE(device.positionMs(), qint64(0));
    device.play(); // closed: ignored
    QVERIFY(!device.isPlaying());
    // The renderer deletes the file and writes it again, then reopens it.
    QVERIFY(QFile::remove(path));
    QVERIFY(writeFile(path, wav(morseFormat, toneU8(250))));
    QVERIFY(device.open(path));
    QCOMPARE(device.lengthMs(), qint64(250));
    device.play();
    QVERIFY(completed.wait(patience));
    QCOMPARE(completed.count(), 1);
}

void MediaDeviceTest::badFilesAreReported_data()
{
    QTest::addColumn<bool>("silent");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("expected");
    for (const bool silent : {false, true}) {
        const char *mode = silent ? "silent clock" : "sound";
        QTest::addRow("%s, missing file", mode) << silent << "missing" << "est introuvable.";
        QTest::addRow("%s, not a WAV file", mode) << silent << "text"
                                                  << "n'est pas un fichier WAV lisible.";
        QTest::addRow("%s, a directory", mode) << silent << "directory" << "ne peut pas être lu";
    }
}

void MediaDeviceTest::badFilesAreReported()
{
    ENTER_MODE();
    QFETCH(QString, kind);
    QFETCH(QString, expected);
    QString path = m_dir.filePath(QStringLiteral("bad-") + kind);
    if (kind == "text")
        QVERIFY(writeFile(path, "VVV = EXERCICE\r\n"));
    else if (kind == "directory")
        QVERIFY(QDir().mkpath(path));

    MediaDevice device;
    QVERIFY(device.open(file(QStringLiteral("good.wav"), 300)));
    QSignalSpy errors(&device, &MediaDevice::errorOccurred);
    QVERIFY(!device.open(path));
    QVERIFY(!device.isOpen());
    QCOMPARE(device.lengthMs(), qint64(0));
    QCOMPARE(errors.count(), 1);
    const QString message = errors.first().first().toString();
    QVERIFY2(message.startsWith(QStringLiteral("Le fichier « %1 »").arg(QDir::toNativeSeparators(path))),
             qPrintable(message));
    QVERIFY2(message.contains(expected), qPrintable(message));
    QCOMPARE(device.errorString(), message);
    device.play(); // nothing open: nothing happens
    QVERIFY(!device.isPlaying());

    // A good file opens and plays afterwards.
    QSignalSpy completed(&device, &MediaDevice::completed);
    QVERIFY(device.open(file(QStringLiteral("good.wav"), 300)));
    device.play();
    QVERIFY(completed.wait(patience));
    QCOMPARE(errors.count(), 1);
}

void MediaDeviceTest::severalDevicesAtOnce_data()
{
    QTest::addColumn<bool>("silent");
    QTest::addColumn<int>("count");
    for (const bool silent : {false, true}) {
        const char *mode = silent ? "silent clock" : "sound";
        QTest::addRow("%s, two devices", mode) << silent << 2;
        QTest::addRow("%s, exercise, three noises and a character", mode) << silent << 5;
    }
}

void MediaDeviceTest::severalDevicesAtOnce()
{
    ENTER_MODE();
    QFETCH(int, count);
    // Lengths 600, 1200, 1800... ms so that they end one after the other.
    std::vector<std::unique_ptr<MediaDevice>> devices;
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    QList<int> order;
    for (int i = 0; i < count; ++i) {
        devices.push_back(std::make_unique<MediaDevice>());
        MediaDevice *d = devices.back().get();
        QVERIFY(d->open(file(QStringLiteral("multi%1.wav").arg(i), 600 * (i + 1))));
        QCOMPARE(d->isSilent(), m_silent);
        spies.push_back(std::make_unique<QSignalSpy>(d, &MediaDevice::completed));
        connect(d, &MediaDevice::completed, this, [&order, i] { order << i; });
    }
    for (auto &d : devices)
        d->play();
    // All advance together.
    QTRY_VERIFY_WITH_TIMEOUT(std::all_of(devices.begin(), devices.end(),
                                         [](const auto &d) { return d->positionMs() > 0; }),
                             patience);
    QVERIFY(std::all_of(devices.begin(), devices.end(), [](const auto &d) { return d->isPlaying(); }));
    QTRY_COMPARE_WITH_TIMEOUT(order.size(), count, patience * 2);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(spies[size_t(i)]->count(), 1);
        QCOMPARE(devices[size_t(i)]->positionMs(), qint64(600 * (i + 1)));
        QCOMPARE(order[i], i);
    }
}

void MediaDeviceTest::silenceIsNoticedOnce()
{
    ENTER_MODE();
    const bool givenBefore = MediaDevice::silentNoticeGiven();
    MediaDevice first;
    MediaDevice second;
    QSignalSpy noticeFirst(&first, &MediaDevice::silentNotice);
    QSignalSpy noticeSecond(&second, &MediaDevice::silentNotice);
    QVERIFY(first.open(file(QStringLiteral("n1.wav"), 200)));
    QVERIFY(second.open(file(QStringLiteral("n2.wav"), 200)));
    QSignalSpy done(&second, &MediaDevice::completed);
    first.play();
    second.play();
    QVERIFY(done.wait(patience));
    QVERIFY(first.open(file(QStringLiteral("n1.wav"), 200)));
    const int notices = int(noticeFirst.count() + noticeSecond.count());
    if (!m_silent) {
        QCOMPARE(notices, 0);
        QCOMPARE(MediaDevice::silentNoticeGiven(), givenBefore);
        return;
    }
    QCOMPARE(notices, givenBefore ? 0 : 1);
    QVERIFY(MediaDevice::silentNoticeGiven());
    if (notices == 1) {
        const QSignalSpy &spy = noticeFirst.count() ? noticeFirst : noticeSecond;
        QCOMPARE(spy.first().first().toString(),
                 QStringLiteral("Aucune sortie son : Kelvora joue en silence."));
    }
    QCOMPARE(MediaDevice::silentNoticeText(),
             QStringLiteral("Aucune sortie son : Kelvora joue en silence."));
}

QTEST_GUILESS_MAIN(MediaDeviceTest)
#include "tst_mediadevice.moc"
