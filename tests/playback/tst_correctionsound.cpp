// The correction replay as it is heard: "Corrections > Jouer" through a null sink of
// its own, recorded from the sink's monitor, character after character.
#include "MainWindowFixture.h"
#include "SoundCapture.h"
#include "WavBuilder.h"
#include "app/MainPF.h"
#include "playback/CorrectionReplay.h"
#include "playback/MediaDevice.h"
#include "words/WordDatabase.h"

#include <QAction>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <thread>

using namespace kelvora;
using namespace kelvora::soundcapture;
using namespace kelvora::wavbuilder;
using testsupport::MainWindowFixture;

namespace {
constexpr int dotMs = 30;
constexpr int delayMs = 100;
constexpr int patience = 30000;

// A character's sound: its pattern keyed at dotMs, nothing before or after.
QByteArray keyed(const QString &pattern)
{
    QByteArray pcm;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        if (i > 0)
            pcm += silenceU8(dotMs);
        pcm += toneU8(pattern[i] == u'-' ? 3 * dotMs : dotMs);
    }
    return pcm;
}

// Spins on its own core until destroyed.
class BusyThreads {
public:
    explicit BusyThreads(int count)
    {
        for (int i = 0; i < count; ++i)
            m_threads.emplace_back([this] {
                volatile quint64 n = 0;
                while (!m_done.load(std::memory_order_relaxed))
                    n = n + 1;
            });
    }
    ~BusyThreads()
    {
        m_done = true;
        for (std::thread &t : m_threads)
            t.join();
    }

private:
    std::atomic<bool> m_done{false};
    std::vector<std::thread> m_threads;
};
} // namespace

class CorrectionSoundTest : public QObject {
    Q_OBJECT
    RecordedSink m_sink;

private slots:
    void initTestCase()
    {
        if (const QString problem = serverProblem(); !problem.isEmpty())
            QSKIP(qPrintable(problem));
        QVERIFY2(m_sink.start("correction", patience), "no null sink, no samples from parec, or the sink never listed");
    }

    void everyCharacterClean_data()
    {
        QTest::addColumn<int>("busyThreads");
        QTest::addRow("quiet machine") << 0;
        QTest::addRow("two busy threads") << 2;
    }
    // 12 characters played, "Stopper" while the 12th sounds: each one's dots, dashes and
    // gaps are heard at their lengths, "Délai entre caractères" apart, and none after.
    void everyCharacterClean()
    {
        QFETCH(int, busyThreads);
        const QString text = QStringLiteral("mais tant et si mal nient");
        const int played = 12;

        MainWindowFixture fx;
        QVERIFY(fx.isValid());
        fx.devices = MediaDeviceFactory(m_sink.output);
        QMap<QString, QString> patterns;
        for (const QVariantList &row : WordDatabase(fx.path("db/kvmot.sqlite")).query("select car, cw, wav from ref").rows) {
            patterns.insert(row.value(0).toString(), row.value(1).toString());
            QVERIFY(writeFile(fx.path("wav/" + row.value(2).toString()), wav(morseFormat, keyed(row.value(1).toString()))));
        }
        std::unique_ptr<MainPF> window = fx.openShown({{"cdelai", QString::number(delayMs)}});
        window->findChild<QPlainTextEdit *>("EXO")->setPlainText(text);
        QSignalSpy started(window->correction(), &CorrectionReplay::characterPlayed);

        const BusyThreads busy(busyThreads);
        const qsizetype from = m_sink.recorder->samples().size();
        window->findChild<QAction *>("cjouer")->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(started.size() == played, patience);
        window->findChild<QAction *>("cstop")->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(!window->correction()->isRunning() && !window->correction()->player()->isPlaying(), patience);
        QTest::qWait(2 * delayMs + 200); // a character started after the stop would be heard by now
        QCOMPARE(started.size(), played);

        // What should be heard: tone and silence lengths, the pauses between characters < 0.
        // The space sounds as the character before it.
        QList<int> expected;
        QString pattern;
        for (const QChar c : text.left(played)) {
            if (!expected.isEmpty())
                expected << -delayMs;
            pattern = patterns.value(QString(c), pattern);
            for (qsizetype i = 0; i < pattern.size(); ++i) {
                if (i > 0)
                    expected << dotMs;
                expected << (pattern[i] == u'-' ? 3 : 1) * dotMs;
            }
        }
        // Gaps inside a character are 30 ms: only shorter dips are bridged.
        const QList<Segment> heard = toneRuns(m_sink.recorder->samples().mid(from), 15);
        QVERIFY2(heard.size() == expected.size(), qPrintable(QStringLiteral("%1 runs, %2 expected: %3").arg(heard.size()).arg(expected.size()).arg(describe(heard))));
        for (qsizetype i = 0; i < heard.size(); ++i) {
            const int want = std::abs(expected[i]);
            const int tolerance = expected[i] < 0 ? 50 : 20;
            QVERIFY2(heard[i].tone == (i % 2 == 0) && std::abs(heard[i].lengthMs - want) <= tolerance,
                     qPrintable(QStringLiteral("run %1: %2 ms heard, %3 ms expected; %4").arg(i).arg(heard[i].lengthMs).arg(want).arg(describe(heard))));
        }
    }
};

QTEST_MAIN(CorrectionSoundTest)
#include "tst_correctionsound.moc"
