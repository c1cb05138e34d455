#include "app/StartupHooks.h"

#include "settings/AppPaths.h"
#include "app/MainPF.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <cstdio>

namespace kelvora::startupHooks {

namespace {
// Long enough for the window system to map, lay out and paint the window.
constexpr int settleMs = 700;

void takeScreenshot(MainPF &window, const QStringList &arguments, const QString &file)
{
    const QString text = optionValue(arguments, QStringLiteral("screenshot-exercise"));
    if (!text.isEmpty()) {
        auto *exercise = window.findChild<QPlainTextEdit *>(QStringLiteral("EXO"));
        exercise->setPlainText(text);
        window.findChild<QPushButton *>(QStringLiteral("Command1"))->click();
    }
    // The player's own Play button, so that the shot shows the exercise running.
    if (arguments.contains(QStringLiteral("--screenshot-play")))
        window.findChild<QAbstractButton *>(QStringLiteral("playerJouer"))->click();
    if (arguments.contains(QStringLiteral("--screenshot-settings")))
        window.reglager();
    QTimer::singleShot(settleMs, &window, [&window, file] {
        const bool saved = window.grab().save(file, "PNG");
        std::fprintf(saved ? stdout : stderr, "%s %s\n", saved ? "screenshot" : "cannot write",
                     qPrintable(file));
        QCoreApplication::exit(saved ? 0 : 2);
    });
}

// Reports once the window system shows the window and it has been painted.
void reportWhenShown(MainPF &window)
{
    const QWindow *handle = window.windowHandle();
    if (!handle || !handle->isExposed()) {
        QTimer::singleShot(1, &window, [&window] { reportWhenShown(window); });
        return;
    }
    window.repaint();
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("ready %lld\n", static_cast<long long>(
                                    std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()));
    std::fflush(stdout);
    QCoreApplication::exit(0);
}
} // namespace

void install(MainPF &window, const QStringList &arguments)
{
    if (arguments.contains(QStringLiteral("--startup-probe"))) {
        QTimer::singleShot(0, &window, [&window] { reportWhenShown(window); });
        return;
    }
    const QString file = optionValue(arguments, QStringLiteral("screenshot"));
    if (!file.isEmpty())
        QTimer::singleShot(settleMs, &window,
                           [&window, arguments, file] { takeScreenshot(window, arguments, file); });
}

} // namespace kelvora::startupHooks
