// Exercise playback in the main window on the real audio output (the test server's null
// sink): preparation, the player bar, the end of play, device errors, and what is heard.
#include "FileSizeLimit.h"
#include "SoundCapture.h"
#include "WindowTest.h"
#include "panels/SoundSettingsPanel.h"
#include "playback/BackgroundNoise.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QtTest>

using namespace kelvora;
using namespace kelvora::soundcapture;

namespace {
constexpr int patience = 20000;
QString shortTime(qint64 ms) // under a minute
{
    return QStringLiteral("0'%1''%2").arg(ms / 1000, 2, 10, QChar('0')).arg(ms % 1000, 3, 10, QChar('0'));
}
} // namespace

class PlaybackTest : public testsupport::WindowTest {
    Q_OBJECT
    QPlainTextEdit *exo() const { return w<QPlainTextEdit>("EXO"); }
    MediaDevice *player() const { return win->playback()->player(); }
    bool on(const char *name) const { return w<QAbstractButton>(name)->isChecked(); }
    bool prepared() const { return w("PLAYER")->isVisible() && !w("Command1")->isVisible(); }
    bool playEnded() const { return fx->session.playerFree && !player()->isPlaying(); }
    QString position() const { return w<QLineEdit>("TRB")->text().section(" - ", 1); }
    // A short exercise, prepared: no start and end signs, no automatic correction.
    void openOn(const QString &text, const QString &speed = "50")
    {
        open({{"vitesse", speed}, {"debfin", "0"}, {"fcorrection", "0"}, {"cdelai", "10000"}});
        exo()->setPlainText(text);
        QVERIFY(!prepared());
        click("Command1");
        QVERIFY(prepared());
    }

private slots:
    void preparingPutsThePlayerInPlace_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addRow("Préparer la musique") << "Command1";
        QTest::addRow("menu Préparer") << "Pr_parer";
        QTest::addRow("click in the text, which also stops the noise") << "EXO";
        QTest::addRow("start and end signs") << "debfin";
    }
    void preparingPutsThePlayerInPlace()
    {
        QFETCH(QString, command);
        openOn("E E");
        click("qrm2"); // a noise started by hand
        exo()->setPlainText("EE EE");
        QTest::mouseClick(exo()->viewport(), Qt::RightButton); // only the left button prepares
        QVERIFY(!prepared());
        if (command == "Pr_parer")
            trigger(command);
        else
            testsupport::press(command == "EXO" ? exo()->viewport() : w(command));
        QVERIFY(prepared() && exo()->hasFocus());
        const qint64 ms = (QFileInfo(fx->path("tmp/test.wav")).size() - 44) / 8;
        QCOMPARE(w<QLineEdit>("TRB")->text(), shortTime(ms) + " - 0'00''000");
        QVERIFY(w("playerJouer")->isEnabled() && w("playerDebut")->isEnabled() && !w("playerStop")->isEnabled());
        QCOMPARE(fx->stored("défaut", "debfin"), command == "debfin" ? "1" : "0");
        QCOMPARE(on("qrm2"), command != "EXO");
        QCOMPARE(win->noise()->device(1)->isPlaying(), command != "EXO");
    }

    void endOfPlayFollowUp_data()
    {
        QTest::addColumn<bool>("autoCorrection");
        QTest::addColumn<bool>("wordLoop");
        QTest::addRow("correction and loop: the correction wins") << true << true;
        QTest::addRow("loop: its next word") << false << true;
        QTest::addRow("correction") << true << false;
        QTest::addRow("nothing follows: the noise stops") << false << false;
    }
    void endOfPlayFollowUp()
    {
        QFETCH(bool, autoCorrection);
        QFETCH(bool, wordLoop);
        openOn("E E");
        click("Q1"); // the first noise starts with the exercise
        if (autoCorrection)
            click("Fcorrection");
        w<QAction>("motenboucle")->setChecked(wordLoop);
        click("playerJouer");
        QVERIFY(!fx->session.playerFree && on("qrm1") && !on("qrm2"));
        QTRY_VERIFY_WITH_TIMEOUT(playEnded(), patience);
        QCOMPARE(w<QTimer>("Timer5")->isActive(), autoCorrection); // the correction steps
        QCOMPARE(w<QTimer>("Timer4")->isActive(), wordLoop && !autoCorrection);
        QCOMPARE(on("qrm1"), autoCorrection || wordLoop);
        QCOMPARE(win->noise()->device(0)->isPlaying(), autoCorrection || wordLoop);
        QCOMPARE(player()->positionMs(), 0); // rewound for the next play
        QTRY_COMPARE_WITH_TIMEOUT(position(), "0'00''000", patience);
    }

    void stopButtonAndMusicMenu()
    {
        openOn("PARIS PARIS PARIS");
        click("Q2");
        // The menu drives the device only: no noise, the player stays free.
        trigger("jouer");
        QVERIFY(player()->isPlaying() && fx->session.playerFree && !on("qrm2"));
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
        w<QAction>("motenboucle")->setChecked(true);
        click("playerJouer");
        QVERIFY(on("qrm2") && !fx->session.playerFree);
        click("playerStop");
        QVERIFY(!player()->isPlaying() && !on("qrm2") && !w<QAction>("motenboucle")->isChecked() && !fx->session.playerFree);
        QCOMPARE(player()->positionMs(), 0);
    }

    void deviceErrorsAreToldAndPlayGoesOn()
    {
        // A noise that is not a WAV file.
        QFile garbage(fx->path("qrm/qrm2.wav"));
        QVERIFY(garbage.open(QIODevice::WriteOnly | QIODevice::Truncate) && garbage.write("bruit") > 0);
        garbage.close();
        openOn("E E");
        QVERIFY2(statusText().startsWith("Bruit de fond 2 : Le fichier"), qPrintable(statusText()));
        click("Q2");
        click("qrm2");
        QCOMPARE(fx->prompts.messages.size(), 1);
        QVERIFY2(fx->prompts.messages[0].contains("n'est pas un fichier WAV"), qPrintable(fx->prompts.messages[0]));
        click("playerJouer");
        QTRY_VERIFY_WITH_TIMEOUT(playEnded(), patience);
    }

    // "Exercice prêt : N s" describes the sound prepared: it goes when that sound does.
    void readyStatusGoesWithItsSound()
    {
        openOn("E E");
        auto *ready = win->statusBar()->findChild<QLabel *>("dureeExercice");
        QVERIFY2(ready->text().startsWith("Exercice prêt : "), qPrintable(ready->text()));
        QTest::keyClick(exo(), Qt::Key_T);
        QVERIFY(!prepared());
        QCOMPARE(ready->text(), QString());
    }

    void writeFailureLoadsNoSound_data()
    {
        QTest::addColumn<QString>("target"); // what tmp/test.wav becomes
        QTest::addColumn<QString>("reason");
        QTest::addRow("a folder") << "folder" << "c'est un dossier";
        QTest::addRow("full disk") << "full" << "fichier trop grand";
    }
    // The exercise's sound cannot be written: the window says which file and why, and
    // plays nothing, not even the sound of the last exercise.
    void writeFailureLoadsNoSound()
    {
        QFETCH(QString, target);
        QFETCH(QString, reason);
        openOn("E E");
        const QString wav = fx->path("tmp/test.wav");
        const QByteArray old = testsupport::fileBytes(wav);
        if (target == "folder")
            QVERIFY(QFile::remove(wav) && QDir().mkdir(wav));
        exo()->setPlainText(QString("PARIS ").repeated(30));
        {
            const testsupport::FileSizeLimit limit(target == "full" ? 20000 : 0);
            click("Command1");
        }
        QCOMPARE(fx->prompts.messages.size(), 1);
        QVERIFY2(fx->prompts.messages[0].startsWith("Impossible d'écrire le fichier « " + wav + " » : ") && fx->prompts.messages[0].contains(reason),
                 qPrintable(fx->prompts.messages[0]));
        QVERIFY(!prepared() && w("Command1")->isVisible() && !player()->isOpen());
        QVERIFY(!w("playerDebut")->isEnabled() && !w("playerJouer")->isEnabled()); // nothing to rewind or play
        QCOMPARE(win->statusBar()->findChild<QLabel *>("dureeExercice")->text(), QString());
        if (target == "full")
            QCOMPARE(testsupport::fileBytes(wav), old);
    }

    // What reaches the audio server while "E E" plays: tone, word gap, tone.
    void sinkHearsTheExercise()
    {
        if (const QString problem = serverProblem(); !problem.isEmpty())
            QSKIP(qPrintable(problem));
        PrivateSink sink(QStringLiteral("exercise"));
        const QAudioDevice output = sink.device(patience);
        QVERIFY(sink.isValid() && !output.isNull());
        openOn("E", "12");
        player()->setOutputDevice(output);
        exo()->setPlainText("E E");
        click("Command1");
        QVERIFY(!player()->isSilent());
        MonitorRecorder recorder(sink.name());
        QVERIFY(recorder.start(patience));
        click("playerJouer");
        QTRY_VERIFY_WITH_TIMEOUT(playEnded(), patience);
        QTest::qWait(500); // the tail still travelling to the monitor
        recorder.stop();
        const QList<Segment> runs = toneRuns(recorder.samples());
        const TimingPlan plan = win->soundPanel()->timingPlan();
        QVERIFY2(runs.size() == 3 && runs[0].tone && !runs[1].tone && runs[2].tone, qPrintable(describe(runs)));
        for (const auto &[run, ms] : {std::pair{runs[0], plan.dot}, {runs[1], plan.wordGap}, {runs[2], plan.dot}})
            QVERIFY2(std::abs(run.lengthMs - ms) <= 40, qPrintable(describe(runs)));
    }
};

QTEST_MAIN(PlaybackTest)
#include "tst_playback.moc"
