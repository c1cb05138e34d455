#pragma once

#include <QString>

namespace kelvora::mainTexts {

// The station that signs the greeting off.
inline constexpr const char *greetingCallSign = "F4KLV";
// The site of the Union Française des Télégraphistes, the French association of
// amateur Morse operators, which runs Morse courses; opened by the Morse key picture.
inline constexpr const char *learningPageUrl = "https://www.uft.net/";
// Tooltip of every command whose work comes with a later release.

// "Kelvora Version 3.2.5, Table : mot (N),   Utilisateur=user" (three blanks).
QString banner(const QString &table, int rowCount, const QString &user);
// "Version 3.2.5"
QString versionText();

// The greeting written into the exercise text at start, lines ending in CR LF.
QString greeting(const QString &user);

// The paragraph of the about box.
QString aboutParagraph();

} // namespace kelvora::mainTexts
