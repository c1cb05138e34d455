#include "settings/ChoiceLists.h"
#include "audio/PlayTime.h"

#include <QtTest>

using namespace kelvora;

class PlaybackRulesTest : public QObject {
    Q_OBJECT
private slots:
    void timeText_data()
    {
        QTest::addColumn<qint64>("ms");
        QTest::addColumn<QString>("text");
        for (const auto &[ms, text] : {std::pair<qint64, const char *>{0, "0'00''000"}, {7, "0'00''007"},
                                       {4250, "0'04''250"}, {59999, "0'59''999"}, {60000, "1'00''000"},
                                       {271040, "4'31''040"}, {754007, "12'34''007"}})
            QTest::addRow("%lld ms", ms) << ms << QString::fromLatin1(text);
    }

    void timeText()
    {
        QFETCH(qint64, ms);
        QFETCH(QString, text);
        QCOMPARE(playTime::format(ms), text);
        QCOMPARE(playTime::lengthAndPosition(ms, 1500), text + " - 0'01''500");
    }

    // NCOM: below 1 shows "1", above 10 shows "9"; the port is the number shown.
    void portNumber_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("port");
        for (const auto &[typed, shown, port] :
             {std::tuple{"0", "1", 1}, {"-3", "1", 1}, {"COM", "1", 1}, {"1", "1", 1}, {"4", "4", 4},
              {"10", "10", 10}, {"11", "9", 9}, {"99", "9", 9}, {"2.5", "2.5", 2}})
            QTest::addRow("%s", typed) << QString::fromLatin1(typed) << QString::fromLatin1(shown) << port;
    }

    void portNumber()
    {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(int, port);
        QCOMPARE(choiceLists::clampPortNumber(typed), shown);
        QCOMPARE(choiceLists::portNumberOf(shown), port);
    }
};

QTEST_GUILESS_MAIN(PlaybackRulesTest)
#include "tst_playbackrules.moc"
