#include "playback/NullPushToTalk.h"
#include "audio/PttPortName.h"
#include "playback/SerialPushToTalk.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace kelvora;

class PushToTalkTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();
    void devicePath_data();
    void devicePath();
    void contract_data();
    void contract();
    void serialOpensAndCloses();
    void openWhileOpenIsRefused();
    void busyPortIsReported();
    void absentPortIsReported_data();
    void absentPortIsReported();

private:
    void pointAtPtys(); // port N is the pseudo-terminal <dir>/kvpttPID_N

    QTemporaryDir m_dir;
    QProcess m_socat;
    QString m_template;
    QString m_problem; // why the pseudo-terminals are missing
};

void PushToTalkTest::initTestCase()
{
    QVERIFY(m_dir.isValid());
    // Names unique to this process: the serial layer keeps lock files named after them.
    const QString stem = m_dir.filePath(QStringLiteral("kvptt%1_").arg(QCoreApplication::applicationPid()));
    m_template = stem + QStringLiteral("%2");
    const QString socat = QStandardPaths::findExecutable(QStringLiteral("socat"));
    if (socat.isEmpty()) {
        m_problem = QStringLiteral("socat is not installed: no pseudo-terminal pair");
        return;
    }
    m_socat.start(socat, {QStringLiteral("-d"), QStringLiteral("-d"),
                          QStringLiteral("pty,raw,echo=0,link=%1").arg(stem + QStringLiteral("1")),
                          QStringLiteral("pty,raw,echo=0,link=%1").arg(stem + QStringLiteral("peer"))});
    QVERIFY(m_socat.waitForStarted(10000));
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(stem + QStringLiteral("1"))
                                 && QFileInfo::exists(stem + QStringLiteral("peer")),
                             20000);
}

void PushToTalkTest::cleanupTestCase()
{
    if (m_socat.state() != QProcess::NotRunning) {
        m_socat.kill();
        m_socat.waitForFinished(10000);
    }
}

void PushToTalkTest::cleanup()
{
    qunsetenv("KELVORA_PTT_DEVICE_TEMPLATE");
}

void PushToTalkTest::pointAtPtys()
{
    qputenv("KELVORA_PTT_DEVICE_TEMPLATE", m_template.toLocal8Bit());
}

void PushToTalkTest::devicePath_data()
{
    QTest::addColumn<QString>("pattern"); // empty: no override
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("label");
    QTest::addRow("COM1 is the first serial device") << "" << 1 << "/dev/ttyS0" << "COM1";
    QTest::addRow("COM3") << "" << 3 << "/dev/ttyS2" << "COM3";
    QTest::addRow("COM10") << "" << 10 << "/dev/ttyS9" << "COM10";
    QTest::addRow("override with the system index") << "/tmp/x/pty%1" << 1 << "/tmp/x/pty0" << "COM1";
    QTest::addRow("override with the COM number") << "/tmp/x/com%2" << 4 << "/tmp/x/com4" << "COM4";
    QTest::addRow("USB adapter") << "/dev/ttyUSB%1" << 2 << "/dev/ttyUSB1" << "COM2";
}

void PushToTalkTest::devicePath()
{
    QFETCH(QString, pattern);
    QFETCH(int, port);
    QFETCH(QString, path);
    QFETCH(QString, label);
    if (!pattern.isEmpty())
        qputenv("KELVORA_PTT_DEVICE_TEMPLATE", pattern.toLocal8Bit());
    QCOMPARE(PttPortName::devicePath(port), path);
    QCOMPARE(PttPortName::label(port), label);
}

void PushToTalkTest::contract_data()
{
    QTest::addColumn<bool>("serial");
    QTest::addRow("serial port") << true;
    QTest::addRow("no transmitter") << false;
}

// What the player relies on, whatever is behind the interface.
void PushToTalkTest::contract()
{
    QFETCH(bool, serial);
    if (serial && !m_problem.isEmpty())
        QSKIP(qPrintable(m_problem));
    pointAtPtys();
    std::unique_ptr<PushToTalk> ptt;
    if (serial)
        ptt = std::make_unique<SerialPushToTalk>();
    else
        ptt = std::make_unique<NullPushToTalk>();
    QVERIFY(!ptt->isOpen());
    QCOMPARE(ptt->portNumber(), 0);
    ptt->close(); // closing a closed port is harmless
    QVERIFY(!ptt->isOpen());
    QVERIFY2(ptt->open(1), qPrintable(ptt->errorString()));
    QVERIFY(ptt->isOpen());
    QCOMPARE(ptt->portNumber(), 1);
    QVERIFY(ptt->errorString().isEmpty());
    ptt->close();
    QVERIFY(!ptt->isOpen());
    QVERIFY(ptt->open(1)); // each play opens it again
    QVERIFY(ptt->isOpen());
    ptt->close();
    QVERIFY(!ptt->isOpen());
}

