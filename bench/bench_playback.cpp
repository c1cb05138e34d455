// Playback latencies of the media device, on a private audio server's null sink:
//   (a) "Open" of a rendered 36-group examination WAV until the device is ready to play
//       (a device reopened as each preparation does, and a fresh device);
//   (b) play() until the first non-silent sample reaches the sink, as its monitor
//       records it (parec): the arrival of that sample in this process, so parec's own
//       delivery time is included.
// Run under an audio server, e.g. the one of scripts/run-tests.sh, or start one:
//   pulseaudio -D -n --exit-idle-time=-1 --load=module-null-sink --load=module-native-protocol-unix
//   build/bench/bench_playback
#include "BenchSupport.h"
#include "SoundCapture.h"
#include "morse/PatternLookup.h"
#include "morse/RenderSound.h"
#include "morse/SoundSettings.h"
#include "playback/MediaDevice.h"
#include "words/WordDatabase.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>

using namespace kelvora;
using namespace kelvora::soundcapture;

namespace {

struct ExamFile {
    QTemporaryDir dir;
    QString wavPath;
    double seconds = 0;

    ExamFile()
    {
        const auto db = benchsupport::referenceDatabase(dir.filePath("kvmot.sqlite"),
                                                        QStringLiteral(KELVORA_SOURCE_DATA "/ref/ref.tsv"));
        PatternLookup lookup(*db);
        SoundSettings settings = SoundSettings::defaults();
        settings.debfin = true;
        wavPath = dir.filePath("test.wav");
        const RenderResult result = renderSound({benchsupport::examinationText()}, settings, lookup,
                                                {wavPath, dir.filePath("test.txt")});
        seconds = result.durationSeconds();
    }
};

ExamFile &exam()
{
    static ExamFile e;
    return e;
}

void BM_OpenReopened(benchmark::State &state)
{
    MediaDevice device;
    device.open(exam().wavPath);
    for (auto _ : state) {
        device.close(); // as each preparation does before rewriting the file
        benchmark::DoNotOptimize(device.open(exam().wavPath));
    }
    state.counters["silent"] = device.isSilent();
    state.counters["length_s"] = double(device.lengthMs()) / 1000;
}

void BM_OpenFreshDevice(benchmark::State &state)
{
    std::optional<MediaDevice> device;
    for (auto _ : state) {
        device.emplace();
        benchmark::DoNotOptimize(device->open(exam().wavPath));
        state.PauseTiming();
        device.reset();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

struct Capture {
    std::unique_ptr<PrivateSink> sink;
    std::unique_ptr<MonitorRecorder> recorder;
    QAudioDevice device;
    QString problem;

    Capture()
    {
        problem = serverProblem();
        if (!problem.isEmpty())
            return;
        sink = std::make_unique<PrivateSink>(QStringLiteral("bench"));
        device = sink->device(10000);
        recorder = std::make_unique<MonitorRecorder>(sink->name());
        if (device.isNull() || !recorder->start(10000))
            problem = QStringLiteral("the private null sink could not be recorded");
    }
};

Capture &capture()
{
    static Capture c;
    return c;
}

void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

void BM_PlayToFirstSound(benchmark::State &state)
{
    Capture &c = capture();
    if (!c.problem.isEmpty()) {
        state.SkipWithError(qPrintable(c.problem));
        return;
    }
    MediaDevice device;
    device.setOutputDevice(c.device);
    device.open(exam().wavPath);
    if (device.isSilent()) {
        state.SkipWithError("the media device plays in silence");
        return;
    }
    for (auto _ : state) {
        settle(300); // the sink's monitor is silent again
        const qsizetype from = c.recorder->samples().size();
        const qint64 playedAt = c.recorder->nowNs();
        device.play();
        qsizetype first = -1;
        QElapsedTimer limit;
        limit.start();
        while (first < 0 && limit.elapsed() < 5000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
            first = firstSound(c.recorder->samples(), from);
        }
        if (first < 0) {
            state.SkipWithError("no sound reached the sink");
            return;
        }
        state.SetIterationTime(double(c.recorder->arrivalNs(first) - playedAt) / 1e9);
        device.stop();
        device.prev();
    }
}

BENCHMARK(BM_OpenReopened)->Unit(benchmark::kMillisecond)->Repetitions(7)->ReportAggregatesOnly(true);
BENCHMARK(BM_OpenFreshDevice)->Unit(benchmark::kMillisecond)->Repetitions(7)->ReportAggregatesOnly(true);
BENCHMARK(BM_PlayToFirstSound)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3)->Repetitions(7)->ReportAggregatesOnly(true);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    std::printf("Examination file: %s, %.1f s of sound\n", qPrintable(exam().wavPath), exam().seconds);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
