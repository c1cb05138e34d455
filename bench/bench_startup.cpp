// Start-up time of the desktop program: from launching the process to the main window
// shown with the greeting rendered into tmp/test.wav (ready to play), on the offscreen
// platform, with a fresh settings file each run. The program reports the moment it is
// ready on the steady clock (--startup-probe); the median of the runs is printed.
// Run: build/bench/bench_startup [runs]
#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {
constexpr const char *program = KELVORA_TREE_DIR "/kelvora";

// Milliseconds from launch to ready, or a negative number when the run failed.
double oneRun(const QString &settingsPath)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(env);
    const auto launched = std::chrono::steady_clock::now();
    process.start(QString::fromUtf8(program),
                  {"--root", KELVORA_TREE_DIR, "--settings", settingsPath, "--startup-probe"});
    if (!process.waitForFinished(30000) || process.exitCode() != 0)
        return -1;
    const QByteArray out = process.readAllStandardOutput();
    const qsizetype at = out.indexOf("ready ");
    if (at < 0)
        return -1;
    const long long ready = out.mid(at + 6).trimmed().toLongLong();
    const long long start = std::chrono::duration_cast<std::chrono::nanoseconds>(
                                launched.time_since_epoch())
                                .count();
    return double(ready - start) / 1e6;
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 15;
    QTemporaryDir dir;
    oneRun(dir.filePath("warm-up.ini")); // fills the disk caches
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const double ms = oneRun(dir.filePath(QStringLiteral("run%1.ini").arg(i)));
        if (ms < 0) {
            std::fprintf(stderr, "bench_startup: run %d of %s failed\n", i, program);
            return 1;
        }
        times.push_back(ms);
    }
    std::sort(times.begin(), times.end());
    const double median = runs % 2 ? times[runs / 2] : (times[runs / 2 - 1] + times[runs / 2]) / 2;
    std::printf("start-up to main window ready: median %.1f ms (min %.1f, max %.1f, %d runs)\n",
                median, times.front(), times.back(), runs);
    return 0;
}
