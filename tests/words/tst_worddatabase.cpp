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

struct RefRow {
    const char *car;
    const char *cw;
};
const RefRow fixtureRef[] = {
    {"A", ".-"}, {"b", "-..."}, {"e", "."}, {"É", "..-.."}, {"\"", ".-..-."}, {"'", ".----."},
    {"*", "...-.-"}, {"?", "..--.."}, {"+", ".-.-."}, {"Ç", "-.-.."},
};

QString wordsOf(const QueryResult &result)
{
    QStringList words;
    for (const QVariantList &row : result.rows)
        words << row.value(0).toString();
    return words.join(u'|');
}

} // namespace

class TestWordDatabase : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void openModes_data();
    void openModes();
    void conditions_data();
    void conditions();
    void maxRows_data();
    void maxRows();
    void referenceLookup_data();
    void referenceLookup();
    void functions_data();
    void functions();
    void failures_data();
    void failures();
    void oneStatementOnly_data();
    void oneStatementOnly();
    void transactions_data();
    void transactions();
    void cachedStatementSeesChanges_data();
    void cachedStatementSeesChanges();
    void cachedStatementRebinds_data();
    void cachedStatementRebinds();
    void manyDistinctTexts_data();
    void manyDistinctTexts();
    void boundValues_data();
    void boundValues();
    void tableDefinitions_data();
    void tableDefinitions();

private:
    int wordCount();

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<WordDatabase> m_db;
};

// Every test gets a fresh database holding the word table "mot" and the table "ref".
void TestWordDatabase::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_db = std::make_unique<WordDatabase>(m_dir->filePath("kvmot.db"), WordDatabase::OpenMode::ReadWriteCreate);
    QVERIFY2(m_db->isOpen(), qPrintable(m_db->errorString()));
    Transaction fill(*m_db);
    QVERIFY(fill.isActive());
    QVERIFY(m_db->exec("CREATE TABLE mot (mot TEXT );"));
    QVERIFY(m_db->exec("create table ref (car TEXT, cw TEXT, wav TEXT)"));
    for (const QString &word : fixtureWords)
        QVERIFY2(m_db->exec("insert into mot values (?)", {word}), qPrintable(m_db->errorString()));
    for (const RefRow &row : fixtureRef) {
        const QString car = QString::fromUtf8(row.car);
        QVERIFY(m_db->exec("insert into ref (car, cw, wav) values (?, ?, ?)",
                           {car, QString::fromUtf8(row.cw), car + ".wav"}));
    }
    QVERIFY(fill.commit());
}

void TestWordDatabase::cleanup()
{
    m_db.reset();
    m_dir.reset();
}

int TestWordDatabase::wordCount()
{
    const QueryResult result = m_db->query("select count(*) from mot");
    return result.ok ? result.rows.at(0).at(0).toInt() : -1;
}

void TestWordDatabase::openModes_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("file"); // "fixture", "missing" or "not a database"
    QTest::addColumn<bool>("opens");
    QTest::addColumn<bool>("writes");

    const int rw = int(WordDatabase::OpenMode::ReadWrite);
    const int create = int(WordDatabase::OpenMode::ReadWriteCreate);
    const int ro = int(WordDatabase::OpenMode::ReadOnly);
    QTest::newRow("read-write existing") << rw << "fixture" << true << true;
    QTest::newRow("read-write missing") << rw << "missing" << false << false;
    QTest::newRow("create missing") << create << "missing" << true << true;
    QTest::newRow("read-only existing") << ro << "fixture" << true << false;
    QTest::newRow("read-only missing") << ro << "missing" << false << false;
    QTest::newRow("not a database") << rw << "not a database" << false << false;
}

