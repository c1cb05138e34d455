#include "words/QueryDialect.h"

#include <QtTest>

using namespace kelvora;

class TestQueryDialect : public QObject {
    Q_OBJECT
private slots:
    void translate_data();
    void translate();
};

void TestQueryDialect::translate_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("sqlite");

    // Character lookups of the sound renderer.
    QTest::newRow("lookup")
        << R"(select car, cw, wav from ref where car = "a" order by car)"
        << R"(select car, cw, wav from ref where car = 'a' COLLATE KVFR order by car COLLATE KVFR)";
    QTest::newRow("lookup of a double quote") << R"(car = """")" << R"(car = '"' COLLATE KVFR)";

    // Word table sources with the stock conditions: only the order gets a collation.
    QTest::newRow("neutral condition")
        << "select * from mot where mot like '*' order by mot"
        << "select * from mot where mot like '*' order by mot COLLATE KVFR";
    QTest::newRow("double-quoted pattern") << R"(mot like "*'*")" << R"(mot like '*''*')";

    // Comparisons.
    QTest::newRow("all comparison operators")
        << "a = 'x' or a == 'x' or a <> 'x' or a != 'x' or a < 'x' or a > 'x' or a <= 'x' or a >= 'x'"
        << "a = 'x' COLLATE KVFR or a == 'x' COLLATE KVFR or a <> 'x' COLLATE KVFR or a != 'x' COLLATE KVFR"
           " or a < 'x' COLLATE KVFR or a > 'x' COLLATE KVFR or a <= 'x' COLLATE KVFR or a >= 'x' COLLATE KVFR";
    QTest::newRow("no blank after the literal") << "mot='a'and x=1" << "mot='a' COLLATE KVFR and x=1";
    QTest::newRow("collation already given") << "mot = 'a' collate nocase" << "mot = 'a' collate nocase";

    // Strings, identifiers, functions.
    QTest::newRow("double quotes with an apostrophe")
        << R"(insert into mot values ("l'arbre"))" << R"(insert into mot values ('l''arbre'))";
    QTest::newRow("left and right")
        << "select left(mot, 2), Right (mot,1) from t left join u on 1"
        << "select jet_left(mot, 2), jet_right (mot,1) from t left join u on 1";
    QTest::newRow("literals never rewritten")
        << R"(select 'order by x = [y]', "[mot] = ""a""" from t)"
        << R"(select 'order by x = [y]', '[mot] = "a"' from t)";
    QTest::newRow("comments never rewritten")
        << "select 1 -- \"x\" [y] = 'z'\n, 2 /* order by a */"
        << "select 1 -- \"x\" [y] = 'z'\n, 2 /* order by a */";

    // Order by lists.
    QTest::newRow("sub-query")
        << R"(select * from (select mot from t order by mot) where mot > "m")"
        << "select * from (select mot from t order by mot COLLATE KVFR) where mot > 'm' COLLATE KVFR";

    // Everything else as it is.
}

void TestQueryDialect::translate()
{
    QFETCH(QString, program);
    QFETCH(QString, sqlite);
    QCOMPARE(queryDialect::translate(program), sqlite);
}

QTEST_GUILESS_MAIN(TestQueryDialect)
#include "tst_querydialect.moc"
