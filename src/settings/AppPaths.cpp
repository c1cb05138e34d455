#include "settings/AppPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace kelvora {

AppPaths AppPaths::fromProgramDir(const QString &programDir)
{
    const QString sep = QDir::separator();
    AppPaths p;
    p.programDir = programDir;
    p.testWavPath = programDir + sep + "tmp" + sep + "test.wav";
    p.testTextPath = programDir + sep + "tmp" + sep + "test.txt";
    p.noiseWavPath1 = programDir + sep + "qrm" + sep + "qrm1.wav";
    p.noiseWavPath2 = programDir + sep + "qrm" + sep + "qrm2.wav";
    p.noiseWavPath3 = programDir + sep + "qrm" + sep + "qrm3.wav";
    p.helpPagePath = programDir + sep + "doc" + sep + "kvmenu.htm";
    p.wordDatabasePath = programDir + sep + "db" + sep + "kvmot.sqlite";
    p.importFilePath = programDir + sep + "import" + sep + "mot.txt";
    p.charWavDir = programDir + sep + "wav" + sep;
    return p;
}

QString AppPaths::textFolder() const
{
    return programDir + QDir::separator() + "textes";
}

QString optionValue(const QStringList &arguments, const QString &name)
{
    // The last occurrence wins, as for every option of the command line.
    const QString flag = "--" + name;
    QString value;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == flag && i + 1 < arguments.size())
            value = arguments[++i];
        else if (arguments[i].startsWith(flag + "="))
            value = arguments[i].mid(flag.size() + 1);
    }
    return value;
}

QString resolveProgramDir(const QStringList &arguments, const QString &environmentRoot,
                          const QString &executableDir)
{
    QString dir = optionValue(arguments, "root");
    if (dir.isEmpty())
        dir = environmentRoot;
    if (dir.isEmpty())
        return QDir::toNativeSeparators(executableDir);
    dir = QDir::toNativeSeparators(QFileInfo(dir).absoluteFilePath());
    while (dir.size() > 1 && dir.endsWith(QDir::separator()) && !QDir(dir).isRoot())
        dir.chop(1);
    return dir;
}

QString resolveSettingsPath(const QStringList &arguments, const QString &environmentPath)
{
    QString path = optionValue(arguments, "settings");
    if (path.isEmpty())
        path = environmentPath;
    if (!path.isEmpty())
        return QFileInfo(path).absoluteFilePath();
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
           + "/Kelvora/Kelvora.ini";
}

} // namespace kelvora
