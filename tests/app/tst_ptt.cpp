// Push-to-talk in the main window, against a pseudo-terminal pair made by socat: port 1
// is one end, any other port number is absent. The sounds keep time on the test's clock.
#include "PtyPair.h"
#include "WindowTest.h"
#include "playback/CorrectionReplay.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QtTest>

using namespace kelvora;

class PttTest : public testsupport::WindowTest {
    Q_OBJECT
    testsupport::PtyPair m_ports;

    void openOn(const QString &port, const QString &text)
    {
        fx->useSteppedClock();
        open({{"vitesse", "50"}, {"debfin", "0"}, {"fcorrection", "0"}, {"activecom", "1"}, {"cdelai", "1"}, {"ncom", port}});
        w<QPlainTextEdit>("EXO")->setPlainText(text);
        click("Command1");
    }
    void typePort(const QString &text)
    {
        w<QComboBox>("NCOM")->lineEdit()->selectAll();
        QTest::keyClicks(w<QComboBox>("NCOM")->lineEdit(), text);
    }
    int openHandles() const { return testsupport::openHandles(m_ports.stem() + "1"); }
    bool playEnded() const { return fx->session.playerFree && !win->playback()->player()->isPlaying(); }

private slots:
    void initTestCase()
    {
        if (const QString problem = m_ports.start(); !problem.isEmpty())
            QSKIP(qPrintable(problem));
        qputenv("KELVORA_PTT_DEVICE_TEMPLATE", m_ports.deviceTemplate().toLocal8Bit());
    }

    void keyedWhilePlaying_data()
    {
        QTest::addColumn<bool>("stopButton");
        QTest::addRow("released at the end of play") << false;
        QTest::addRow("released by the Stop button") << true;
    }
    void keyedWhilePlaying()
    {
        QFETCH(bool, stopButton);
        openOn("1", "PARIS PARIS");
        QCOMPARE(openHandles(), 0);
        click("playerJouer");
        QCOMPARE(openHandles(), 1);
        // A new port number while keyed: the open port is opened again, which the serial layer refuses.
        typePort("2");
        QCOMPARE(fx->prompts.messages.size(), 1);
        QVERIFY2(fx->prompts.messages[0].contains("déjà ouvert"), qPrintable(fx->prompts.messages[0]));
        QCOMPARE(openHandles(), 1);
        if (stopButton)
            click("playerStop");
        else
            QVERIFY(fx->runUntil([this] { return playEnded(); }));
        QCOMPARE(openHandles(), 0);
    }

    void absentPortIsToldAndTheExercisePlays()
    {
        openOn("15", "E E"); // a stored port is taken as it is
        QCOMPARE(valueOf("NCOM"), QStringLiteral("15"));
        QVERIFY2(w("NCOM")->toolTip().contains("Port 15 = " + m_ports.stem() + "15"), qPrintable(w("NCOM")->toolTip()));
        click("playerJouer");
        QCOMPARE(fx->prompts.messages.size(), 1);
        const QString message = fx->prompts.messages[0];
        QVERIFY2(message.startsWith("Impossible d'ouvrir le port COM15 (" + m_ports.stem() + "15) : ") && message.endsWith("l'exercice est joué sans alternat."),
                 qPrintable(message));
        QVERIFY(win->playback()->player()->isPlaying());
        QVERIFY(fx->runUntil([this] { return playEnded(); }));
        typePort("99"); // typed, the number keeps to its bounds
        QCOMPARE(valueOf("NCOM"), QStringLiteral("9"));
        QVERIFY2(w("NCOM")->toolTip().contains("Port 9 = " + m_ports.stem() + "9"), qPrintable(w("NCOM")->toolTip()));
    }

    void correctionKeysEachCharacter()
    {
        openOn("1", "abc");
        QList<bool> keyed;
        connect(win->correction(), &CorrectionReplay::characterPlayed, this, [&] { keyed << (openHandles() == 1); });
        trigger("cjouer");
        QVERIFY(fx->runUntil([this] { return !win->correction()->isRunning() && !win->correction()->player()->isPlaying(); }));
        QCOMPARE(keyed, (QList<bool>{true, true, true}));
        QVERIFY(fx->runUntil([this] { return openHandles() == 0; })); // lowered after the last sound
    }
};

QTEST_MAIN(PttTest)
#include "tst_ptt.moc"
