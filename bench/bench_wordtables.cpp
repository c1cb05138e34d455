// The word tables on a large list: the ~346,000 words of Debian's wfrench list
// (/usr/share/dict/french) written as a CR LF Windows-1252 word file, then
//   import  — WordTables::importFile into an empty table: backup export, the words added,
//             blank and duplicate words removed, in one transaction;
//   export  — WordTables::exportTable of that table: sorted, Windows-1252, CR LF, flushed
//             to disk and renamed into place;
//   count   — WordTables::count with the condition "mot like 'a*e'";
//   open    — the main window's record set and the editor's grid on that table, and the
//             record set refreshed with nothing changed (the window made active again);
// each beside the same work done by the sqlite3 library with plain SQL in the same run
// (INSERT in one transaction, DELETE of blanks and duplicates; SELECT ... ORDER BY with
// the same file written and flushed; LIKE 'a%e').
// Run: build/bench/bench_wordtables
#include "core/Windows1252.h"
#include "ui/WordGridModel.h"
#include "words/RecordSet.h"
#include "words/WordDatabase.h"
#include "words/WordTables.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <cstdio>
#include <unistd.h>

using namespace kelvora;

namespace {

struct Scratch {
    QTemporaryDir dir;
    QString database, importDir, wordFile;
    qint64 words = 0;

    Scratch()
    {
        database = dir.filePath("kvmot.sqlite");
        importDir = dir.filePath("import");
        QDir().mkpath(importDir);
        wordFile = importDir + "/mot.txt";
        QFile list(QStringLiteral("/usr/share/dict/french"));
        if (!list.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "/usr/share/dict/french is missing (Debian package wfrench)\n");
            return;
        }
        QByteArray bytes;
        for (const QByteArray &line : list.readAll().split('\n')) {
            if (line.isEmpty())
                continue;
            bytes += windows1252::encode(QString::fromUtf8(line)) + "\r\n";
            ++words;
        }
        QFile out(wordFile);
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            std::fprintf(stderr, "cannot write %s\n", qPrintable(wordFile));
        WordDatabase(database, WordDatabase::OpenMode::ReadWriteCreate).exec("create table dico (mot TEXT )");
    }

    void emptyTable(const char *table) const
    {
        WordDatabase db(database);
        db.exec(QStringLiteral("drop table if exists %1").arg(QLatin1String(table)));
        db.exec(QStringLiteral("create table %1 (mot TEXT )").arg(QLatin1String(table)));
    }
    // The table "dico" holding the list, for the benchmarks that read it.
    void fill() const
    {
        if (WordTables(database, importDir).count(QStringLiteral("dico")) == 0)
            WordTables(database, importDir).importFile(QStringLiteral("dico"), wordFile);
        removeExports();
    }
    void removeExports() const
    {
        QDir d(importDir);
        for (const QString &f : d.entryList({"dico*.txt", "plain*.txt"}, QDir::Files))
            d.remove(f);
    }
};

Scratch &scratch()
{
    static Scratch s;
    return s;
}

// Plain SQL on the sqlite3 library, with the file read and decoded the same way.
struct Plain {
    sqlite3 *db = nullptr;
    explicit Plain(const QString &path) { sqlite3_open(path.toUtf8().constData(), &db); }
    ~Plain() { sqlite3_close(db); }
    void exec(const char *sql) const { sqlite3_exec(db, sql, nullptr, nullptr, nullptr); }
};

void import(benchmark::State &state)
{
    Scratch &s = scratch();
    qint64 after = 0;
    for (auto _ : state) {
        state.PauseTiming();
        s.emptyTable("dico");
        s.removeExports();
        state.ResumeTiming();
        WordTables tables(s.database, s.importDir);
        const WordTables::Import r = tables.importFile(QStringLiteral("dico"), s.wordFile);
        if (!r.ok)
            state.SkipWithError(qPrintable(tables.errorString()));
        after = r.after;
    }
    state.counters["words"] = double(after);
}