void TestWordDatabase::openModes()
{
    QFETCH(int, mode);
    QFETCH(QString, file);
    QFETCH(bool, opens);
    QFETCH(bool, writes);

    QString path = m_db->path();
    if (file == "missing") {
        path = m_dir->filePath("absente.db");
    } else if (file == "not a database") {
        path = m_dir->filePath("texte.db");
        QFile text(path);
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write(QByteArray(4096, 'x'));
    }
    WordDatabase db(path, WordDatabase::OpenMode(mode));
    QCOMPARE(db.isOpen(), opens);
    QCOMPARE(db.path(), path);
    if (!opens) {
        QVERIFY2(db.errorString().startsWith("Impossible d'ouvrir la base de mots \"" + path + "\" : "),
                 qPrintable(db.errorString()));
        QVERIFY(!db.exec("select 1"));
        QVERIFY(!db.errorString().isEmpty());
        return;
    }
    QVERIFY(db.errorString().isEmpty());
    QCOMPARE(db.exec("create table essai (mot TEXT )"), writes);
    QCOMPARE(db.errorString().isEmpty(), writes);
}

void TestWordDatabase::conditions_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<QString>("expected");

    // The five stock conditions, as the program writes them.
    QTest::newRow("neutral") << "mot like '*'"
                             << "à|abeille|abricot|Ami|Arbre|arc-en-ciel|chat|chien|Écran|été|fête|flûte|"
                                "garçon|île|maïs|ours|pomme|tête|Zèbre";
    QTest::newRow("û or î") << "mot like '*û*' or mot like '*î*'" << "flûte|île";
    QTest::newRow("five letters") << R"(mot like '?????')" << "Arbre|chien|Écran|flûte|pomme|Zèbre";
    QTest::newRow("starting with ab") << "mot like 'ab*'" << "abeille|abricot";
    QTest::newRow("no accent nor hyphen")
        << "mot not like '*é*' and mot not like '*è*'and mot not like '*ê*'and mot not like '*ç*'and mot "
           "not like '*-*'and mot not like '*ë*'and mot not like '*ï*'and mot not like '*ô*'and mot not "
           "like '*â*'and mot not like '*î*'and mot not like '*û*'and mot not like '*à*' "
        << "abeille|abricot|Ami|Arbre|chat|chien|ours|pomme";

    // What the query window composes.
    QTest::newRow("length between 3 and 5")
        << "len(mot) >= 3 and len(mot) <= 5 "
        << "Ami|Arbre|chat|chien|Écran|été|fête|flûte|île|maïs|ours|pomme|tête|Zèbre";
    QTest::newRow("containing letters") << "mot like '*a*'  and mot like '*b*' " << "abeille|abricot|Arbre";
    QTest::newRow("two blanks after mot") << "mot  like '*ç*'" << "garçon";
    QTest::newRow("ending with") << "mot like '*te'" << "fête|flûte|tête";
    QTest::newRow("sets of letters") << "mot like '[aeiou][a-z][a-z]'" << "Ami";
    QTest::newRow("accented letters are not in a plain set") << R"(mot like '[!aeiou]??')" << "été|île";
    QTest::newRow("set of letters any case") << "mot like '[a-c]*' and len(mot) = 4" << "chat";

    // Case-insensitive but accent-sensitive comparisons.
    QTest::newRow("equal other case") << "mot = 'ARBRE'" << "Arbre";
    QTest::newRow("equal accented capitals") << R"(mot = "ÉTÉ")" << "été";
    QTest::newRow("accents matter") << "mot = 'ete'" << "";
    QTest::newRow("French order in comparisons") << "mot > 'tête'" << "Zèbre";
    QTest::newRow("different") << "mot <> 'À' and mot < 'abf'" << "abeille";
    QTest::newRow("functions in a condition") << "left(mot, 2) = 'AB' or right(mot, 3) = 'ête'" << "abeille|abricot|fête|tête";
    QTest::newRow("mid") << "mid(mot, 2, 2) = 'BR'" << "abricot";
    QTest::newRow("lcase") << "lcase(mot) = 'zèbre'" << "Zèbre";
}

void TestWordDatabase::conditions()
{
    QFETCH(QString, condition);
    QFETCH(QString, expected);
    const QueryResult result = m_db->query("select * from mot where " + condition + " order by mot");
    QVERIFY2(result.ok, qPrintable(result.error));
    QCOMPARE(result.columns, QStringList{"mot"});
    QCOMPARE(wordsOf(result), expected);
}

