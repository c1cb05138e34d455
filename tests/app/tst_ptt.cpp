// Push-to-talk in the main window, against a pseudo-terminal pair made by socat: port 1
// is one end, any other port number is absent.
#include "MainWindowFixture.h"
#include "settings/Session.h"
#include "app/MainPF.h"
#include "playback/CorrectionReplay.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"
#include "playback/PushToTalkControl.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

using namespace kelvora;
using testsupport::MainWindowFixture;
using testsupport::press;

class PttTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void keyedWhilePlaying_data();
    void keyedWhilePlaying();
    void absentPortIsToldAndTheExercisePlays();
    void correctionKeysEachCharacter();

private:
    void open(const QString &port, const QString &text);
    void typePort(const QString &text);
    int openHandles() const;
    bool playEnded() const { return m_fixture->session.playerFree && !m_window->playback()->player()->isPlaying(); }

    QTemporaryDir m_dir;
    QProcess m_socat;
    QString m_stem; // port N is m_stem + N
    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
    QComboBox *m_ncom = nullptr;
};

namespace {
constexpr int patience = 20000;
}

void PttTest::initTestCase()
{
    const QString socat = QStandardPaths::findExecutable(QStringLiteral("socat"));
    if (socat.isEmpty())
        QSKIP("socat is not installed: no pseudo-terminal pair");
    // Names unique to this process: the serial layer keeps lock files named after them.
    m_stem = m_dir.filePath(QStringLiteral("kvptt%1_").arg(QCoreApplication::applicationPid()));
    m_socat.start(socat, {"-d", "-d", "pty,raw,echo=0,link=" + m_stem + "1", "pty,raw,echo=0,link=" + m_stem + "peer"});
    QVERIFY(m_socat.waitForStarted(10000));
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(m_stem + "1") && QFileInfo::exists(m_stem + "peer"), patience);
    qputenv("KELVORA_PTT_DEVICE_TEMPLATE", (m_stem + "%2").toLocal8Bit());
}

void PttTest::cleanupTestCase()
{
    qunsetenv("KELVORA_PTT_DEVICE_TEMPLATE");
    m_socat.kill();
    m_socat.waitForFinished(10000);
}

void PttTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
    QVERIFY(m_fixture->isValid());
    // The port is what is tested here: the sounds keep time on the test's clock.
    m_fixture->useSteppedClock();
}

void PttTest::cleanup()
{
    m_window.reset();
    m_fixture.reset();
}

void PttTest::open(const QString &port, const QString &text)
{
    m_window = m_fixture->openShown({{"vitesse", "50"}, {"debfin", "0"}, {"fcorrection", "0"},
                                     {"activecom", "1"}, {"cdelai", "1"}, {"ncom", port}});
    m_ncom = m_window->findChild<QComboBox *>("NCOM");
    m_window->findChild<QPlainTextEdit *>("EXO")->setPlainText(text);
    press(m_window->findChild<QWidget *>("Command1"));
}

void PttTest::typePort(const QString &text)
{
    m_ncom->lineEdit()->selectAll();
    QTest::keyClicks(m_ncom->lineEdit(), text);
}

// Descriptors of this process on port 1's terminal: held open, its lines are up.
int PttTest::openHandles() const
{
    const QString target = QFileInfo(m_stem + "1").canonicalFilePath();
    int count = 0;
    for (const QFileInfo &fd : QDir("/proc/self/fd").entryInfoList(QDir::System | QDir::Files))
        count += fd.symLinkTarget() == target;
    return count;
}

void PttTest::keyedWhilePlaying_data()
{
    QTest::addColumn<bool>("stopButton");
    QTest::addRow("released at the end of play") << false;
    QTest::addRow("released by the Stop button") << true;
}

void PttTest::keyedWhilePlaying()
{
    QFETCH(bool, stopButton);
    open("1", "PARIS PARIS");
    QCOMPARE(openHandles(), 0);
    press(m_window->findChild<QWidget *>("playerJouer"));
    QCOMPARE(openHandles(), 1);
    // A new port number while keyed: the open port is opened again, which the serial layer refuses.
    typePort("2");
    QCOMPARE(m_fixture->prompts.messages.size(), 1);
    QVERIFY2(m_fixture->prompts.messages[0].contains("déjà ouvert"), qPrintable(m_fixture->prompts.messages[0]));
    QCOMPARE(openHandles(), 1);
    if (stopButton)
        press(m_window->findChild<QWidget *>("playerStop"));
    else
        QVERIFY(m_fixture->runUntil([this] { return playEnded(); }));
    QCOMPARE(openHandles(), 0);
}

void PttTest::absentPortIsToldAndTheExercisePlays()
{
    open("15", "E E"); // a stored port is taken as it is
    QCOMPARE(m_ncom->currentText(), QStringLiteral("15"));
    QVERIFY2(m_ncom->toolTip().contains("Port 15 = " + m_stem + "15"), qPrintable(m_ncom->toolTip()));
    press(m_window->findChild<QWidget *>("playerJouer"));
    QCOMPARE(m_fixture->prompts.messages.size(), 1);
    const QString message = m_fixture->prompts.messages[0];
    QVERIFY2(message.startsWith("Impossible d'ouvrir le port COM15 (" + m_stem + "15) : "), qPrintable(message));
    QVERIFY2(message.endsWith("l'exercice est joué sans alternat."), qPrintable(message));
    QVERIFY(m_window->playback()->player()->isPlaying());
    QVERIFY(m_fixture->runUntil([this] { return playEnded(); }));
    // Typed, the number keeps to its bounds.
    typePort("99");
    QCOMPARE(m_ncom->currentText(), QStringLiteral("9"));
    QVERIFY2(m_ncom->toolTip().contains("Port 9 = " + m_stem + "9"), qPrintable(m_ncom->toolTip()));
}

void PttTest::correctionKeysEachCharacter()
{
    open("1", "abc");
    QList<bool> keyed;
    connect(m_window->correction(), &CorrectionReplay::characterPlayed, this, [&] { keyed << (openHandles() == 1); });
    m_window->findChild<QAction *>("cjouer")->trigger();
    QVERIFY(m_fixture->runUntil([this] {
        return !m_window->correction()->isRunning() && !m_window->correction()->player()->isPlaying();
    }));
    QCOMPARE(keyed, (QList<bool>{true, true, true}));
    QVERIFY(m_fixture->runUntil([this] { return openHandles() == 0; })); // lowered after the last sound
}

QTEST_MAIN(PttTest)
#include "tst_ptt.moc"
