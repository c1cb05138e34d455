#include "settings/AppPaths.h"

#include <QtTest>

using namespace kelvora;

class AppPathsTest : public QObject {
    Q_OBJECT
private slots:
    void joinedByConcatenation_data();
    void joinedByConcatenation();
    void programDir_data();
    void programDir();
    void settingsPath_data();
    void settingsPath();
};

void AppPathsTest::joinedByConcatenation_data()
{
    QTest::addColumn<QString>("dir");
    QTest::addColumn<QString>("prefix"); // what every member starts with
    QTest::addRow("ordinary") << "/opt/kelvora" << "/opt/kelvora/";
    QTest::addRow("spaces and accents kept") << "/home/élise/Mes programmes/kv"
                                             << "/home/élise/Mes programmes/kv/";
    QTest::addRow("root keeps its separator: doubled, not normalised") << "/" << "//";
}

void AppPathsTest::joinedByConcatenation()
{
    QFETCH(QString, dir);
    QFETCH(QString, prefix);
    const AppPaths p = AppPaths::fromProgramDir(dir);
    QCOMPARE(p.programDir, dir);
    QCOMPARE(p.testWavPath, prefix + "tmp/test.wav");
    QCOMPARE(p.testTextPath, prefix + "tmp/test.txt");
    QCOMPARE(p.noiseWavPath1, prefix + "qrm/qrm1.wav");
    QCOMPARE(p.noiseWavPath2, prefix + "qrm/qrm2.wav");
    QCOMPARE(p.noiseWavPath3, prefix + "qrm/qrm3.wav");
    QCOMPARE(p.helpPagePath, prefix + "doc/kvmenu.htm");
    QCOMPARE(p.wordDatabasePath, prefix + "db/kvmot.sqlite");
    QCOMPARE(p.importFilePath, prefix + "import/mot.txt");
    QCOMPARE(p.charWavDir, prefix + "wav/");
    QCOMPARE(p.textFolder(), prefix + "textes");
}

void AppPathsTest::programDir_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("environment");
    QTest::addColumn<QString>("expected");
    const QString exe = "/usr/lib/kelvora";
    QTest::addRow("the executable's directory") << QStringList{"kelvora"} << "" << exe;
    QTest::addRow("environment") << QStringList{"kelvora"} << "/srv/kv" << "/srv/kv";
    QTest::addRow("--root wins over the environment")
        << QStringList{"kelvora", "--root", "/data/kv"} << "/srv/kv" << "/data/kv";
    QTest::addRow("--root=DIR") << QStringList{"kelvora", "--root=/data/kv"} << "" << "/data/kv";
    QTest::addRow("trailing separator dropped") << QStringList{"kelvora", "--root", "/data/kv/"} << ""
                                                << "/data/kv";
    QTest::addRow("file system root kept") << QStringList{"kelvora", "--root", "/"} << "" << "/";
    QTest::addRow("relative root made absolute")
        << QStringList{"kelvora", "--root", "arbre"} << "" << QDir::currentPath() + "/arbre";
}

void AppPathsTest::programDir()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, environment);
    QFETCH(QString, expected);
    QCOMPARE(resolveProgramDir(arguments, environment, "/usr/lib/kelvora"), expected);
}

void AppPathsTest::settingsPath_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("environment");
    QTest::addColumn<QString>("expected");
    QTest::addRow("--settings") << QStringList{"x", "--settings", "/tmp/a.ini"} << "/tmp/b.ini"
                                << "/tmp/a.ini";
    QTest::addRow("environment") << QStringList{"x"} << "/tmp/b.ini" << "/tmp/b.ini";
}

void AppPathsTest::settingsPath()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, environment);
    QFETCH(QString, expected);
    QCOMPARE(resolveSettingsPath(arguments, environment), expected);
}

QTEST_GUILESS_MAIN(AppPathsTest)
#include "tst_apppaths.moc"