void TestWordDatabase::maxRows_data()
{
    QTest::addColumn<int>("maxRows");
    QTest::addColumn<QString>("expected");

    QTest::newRow("all") << -1 << "abeille|abricot|Ami|Arbre|arc-en-ciel";
    QTest::newRow("none") << 0 << "";
    QTest::newRow("first") << 1 << "abeille";
    QTest::newRow("first three") << 3 << "abeille|abricot|Ami";
    QTest::newRow("more than there are") << 100 << "abeille|abricot|Ami|Arbre|arc-en-ciel";
}

void TestWordDatabase::maxRows()
{
    QFETCH(int, maxRows);
    QFETCH(QString, expected);
    const QString sql = "select * from mot where mot like 'a*' order by mot";
    const QueryResult result = m_db->query(sql, {}, maxRows);
    QVERIFY2(result.ok, qPrintable(result.error));
    QCOMPARE(wordsOf(result), expected);
    QCOMPARE(wordsOf(m_db->query(sql)), QString("abeille|abricot|Ami|Arbre|arc-en-ciel")); // cut short, then whole
}

void TestWordDatabase::referenceLookup_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<QString>("pattern");

    QTest::newRow("small letter of a capital row") << "a" << ".-";
    QTest::newRow("capital letter of a capital row") << "A" << ".-";
    QTest::newRow("capital letter of a small row") << "B" << "-...";
    QTest::newRow("double quote") << "\"" << ".-..-.";
    QTest::newRow("apostrophe") << "'" << ".----.";
    QTest::newRow("accented small of a capital row") << "é" << "..-..";
    QTest::newRow("accented capital") << "É" << "..-..";
    QTest::newRow("plain e is not é") << "e" << ".";
    QTest::newRow("cedilla") << "ç" << "-.-..";
    QTest::newRow("star is no wildcard") << "*" << "...-.-";
    QTest::newRow("question mark") << "?" << "..--..";
    QTest::newRow("missing character") << "z" << "";
}

// The lookup as the sound renderer builds it: lower case, a double quote doubled.
void TestWordDatabase::referenceLookup()
{
    QFETCH(QString, character);
    QFETCH(QString, pattern);
    QString c = character.toLower();
    if (c == "\"")
        c = "\"\"";
    const QString sql = "select car, cw, wav from ref where car = \"" + c + "\" order by car";
    for (int pass = 0; pass < 2; ++pass) { // the second run comes from the statement cache
        const QueryResult result = m_db->query(sql);
        QVERIFY2(result.ok, qPrintable(result.error));
        QCOMPARE(result.columns, (QStringList{"car", "cw", "wav"}));
        QCOMPARE(result.rows.empty() ? QString() : result.rows.front().at(1).toString(), pattern);
        QCOMPARE(result.rows.size(), size_t(pattern.isEmpty() ? 0 : 1));
    }
}

void TestWordDatabase::functions_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("len accents") << "len('été')" << QVariant(3);
    QTest::newRow("len emoji") << "len('a\xf0\x9f\x98\x80')" << QVariant(2);
    QTest::newRow("len empty") << "len('')" << QVariant(0);
    QTest::newRow("len null") << "len(null)" << QVariant();
    QTest::newRow("lcase") << "lcase('ÉTÉ Ça')" << QVariant("été ça");
    QTest::newRow("ucase") << "ucase('île')" << QVariant("ÎLE");
    QTest::newRow("trim blanks only") << "trim('  a b\t ')" << QVariant("a b\t");
    QTest::newRow("left") << "left('éléphant', 3)" << QVariant("élé");
    QTest::newRow("left beyond") << "left('abc', 10)" << QVariant("abc");
    QTest::newRow("right") << "right('éléphant', 4)" << QVariant("hant");
    QTest::newRow("right accents") << "right('café', 2)" << QVariant("fé");
    QTest::newRow("mid with length") << "mid('éléphant', 2, 3)" << QVariant("lép");
    QTest::newRow("mid to the end") << "mid('éléphant', 4)" << QVariant("phant");
    QTest::newRow("mid past the end") << "mid('abc', 5)" << QVariant("");
    QTest::newRow("like is case-insensitive") << "'ÉTÉ' like 'é*'" << QVariant(1);
    QTest::newRow("not like") << "'ete' not like '*é*'" << QVariant(1);
    QTest::newRow("like with null") << "null like '*'" << QVariant();
}