namespace {
// How many descriptors of this process hold the terminal behind `path` (Linux).
int openHandles(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    int count = 0;
    for (const QFileInfo &fd : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::System | QDir::Files)) {
        count += fd.symLinkTarget() == target;
    }
    return count;
}
} // namespace

void PushToTalkTest::serialOpensAndCloses()
{
    if (!m_problem.isEmpty())
        QSKIP(qPrintable(m_problem));
    pointAtPtys();
    const QString path = PttPortName::devicePath(1);
    QCOMPARE(openHandles(path), 0);
    {
        SerialPushToTalk ptt;
        QVERIFY2(ptt.open(1), qPrintable(ptt.errorString()));
        QVERIFY(ptt.isOpen());
        QCOMPARE(openHandles(path), 1); // the terminal is really held: the lines stay up
        ptt.close();
        QCOMPARE(openHandles(path), 0);
        QVERIFY(ptt.open(1));
        QCOMPARE(openHandles(path), 1);
    } // released by its destructor: another object can take the port
    QCOMPARE(openHandles(path), 0);
    SerialPushToTalk again;
    QVERIFY2(again.open(1), qPrintable(again.errorString()));
    again.close();
    QVERIFY(!again.isOpen());
}

void PushToTalkTest::openWhileOpenIsRefused()
{
    if (!m_problem.isEmpty())
        QSKIP(qPrintable(m_problem));
    pointAtPtys();
    SerialPushToTalk ptt;
    QVERIFY(ptt.open(1));
    QVERIFY(!ptt.open(1));
    QCOMPARE(ptt.errorString(), QStringLiteral("Impossible d'ouvrir le port COM1 (%1) : le port est déjà ouvert")
                                    .arg(PttPortName::devicePath(1)));
    QVERIFY(ptt.isOpen()); // still keyed
    QCOMPARE(ptt.portNumber(), 1);
}

void PushToTalkTest::busyPortIsReported()
{
    if (!m_problem.isEmpty())
        QSKIP(qPrintable(m_problem));
    pointAtPtys();
    SerialPushToTalk first;
    QVERIFY(first.open(1));
    SerialPushToTalk second;
    QVERIFY(!second.open(1));
    QVERIFY(!second.isOpen());
    const QString prefix = QStringLiteral("Impossible d'ouvrir le port COM1 (%1) : ").arg(PttPortName::devicePath(1));
    QVERIFY2(second.errorString().startsWith(prefix), qPrintable(second.errorString()));
    QVERIFY2(second.errorString().size() > prefix.size(), "the system's reason is missing");
    first.close();
    QVERIFY2(second.open(1), qPrintable(second.errorString())); // free again
}

void PushToTalkTest::absentPortIsReported_data()
{
    QTest::addColumn<bool>("overridden");
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("reasonPart"); // empty: any reason
    QTest::addRow("no such pseudo-terminal") << true << 3 << "";
    QTest::addRow("no such serial device") << false << 99 << "";
    QTest::addRow("port 0") << true << 0 << "numéro de port invalide";
}

void PushToTalkTest::absentPortIsReported()
{
    QFETCH(bool, overridden);
    QFETCH(int, port);
    QFETCH(QString, reasonPart);
    if (overridden)
        pointAtPtys();
    SerialPushToTalk ptt;
    QVERIFY(!ptt.open(port));
    QVERIFY(!ptt.isOpen());
    const QString path = overridden ? PttPortName::devicePath(port) : QStringLiteral("/dev/ttyS%1").arg(port - 1);
    const QString prefix = QStringLiteral("Impossible d'ouvrir le port COM%1 (%2) : ").arg(port).arg(path);
    const QString message = ptt.errorString();
    QVERIFY2(message.startsWith(prefix), qPrintable(message));
    QVERIFY2(message.size() > prefix.size(), qPrintable(message));
    if (!reasonPart.isEmpty())
        QVERIFY2(message.endsWith(reasonPart), qPrintable(message));
}

QTEST_GUILESS_MAIN(PushToTalkTest)
#include "tst_pushtotalk.moc"
