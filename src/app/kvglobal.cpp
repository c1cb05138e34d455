#include "app/kvglobal.h"

#include "settings/Session.h"
#include "app/MainPF.h"
#include "app/StartupHooks.h"
#include "ui/DialogPrompts.h"
#include "core/Random.h"

#include <QCoreApplication>
#include <QDebug>

namespace kelvora::kvglobal {

void Main(const QStringList &arguments)
{
    // The one session of the program, handed to every window.
    static Session session;
    session.paths = AppPaths::fromProgramDir(resolveProgramDir(
        arguments, qEnvironmentVariable("KELVORA_ROOT"), QCoreApplication::applicationDirPath()));
    random::seedFromClock();
    const QString seedText = optionValue(arguments, "seed");
    if (!seedText.isEmpty()) {
        if (const auto seed = random::parseSeed(seedText))
            random::seed(*seed);
        else
            qWarning().noquote() << QStringLiteral("--seed attend un nombre entier, pas « %1 » : "
                                                   "les tirages ne sont pas reproductibles.")
                                        .arg(seedText);
    }

    if (!mainWindow) {
        static DialogPrompts prompts;
        auto *window = new MainPF(
            session, resolveSettingsPath(arguments, qEnvironmentVariable("KELVORA_SETTINGS")), prompts);
        window->setAttribute(Qt::WA_DeleteOnClose);
        mainWindow = window;
        startupHooks::install(*window, arguments);
    }
    mainWindow->show();
}

} // namespace kelvora::kvglobal