void TestWordDatabase::functions()
{
    QFETCH(QString, expression);
    QFETCH(QVariant, expected);
    const QueryResult result = m_db->query("select " + expression);
    QVERIFY2(result.ok, qPrintable(result.error));
    const QVariant value = result.rows.at(0).at(0);
    QCOMPARE(value.isNull(), expected.isNull());
    if (!expected.isNull())
        QCOMPARE(value.toString(), expected.toString());
}

void TestWordDatabase::failures_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QString>("inError");

    QTest::newRow("unclosed bracket") << "select * from mot where mot like '[abc' order by mot" << QVariantList{} << "Motif";
    QTest::newRow("unclosed bracket in not like") << "select * from mot where mot not like 'a[*'" << QVariantList{} << "Motif";
    QTest::newRow("reversed range") << "select * from mot where mot like '[z-a]*'" << QVariantList{} << "Motif";
    QTest::newRow("escape") << "select * from mot where mot like 'a!*' escape '!'" << QVariantList{} << "ESCAPE";
    QTest::newRow("negative length") << "select left(mot, -1) from mot" << QVariantList{} << "Argument incorrect pour left";
    QTest::newRow("mid from 0") << "select mid(mot, 0) from mot" << QVariantList{} << "Argument incorrect pour mid";
    QTest::newRow("condition ending with a connective")
        << "select * from mot where mot like 'a*' and order by mot" << QVariantList{} << "a échoué";
    QTest::newRow("missing table") << "select * from absente order by mot" << QVariantList{} << "absente";
    QTest::newRow("empty") << "   " << QVariantList{} << "vide";
    QTest::newRow("too many values") << "select * from mot where mot = 'a'" << QVariantList{1} << "valeur";
    QTest::newRow("too few values") << "select * from mot where mot = ? or mot = ?" << QVariantList{1} << "valeur";
}

void TestWordDatabase::failures()
{
    QFETCH(QString, sql);
    QFETCH(QVariantList, values);
    QFETCH(QString, inError);
    const QueryResult result = m_db->query(sql, values);
    QVERIFY(!result.ok);
    QVERIFY(result.rows.empty());
    QVERIFY2(result.error.contains(inError), qPrintable(result.error));
    QCOMPARE(m_db->errorString(), result.error);
    QVERIFY(!m_db->exec(sql, values));
    // The connection goes on working.
    QCOMPARE(wordCount(), int(fixtureWords.size()));
    QVERIFY(m_db->errorString().isEmpty());
}

void TestWordDatabase::oneStatementOnly_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("two inserts") << "insert into mot values ('x'); insert into mot values ('y')" << false;
    QTest::newRow("insert then drop") << "insert into mot values ('x');drop table mot" << false;
    QTest::newRow("after empty statements") << "insert into mot values ('x');; select 1" << false;
    QTest::newRow("second one invalid") << "insert into mot values ('x'); n'importe quoi" << false;
    QTest::newRow("semicolon inside a literal") << "insert into mot values ('x; drop table mot')" << true;
    QTest::newRow("trailing semicolon") << "insert into mot values ('x');" << true;
    QTest::newRow("trailing comment") << "insert into mot values ('x'); -- fin" << true;
}

void TestWordDatabase::oneStatementOnly()
{
    QFETCH(QString, sql);
    QFETCH(bool, accepted);
    QCOMPARE(m_db->exec(sql), accepted);
    QCOMPARE(m_db->errorString().isEmpty(), accepted);
    QCOMPARE(wordCount(), int(fixtureWords.size()) + (accepted ? 1 : 0));
    QCOMPARE(m_db->query(sql).ok, accepted);
}

