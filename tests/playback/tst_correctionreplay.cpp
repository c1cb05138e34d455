// The correction replay in the main window, driven by the menu "Corrections", the space
// key and the word list.
#include "MainWindowFixture.h"
#include "app/MainPF.h"
#include "playback/CorrectionReplay.h"
#include "playback/MediaDevice.h"

#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QtTest>

using namespace kelvora;
using testsupport::MainWindowFixture;

class CorrectionReplayTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        m_fixture = std::make_unique<MainWindowFixture>();
        QVERIFY(m_fixture->isValid());
        m_fixture->useSteppedClock(); // each character's sound ends when the test says
    }

    void cleanup()
    {
        m_heard.reset();
        m_window.reset();
        m_fixture.reset();
    }

    void menuPlayReplaysTheText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QStringList>("selections"); // as the box shows them, step by step
        QTest::addColumn<QStringList>("files");      // of the wav folder
        QTest::addRow("from the start; the space sounds as the row found last")
            << "ab " << 0 << 0 << QStringList{"a", "ab", "ab "} << QStringList{"a.wav", "b.wav", "b.wav"};
        QTest::addRow("a selection") << "abcdef" << 2 << 4 << QStringList{"c", "cd"} << QStringList{"c.wav", "d.wav"};
        QTest::addRow("a later caret") << "abcdef" << 4 << 4 << QStringList{"e", "ef"} << QStringList{"e.wav", "f.wav"};
        QTest::addRow("a double quote") << "a\"" << 0 << 0 << QStringList{"a", "a\""} << QStringList{"a.wav", "guillemet.wav"};
    }

    void menuPlayReplaysTheText()
    {
        QFETCH(QString, text);
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QStringList, selections);
        QFETCH(QStringList, files);
        openWith(text, "1");
        QStringList seen;
        connect(m_window->correction(), &CorrectionReplay::characterPlayed, this,
                [&] { seen << m_exo->textCursor().selectedText(); });
        QTextCursor c = m_exo->textCursor();
        c.setPosition(from);
        c.setPosition(to, QTextCursor::KeepAnchor);
        m_exo->setTextCursor(c);

        trigger("cjouer");
        QVERIFY(m_fixture->runUntil([&] { return finished(); }));
        QCOMPARE(seen, selections);
        QStringList played;
        for (const QList<QVariant> &step : std::as_const(*m_heard))
            played << step.at(1).toString().section('/', -1);
        QCOMPARE(played, files);
        QCOMPARE(m_exo->toPlainText(), text);
        QVERIFY(m_exo->hasFocus());
    }

    void pauseResumeAndStop()
    {
        openWith("abcdef", "500");
        trigger("cjouer");
        QVERIFY(m_fixture->runUntil([&] { return m_heard->size() == 1; }));
        QTest::keyClick(m_exo, Qt::Key_Space); // pauses, not typed
        QVERIFY(!m_window->findChild<QTimer *>("Timer5")->isActive());
        QTest::keyClick(m_exo, Qt::Key_Space); // a selection stands: resumes
        trigger("cpause");                       // pauses again
        trigger("cpause");                       // and resumes
        QVERIFY(m_fixture->runUntil([&] { return m_heard->size() == 3; }));
        QCOMPARE(m_exo->textCursor().selectedText(), QStringLiteral("abc"));
        trigger("cstop");
        QVERIFY(m_fixture->runUntil([&] { return finished(); }));
        QVERIFY(!m_window->findChild<QTimer *>("Timer5")->isActive()); // the last sound's end does not restart it
        QCOMPARE(m_heard->size(), 3);
        QCOMPARE(m_exo->textCursor().position(), 0);
        QCOMPARE(m_exo->toPlainText(), QStringLiteral("abcdef"));
        QTest::keyClick(m_exo, Qt::Key_Space); // no correction, no selection: typed
        QCOMPARE(m_exo->toPlainText(), QStringLiteral(" abcdef"));
    }

private:
    void openWith(const QString &text, const QString &delay);
    void trigger(const char *action) { m_window->findChild<QAction *>(action)->trigger(); }
    bool finished() const { return !m_window->correction()->isRunning() && !m_window->correction()->player()->isPlaying(); }

    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
    QPlainTextEdit *m_exo = nullptr;
    std::unique_ptr<QSignalSpy> m_heard;
};

void CorrectionReplayTest::openWith(const QString &text, const QString &delay)
{
    m_window = m_fixture->openShown({{"cdelai", delay}});
    m_exo = m_window->findChild<QPlainTextEdit *>("EXO");
    m_exo->setPlainText(text);
    m_heard = std::make_unique<QSignalSpy>(m_window->correction(), &CorrectionReplay::characterPlayed);
}

QTEST_MAIN(CorrectionReplayTest)
#include "tst_correctionreplay.moc"
