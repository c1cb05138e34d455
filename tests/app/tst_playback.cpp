// Exercise playback in the main window, on the real audio output (the test server's null
// sink): preparation, the player bar, the end of play, device errors, and what the sink
// really receives.
#include "MainWindowFixture.h"
#include "SoundCapture.h"
#include "settings/Session.h"
#include "app/MainPF.h"
#include "panels/SoundSettingsPanel.h"
#include "playback/BackgroundNoise.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QtTest>

using namespace kelvora;
using namespace kelvora::soundcapture;
using testsupport::MainWindowFixture;
using testsupport::press;

class PlaybackTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void preparingPutsThePlayerInPlace_data();
    void preparingPutsThePlayerInPlace();
    void endOfPlayFollowUp_data();
    void endOfPlayFollowUp();
    void stopButtonAndMusicMenu();
    void deviceErrorsAreToldAndPlayGoesOn();
    void sinkHearsTheExercise();

private:
    void open(const QString &text, const QString &speed = "50");
    QWidget *control(const char *name) const { return m_window->findChild<QWidget *>(name); }
    bool on(const char *name) const { return m_window->findChild<QAbstractButton *>(name)->isChecked(); }
    void trigger(const char *name) const { m_window->findChild<QAction *>(name)->trigger(); }
    MediaDevice *player() const { return m_window->playback()->player(); }
    bool prepared() const { return control("PLAYER")->isVisible() && !control("Command1")->isVisible(); }
    bool playEnded() const { return m_fixture->session.playerFree && !player()->isPlaying(); }
    QString position() const { return m_window->findChild<QLineEdit *>("TRB")->text().section(" - ", 1); }

    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
    QPlainTextEdit *m_exo = nullptr;
};

namespace {
constexpr int patience = 20000;

QString shortTime(qint64 ms) // under a minute
{
    return QStringLiteral("0'%1''%2").arg(ms / 1000, 2, 10, QChar('0')).arg(ms % 1000, 3, 10, QChar('0'));
}
} // namespace

void PlaybackTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
    QVERIFY(m_fixture->isValid());
}

void PlaybackTest::cleanup()
{
    m_window.reset();
    m_fixture.reset();
}

// A short exercise, prepared: no start and end signs, no automatic correction.
void PlaybackTest::open(const QString &text, const QString &speed)
{
    m_window = m_fixture->openShown({{"vitesse", speed}, {"debfin", "0"}, {"fcorrection", "0"}, {"cdelai", "10000"}});
    m_exo = m_window->findChild<QPlainTextEdit *>("EXO");
    m_exo->setPlainText(text);
    QVERIFY(!prepared());
    press(control("Command1"));
    QVERIFY(prepared());
}

void PlaybackTest::preparingPutsThePlayerInPlace_data()
{
    QTest::addColumn<QString>("command");
    QTest::addRow("Préparer la musique") << "Command1";
    QTest::addRow("menu Préparer") << "Pr_parer";
    QTest::addRow("click in the text, which also stops the noise") << "EXO";
    QTest::addRow("start and end signs") << "debfin";
}

void PlaybackTest::preparingPutsThePlayerInPlace()
{
    QFETCH(QString, command);
    open("E E");
    press(control("qrm2")); // a noise started by hand
    m_exo->setPlainText("EE EE");
    QVERIFY(!prepared());
    QTest::mouseClick(m_exo->viewport(), Qt::RightButton); // only the left button prepares
    QVERIFY(!prepared());
    if (command == "Pr_parer")
        trigger("Pr_parer");
    else
        press(command == "EXO" ? m_exo->viewport() : control(qPrintable(command)));
    QVERIFY(prepared());
    QVERIFY(m_exo->hasFocus());
    const qint64 ms = (QFileInfo(m_fixture->path("tmp/test.wav")).size() - 44) / 8;
    QCOMPARE(m_window->findChild<QLineEdit *>("TRB")->text(), shortTime(ms) + " - 0'00''000");
    QVERIFY(control("playerJouer")->isEnabled() && control("playerDebut")->isEnabled());
    QVERIFY(!control("playerStop")->isEnabled());
    QCOMPARE(m_fixture->stored("défaut", "debfin"), command == "debfin" ? "1" : "0");
    QCOMPARE(on("qrm2"), command != "EXO");
    QCOMPARE(m_window->noise()->device(1)->isPlaying(), command != "EXO");
}

void PlaybackTest::endOfPlayFollowUp_data()
{
    QTest::addColumn<bool>("autoCorrection");
    QTest::addColumn<bool>("wordLoop");
    QTest::addColumn<bool>("correction"); // Timer5 stepping
    QTest::addColumn<bool>("wordTimer");  // Timer4 enabled
    QTest::addColumn<bool>("noise");      // still playing
    QTest::addRow("correction and loop: the correction wins") << true << true << true << false << true;
    QTest::addRow("loop: its next word") << false << true << false << true << true;
    QTest::addRow("correction") << true << false << true << false << true;
    QTest::addRow("nothing follows: the noise stops") << false << false << false << false << false;
}

void PlaybackTest::endOfPlayFollowUp()
{
    QFETCH(bool, autoCorrection);
    QFETCH(bool, wordLoop);
    QFETCH(bool, correction);
    QFETCH(bool, wordTimer);
    QFETCH(bool, noise);
    open("E E");
    press(control("Q1"));
    if (autoCorrection)
        press(control("Fcorrection"));
    m_window->findChild<QAction *>("motenboucle")->setChecked(wordLoop); // the loop comes later
    press(control("playerJouer"));
    QVERIFY(!m_fixture->session.playerFree);
    QVERIFY(on("qrm1"));
    QTRY_VERIFY_WITH_TIMEOUT(playEnded(), patience);
    QCOMPARE(m_window->findChild<QTimer *>("Timer5")->isActive(), correction);
    QCOMPARE(m_window->findChild<QTimer *>("Timer4")->isActive(), wordTimer);
    QCOMPARE(on("qrm1"), noise);
    QCOMPARE(m_window->noise()->device(0)->isPlaying(), noise);
    QCOMPARE(player()->positionMs(), 0); // rewound for the next play
    QTRY_COMPARE_WITH_TIMEOUT(position(), "0'00''000", patience);
}

