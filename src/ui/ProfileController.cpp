#include "ui/ProfileController.h"

#include "settings/Session.h"
#include "settings/SettingsStore.h"
#include "ui/UserPrompts.h"
#include "settings/SettingKeys.h"

namespace kelvora {

ProfileController::ProfileController(SettingsStore &store, Session &session, UserPrompts &prompts,
                                     QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_session(session)
    , m_prompts(prompts)
{
}

QString ProfileController::menuCaption(const QString &user)
{
    return QStringLiteral("Utilisateurs (") + user + u')';
}

QString ProfileController::nameProblem(const QString &name)
{
    if (name.trimmed().isEmpty())
        return QStringLiteral("Aucun nom saisi");
    if (name.contains(u'/') || name.contains(u'\\'))
        return QStringLiteral("Un nom d'utilisateur ne peut contenir ni « / » ni « \\ »");
    return {};
}

QString ProfileController::startUser(QWidget *parent)
{
    QString user = m_store.lastUser();
    bool keepMarker = false;
    if (user == QLatin1String(firstUseMarker)) {
        const QString answer =
            m_prompts.askText(parent, QString::fromUtf8(firstUsePrompt)).value_or(QString());
        const QString problem = nameProblem(answer);
        if (problem.isEmpty()) {
            user = answer;
        } else {
            // The marker stays, so the question comes back at the next start.
            keepMarker = true;
            user = QString::fromUtf8(defaultUserName);
            emit notice(problem + QStringLiteral(" : vous utilisez le profil « ") + user
                        + QStringLiteral(" ». Votre nom vous sera redemandé au prochain démarrage."));
        }
    }
    if (!keepMarker)
        saveLastUser(user);
    m_session.currentUser = user;
    m_session.playerFree = true;
    return user;
}

bool ProfileController::utilchanger(QWidget *parent)
{
    const std::optional<QString> answer =
        m_prompts.askText(parent, QString::fromUtf8(changeUserPrompt));
    const QString name = answer.value_or(QString());
    const QString problem = nameProblem(name);
    if (!problem.isEmpty()) {
        emit notice(problem + QStringLiteral(" : vous restez « ") + m_session.currentUser
                    + QStringLiteral(" »."));
        return false;
    }
    m_session.currentUser = name;
    saveLastUser(name);
    return true;
}

void ProfileController::saveLastUser(const QString &name)
{
    m_store.setLastUser(name);
    if (const QString problem = m_store.sync(); !problem.isEmpty())
        emit notice(problem);
}

void ProfileController::raz()
{
    if (const QString problem = m_store.removeAll(); !problem.isEmpty())
        emit notice(problem);
}

} // namespace kelvora
