#pragma once

#include <QString>
#include <QStringList>

namespace kelvora {

// Where every file of the installation lives, built once at start by plain
// concatenation of the program directory and fixed relative paths. Nothing is
// normalised, created or checked here.
struct AppPaths {
    QString programDir;
    QString testWavPath;
    QString testTextPath;
    QString noiseWavPath1;
    QString noiseWavPath2;
    QString noiseWavPath3;
    QString helpPagePath;
    QString wordDatabasePath;
    QString importFilePath;
    QString charWavDir; // ends with the separator

    static AppPaths fromProgramDir(const QString &programDir);
    // The text folder is joined at the moment of use, never kept.
    QString textFolder() const;
};

// The program directory: `--root DIR` on the command line, else KELVORA_ROOT, else the
// executable's directory. A relative root is made absolute; a trailing separator is
// dropped except at the file system's root.
QString resolveProgramDir(const QStringList &arguments, const QString &environmentRoot,
                          const QString &executableDir);

// The settings file: `--settings FILE`, else KELVORA_SETTINGS, else the platform's
// per-user configuration location (Kelvora/Kelvora.ini).
QString resolveSettingsPath(const QStringList &arguments, const QString &environmentPath);

// The value of the last `--name VALUE` or `--name=VALUE`, empty when absent.
QString optionValue(const QStringList &arguments, const QString &name);

} // namespace kelvora
