#include "RefFixture.h"
#include "core/Numbers.h"
#include "morse/PatternLookup.h"
#include "morse/TimingCalculator.h"

#include <QtTest>

using namespace kelvora;

Q_DECLARE_METATYPE(kelvora::TimingInputs)

namespace {
TimingInputs inputs(const QString &speed, const QString &word, const QString &ct = "3",
                    const QString &cs = "1", const QString &cl = "3", const QString &cm = "9")
{
    return {speed, word, ct, cs, cl, cm};
}

QString gridText(const TimingGrid &g)
{
    QStringList parts;
    for (const double v : {g.NP, g.NT, g.ES, g.EL, g.EM, g.VP, g.VT, g.VS, g.VL, g.VM, g.TT})
        parts << (std::isnan(v) ? QStringLiteral("-") : numbers::format(v));
    return parts.join(' ');
}
} // namespace

class TimingCalculatorTest : public QObject {
    Q_OBJECT
private slots:
    // Columns: NP NT ES EL EM VP VT VS VL VM TT.
    void grid_data()
    {
        QTest::addColumn<TimingInputs>("in");
        QTest::addColumn<QString>("expected");
        QTest::addRow("examination preset") << inputs("12", "PARIS")
                                            << "120 48 108 48 11 120 144 108 144 99 615";
        QTest::addRow("word gap of 7 dots") << inputs("12", "PARIS", "3", "1", "3", "7")
                                            << "120 48 108 48 11 120 144 108 144 77 593";
        QTest::addRow("one-letter word: no letter gap") << inputs("12", "E")
                                                        << "12 0 0 0 11 12 0 0 0 99 111";
        QTest::addRow("speed 1: no word gap") << inputs("1", "PARIS")
                                              << "10 4 9 4 0 10 12 9 12 0 43";
        QTest::addRow("CODEX") << inputs("10", "CODEX")
                               << "70 80 100 40 9 70 240 100 120 81 611";
    }

    void grid()
    {
        QFETCH(TimingInputs, in);
        QFETCH(QString, expected);
        PatternLookup lookup(m_fixture.database());
        const TimingResult r = CALCCONFIG(in, lookup);
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(gridText(r.grid), expected);
        QCOMPARE(r.trimmedWord, in.mot.trimmed());
    }

    void plan_data()
    {
        QTest::addColumn<TimingInputs>("in");
        QTest::addColumn<QList<double>>("expected"); // dot dash element letter word
        QTest::addColumn<QString>("information");
        QTest::addRow("examination preset") << inputs("12", "PARIS") << QList<double>{97, 291, 97, 291, 873}
            << "Soit 97 Millièmes de secondes pour un point (arrondie à l'unité inférieure)";
        QTest::addRow("fractional dash keeps its fraction") << inputs("12", "PARIS", "3.5")
                                                            << QList<double>{93, 325.5, 93, 279, 837}
            << "Soit 93 Millièmes de secondes pour un point (arrondie à l'unité inférieure)";
        QTest::addRow("speed 1") << inputs("1", "PARIS") << QList<double>{1395, 4185, 1395, 4185, 12555}
            << "Soit 1395 Millièmes de secondes pour un point (arrondie à l'unité inférieure)";
    }

    void plan()
    {
        QFETCH(TimingInputs, in);
        QFETCH(QList<double>, expected);
        QFETCH(QString, information);
        PatternLookup lookup(m_fixture.database());
        const TimingResult r = CALCCONFIG(in, lookup);
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE((QList<double>{r.plan.dot, r.plan.dash, r.plan.elementGap, r.plan.letterGap,
                                r.plan.wordGap}),
                 expected);
        QCOMPARE(r.information, information);
    }

    void errors_data()
    {
        QTest::addColumn<TimingInputs>("in");
        QTest::addColumn<QString>("lastWrittenTotal"); // TT as the grid keeps it, "-" when not reached
        QTest::addRow("speed 0") << inputs("0", "PARIS") << "-9";
        QTest::addRow("negative counts") << inputs("12", "PARIS", "-3", "-1", "-3", "-9") << "-375";
        QTest::addRow("overflowing product") << inputs("12", "PARIS", "3", "1", "3", "1e308") << "-";
        QTest::addRow("overflowing speed") << inputs("1e308", "PARIS", "1e308") << "-";
    }

    void errors()
    {
        QFETCH(TimingInputs, in);
        QFETCH(QString, lastWrittenTotal);
        PatternLookup lookup(m_fixture.database());
        const TimingResult r = CALCCONFIG(in, lookup);
        QVERIFY(!r.ok);
        QVERIFY(!r.error.isEmpty());
        QVERIFY(r.information.isEmpty());
        QCOMPARE(std::isnan(r.grid.TT) ? QStringLiteral("-") : numbers::format(r.grid.TT),
                 lastWrittenTotal);
    }

    void unknownCharacterUsesPreviousRow()
    {
        // "~" has no row: it counts as the R found just before it.
        PatternLookup lookup(m_fixture.database());
        const TimingResult withUnknown = CALCCONFIG(inputs("12", "PAR~S"), lookup);
        const TimingResult withR = CALCCONFIG(inputs("12", "PARRS"), lookup);
        QVERIFY(withUnknown.ok && withR.ok);
        QCOMPARE(gridText(withUnknown.grid), gridText(withR.grid));
    }

private:
    testsupport::RefFixture m_fixture;
};

QTEST_GUILESS_MAIN(TimingCalculatorTest)
#include "tst_timingcalculator.moc"