void plainImport(benchmark::State &state)
{
    Scratch &s = scratch();
    for (auto _ : state) {
        state.PauseTiming();
        s.emptyTable("plain");
        state.ResumeTiming();
        QFile file(s.wordFile);
        file.open(QIODevice::ReadOnly);
        const QByteArray bytes = file.readAll();
        Plain p(s.database);
        p.exec("begin");
        sqlite3_stmt *insert = nullptr;
        sqlite3_prepare_v2(p.db, "insert into plain (mot) values (?)", -1, &insert, nullptr);
        qsizetype start = 0;
        for (qsizetype end; (end = bytes.indexOf("\r\n", start)) >= 0; start = end + 2) {
            const QByteArray word = windows1252::decode(bytes.mid(start, end - start)).toUtf8();
            sqlite3_bind_text(insert, 1, word.constData(), int(word.size()), SQLITE_TRANSIENT);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        p.exec("delete from plain where trim(mot) = ''");
        p.exec("delete from plain where rowid not in (select min(rowid) from plain group by mot)");
        p.exec("commit");
    }
    state.counters["words"] = double(s.words);
}

void exportTable(benchmark::State &state)
{
    Scratch &s = scratch();
    s.fill();
    qint64 words = 0;
    for (auto _ : state) {
        WordTables tables(s.database, s.importDir);
        const WordTables::Export e = tables.exportTable(QStringLiteral("dico"));
        if (!e.ok)
            state.SkipWithError(qPrintable(tables.errorString()));
        words = e.words;
        state.PauseTiming();
        s.removeExports();
        state.ResumeTiming();
    }
    state.counters["words"] = double(words);
}

void plainExport(benchmark::State &state)
{
    Scratch &s = scratch();
    s.fill();
    const QByteArray temporary = (s.importDir + "/plain.tmp").toUtf8(), final = (s.importDir + "/plain.txt").toUtf8();
    for (auto _ : state) {
        Plain p(s.database);
        sqlite3_stmt *select = nullptr;
        sqlite3_prepare_v2(p.db, "select mot from dico order by mot collate nocase", -1, &select, nullptr);
        QByteArray bytes;
        while (sqlite3_step(select) == SQLITE_ROW) {
            const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(select, 0));
            bytes += windows1252::encode(QString::fromUtf8(text).trimmed()) + "\r\n";
        }
        sqlite3_finalize(select);
        FILE *f = std::fopen(temporary.constData(), "wb");
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), f);
        std::fflush(f);
        fsync(fileno(f));
        std::fclose(f);
        std::rename(temporary.constData(), final.constData());
    }
}

void count(benchmark::State &state)
{
    Scratch &s = scratch();
    s.fill();
    qint64 n = 0;
    for (auto _ : state)
        n = WordTables(s.database, s.importDir).count(QStringLiteral("dico"), QStringLiteral("mot like 'a*e'"));
    state.counters["matches"] = double(n);
}

void plainCount(benchmark::State &state)
{
    Scratch &s = scratch();
    s.fill();
    int n = 0;
    for (auto _ : state) {
        Plain p(s.database);
        sqlite3_stmt *select = nullptr;
        sqlite3_prepare_v2(p.db, "select count(*) from dico where mot like 'a%e'", -1, &select, nullptr);
        sqlite3_step(select);
        n = sqlite3_column_int(select, 0);
        sqlite3_finalize(select);
    }
    state.counters["matches"] = n;
}

// What the main window and the editor do when they open the table: the record set reads
// every word and sorts them itself; the grid reads the order only.
void recordSetOpen(benchmark::State &state)
{
    Scratch &s = scratch();
    s.fill();
    int rows = 0;
    for (auto _ : state) {
        RecordSet set(s.database, QStringLiteral("select * from dico order by mot"));
        set.refresh();
        rows = set.count();
    }
    state.counters["rows"] = rows;
}

// The window becoming active again: the record set refreshed with nothing changed.
void recordSetRefresh(benchmark::State &state)
{
    Scratch &s = scratch();
    s.fill();
    RecordSet set(s.database, QStringLiteral("select * from dico order by mot"));
    set.refresh();
    for (auto _ : state)
        set.refresh();
    state.counters["rows"] = set.count();
}

void gridOpen(benchmark::State &state)
{
    Scratch &s = scratch();
    s.fill();
    int rows = 0;
    for (auto _ : state) {
        WordGridModel grid(s.database, QStringLiteral("dico"), QStringLiteral("mot"));
        grid.reload();
        rows = grid.rowCount();
    }
    state.counters["rows"] = rows;
}

} // namespace

BENCHMARK(import)->Unit(benchmark::kMillisecond);
BENCHMARK(plainImport)->Unit(benchmark::kMillisecond);
BENCHMARK(exportTable)->Unit(benchmark::kMillisecond);
BENCHMARK(plainExport)->Unit(benchmark::kMillisecond);
BENCHMARK(count)->Unit(benchmark::kMillisecond);
BENCHMARK(plainCount)->Unit(benchmark::kMillisecond);
BENCHMARK(recordSetOpen)->Unit(benchmark::kMillisecond);
BENCHMARK(recordSetRefresh)->Unit(benchmark::kMillisecond);
BENCHMARK(gridOpen)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
