// The tools of the "Outils" menu and the loading of a text file, on a text of 1 MB
// (French words of 4 to 12 letters with their accents, lines of about 70 characters),
// against copying that text once in the same run (the floor of any transform).
// Run: build/bench/bench_texttools
#include "texttools/Accents.h"
#include "texttools/TextFile.h"
#include "texttools/Transforms.h"
#include "core/Windows1252.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

using namespace kelvora;

namespace {

const QString &text()
{
    static const QString t = [] {
        const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyzéèàçêô");
        QRandomGenerator random(1);
        QString s;
        while (s.size() < 1'000'000) {
            const int length = 4 + int(random.bounded(9));
            for (int i = 0; i < length; ++i)
                s += letters[int(random.bounded(letters.size()))];
            s += (s.size() % 70 < 10) ? QStringLiteral("\n") : QStringLiteral(" ");
        }
        return s;
    }();
    return t;
}

void copy(benchmark::State &state)
{
    for (auto _ : state) {
        QString c(text().constData(), text().size()); // a deep copy
        benchmark::DoNotOptimize(c.data());
    }
}

void tool(benchmark::State &state, QString (*transform)(const QString &))
{
    qsizetype size = 0;
    for (auto _ : state)
        size = transform(text()).size();
    state.counters["characters"] = double(size);
}

void loadFile(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("texte.txt");
    QFile f(path);
    QByteArray bytes = windows1252::encode(text());
    bytes.replace("\n", "\r\n");
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        state.SkipWithError("cannot write the text file");
    f.close();
    for (auto _ : state)
        benchmark::DoNotOptimize(textFile::read(path).text.size());
}

} // namespace

BENCHMARK(copy)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tool, groups, textTools::fiveCharacterGroups)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tool, accents, textTools::acc)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tool, reverse, textTools::reversed)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tool, spaces, textTools::spacedOut)->Unit(benchmark::kMillisecond);
BENCHMARK(loadFile)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
