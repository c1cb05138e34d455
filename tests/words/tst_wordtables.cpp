#include "RefFixture.h"
#include "words/QueryComposer.h"
#include "words/WordDatabase.h"
#include "words/WordFile.h"
#include "words/WordTables.h"

#include <QtTest>

using namespace kelvora;

namespace {

// The words of `table` in the record set's order; NULL shows as "<NULL>".
QStringList wordsOf(WordDatabase &db, const QString &table)
{
    QStringList words;
    const QueryResult r = db.query("select mot from " + table + " order by mot, mot collate binary, rowid");
    for (const QVariantList &row : r.rows)
        words << (row.value(0).isNull() ? QStringLiteral("<NULL>") : row.value(0).toString());
    return words;
}

} // namespace

class WordTablesTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        m_fixture = std::make_unique<testsupport::RefFixture>();
        QVERIFY(m_fixture->isValid());
        QVERIFY(QDir().mkpath(m_fixture->path("import")));
        QVERIFY(m_fixture->database().exec("delete from mot"));
    }

    void importByteRules_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("words");
        QTest::addRow("CR LF lines") << QByteArray("chat\r\nchien\r\n") << QStringList{"chat", "chien"};
        QTest::addRow("last line without CR is lost") << QByteArray("chat\r\nchien") << QStringList{"chat"};
        QTest::addRow("LF alone gives nothing") << QByteArray("chat\nchien\n") << QStringList{};
        QTest::addRow("CR alone eats the next byte") << QByteArray("chat\rchien\r\n") << QStringList{"chat", "hien"};
        QTest::addRow("empty lines and blanks kept") << QByteArray("\r\n  a b \r\n") << QStringList{"", "  a b "};
        QTest::addRow("Windows-1252 accents") << QByteArray("\xe9t\xe9\r\n\x9c" "uf\r\n\x80\r\n")
                                               << QStringList{"été", "œuf", "€"};
        QTest::addRow("undefined byte, NUL, tab") << QByteArray("a\x81z\r\nn\0u\r\nx\ty\r\n", 15)
                                                   << QStringList{QString("a") + QChar(0x81) + "z", QString("n") + QChar(0) + "u", "x\ty"};
    }

    void importByteRules()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, words);
        QStringList parsed;
        QVERIFY(wordFile::forEachWord(bytes, [&parsed](const QString &word, qsizetype) { parsed << word; return true; }));
        QCOMPARE(parsed, words);
    }

    void exportWritesTheRecordOrderInWindows1252()
    {
        fill({"zèbre", " Mot ", "mot", "été", "<NULL>", "😀"});
        WordTables t = tables();
        const WordTables::Export e = t.exportTable("mot");
        QVERIFY2(e.ok, qPrintable(t.errorString()));
        QCOMPARE(QFileInfo(e.path).fileName(), QStringLiteral("mot11-16_013207.txt"));
        QCOMPARE(e.announcedPath, e.path);
        QCOMPARE(e.words, 6);
        // In the record set's order (" Mot " sorts by its blank), trimmed, CR LF, one byte a
        // letter, "?" for what the code page cannot hold; a NULL word is an empty line.
        QCOMPARE(wordsOf(m_fixture->database(), "mot"), (QStringList{"<NULL>", " Mot ", "été", "mot", "zèbre", "😀"}));
        QCOMPARE(testsupport::readFile(e.path), QByteArray("\r\nMot\r\n\xe9t\xe9\r\nmot\r\nz\xe8" "bre\r\n?\r\n"));
        // Exporting an empty table still makes its (empty) file; in the same second, beside
        // the first one, not over it.
        QVERIFY(m_fixture->database().exec("delete from mot"));
        const WordTables::Export empty = t.exportTable("mot");
        QVERIFY(empty.ok && QFileInfo(empty.path).fileName() == "mot11-16_013207_2.txt");
        QCOMPARE(empty.announcedPath, empty.path);
        QCOMPARE(testsupport::readFile(empty.path), QByteArray());
        QCOMPARE(testsupport::readFile(e.path).size(), 27);
    }

    void cleanUps_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<qint64>("changed");
        const QStringList mixed{"a", "", "  ", "<NULL>", "b", "a", "A", "b", "a"};
        QTest::addRow("enlevevide trims, keeps NULL") << "blank" << mixed << QStringList{"<NULL>", "A", "a", "a", "a", "b", "b"} << qint64(2);
        QTest::addRow("blanc: exactly empty, NULL too") << "empty" << mixed << QStringList{"  ", "A", "a", "a", "a", "b", "b"} << qint64(2);
        QTest::addRow("enlevedoublons keeps case and NULL") << "duplicates" << mixed << QStringList{"<NULL>", "", "  ", "A", "a", "b"} << qint64(3);
        // The oldest of the two empty-looking rows stays.
        QTest::addRow("doublons: NULL is the empty word") << "shown duplicates" << mixed << QStringList{"", "  ", "A", "a", "b"} << qint64(4);
        QTest::addRow("correc acc, every occurrence") << "accents" << QStringList{"tr\u00afs", "\u00af\u00afe", "mer"}
                                                     << QStringList{"èèe", "mer", "très"} << qint64(2);
    }

    void cleanUps()
    {
        QFETCH(QString, action);
        QFETCH(QStringList, before);
        QFETCH(QStringList, after);
        QFETCH(qint64, changed);
        fill(before);
        WordTables t = tables();
        const qint64 n = action == "blank" ? t.removeBlankWords("mot")
            : action == "empty"            ? t.removeEmptyWords("mot")
            : action == "duplicates"       ? t.removeDuplicates("mot")
            : action == "shown duplicates" ? t.removeDuplicates("mot", true)
                                           : t.repairAccents("mot");
        QCOMPARE(n, changed);
        QCOMPARE(wordsOf(m_fixture->database(), "mot"), after);
    }

    void createTakesOnlyAPlainName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("made");
        QTest::addRow("plain") << "animaux" << true;
        QTest::addRow("blank inside") << "mes mots" << false;
        QTest::addRow("existing, other case") << "MOT" << false;
        QTest::addRow("ref") << "ref" << false;
        QTest::addRow("second statement") << "x (a); drop table ref; --" << false;
    }

    void createTakesOnlyAPlainName()
    {
        QFETCH(QString, name);
        QFETCH(bool, made);
        WordTables t = tables();
        const QStringList before = t.tables();
        QCOMPARE(t.create(name), made);
        QCOMPARE(t.errorString(), made ? QString() : QStringLiteral("erreur de creation de table"));
        QCOMPARE(t.tables().contains(name), made);
        QCOMPARE(t.tables().size(), before.size() + (made ? 1 : 0));
        QVERIFY(m_fixture->database().query("select count(*) from ref").rows.front().value(0).toInt() > 60);
    }

    void destructiveWorkExportsFirst_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("table");
        QTest::addColumn<bool>("done");
        QTest::addRow("empty mot") << "empty" << "mot" << true;
        QTest::addRow("delete another") << "delete" << "liste" << true;
        QTest::addRow("delete mot is refused") << "delete" << "mot" << false;
        QTest::addRow("delete ref is refused") << "delete" << "ref" << false;
    }

    void destructiveWorkExportsFirst()
    {
        QFETCH(QString, action);
        QFETCH(QString, table);
        QFETCH(bool, done);
        WordTables t = tables();
        QVERIFY(t.create("liste"));
        fill({"un", "deux"}, table == "ref" ? "mot" : table);
        int announced = 0;
        t.setBackupDone([&](const WordTables::Export &) { ++announced; });
        const WordTables::Export e = action == "empty" ? t.empty(table) : t.remove(table);
        QCOMPARE(e.ok, done);
        QCOMPARE(announced, done ? 1 : 0);
        QCOMPARE(t.errorString().isEmpty(), done);
        if (!done) {
            QVERIFY(t.tables().contains("mot") && t.tables().contains("liste"));
            QVERIFY(m_fixture->database().query("select count(*) from ref").rows.front().value(0).toInt() > 60);
            return;
        }
        QCOMPARE(testsupport::readFile(e.path), QByteArray("deux\r\nun\r\n"));
        if (action == "empty")
            QCOMPARE(t.count(table), 0);
        else
            QVERIFY(!t.tables().contains(table));
    }

    void importEndsWithTheCleanUp()
    {
        fill({"b", " "});
        QFile file(m_fixture->path("import/mot.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("a\r\na\r\n\r\nb\r\nlost") > 0);
        file.close();
        WordTables t = tables();
        const WordTables::Import r = t.importFile("mot", file.fileName());
        QVERIFY2(r.ok, qPrintable(t.errorString()));
        QCOMPARE(r.before, 2);
        QCOMPARE(r.after, 2);
        QCOMPARE(wordsOf(m_fixture->database(), "mot"), (QStringList{"a", "b"}));
        QCOMPARE(testsupport::readFile(r.backup.path), QByteArray("\r\nb\r\n")); // before the import
        QCOMPARE(testsupport::readFile(file.fileName()), QByteArray("a\r\na\r\n\r\nb\r\nlost")); // left as it was

        // A missing file imports nothing and makes no file.
        const QString missing = m_fixture->path("import/absent.txt");
        const WordTables::Import none = t.importFile("mot", missing);
        QVERIFY(none.ok && none.fileMissing && none.before == 2 && none.after == 2);
        QVERIFY(!QFile::exists(missing));

        // A word the table refuses, after others: none of them stays.
        QVERIFY(m_fixture->database().exec("create table strict (mot TEXT check (mot <> 'non'))"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("c\r\nnon\r\nd\r\n") > 0);
        file.close();
        QVERIFY(!t.importFile("strict", file.fileName()).ok);
        QVERIFY2(t.errorString().endsWith("La table est restée comme avant l'import."), qPrintable(t.errorString()));
        QCOMPARE(wordsOf(m_fixture->database(), "strict"), QStringList());
    }

    void failedExportLeavesTheTableAlone()
    {
        fill({"garde"});
        QVERIFY(QDir(m_fixture->path("import")).removeRecursively());
        WordTables t = tables();
        QFile file(m_fixture->path("mots.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("x\r\n") > 0);
        file.close();
        for (int action = 0; action < 3; ++action) {
            const bool ok = action == 0 ? t.empty("mot").ok : action == 1 ? t.importFile("mot", file.fileName()).ok
                                                                          : t.exportTable("mot").ok;
            QVERIFY(!ok);
            QVERIFY2(t.errorString().contains(QDir::toNativeSeparators(m_fixture->path("import"))), qPrintable(t.errorString()));
            QCOMPARE(wordsOf(m_fixture->database(), "mot"), QStringList{"garde"});
        }
    }

    void composerPieces_data()
    {
        using queryComposer::Piece;
        QTest::addColumn<int>("piece");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::addRow("letters a b") << int(Piece::HasLetters) << "ab" << "mot like '*a*'  and mot like '*b*' ";
        QTest::addRow("letters escaped") << int(Piece::HasLetters) << "?'" << "mot like '*[?]*'  and mot like '*''*' ";
        QTest::addRow("no letters * #") << int(Piece::LacksLetters) << "*#" << "mot not like '*[*]*'  and mot not like '*[#]*' ";
        QTest::addRow("string, two blanks") << int(Piece::HasString) << "a?" << "mot  like '*a?*'";
        QTest::addRow("starts") << int(Piece::StartsWith) << "ab" << "mot like 'ab*'";
        QTest::addRow("ends") << int(Piece::EndsWith) << "'" << "mot like '*''";
    }

    void composerPieces()
    {
        QFETCH(int, piece);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(queryComposer::piece(queryComposer::Piece(piece), text, "3"), expected);
    }

private:
    WordTables tables();
    void fill(const QStringList &words, const QString &table = "mot");

    std::unique_ptr<testsupport::RefFixture> m_fixture;
    QDateTime m_when{QDate(2026, 11, 16), QTime(1, 32, 7)};
};

WordTables WordTablesTest::tables()
{
    return WordTables(m_fixture->databasePath(), m_fixture->path("import"), [this] { return m_when; });
}

void WordTablesTest::fill(const QStringList &words, const QString &table)
{
    for (const QString &w : words)
        QVERIFY(m_fixture->database().exec("insert into " + table + " (mot) values (?)",
                                           {w == "<NULL>" ? QVariant() : QVariant(w)}));
}

QTEST_GUILESS_MAIN(WordTablesTest)
#include "tst_wordtables.moc"
