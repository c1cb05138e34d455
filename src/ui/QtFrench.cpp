#include "ui/QtFrench.h"

#include "core/Logging.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace kelvora {

bool loadQtFrench()
{
    // Owned by the application: a translator must outlive every text it gives.
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(QLocale(QLocale::French), QStringLiteral("qt"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        qCWarning(lcApp) << "Qt's French translations are not installed (qt6-translations-l10n)";
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}

} // namespace kelvora