void TestWordDatabase::transactions_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<int>("added");

    QTest::newRow("guard committed") << "guard commit" << 2;
    QTest::newRow("guard left without commit") << "guard" << 0;
    QTest::newRow("explicit commit") << "commit" << 2;
    QTest::newRow("explicit rollback") << "rollback" << 0;
}

void TestWordDatabase::transactions()
{
    QFETCH(QString, ending);
    QFETCH(int, added);
    if (ending.startsWith("guard")) {
        Transaction guard(*m_db);
        QVERIFY(guard.isActive());
        QVERIFY(m_db->exec("insert into mot values ('nouveau')"));
        QVERIFY(m_db->exec("insert into mot values (?)", {"autre"}));
        QCOMPARE(wordCount(), int(fixtureWords.size()) + 2);
        if (ending == "guard commit") {
            QVERIFY(guard.commit());
            QVERIFY(!guard.isActive());
        }
    } else {
        QVERIFY(m_db->transaction());
        QVERIFY(m_db->exec("insert into mot values ('nouveau')"));
        QVERIFY(m_db->exec("delete from mot where mot = 'ARBRE'"));
        QVERIFY(m_db->exec("insert into mot values ('Arbre')"));
        QVERIFY(m_db->exec("insert into mot values (?)", {"autre"}));
        QVERIFY(ending == "commit" ? m_db->commit() : m_db->rollback());
    }
    QCOMPARE(wordCount(), int(fixtureWords.size()) + added);
    // What another connection sees is what was committed.
    WordDatabase other(m_db->path(), WordDatabase::OpenMode::ReadOnly);
    QCOMPARE(other.query("select count(*) from mot").rows.at(0).at(0).toInt(), int(fixtureWords.size()) + added);
    QVERIFY(!m_db->commit()); // nothing left open
}

void TestWordDatabase::cachedStatementSeesChanges_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("after");

    QTest::newRow("update") << "update mot set mot = 'abricots' where mot = 'abricot'" << "abeille|abricots";
    QTest::newRow("insert") << "insert into mot values ('Abaque')" << "Abaque|abeille|abricot";
    QTest::newRow("delete") << "delete from mot where mot like 'abe*'" << "abricot";
    QTest::newRow("table rebuilt") << "drop table mot" << "";
}

void TestWordDatabase::cachedStatementSeesChanges()
{
    QFETCH(QString, change);
    QFETCH(QString, after);
    const QString sql = "select * from mot where mot like 'ab*' order by mot";
    QCOMPARE(wordsOf(m_db->query(sql)), QString("abeille|abricot"));
    QVERIFY2(m_db->exec(change), qPrintable(m_db->errorString()));
    if (change.startsWith("drop")) {
        QVERIFY(!m_db->query(sql).ok);
        QVERIFY(m_db->exec("CREATE TABLE mot (mot TEXT );"));
    }
    const QueryResult again = m_db->query(sql);
    QVERIFY2(again.ok, qPrintable(again.error));
    QCOMPARE(wordsOf(again), after);
}

void TestWordDatabase::cachedStatementRebinds_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("words") << "select mot from mot where mot = ? order by mot"
                           << QStringList{"ARBRE", "été", "zzz", "arbre"} << QStringList{"Arbre", "été", "", "Arbre"};
    QTest::newRow("patterns") << "select mot from mot where mot like ? order by mot"
                              << QStringList{"ab*", "*û*", "?", "[!a-z]*"}
                              << QStringList{"abeille|abricot", "flûte", "à", ""};
}

void TestWordDatabase::cachedStatementRebinds()
{
    QFETCH(QString, sql);
    QFETCH(QStringList, values);
    QFETCH(QStringList, expected);
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QueryResult result = m_db->query(sql, {values[i]});
        QVERIFY2(result.ok, qPrintable(result.error));
        QCOMPARE(wordsOf(result), expected[i]);
    }
}

