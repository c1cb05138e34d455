// The exercises, from the menu to the text shown and its sound prepared, and the word
// exercises over a large table:
//   (a) each entry of the "Exercices" menu at 102 items, in the main window on a copy of
//       the installation tree (offscreen, silent output): the action, the text written,
//       the sound rendered and the player opened on it;
//   (b) words of the progression "egmz0ahtr1" and random words, 102 of each, over the
//       346,000 words of Debian's wfrench list (/usr/share/dict/french, imported into a
//       scratch database), against the sqlite3 library scanning that table once with LIKE.
// Run: build/bench/bench_exercises   (QT_QPA_PLATFORM=offscreen is set by the program)
#include "app/MainPF.h"
#include "core/Random.h"
#include "exercises/Generators.h"
#include "exercises/TableWords.h"
#include "settings/Session.h"
#include "ui/UserPrompts.h"
#include "words/WordDatabase.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <cstdio>
#include <memory>

using namespace kelvora;

namespace {

class SilentPrompts : public UserPrompts {
public:
    void message(QWidget *, const QString &text) override
    {
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
    }
    std::optional<QString> askText(QWidget *, const QString &) override { return std::nullopt; }
    std::optional<QColor> askColour(QWidget *, const QColor &) override { return std::nullopt; }
};

struct Window {
    QTemporaryDir dir;
    SilentPrompts prompts;
    Session session;
    std::unique_ptr<MainPF> main;

    Window()
    {
        const QDir tree(QStringLiteral(KELVORA_TREE_DIR));
        const QString root = dir.filePath("root");
        for (const char *folder : {"db", "doc", "qrm", "tmp"}) {
            QDir().mkpath(root + '/' + folder);
            for (const QString &file : QDir(tree.filePath(folder)).entryList(QDir::Files))
                QFile::copy(tree.filePath(QString(folder) + '/' + file), root + '/' + folder + '/' + file);
        }
        session.paths = AppPaths::fromProgramDir(root);
        main = std::make_unique<MainPF>(session, dir.filePath("Kelvora.ini"), prompts);
        main->show();
        main->findChild<QComboBox *>("nbgroup")->setEditText("102");
        main->findChild<QComboBox *>("PROGRESS")->setEditText("egmz0ahtr1");
    }
};

std::unique_ptr<Window> g_window;

void menuEntry(benchmark::State &state, const char *action)
{
    if (!g_window)
        g_window = std::make_unique<Window>();
    QAction *entry = g_window->main->findChild<QAction *>(action);
    auto *exo = g_window->main->findChild<QPlainTextEdit *>("EXO");
    for (auto _ : state) {
        entry->trigger();
        benchmark::DoNotOptimize(exo->document()->characterCount());
    }
    state.counters["characters"] = double(exo->document()->characterCount());
}

// (b): the wfrench list in a table "dico" of a scratch database.
struct BigTable {
    QTemporaryDir dir;
    QString path;
    int words = 0;

    BigTable()
    {
        path = dir.filePath("kvmot.sqlite");
        QFile list(QStringLiteral("/usr/share/dict/french"));
        if (!list.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "/usr/share/dict/french is missing (Debian package wfrench)\n");
            return;
        }
        WordDatabase db(path, WordDatabase::OpenMode::ReadWriteCreate);
        db.exec(QStringLiteral("create table dico (mot text(50))"));
        const QList<QByteArray> lines = list.readAll().split('\n');
        db.write([&](WordDatabase &w) {
            for (const QByteArray &line : lines) {
                if (!line.isEmpty() && w.exec(QStringLiteral("insert into dico (mot) values (?)"),
                                              {QString::fromUtf8(line)}))
                    ++words;
            }
            return true;
        });
    }
};

BigTable &bigTable()
{
    static BigTable table;
    return table;
}

void likeScan(benchmark::State &state)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(bigTable().path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt *scan = nullptr;
    sqlite3_prepare_v2(db, "select count(*) from dico where mot like '%e%'", -1, &scan, nullptr);
    for (auto _ : state) {
        sqlite3_reset(scan);
        sqlite3_step(scan);
        benchmark::DoNotOptimize(sqlite3_column_int(scan, 0));
    }
    sqlite3_finalize(scan);
    sqlite3_close(db);
    state.counters["rows"] = bigTable().words;
}

void wordExercise(benchmark::State &state, exercises::Kind kind)
{
    exercises::Options options;
    options.groupCount = QStringLiteral("102");
    options.progression = QStringLiteral("egmz0ahtr1");
    random::seed(102);
    qsizetype size = 0;
    for (auto _ : state) {
        // One source per exercise, as the window and the command line make it: it reads
        // the table once.
        TableWords words(bigTable().path, QStringLiteral("dico"));
        const exercises::Result r = exercises::generate(kind, {}, false, options, &words);
        size = r.text.size();
    }
    state.counters["characters"] = double(size);
}

} // namespace

BENCHMARK_CAPTURE(menuEntry, letters, "G36lettres")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, digits, "G36chiffres")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, punctuation, "G12ponctuations")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, mixed, "G36Mélangés")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, exam, "G36EXAMEN")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, progression_words, "motprogression")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, words_plain, "Maleatoires")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, words, "MaleatoiresAcc")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, callsigns, "indicatifs")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(menuEntry, mock_exam, "EXAMENCOMPLET")->Unit(benchmark::kMillisecond);
BENCHMARK(likeScan)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(wordExercise, progression_words, exercises::Kind::ProgressionWords)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(wordExercise, words_plain, exercises::Kind::WordsPlain)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("KELVORA_SILENT_AUDIO", "1");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    g_window.reset();
    return 0;
}
