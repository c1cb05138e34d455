#include "FileSizeLimit.h"
#include "RefFixture.h"
#include "settings/AppPaths.h"
#include "settings/SettingsStore.h"
#include "morse/SoundSettings.h"

#include <QtTest>

using namespace kelvora;

class SettingsStoreTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        m_ini = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()) + ".ini");
        QFile::remove(m_ini);
    }

    void valuesRoundTrip_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("value");
        QTest::addRow("accented user") << "Hélène" << "15";
    }

    void valuesRoundTrip()
    {
        QFETCH(QString, user);
        QFETCH(QString, value);
        {
            SettingsStore store(m_ini);
            QVERIFY(store.setValue(user, "vitesse", value));
            QVERIFY(store.setLastUser(user));
        }
        SettingsStore reopened(m_ini);
        QCOMPARE(reopened.value(user, userKeys::vitesse), value);
        QCOMPARE(reopened.lastUser(), user);
        QCOMPARE(reopened.value("quelqu'un d'autre", userKeys::vitesse), QStringLiteral("12"));
    }

    void emptySectionIsRefused()
    {
        SettingsStore store(m_ini);
        QVERIFY(store.setValue("Marc", "vitesse", "20"));
        QVERIFY(!store.setValue("", "vitesse", "99"));
        // A separator would reach another section of the file.
        QVERIFY(!store.setValue("a/b", "vitesse", "99"));
        QVERIFY(!store.setValue("a\\b", "vitesse", "99"));
        QVERIFY(!store.setLastUser(""));
        store.sync();
        QCOMPARE(store.value("", userKeys::vitesse), QStringLiteral("12"));
        QCOMPARE(store.lastUser(), QStringLiteral("défaut"));
        QCOMPARE(store.value("Marc", userKeys::vitesse), QStringLiteral("20"));
        QVERIFY(!QString::fromUtf8(testsupport::readFile(m_ini)).contains("99"));
    }

    void failedWriteIsTold_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("reason");
        QTest::addRow("full disk") << "full.ini" << "fichier trop grand";
        QTest::addRow("a folder") << "folder.ini" << "pas un fichier ordinaire";
        QTest::addRow("/dev/full") << "/dev/full" << "pas un fichier ordinaire";
    }

    // The store says which file could not be written and why; the old file stays whole.
    void failedWriteIsTold()
    {
        QFETCH(QString, file);
        QFETCH(QString, reason);
        const QString path = file.startsWith('/') ? file : m_dir.filePath(file);
        QDir().mkpath(m_dir.filePath("folder.ini"));
        QFile old(m_dir.filePath("full.ini"));
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("[lastuser]\nuser=Ann\n") > 0);
        old.close();
        {
            SettingsStore store(path);
            store.setValue("Ann", "vitesse", QString(4000, u'9'));
            const testsupport::FileSizeLimit limit(file == "full.ini" ? 1000 : 0);
            const QString problem = store.sync();
            QVERIFY2(problem.startsWith("Impossible d'écrire le fichier « " + path + " » : ") && problem.contains(reason), qPrintable(problem));
            QCOMPARE(testsupport::readFile(m_dir.filePath("full.ini")), QByteArray("[lastuser]\nuser=Ann\n"));
        } // the store tries again at its end, the same way
        QVERIFY(!QFileInfo("/dev/full").isFile());
    }

    void clampsKeepTextInsideBounds_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("speed");
        QTest::addColumn<QString>("frequency");
        QTest::addColumn<QString>("volume");
        QTest::addRow("inside every bound, kept as typed") << "12 " << "12 " << "12 " << "12 ";
        QTest::addRow("empty") << "" << "3" << "1" << "1";
        QTest::addRow("large") << "100000" << "100000" << "8000" << "127";
    }

    void clampsKeepTextInsideBounds()
    {
        QFETCH(QString, text);
        QFETCH(QString, speed);
        QFETCH(QString, frequency);
        QFETCH(QString, volume);
        QCOMPARE(soundRules::clampSpeed(text), speed);
        QCOMPARE(soundRules::clampFrequency(text), frequency);
        QCOMPARE(soundRules::clampVolume(text), volume);
    }

    void paths_data()
    {
        QTest::addColumn<QString>("dir");
        QTest::addColumn<QString>("prefix"); // what every member starts with
        QTest::addRow("spaces and accents kept") << "/home/élise/Mes programmes/kv" << "/home/élise/Mes programmes/kv/";
    }

    void paths()
    {
        QFETCH(QString, dir);
        QFETCH(QString, prefix);
        const AppPaths p = AppPaths::fromProgramDir(dir);
        QCOMPARE(p.programDir, dir);
        QCOMPARE(QStringList({p.testWavPath, p.noiseWavPath3, p.wordDatabasePath, p.charWavDir, p.textFolder()}),
                 QStringList({prefix + "tmp/test.wav", prefix + "qrm/qrm3.wav", prefix + "db/kvmot.sqlite", prefix + "wav/", prefix + "textes"}));
    }

    void programDir_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("environment");
        QTest::addColumn<QString>("expected");
        QTest::addRow("the executable's directory") << QStringList{"kelvora"} << "" << "/usr/lib/kelvora";
        QTest::addRow("--root wins over the environment") << QStringList{"kelvora", "--root", "/data/kv"} << "/srv/kv" << "/data/kv";
        QTest::addRow("--root=DIR, trailing separator dropped") << QStringList{"kelvora", "--root=/data/kv/"} << "" << "/data/kv";
        QTest::addRow("relative root made absolute") << QStringList{"kelvora", "--root", "arbre"} << "" << QDir::currentPath() + "/arbre";
    }

    void programDir()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, environment);
        QFETCH(QString, expected);
        QCOMPARE(resolveProgramDir(arguments, environment, "/usr/lib/kelvora"), expected);
        QCOMPARE(resolveSettingsPath({"x", "--settings", "/tmp/a.ini"}, "/tmp/b.ini"), QStringLiteral("/tmp/a.ini"));
        QCOMPARE(resolveSettingsPath({"x"}, "/tmp/b.ini"), QStringLiteral("/tmp/b.ini"));
    }

private:
    QTemporaryDir m_dir;
    QString m_ini;
};

QTEST_GUILESS_MAIN(SettingsStoreTest)
#include "tst_settingsstore.moc"
