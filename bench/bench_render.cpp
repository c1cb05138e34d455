// Rendering speed against the floor of writing the same bytes to a file in one call.
//   (a) an examination text: 36 five-character groups with the start and end signs
//   (b) a 20,000-character French text
// Run: build/bench/bench_render  (prints per-byte times and the two ratios)
#include "BenchSupport.h"
#include "morse/PatternLookup.h"
#include "morse/RenderSound.h"
#include "morse/SoundSettings.h"
#include "words/WordDatabase.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

using namespace kelvora;

namespace {

struct Bench {
    QTemporaryDir dir;
    std::unique_ptr<WordDatabase> db;
    std::unique_ptr<PatternLookup> lookup;
    SoundSettings settings = SoundSettings::defaults();

    Bench()
    {
        db = benchsupport::referenceDatabase(dir.filePath("kvmot.sqlite"),
                                             QStringLiteral(KELVORA_SOURCE_DATA "/ref/ref.tsv"));
        lookup = std::make_unique<PatternLookup>(*db);
    }

    SoundTarget target() const { return {dir.filePath("test.wav"), dir.filePath("test.txt")}; }
};

Bench &bench()
{
    static Bench b;
    return b;
}

QString frenchText()
{
    QString all;
    const QDir textes(QStringLiteral(KELVORA_SOURCE_DATA "/textes"));
    for (const QFileInfo &f : textes.entryInfoList({"*.txt"}, QDir::Files, QDir::Name)) {
        QFile file(f.filePath());
        file.open(QIODevice::ReadOnly);
        all += QString::fromUtf8(file.readAll()) + u' ';
    }
    if (all.trimmed().isEmpty())
        all = QStringLiteral("le petit chat boit du lait, puis il dort au soleil. ");
    QString text;
    while (text.size() < 20000)
        text += all;
    return text.left(20000);
}

std::map<std::string, double> g_bytes;

void render(benchmark::State &state, const QString &text, bool debfin, const char *name)
{
    SoundSettings settings = bench().settings;
    settings.debfin = debfin;
    const SoundTarget target = bench().target();
    quint64 bytes = 0;
    for (auto _ : state) {
        const RenderResult r = renderSound({text}, settings, *bench().lookup, target);
        bytes = r.dataBytes + wavHeaderSize;
        benchmark::DoNotOptimize(bytes);
    }
    g_bytes[name] = double(bytes);
    state.counters["bytes"] = double(bytes);
    state.SetBytesProcessed(qint64(state.iterations()) * qint64(bytes));
}

void baseline(benchmark::State &state, const char *name)
{
    const QByteArray data(qsizetype(g_bytes[name]), char(128));
    const QString path = bench().dir.filePath("baseline.wav");
    for (auto _ : state) {
        QFile::remove(path);
        QFile f(path);
        f.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        f.write(data);
        f.close();
    }
    state.counters["bytes"] = double(data.size());
    state.SetBytesProcessed(qint64(state.iterations()) * data.size());
}

void BM_RenderExam(benchmark::State &s) { render(s, benchsupport::examinationText(), true, "exam"); }
void BM_BaselineExam(benchmark::State &s) { baseline(s, "exam"); }
void BM_RenderFrench20k(benchmark::State &s) { render(s, frenchText(), false, "french"); }
void BM_BaselineFrench20k(benchmark::State &s) { baseline(s, "french"); }

BENCHMARK(BM_RenderExam)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_BaselineExam)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_RenderFrench20k)->Unit(benchmark::kMillisecond)->Iterations(3)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_BaselineFrench20k)->Unit(benchmark::kMillisecond)->Iterations(3)->Repetitions(5)->ReportAggregatesOnly(true);

// Collects the medians so the ratios come from the same run.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.aggregate_name == "median")
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
        }
    }
    std::map<std::string, double> medians;
};

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const auto ratio = [&](const char *render, const char *base, const char *name) {
        const double r = reporter.medians[render];
        const double b = reporter.medians[base];
        if (r > 0 && b > 0) {
            std::printf("%-8s %10.0f bytes  render %.3f ns/byte  baseline %.3f ns/byte  ratio %.2f\n",
                        name, g_bytes[name], r * 1e6 / g_bytes[name], b * 1e6 / g_bytes[name], r / b);
        }
    };
    std::printf("\nMedians (time per output byte) and ratio render / one-call write:\n");
    ratio("BM_RenderExam", "BM_BaselineExam", "exam");
    ratio("BM_RenderFrench20k", "BM_BaselineFrench20k", "french");
    benchmark::Shutdown();
    return 0;
}