void TestWordDatabase::manyDistinctTexts_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("few") << 10;
    QTest::newRow("more than the cache holds") << 400;
}

// Statements that leave the cache and come back must still give their own answer.
void TestWordDatabase::manyDistinctTexts()
{
    QFETCH(int, count);
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < count; ++i) {
            const int n = round == 1 ? count - 1 - i : (i * 7) % count;
            const QueryResult result = m_db->query(QString("select %1, car from ref where car = \"a\"").arg(n));
            QVERIFY2(result.ok, qPrintable(result.error));
            QCOMPARE(result.rows.at(0).at(0).toInt(), n);
            QCOMPARE(result.rows.at(0).at(1).toString(), QString("A"));
        }
    }
}

void TestWordDatabase::boundValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("stored");

    QTest::newRow("null") << QVariant() << QVariant();
    QTest::newRow("int") << QVariant(42) << QVariant(qlonglong(42));
    QTest::newRow("long long") << QVariant(qlonglong(1) << 40) << QVariant(qlonglong(1) << 40);
    QTest::newRow("bool") << QVariant(true) << QVariant(qlonglong(1));
    QTest::newRow("double") << QVariant(2.5) << QVariant(2.5);
    QTest::newRow("text") << QVariant(QString("élan 😀")) << QVariant(QString("élan 😀"));
    QTest::newRow("empty text") << QVariant(QString("")) << QVariant(QString(""));
    QTest::newRow("bytes") << QVariant(QByteArray("a\0b\xff", 4)) << QVariant(QByteArray("a\0b\xff", 4));
}

void TestWordDatabase::boundValues()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, stored);
    QVERIFY(m_db->exec("create table v (x)"));
    QVERIFY2(m_db->exec("insert into v values (?)", {value}), qPrintable(m_db->errorString()));
    const QueryResult result = m_db->query("select x, typeof(x) from v");
    QVERIFY(result.ok);
    const QVariant back = result.rows.at(0).at(0);
    QCOMPARE(back.isNull(), stored.isNull());
    if (!stored.isNull()) {
        QCOMPARE(back.typeId(), stored.typeId());
        QCOMPARE(back, stored);
    }
}

void TestWordDatabase::tableDefinitions_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("engineTable");

    QTest::newRow("0") << 0 << "animaux" << false;
    QTest::newRow("1") << 1 << "compteur" << false;
    QTest::newRow("2") << 2 << "mot" << false;
    QTest::newRow("3") << 3 << "ref" << false;
    QTest::newRow("4") << 4 << "sqlite_sequence" << true;
    QTest::newRow("5") << 5 << "sqlite_stat1" << true;
    QTest::newRow("6") << 6 << "Zoo" << false;
}

void TestWordDatabase::tableDefinitions()
{
    QFETCH(int, index);
    QFETCH(QString, name);
    QFETCH(bool, engineTable);
    QVERIFY(m_db->exec("CREATE TABLE Zoo (mot TEXT );"));
    QVERIFY(m_db->exec("CREATE TABLE animaux (mot TEXT );"));
    QVERIFY(m_db->exec("create table compteur (id integer primary key autoincrement, mot TEXT)"));
    QVERIFY(m_db->exec("insert into compteur (mot) values ('x')"));
    QVERIFY(m_db->exec("create index compteur_mot on compteur (mot)"));
    QVERIFY(m_db->exec("create view vue as select mot from mot"));
    QVERIFY(m_db->exec("analyze"));

    const std::vector<TableDefinition> tables = m_db->tableDefinitions();
    QCOMPARE(tables.size(), size_t(7));
    QCOMPARE(tables.at(size_t(index)).name, name);
    QCOMPARE(tables.at(size_t(index)).attributes != 0, engineTable);
    // The same order every time.
    const std::vector<TableDefinition> again = m_db->tableDefinitions();
    QCOMPARE(again.at(size_t(index)).name, name);
}

QTEST_GUILESS_MAIN(TestWordDatabase)
#include "tst_worddatabase.moc"
