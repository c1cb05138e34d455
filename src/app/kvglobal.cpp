#include "app/kvglobal.h"

#include "app/FoundationWindow.h"
#include "app/GlobalState.h"
#include "core/Random.h"

#include <QCoreApplication>

namespace kelvora::kvglobal {

void Main(const QStringList &arguments)
{
    GlobalState &state = globalState();
    state.paths = AppPaths::fromProgramDir(resolveProgramDir(
        arguments, qEnvironmentVariable("KELVORA_ROOT"), QCoreApplication::applicationDirPath()));
    random::seedFromClock();
    const QString seedText = optionValue(arguments, "seed");
    if (!seedText.isEmpty())
        random::seed(seedText.toULongLong());

    if (!mainWindow) {
        auto *window = new FoundationWindow(
            resolveSettingsPath(arguments, qEnvironmentVariable("KELVORA_SETTINGS")));
        window->setAttribute(Qt::WA_DeleteOnClose);
        mainWindow = window;
    }
    mainWindow->show();
}

} // namespace kelvora::kvglobal
