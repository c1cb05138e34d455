#include "RefFixture.h"
#include "morse/PatternLookup.h"
#include "words/WordDatabase.h"

#include <QtTest>

using namespace kelvora;

class PatternLookupTest : public QObject {
    Q_OBJECT
private slots:
    void condition_data();
    void condition();
    void pattern_data();
    void pattern();
    void missingRowGivesPreviousRow_data();
    void missingRowGivesPreviousRow();
    void editsAreSeenAtOnce();

private:
    testsupport::RefFixture m_fixture;
};


// The text of the lookup's condition: the collation would find an upper-case letter anyway.
void PatternLookupTest::condition_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<QString>("expected");
    QTest::addRow("letter is lower-cased") << "A" << R"(car = "a")";
    QTest::addRow("double quote is doubled") << "\"" << R"(car = """")";
}

void PatternLookupTest::condition()
{
    QFETCH(QString, character);
    QFETCH(QString, expected);
    QCOMPARE(PatternLookup::condition(character), expected);
}

void PatternLookupTest::pattern_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<QString>("cw");
    QTest::addColumn<QString>("wav");
    QTest::addRow("lower case") << "a" << ".-" << "a.wav";
    QTest::addRow("upper case") << "A" << ".-" << "a.wav";
    QTest::addRow("double quote") << "\"" << ".-..-." << "guillemet.wav";
    QTest::addRow("E acute capital") << "É" << "..-.." << "e_aigu.wav";
    QTest::addRow("plain e is not é") << "e" << "." << "e.wav";
}

void PatternLookupTest::pattern()
{
    QFETCH(QString, character);
    QFETCH(QString, cw);
    QFETCH(QString, wav);
    PatternLookup lookup(m_fixture.database());
    QString error;
    const RefRow row = lookup.findRow(character, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(row.cw, cw);
    QCOMPARE(row.wav, wav);
    QCOMPARE(lookup.findPattern(character), cw);
}

void PatternLookupTest::missingRowGivesPreviousRow_data()
{
    QTest::addColumn<QStringList>("sequence");
    QTest::addColumn<QString>("lastPattern");
    QTest::addRow("nothing found yet") << QStringList{"~"} << "";
    QTest::addRow("after a letter") << QStringList{"t", "~"} << "-";
    QTest::addRow("two misses keep the last hit") << QStringList{"n", "~", "%"} << "-.";
}

void PatternLookupTest::missingRowGivesPreviousRow()
{
    QFETCH(QStringList, sequence);
    QFETCH(QString, lastPattern);
    PatternLookup lookup(m_fixture.database());
    QString pattern;
    for (const QString &c : sequence) {
        QString error;
        pattern = lookup.findPattern(c, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
    }
    QCOMPARE(pattern, lastPattern);
}

void PatternLookupTest::editsAreSeenAtOnce()
{
    PatternLookup lookup(m_fixture.database());
    QCOMPARE(lookup.findPattern("k"), QStringLiteral("-.-"));
    // Another connection edits the table, as the table editor would.
    WordDatabase editor(m_fixture.databasePath());
    QVERIFY(editor.exec(R"(UPDATE ref SET cw = '-.-.-' WHERE car = "k")"));
    QCOMPARE(lookup.findPattern("K"), QStringLiteral("-.-.-"));
    QVERIFY(editor.exec(R"(UPDATE ref SET cw = '-.-' WHERE car = "k")"));
}


QTEST_GUILESS_MAIN(PatternLookupTest)
#include "tst_patternlookup.moc"
