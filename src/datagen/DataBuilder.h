#pragma once

#include <QString>
#include <QStringList>

namespace kelvora::datagen {

// The word database from the reference table (car TAB cw TAB wav, '#' comments) and
// word lists given as NAME=FILE (UTF-8, one word per line). Every character of every
// word must have a reference row and fit Windows-1252, or the build stops.
bool buildDatabase(const QString &outPath, const QString &refTsv, const QStringList &tables,
                   QString *error);

// One WAV per row of `ref`, rendered by the program's own synthesiser with the default
// profile (start and end signs off), named by the row's `wav` column.
bool buildCharacterSounds(const QString &databasePath, const QString &outDir, QString *error);

// A UTF-8 source text to the installation's Windows-1252 with CR LF line ends; a
// character the code page cannot hold stops the build.
bool convertText(const QString &inPath, const QString &outPath, QString *error);

} // namespace kelvora::datagen
