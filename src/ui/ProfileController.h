#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace kelvora {

class SettingsStore;
struct Session;
class UserPrompts;

// The life of a profile: last user and first use at start, change of user, erasure.
// A blank or cancelled name never becomes the current user: the profile in use stays,
// and the user is told so (notice), so no value can be written outside a profile.
class ProfileController : public QObject {
    Q_OBJECT
public:
    ProfileController(SettingsStore &store, Session &session, UserPrompts &prompts,
                      QObject *parent = nullptr);

    // Start of loading: the last user, or the first-use prompt when the store holds the
    // marker "parametres". Sets the session's current user and returns it.
    QString startUser(QWidget *parent);
    // utilchanger: asks for a name; true when the current user changed (the window then
    // restores that profile).
    bool utilchanger(QWidget *parent);
    // raz: deletes every profile and the last user (the window then quits).
    void raz();

    static QString menuCaption(const QString &user); // "Utilisateurs (" + user + ")"
    // Why a typed name cannot be a profile, empty when it can.
    static QString nameProblem(const QString &name);

signals:
    void notice(const QString &text);

private:
    void saveLastUser(const QString &name); // written through; a failure is a notice

    SettingsStore &m_store;
    Session &m_session;
    UserPrompts &m_prompts;
};

inline constexpr const char *firstUsePrompt =
    "c'est votre première utilisation de ce programme, Entrez votre prénom on un pseudo qui "
    "vous permetra si vous etes plusieurs utilisateurs de ce programme de retrouver propres "
    "vos paramètres ";
inline constexpr const char *changeUserPrompt =
    "Entrez un nom d'utilisateur different de ceux déjà existant ce-ci vous permetre de "
    "retrouver vos propres paramètres ";

} // namespace kelvora
