// The main window's player, as the learner drives it, on a copy of the installation tree:
//   (a) "Préparer la musique" (Command1) on a 36-group examination text with its start and
//       end signs, until the player is open and ready to play: tmp/test.wav is rendered
//       and the device reopened on it;
//   (b) the player's Play button until the first non-silent sample reaches a private null
//       sink, as its monitor records it (parec's own delivery time included);
//   (c) a key typed in the keyboard window ("Clavier") until its first non-silent sample
//       reaches the sink the same way: the key is put in the text, rendered, played.
// Run under an audio server, e.g. the one of scripts/run-tests.sh, or start one:
//   pulseaudio -D -n --exit-idle-time=-1 --load=module-null-sink --load=module-native-protocol-unix
//   build/bench/bench_prepare
#include "BenchSupport.h"
#include "SoundCapture.h"
#include "settings/Session.h"
#include "app/MainPF.h"
#include "app/kvglobal.h"
#include "ui/UserPrompts.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>

#include <cstdio>
#include <memory>

using namespace kelvora;
using namespace kelvora::soundcapture;

namespace {

// Messages are counted, never shown.
class CountingPrompts : public UserPrompts {
public:
    int messages = 0;
    void message(QWidget *, const QString &text) override
    {
        ++messages;
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
    }
    std::optional<QString> askText(QWidget *, const QString &) override { return std::nullopt; }
    std::optional<QColor> askColour(QWidget *, const QColor &) override { return std::nullopt; }
};

struct Window {
    QTemporaryDir dir;
    CountingPrompts prompts;
    Session session;
    std::unique_ptr<MainPF> main;
    QPlainTextEdit *exo = nullptr;
    QString text;

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
        exo = main->findChild<QPlainTextEdit *>("EXO");
        text = benchsupport::examinationText();
    }
    MediaDevice *player() const { return main->playback()->player(); }
    void click(const char *button) const { main->findChild<QAbstractButton *>(button)->click(); }
};

// Made at the first use, gone before the application.
std::unique_ptr<Window> g_window;

Window &window()
{
    if (!g_window)
        g_window = std::make_unique<Window>();
    return *g_window;
}

void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

void BM_PrepareToReady(benchmark::State &state)
{
    Window &w = window();
    for (auto _ : state) {
        state.PauseTiming();
        w.exo->setPlainText(w.text); // a changed text waits for "Préparer la musique"
        state.ResumeTiming();
        w.click("Command1");
        if (!w.player()->isOpen() || w.prompts.messages > 0) {
            state.SkipWithError("the player did not open");
            return;
        }
    }
    state.counters["length_s"] = double(w.player()->lengthMs()) / 1000;
    state.counters["silent"] = w.player()->isSilent();
}

void BM_PlayButtonToFirstSound(benchmark::State &state)
{
    if (const QString problem = serverProblem(); !problem.isEmpty()) {
        state.SkipWithError(qPrintable(problem));
        return;
    }
    Window &w = window();
    PrivateSink sink(QStringLiteral("prepare"));
    const QAudioDevice device = sink.device(10000);
    MonitorRecorder recorder(sink.name());
    if (device.isNull() || !recorder.start(10000)) {
        state.SkipWithError("the private null sink could not be recorded");
        return;
    }
    w.player()->setOutputDevice(device);
    w.exo->setPlainText(w.text);
    w.click("Command1");
    if (w.player()->isSilent()) {
        state.SkipWithError("the player plays in silence");
        return;
    }
    for (auto _ : state) {
        settle(300); // the sink's monitor is silent again
        const qsizetype from = recorder.samples().size();
        const qint64 pressedAt = recorder.nowNs();
        w.click("playerJouer");
        qsizetype first = -1;
        QElapsedTimer limit;
        limit.start();
        while (first < 0 && limit.elapsed() < 5000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
            first = firstSound(recorder.samples(), from);
        }
        if (first < 0) {
            state.SkipWithError("no sound reached the sink");
            return;
        }
        state.SetIterationTime(double(recorder.arrivalNs(first) - pressedAt) / 1e9);
        w.click("playerStop");
    }
}

void BM_KeyPressToFirstSound(benchmark::State &state)
{
    if (const QString problem = serverProblem(); !problem.isEmpty()) {
        state.SkipWithError(qPrintable(problem));
        return;
    }
    Window &w = window();
    // One sink and one recorder for every repetition: the keyboard's sound stays on it.
    static PrivateSink sink(QStringLiteral("keyboard"));
    static const QAudioDevice device = sink.device(10000);
    static MonitorRecorder recorder(sink.name());
    static const bool recording = !device.isNull() && recorder.start(10000);
    if (!recording) {
        state.SkipWithError("the private null sink could not be recorded");
        return;
    }
    w.player()->setOutputDevice(device);
    w.click("Command18");
    QWidget *keyboard = kvglobal::keyboardWindow;
    if (!keyboard) {
        state.SkipWithError("the keyboard window did not open");
        return;
    }
    for (auto _ : state) {
        settle(300); // the last key has sounded: the player is free, the monitor silent
        if (!w.session.playerFree) {
            state.SkipWithError("the player was not given back");
            return;
        }
        const qsizetype from = recorder.samples().size();
        const qint64 pressedAt = recorder.nowNs();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_E, Qt::NoModifier, QStringLiteral("e"));
        QCoreApplication::sendEvent(keyboard, &press);
        qsizetype first = -1;
        QElapsedTimer limit;
        limit.start();
        while (first < 0 && limit.elapsed() < 5000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
            first = firstSound(recorder.samples(), from);
        }
        if (first < 0) {
            state.SkipWithError("no sound reached the sink");
            return;
        }
        state.SetIterationTime(double(recorder.arrivalNs(first) - pressedAt) / 1e9);
    }
}

BENCHMARK(BM_PrepareToReady)->Unit(benchmark::kMillisecond)->Repetitions(7)->ReportAggregatesOnly(true);
BENCHMARK(BM_PlayButtonToFirstSound)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3)->Repetitions(7)->ReportAggregatesOnly(true);
BENCHMARK(BM_KeyPressToFirstSound)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3)->Repetitions(7)->ReportAggregatesOnly(true);

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::printf("Examination text: %lld characters\n", static_cast<long long>(window().text.size()));
    g_window.reset();
    benchmark::Shutdown();
    return 0;
}
