#include "RefFixture.h"
#include "words/RecordSet.h"
#include "words/WordDatabase.h"

#include <QtTest>

using namespace kelvora;

class RecordSetTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_fixture.isValid());
        WordDatabase &db = m_fixture.database();
        for (const char *w : {"chemin", "avion", "Bateau", "éclair", "dune", "avion"})
            QVERIFY(db.exec("INSERT INTO mot (mot) VALUES (?)", {QString::fromUtf8(w)}));
        QVERIFY(db.exec("create table ordre (mot TEXT)") && db.exec("create table melange (mot)"));
        for (const QVariant &w : QVariantList{"côte", "Cote", "", "coté", QVariant(), "côté", "cote", "Cote", "Zèbre", "zebre",
                                              "œuf", "oeuvre", "ß", "ss", QVariant(), "éléphant", "ELEPHANT", "", "elephant", "e"})
            QVERIFY(db.exec("insert into ordre values (?)", {w}) && db.exec("insert into melange values (?)", {w}));
        QVERIFY(db.exec("insert into melange values (12)")); // sorts before every text
    }

    void readsInTheProgramsOrder_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QStringList>("words");
        QTest::addRow("whole table, case-insensitive French order")
            << "select * from mot order by mot"
            << QStringList{"avion", "avion", "Bateau", "chemin", "dune", "éclair"};
        QTest::addRow("condition in the program's dialect")
            << "select * from mot where mot like '*a*' order by mot"
            << QStringList{"avion", "avion", "Bateau", "éclair"};
    }

    void readsInTheProgramsOrder()
    {
        QFETCH(QString, source);
        QFETCH(QStringList, words);
        RecordSet set(m_fixture.databasePath(), source);
        QVERIFY2(set.refresh(), qPrintable(set.error()));
        QCOMPARE(set.count(), words.size());
        QStringList seen;
        for (set.moveFirst(); seen.size() < set.count(); set.moveNext())
            seen << set.word();
        QCOMPARE(seen, words);
    }

    // The words are sorted here, not by the engine, yet in the engine's order to the last
    // tie: equal words in rowid order, NULL first, a number before the texts.
    void sortedAsTheEngineSorts_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addRow("every word") << "select * from ordre order by mot";
        QTest::addRow("a condition") << "select * from ordre where mot like '*e*' order by mot";
        QTest::addRow("a number among the words") << "select * from melange order by mot";
    }

    void sortedAsTheEngineSorts()
    {
        QFETCH(QString, source);
        RecordSet set(m_fixture.databasePath(), source);
        QVERIFY2(set.refresh(), qPrintable(set.error()));
        QList<qint64> shown, engine;
        for (set.moveFirst(); shown.size() < set.count(); set.moveNext())
            shown << set.rowid();
        for (const QVariantList &row : m_fixture.database().query(RecordSet::withRowid(source)).rows)
            engine << row.value(0).toLongLong();
        QVERIFY(engine.size() >= 10);
        QCOMPARE(shown, engine);
    }

    // A refresh stands on the first row again and sees what another connection committed,
    // also in write-ahead-log mode, where the engine does not count commits in the file.
    void refreshSeesCommits_data()
    {
        QTest::addColumn<QString>("journal");
        QTest::addRow("rollback journal") << "delete";
        QTest::addRow("write-ahead log") << "wal";
    }

    void refreshSeesCommits()
    {
        QFETCH(QString, journal);
        const QString path = m_fixture.path(journal + ".sqlite");
        WordDatabase other(path, WordDatabase::OpenMode::ReadWriteCreate);
        QVERIFY(other.query("pragma journal_mode = " + journal).ok);
        QVERIFY(other.exec("create table mot (mot TEXT)") && other.exec("insert into mot values ('b'), ('c')"));
        RecordSet set(path, "select * from mot order by mot");
        QVERIFY(set.refresh() && set.moveLast());
        QVERIFY(set.refresh()); // nothing changed
        QVERIFY(set.position() == 0 && set.count() == 2);
        QVERIFY(other.exec("insert into mot values ('a')"));
        QVERIFY(set.refresh());
        QVERIFY(set.position() == 0 && set.count() == 3);
        QCOMPARE(set.word(), QStringLiteral("a"));
    }

    void movesStopAtBothEnds_data()
    {
        QTest::addColumn<QString>("moves"); // F first, P previous, N next, L last, digits: moveTo
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("word");
        QTest::addColumn<bool>("moved"); // what the last move answered
        QTest::addRow("previous at the first row stays") << "P" << 0 << "avion" << false;
        QTest::addRow("next at the last row stays") << "LN" << 5 << "éclair" << false;
        QTest::addRow("absolute position") << "3" << 3 << "chemin" << true;
        QTest::addRow("absolute position past the end stops on the last") << "9" << 5 << "éclair" << false;
    }

    void movesStopAtBothEnds()
    {
        QFETCH(QString, moves);
        QFETCH(int, position);
        QFETCH(QString, word);
        QFETCH(bool, moved);
        RecordSet set(m_fixture.databasePath(), "select * from mot order by mot");
        QVERIFY(set.refresh());
        bool last = true;
        for (QChar m : moves) {
            if (m == 'F')
                last = set.moveFirst();
            else if (m == 'P')
                last = set.movePrevious();
            else if (m == 'N')
                last = set.moveNext();
            else if (m == 'L')
                last = set.moveLast();
            else
                last = set.moveTo(m.digitValue());
        }
        QCOMPARE(set.position(), position);
        QCOMPARE(set.word(), word);
        QCOMPARE(last, moved);
    }

    void missingSourceGivesAnEmptySet_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("ok");
        QTest::addRow("table that does not exist") << "" << "select * from disparue order by mot" << false;
        QTest::addRow("no database file") << "absent.sqlite" << "select * from mot order by mot" << false;
    }

    void missingSourceGivesAnEmptySet()
    {
        QFETCH(QString, database);
        QFETCH(QString, source);
        QFETCH(bool, ok);
        RecordSet set(database.isEmpty() ? m_fixture.databasePath() : m_fixture.path(database), source);
        QCOMPARE(set.refresh(), ok);
        QCOMPARE(set.error().isEmpty(), ok);
        QVERIFY(set.count() == 0 && set.word().isEmpty() && set.rowid() == -1);
        QVERIFY(!set.moveNext() && !set.moveLast());
        QCOMPARE(set.position(), -1);
    }

private:
    testsupport::RefFixture m_fixture;
};

QTEST_GUILESS_MAIN(RecordSetTest)
#include "tst_recordset.moc"
