// The push-to-talk port against a pseudo-terminal pair made by socat: port 1 is one end,
// any other port number is absent.
#include "PtyPair.h"
#include "audio/PttPortName.h"
#include "playback/NullPushToTalk.h"
#include "playback/SerialPushToTalk.h"

#include <QtTest>

#include <memory>

using namespace kelvora;

namespace {
using testsupport::openHandles;
QString failure(int port) { return QStringLiteral("Impossible d'ouvrir le port COM%1 (%2) : ").arg(port).arg(PttPortName::devicePath(port)); }
} // namespace

class PushToTalkTest : public QObject {
    Q_OBJECT
    testsupport::PtyPair m_ports;

private slots:
    void initTestCase()
    {
        if (const QString problem = m_ports.start(); !problem.isEmpty())
            QSKIP(qPrintable(problem));
    }
    void init() { qputenv("KELVORA_PTT_DEVICE_TEMPLATE", m_ports.deviceTemplate().toLocal8Bit()); }

    void devicePath_data()
    {
        QTest::addColumn<QString>("pattern"); // empty: no override
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("path");
        QTest::addRow("COM1 is the first serial device") << "" << 1 << "/dev/ttyS0";
        QTest::addRow("override with the COM number") << "/tmp/x/com%2" << 4 << "/tmp/x/com4";
    }
    void devicePath()
    {
        QFETCH(QString, pattern);
        QFETCH(int, port);
        QFETCH(QString, path);
        pattern.isEmpty() ? qunsetenv("KELVORA_PTT_DEVICE_TEMPLATE") : qputenv("KELVORA_PTT_DEVICE_TEMPLATE", pattern.toLocal8Bit());
        QCOMPARE(PttPortName::devicePath(port), path);
        QCOMPARE(PttPortName::label(port), QStringLiteral("COM%1").arg(port));
    }

    // What the player relies on, whatever is behind the interface: each play opens the
    // port, the end of play closes it, closing a closed port is harmless.
    void contract_data()
    {
        QTest::addColumn<bool>("serial");
        QTest::addRow("serial port") << true;
        QTest::addRow("no transmitter") << false;
    }
    void contract()
    {
        QFETCH(bool, serial);
        const QString path = PttPortName::devicePath(1);
        std::unique_ptr<PushToTalk> ptt;
        serial ? ptt.reset(new SerialPushToTalk) : ptt.reset(new NullPushToTalk);
        ptt->close();
        QVERIFY(!ptt->isOpen() && ptt->portNumber() == 0);
        for (int play = 0; play < 2; ++play) {
            QVERIFY2(ptt->open(1), qPrintable(ptt->errorString()));
            QVERIFY(ptt->isOpen() && ptt->portNumber() == 1 && ptt->errorString().isEmpty());
            QCOMPARE(openHandles(path), serial ? 1 : 0); // the terminal is really held: its lines stay up
            ptt->close();
            QVERIFY(!ptt->isOpen() && openHandles(path) == 0);
        }
        QVERIFY(ptt->open(1));
        ptt.reset(); // released by its destructor
        QCOMPARE(openHandles(path), 0);
    }

    void openPortIsNotOpenedTwice()
    {
        SerialPushToTalk first, second;
        QVERIFY(first.open(1));
        QVERIFY(!first.open(1));
        QCOMPARE(first.errorString(), failure(1) + "le port est déjà ouvert");
        QVERIFY(first.isOpen() && first.portNumber() == 1); // still keyed
        QVERIFY(!second.open(1) && !second.isOpen()); // busy: the system's reason follows
        QVERIFY2(second.errorString().startsWith(failure(1)) && second.errorString().size() > failure(1).size(), qPrintable(second.errorString()));
        first.close();
        QVERIFY2(second.open(1), qPrintable(second.errorString())); // free again
    }

};

QTEST_GUILESS_MAIN(PushToTalkTest)
#include "tst_pushtotalk.moc"
