#include "settings/MainTexts.h"

#include "Version.h"

namespace kelvora::mainTexts {

namespace {
QString versionNumbers()
{
    return QStringLiteral("%1.%2.%3").arg(version::major).arg(version::minor).arg(version::revision);
}
} // namespace

QString banner(const QString &table, int rowCount, const QString &user)
{
    return QStringLiteral("Kelvora Version ") + versionNumbers() + QStringLiteral(", Table : ")
           + table + QStringLiteral(" (") + QString::number(rowCount)
           + QStringLiteral("),   Utilisateur=") + user;
}

QString versionText()
{
    return QStringLiteral("Version ") + versionNumbers();
}

QString greeting(const QString &user)
{
    const QString crlf = QStringLiteral("\r\n");
    QString text = QStringLiteral("73 ") + user + QStringLiteral(" de ")
                   + QLatin1String(greetingCallSign) + QStringLiteral(". ") + crlf;
    text += QStringLiteral("si vous n'etes pas ") + user + crlf;
    text += QStringLiteral("identifiez vous en utilisant le menu Parametre,Utilisateur,Changer ")
            + crlf;
    text += QStringLiteral("ce-ci à fin d'utiliser vos propres paramètres. et de ne pas modifier "
                           "les paramètres de ")
            + user + QStringLiteral(" Merci.");
    return text;
}

QString aboutParagraph()
{
    return QStringLiteral(
        "Kelvora vous apprend à lire le code Morse à l'oreille. Choisissez un exercice "
        "(groupes de lettres, de chiffres ou de ponctuations, mots, indicatifs, examen "
        "blanc) : Kelvora en écrit le texte, le transforme en son à la vitesse, à la "
        "tonalité et au volume de votre choix, puis vous le fait écouter, au besoin sous "
        "un brouillage réaliste. La correction rejoue ensuite le texte caractère par "
        "caractère. Chaque utilisateur retrouve ses propres réglages.");
}

} // namespace kelvora::mainTexts
