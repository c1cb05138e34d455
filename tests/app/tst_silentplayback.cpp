// Without a sound output (KELVORA_SILENT_AUDIO=1 stands for a machine without one) the
// exercise plays on a clock: what waits for its end still happens, and the status bar
// says once that nothing is heard.
#include "MainWindowFixture.h"
#include "settings/Session.h"
#include "app/MainPF.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"

#include <QPlainTextEdit>
#include <QStatusBar>
#include <QtTest>

using namespace kelvora;
using testsupport::press;

class SilentPlaybackTest : public QObject {
    Q_OBJECT
private slots:
    void endOfPlayRunsOnTheClock()
    {
        QVERIFY2(MediaDevice::silenceForced(), "run with KELVORA_SILENT_AUDIO=1");
        testsupport::MainWindowFixture fixture;
        QVERIFY(fixture.isValid());
        auto window = fixture.openShown({{"vitesse", "50"}, {"debfin", "0"}, {"fcorrection", "1"}, {"cdelai", "10000"}});
        QCOMPARE(window->statusBar()->currentMessage(), MediaDevice::silentNoticeText());

        window->findChild<QPlainTextEdit *>("EXO")->setPlainText("E E");
        press(window->findChild<QWidget *>("Command1"));
        QVERIFY(window->playback()->player()->isSilent());
        press(window->findChild<QWidget *>("playerJouer"));
        QVERIFY(!fixture.session.playerFree);
        QTRY_VERIFY_WITH_TIMEOUT(fixture.session.playerFree, 20000);
        QCOMPARE(window->playback()->player()->positionMs(), 0);
        QVERIFY(window->findChild<QTimer *>("Timer5")->isActive()); // the correction follows
        QVERIFY(fixture.prompts.messages.isEmpty());

        // Once per process: a second window is not told again.
        window.reset();
        QVERIFY(fixture.openWindow()->statusBar()->currentMessage() != MediaDevice::silentNoticeText());
    }
};

QTEST_MAIN(SilentPlaybackTest)
#include "tst_silentplayback.moc"