void PlaybackTest::stopButtonAndMusicMenu()
{
    open("PARIS PARIS PARIS");
    press(control("Q2"));
    // The menu drives the device only: no noise, the player stays free.
    trigger("jouer");
    QVERIFY(player()->isPlaying() && m_fixture->session.playerFree && !on("qrm2"));
    QTRY_VERIFY_WITH_TIMEOUT(player()->positionMs() > 100, patience);
    trigger("pause");
    QVERIFY(player()->isPaused());
    trigger("pause");
    QVERIFY(player()->isPlaying());
    trigger("pstop");
    const qint64 at = player()->positionMs();
    QVERIFY(!player()->isPlaying() && at > 100);
    QTRY_COMPARE_WITH_TIMEOUT(position(), shortTime(at), patience);

    // The bar's Stop button: noise off, rewound, the loop unchecked; the player stays busy.
    m_window->findChild<QAction *>("motenboucle")->setChecked(true);
    press(control("playerJouer"));
    QVERIFY(on("qrm2") && !m_fixture->session.playerFree);
    press(control("playerStop"));
    QVERIFY(!player()->isPlaying() && !on("qrm2"));
    QCOMPARE(player()->positionMs(), 0);
    QVERIFY(!m_window->findChild<QAction *>("motenboucle")->isChecked());
    QVERIFY(!m_fixture->session.playerFree);
}

void PlaybackTest::deviceErrorsAreToldAndPlayGoesOn()
{
    // A noise that is not a WAV file, then an exercise file that cannot be written.
    QFile garbage(m_fixture->path("qrm/qrm2.wav"));
    QVERIFY(garbage.open(QIODevice::WriteOnly | QIODevice::Truncate) && garbage.write("bruit") > 0);
    garbage.close();
    open("E E");
    const QString atLoad = m_window->statusBar()->currentMessage();
    QVERIFY2(atLoad.startsWith("Bruit de fond 2 : Le fichier"), qPrintable(atLoad));
    press(control("Q2"));
    press(control("qrm2"));
    QCOMPARE(m_fixture->prompts.messages.size(), 1);
    QVERIFY2(m_fixture->prompts.messages[0].contains("n'est pas un fichier WAV"), qPrintable(m_fixture->prompts.messages[0]));
    press(control("playerJouer"));
    QTRY_VERIFY_WITH_TIMEOUT(playEnded(), patience);

    QVERIFY(QFile::remove(m_fixture->path("tmp/test.wav")) && QDir().mkdir(m_fixture->path("tmp/test.wav")));
    m_exo->setPlainText("T");
    press(control("Command1"));
    QCOMPARE(m_fixture->prompts.messages.size(), 2);
    QVERIFY2(m_fixture->prompts.messages[1].contains("test.wav"), qPrintable(m_fixture->prompts.messages[1]));
    // No sound: nothing to play or rewind.
    QVERIFY(!prepared() && !control("playerJouer")->isEnabled() && !control("playerDebut")->isEnabled());
}

// What reaches the audio server while "E E" plays: tone, word gap, tone.
void PlaybackTest::sinkHearsTheExercise()
{
    if (MediaDevice::silenceForced())
        QSKIP("KELVORA_SILENT_AUDIO=1 is set: no real sound");
    if (const QString problem = serverProblem(); !problem.isEmpty())
        QSKIP(qPrintable(problem));
    PrivateSink sink(QStringLiteral("exercise"));
    const QAudioDevice output = sink.device(patience);
    QVERIFY(sink.isValid() && !output.isNull());
    open("E", "12");
    player()->setOutputDevice(output);
    m_exo->setPlainText("E E");
    press(control("Command1"));
    QVERIFY(!player()->isSilent());
    MonitorRecorder recorder(sink.name());
    QVERIFY(recorder.start(patience));
    press(control("playerJouer"));
    QTRY_VERIFY_WITH_TIMEOUT(playEnded(), patience);
    QTest::qWait(500); // the tail still travelling to the monitor
    recorder.stop();

    QList<Segment> runs = segments(recorder.samples(), MonitorRecorder::rate);
    while (!runs.isEmpty() && !runs.first().tone)
        runs.removeFirst();
    while (!runs.isEmpty() && !runs.last().tone)
        runs.removeLast();
    const TimingPlan plan = m_window->soundPanel()->timingPlan();
    QStringList seen;
    for (const Segment &s : runs)
        seen << QStringLiteral("%1 %2 ms").arg(s.tone ? "son" : "silence").arg(s.lengthMs);
    qInfo("heard: %s (dot %.0f ms, word gap %.0f ms)", qPrintable(seen.join(", ")), plan.dot, plan.wordGap);
    QVERIFY2(runs.size() == 3 && runs[0].tone && !runs[1].tone && runs[2].tone, qPrintable(seen.join(", ")));
    for (const auto &[run, ms] : {std::pair{runs[0], plan.dot}, {runs[1], plan.wordGap}, {runs[2], plan.dot}})
        QVERIFY2(std::abs(run.lengthMs - ms) <= 40, qPrintable(seen.join(", ")));
}

QTEST_MAIN(PlaybackTest)
#include "tst_playback.moc"
