#include "words/Transaction.h"
#include "words/WordDatabase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace kelvora;

namespace {

const QStringList fixtureWords = {
    "pomme", "Zèbre", "abricot", "Arbre", "été", "flûte", "île", "maïs", "garçon", "arc-en-ciel",
    "chien", "chat", "ours", "Ami", "tête", "à", "fête", "abeille", "Écran",
};
// Reference rows (car, cw).
const QStringList fixtureRef = {"a", ".-", "b", "-...", "e", "."};

QString wordsOf(const QueryResult &result)
{
    QStringList words;
    for (const QVariantList &row : result.rows)
        words << row.value(0).toString();
    return words.join(u'|');
}

int wordCount(WordDatabase &db)
{
    const QueryResult result = db.query("select count(*) from mot");
    return result.ok ? result.rows.at(0).at(0).toInt() : -1;
}

} // namespace

class TestWordDatabase : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<WordDatabase> m_db;
    const int fixtureCount = int(fixtureWords.size());

private slots:
    // Every test gets a fresh database holding the word table "mot" and the table "ref".
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_db = std::make_unique<WordDatabase>(m_dir->filePath("kvmot.db"), WordDatabase::OpenMode::ReadWriteCreate);
        QVERIFY2(m_db->isOpen(), qPrintable(m_db->errorString()));
        Transaction fill(*m_db);
        QVERIFY(m_db->exec("CREATE TABLE mot (mot TEXT );"));
        QVERIFY(m_db->exec("create table ref (car TEXT, cw TEXT, wav TEXT)"));
        for (const QString &word : fixtureWords)
            QVERIFY(m_db->exec("insert into mot values (?)", {word}));
        for (qsizetype i = 0; i < fixtureRef.size(); i += 2)
            QVERIFY(m_db->exec("insert into ref values (?, ?, ?)",
                               {fixtureRef[i], fixtureRef[i + 1], fixtureRef[i] + ".wav"}));
        QVERIFY(fill.commit());
    }
    void cleanup() { m_db.reset(); }

    void openModes_data()
    {
        QTest::addColumn<WordDatabase::OpenMode>("mode");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("opens");
        QTest::addColumn<bool>("writes");
        using M = WordDatabase::OpenMode;
        QTest::newRow("read-write existing") << M::ReadWrite << "kvmot.db" << true << true;
        QTest::newRow("create missing") << M::ReadWriteCreate << "absente.db" << true << true;
        QTest::newRow("read-only existing") << M::ReadOnly << "kvmot.db" << true << false;
        QTest::newRow("not a database") << M::ReadWrite << "texte.db" << false << false;
    }
    void openModes()
    {
        QFETCH(WordDatabase::OpenMode, mode);
        QFETCH(QString, file);
        QFETCH(bool, opens);
        QFETCH(bool, writes);
        const QString path = m_dir->filePath(file);
        QFile text(path);
        if (file == "texte.db")
            QVERIFY(text.open(QIODevice::WriteOnly) && text.write(QByteArray(4096, 'x')) == 4096 && text.flush());
        WordDatabase db(path, mode);
        QCOMPARE(db.isOpen(), opens);
        if (!opens)
            QVERIFY2(db.errorString().startsWith("Impossible d'ouvrir la base de mots \"" + path + "\" : "),
                     qPrintable(db.errorString()));
        QCOMPARE(db.exec("create table essai (mot TEXT )"), writes);
        QCOMPARE(db.errorString().isEmpty(), writes);
        // A later statement still says why the base is not open.
        if (!opens)
            QVERIFY2(db.errorString().contains(file == "texte.db" ? "n'est pas ouverte : ce fichier n'est pas une base de données"
                                                                 : "n'est pas ouverte : le fichier est absent"),
                     qPrintable(db.errorString()));
    }

    void conditions_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("expected");
        // The five stock conditions, as the program writes them.
        QTest::newRow("neutral") << "mot like '*'"
                                 << "à|abeille|abricot|Ami|Arbre|arc-en-ciel|chat|chien|Écran|été|fête|flûte|"
                                    "garçon|île|maïs|ours|pomme|tête|Zèbre";
        QTest::newRow("five letters") << R"(mot like '?????')" << "Arbre|chien|Écran|flûte|pomme|Zèbre";
        // What the query window composes.
        // Case-insensitive, accent-sensitive comparisons in French order.
        QTest::newRow("equal other case") << "mot = 'ARBRE'" << "Arbre";
        QTest::newRow("accents matter") << "mot = 'ete'" << "";
        QTest::newRow("French order") << "mot > 'tête'" << "Zèbre";
        QTest::newRow("left, right") << "left(mot, 2) = 'AB' or right(mot, 3) = 'ête'"
                                     << "abeille|abricot|fête|tête";
        QTest::newRow("lcase, ucase") << "lcase(mot) = 'écran' or ucase(mot) = 'CHAT'" << "chat|Écran";
    }
    void conditions()
    {
        QFETCH(QString, condition);
        QFETCH(QString, expected);
        const QueryResult result = m_db->query("select * from mot where " + condition + " order by mot");
        QVERIFY2(result.ok, qPrintable(result.error));
        QCOMPARE(wordsOf(result), expected);
    }

    void statements_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QVariantList>("values");
        QTest::addColumn<QString>("error"); // empty: accepted, one word added
        const QVariantList none;
        QTest::newRow("unclosed bracket") << "select * from mot where mot like '[abc'" << none << "Motif";
        QTest::newRow("ends with a connective") << "select * from mot where mot like 'a*' and" << none << "a échoué";
        QTest::newRow("empty") << "   " << none << "vide";
        QTest::newRow("two inserts") << "insert into mot values ('x'); insert into mot values ('y')" << none << "Une seule";
        QTest::newRow("semicolon inside a literal") << "insert into mot values ('x; drop table mot')" << none << "";
        QTest::newRow("trailing semicolons, comment") << "insert into mot values (?);; -- fin" << QVariantList{"x"} << "";
    }
    void statements()
    {
        QFETCH(QString, sql);
        QFETCH(QVariantList, values);
        QFETCH(QString, error);
        QCOMPARE(m_db->exec(sql, values), error.isEmpty());
        QVERIFY2(error.isEmpty() ? m_db->errorString().isEmpty() : m_db->errorString().contains(error),
                 qPrintable(m_db->errorString()));
        QCOMPARE(wordCount(*m_db), fixtureCount + (error.isEmpty() ? 1 : 0)); // refused: nothing ran
        if (error.isEmpty())
            return;
        const QueryResult result = m_db->query(sql, values);
        QVERIFY(!result.ok && result.rows.empty() && result.error.contains(error));
        QCOMPARE(m_db->errorString(), result.error);
        QCOMPARE(wordCount(*m_db), fixtureCount); // the connection goes on working
        QVERIFY(m_db->errorString().isEmpty());
    }

    void transactions_data()
    {
        QTest::addColumn<bool>("commit");
        QTest::newRow("committed") << true;
        QTest::newRow("left without commit") << false;
    }
    void transactions()
    {
        QFETCH(bool, commit);
        WordDatabase other(m_db->path(), WordDatabase::OpenMode::ReadOnly);
        {
            Transaction scope(*m_db);
            QVERIFY(scope.isActive());
            QVERIFY(m_db->exec("insert into mot values ('nouveau'), (?)", {"autre"}));
            QCOMPARE(wordCount(*m_db), fixtureCount + 2);
            QCOMPARE(wordCount(other), fixtureCount); // not yet seen elsewhere
            QCOMPARE(wordsOf(other.query("select * from mot order by mot", {}, 1)), QString("à")); // holds nothing
            if (commit)
                QVERIFY(scope.commit() && !scope.isActive());
        }
        QCOMPARE(wordCount(*m_db), fixtureCount + (commit ? 2 : 0));
        QCOMPARE(wordCount(other), fixtureCount + (commit ? 2 : 0));
        QVERIFY(!m_db->commit()); // nothing left open
    }

    void cacheSeesChanges_data()
    {
        QTest::addColumn<QString>("change"); // "evict": push the statement out of the cache
        QTest::addColumn<QString>("pattern"); // bound the second time
        QTest::addColumn<QString>("after");
        QTest::newRow("update") << "update mot set mot = 'abricots' where mot = 'abricot'" << "ab*" << "abeille|abricots";
        QTest::newRow("delete") << "delete from mot where mot like 'abe*'" << "ab*" << "abricot";
        QTest::newRow("table rebuilt") << "drop table mot" << "ab*" << "";
        QTest::newRow("evicted") << "evict" << "ab*" << "abeille|abricot";
    }
    void cacheSeesChanges()
    {
        QFETCH(QString, change);
        QFETCH(QString, pattern);
        QFETCH(QString, after);
        const QString sql = "select * from mot where mot like ? order by mot";
        QCOMPARE(wordsOf(m_db->query(sql, {"ab*"}, 1)), QString("abeille")); // cut short, then whole
        QCOMPARE(wordsOf(m_db->query(sql, {"ab*"})), QString("abeille|abricot"));
        for (int i = 0; change == "evict" && i < 300; ++i)
            QCOMPARE(m_db->query(QString("select %1, cw from ref where car = 'a'").arg(i)).rows,
                     (std::vector<QVariantList>{{qlonglong(i), ".-"}}));
        QVERIFY2(change.isEmpty() || change == "evict" || m_db->exec(change), qPrintable(m_db->errorString()));
        if (change.startsWith("drop"))
            QVERIFY(!m_db->query(sql, {"ab*"}).ok && m_db->exec("CREATE TABLE mot (mot TEXT );"));
        const QueryResult again = m_db->query(sql, {pattern});
        QVERIFY2(again.ok, qPrintable(again.error));
        QCOMPARE(wordsOf(again), after);
    }

    // A condition typed by the user reads the current table and nothing else.
    void userConditions_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<int>("count"); // -1: refused
        QTest::newRow("the table's own words") << "mot like 'a*'" << 5;
        QTest::newRow("a function of the dialect") << "len(mot) = 1" << 1;
        QTest::newRow("the table read again") << "mot in (select mot from mot where mot like 'é*')" << 2;
        QTest::newRow("another table") << "mot in (select car from ref)" << -1;
        QTest::newRow("the engine's table") << "exists (select 1 from sqlite_master)" << -1;
        QTest::newRow("a second statement") << "1; delete from mot" << -1;
        QTest::newRow("attach") << "1; attach database 'x.db' as x" << -1;
        QTest::newRow("pragma function") << "mot in (select name from pragma_table_info('ref'))" << -1;
        QTest::newRow("recursion") << "mot in (with recursive c(x) as (select 1 union all select x+1 from c) select x from c)" << -1;
    }
    void userConditions()
    {
        QFETCH(QString, condition);
        QFETCH(int, count);
        m_db->readOnly("mot");
        const QueryResult r = m_db->query("select * from mot where " + condition);
        m_db->readAnything();
        QCOMPARE(r.ok ? int(r.rows.size()) : -1, count);
        // Nothing was changed, and the program's own statements work as before.
        QCOMPARE(wordCount(*m_db), fixtureCount);
        QCOMPARE(m_db->query("select count(*) from ref").rows.at(0).at(0).toInt(), int(fixtureRef.size() / 2));
        QVERIFY(m_db->tableDefinitions().size() == 2);
    }
    void guardedStatementIsNotReusedUnguarded()
    {
        const QString sql = "select count(*) from ref";
        m_db->readOnly("mot");
        QVERIFY(!m_db->query(sql).ok);
        m_db->readAnything();
        QVERIFY(m_db->query(sql).ok);
        m_db->readOnly("mot");
        QVERIFY(!m_db->query(sql).ok); // refused again, not served from the cache
        m_db->readAnything();
    }

    void writes_data()
    {
        QTest::addColumn<bool>("workSucceeds");
        QTest::newRow("whole") << true;
        QTest::newRow("a failing step undoes the others") << false;
    }
    void writes()
    {
        QFETCH(bool, workSucceeds);
        const bool written = m_db->write([&](WordDatabase &db) {
            return db.exec("insert into mot values ('un')") && db.exec("insert into mot values ('deux')")
                   && (workSucceeds || db.exec("insert into nulle values ('trois')"));
        });
        QCOMPARE(written, workSucceeds);
        // The cause of a failure is kept, not the rollback's outcome.
        QCOMPARE(m_db->errorString().contains("nulle"), !workSucceeds);
        QCOMPARE(wordCount(*m_db), fixtureCount + (workSucceeds ? 2 : 0));
    }

    void tableNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("usable");
        QTest::newRow("plain") << "mot" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("blank inside") << "mes mots" << false;
        QTest::newRow("statement") << "mot; drop table ref" << false;
        QTest::newRow("engine table") << "sqlite_master" << false;
    }
    void tableNames()
    {
        QFETCH(QString, name);
        QFETCH(bool, usable);
        QCOMPARE(WordDatabase::isTableName(name), usable);
    }

    void tableDefinitions() // in the engine's order, '*' marking its own tables
    {
        for (const char *sql : {"CREATE TABLE Zoo (mot TEXT );", "CREATE TABLE animaux (mot TEXT );",
                                "create table compteur (id integer primary key autoincrement, mot TEXT)",
                                "insert into compteur (mot) values ('x')", "create index i on compteur (mot)",
                                "create view vue as select mot from mot", "analyze"})
            QVERIFY2(m_db->exec(sql), qPrintable(m_db->errorString()));
        for (int pass = 0; pass < 2; ++pass) { // the same every time
            QStringList names;
            for (const TableDefinition &table : m_db->tableDefinitions())
                names << table.name + (table.attributes ? "*" : "");
            QCOMPARE(names.join(u'|'), QString("animaux|compteur|mot|ref|sqlite_sequence*|sqlite_stat1*|Zoo"));
        }
    }
};

QTEST_GUILESS_MAIN(TestWordDatabase)
#include "tst_worddatabase.moc"
