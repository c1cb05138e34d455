#include "CliApp.h"
#include "RefFixture.h"
#include "TestPaths.h"
#include "words/WordDatabase.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QProcess>
#include <QtTest>

using namespace kelvora;

class CliTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        m_root = m_fixture.path("root");
        QVERIFY(QDir().mkpath(m_root + "/db"));
        QVERIFY(QDir().mkpath(m_root + "/tmp"));
        QVERIFY(QFile::copy(m_fixture.databasePath(), m_root + "/db/kvmot.sqlite"));
        WordDatabase db(m_root + "/db/kvmot.sqlite");
        for (const char *word : {"été", "forêt", "chat", "arc-en-ciel", "gare", "terre", "mer", "zèbre", "âge"})
            QVERIFY(db.exec("insert into mot (mot) values (?)", {QString::fromUtf8(word)}));
        QVERIFY(db.exec("create table vide (mot text)"));
        QVERIFY(QDir().mkpath(m_root + "/textes"));
        QFile qso(m_root + "/textes/qso.txt");
        QVERIFY(qso.open(QIODevice::WriteOnly) && qso.write("CQ DE F4KVX\r\nNo\xebl\r\n") == 19);
        QFile text(m_root + "/texte.txt"); // sent as it is: the CR LF stays
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("\xe9t\xe9\r\n") == 5);
    }

    void init()
    {
        m_ini = m_fixture.path("does-not-exist-yet.ini");
        QFile::remove(m_ini);
        QFile::remove(m_root + "/tmp/test.wav");
        QFile::remove(m_root + "/tmp/test.txt");
    }

    // One command a row: its status, its whole output (a regular expression) and a part of
    // its error output (empty: none). A refused command writes no sound.
    void commands_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        const auto row = [](const char *name, const QStringList &arguments, int status, const QString &out, const QString &err = {},
                            const QByteArray &input = {}) { QTest::newRow(name) << arguments << input << status << out << err; };
        row("timing with the defaults", {"timing"}, 0,
            "NP=120\nNT=48\nES=108\nEL=48\nEM=11\nVP=120\nVT=144\nVS=108\nVL=144\nVM=99\nTT=615\ndot=97\ndash=291\nelementGap=97\n"
            "letterGap=291\nwordGap=873\nSoit 97 Millièmes de secondes pour un point \\(arrondie à l'unité inférieure\\)\n");
        row("speed clamped to 3", {"--wpm", "2", "timing"}, 0, "NP=30\n.*EM=2\n.*");
        row("reference word trimmed, option with =", {"--wpm=10", "--word", " CODEX ", "timing"}, 0, ".*EM=9\n.*TT=611\n.*");
        row("pattern of a letter", {"pattern", "A"}, 0, "\\.-\ta\\.wav\n");
        row("no row in a fresh process", {"pattern", "~"}, 2, "", "~");
        row("36 groups of 5 of the whole set", {"exercise", "letters"}, 0, "([A-Z]{5} ){36}");
        row("count 0 is 1", {"exercise", "callsigns", "--count", "0"}, 0, "\\S+ ");
        row("count 150 is 102", {"exercise", "digits", "--count", "150", "--progress", "7"}, 0, "(7{5} ){102}");
        row("append", {"exercise", "digits", "--count", "1", "--progress", "7", "--append", "AB"}, 0, "AB 7{5} ");
        row("table and condition", {"exercise", "words", "--count", "2", "--where", "len(mot) = 3"}, 0, "((été|mer|âge) ){2}");
        row("empty table: said, not an error", {"exercise", "words", "--table", "vide"}, 0, "", "ne contient aucun mot");
        row("missing table", {"exercise", "words", "--table", "absente"}, 2, "", "absente");
        row("condition refused", {"exercise", "words-plain", "--where", "mot like"}, 2, "", "a échoué");
        row("progression without words", {"exercise", "progression-words", "--progress", "xyz"}, 0, "", "Pas assez de lettes");
        row("mock exam reads mot whatever the table", {"exercise", "mock-exam", "--table", "vide", "--progress", "a1"}, 0,
            "(a{5} ){30}(1{5} ){6}\r\n\r\n( \\S+){5}  [0-9]{4}.*\\.");
        row("unknown kind", {"exercise", "lettres"}, 2, "", "Genre d'exercice inconnu");
        row("no command", {}, 2, "", "Il manque la commande");
        row("unknown command", {"joue"}, 2, "", "Commande inconnue");
        row("unknown option", {"--vitesse", "12", "timing"}, 2, "", "Option inconnue");
        row("debfin not 0 or 1", {"--debfin", "oui", "timing"}, 2, "", "--debfin");
        row("unreadable file", {"render", "--file", "/nonexistent/x.txt"}, 2, "", "Impossible de lire");
        row("speed too high for a dot", {"--wpm", "1e9", "render", "--text", "E"}, 2, "", "point de 0 ms");
        row("tables", {"words", "tables"}, 0, "mot\nvide\n");
        row("count with a condition", {"words", "count", "--where", "mot like '*e*'"}, 0, "6\n");
        row("second statement", {"words", "count", "--where", "1=1; drop table ref"}, 2, "", "Une seule instruction");
        row("bad create", {"words", "create", "a b"}, 2, "", "erreur de creation de table");
        row("delete mot", {"words", "delete"}, 2, "", "ne peut pas être supprimée");
        row("export", {"words", "export", "--table", "vide"}, 0, ".*/import/vide\\d\\d-\\d\\d_\\d{6}\\.txt\n");
        row("clean", {"words", "clean", "--table", "vide", "--duplicates"}, 0, "Doublons retirés : 0\n");
        row("groups from standard input", {"transform", "groups"}, 0, "ABCDE FGHIJ ", {}, "ABCDEFGHIJKL\n");
        row("unknown tool", {"transform", "upper"}, 2, "", "Outil inconnu");
        row("text file", {"textfile", "qso.txt"}, 0, "CQ DE F4KVXNoël");
    }

    void commands()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, input);
        QFETCH(int, status);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QVERIFY(QDir().mkpath(m_root + "/import"));
        const Run r = run(arguments, input);
        QCOMPARE(r.status, status);
        const QRegularExpression whole(QRegularExpression::anchoredPattern(out), QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(whole.match(r.out).hasMatch(), qPrintable(r.out));
        QVERIFY2(err.isEmpty() ? r.err.isEmpty() : r.err.contains(err), qPrintable(r.err));
        QVERIFY(status == 0 || !QFile::exists(m_root + "/tmp/test.wav"));
        QVERIFY(!QFile::exists(m_root + "/textes/absent.txt"));
    }

    void profileValuesAreUsed()
    {
        {
            QSettings ini(m_ini, QSettings::IniFormat);
            ini.setValue("lastuser/user", "Zoé");
            ini.setValue(QStringLiteral("Zoé/vitesse"), "20");
            ini.setValue(QStringLiteral("Zoé/volume"), "500");
            ini.setValue("Marc/vitesse", "5");
        }
        QVERIFY(run({"timing"}).out.contains("EM=19\n"));
        QVERIFY(run({"--user", "Marc", "timing"}).out.contains("EM=4\n"));
        QVERIFY(run({"--wpm", "30", "timing"}).out.contains("EM=29\n"));
        // The stored volume 500 passes the panel's clamp, so rendering works.
        QCOMPARE(run({"render", "--text", "E"}).status, 0);
    }

    void render_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("textCopy");
        QTest::addColumn<QString>("sameSoundAs"); // a text that, sent whole without signs, sounds the same
        QTest::addRow("text option, signs off") << QStringList{"--debfin", "0", "--text", "E E"}
                                                << QByteArray() << "E E" << "E E";
        QTest::addRow("signs from the profile default") << QStringList{"--text", "A"} << QByteArray()
                                                        << "A" << "VVV A +";
        QTest::addRow("standard input loses one CR LF only")
            << QStringList{"--debfin", "0"} << QByteArray("ET\r\n\r\n") << "ET\r\n" << "ET\r\n";
        QTest::addRow("standard input is UTF-8") << QStringList{"--debfin", "0"}
                                                 << QByteArray("\xc3\xa9t\xc3\xa9") << "été" << "été";
        QTest::addRow("selection past every number") << QStringList{"--debfin", "0", "--text", "EEE", "--selection", "2,9223372036854775807"}
                                                     << QByteArray() << "EEE" << "E";
        QTest::addRow("Windows-1252 file") << QStringList{"--debfin", "0", "--file", m_root + "/texte.txt"} << QByteArray()
                                           << QString::fromLatin1("\xe9t\xe9\r\n") << "été\r\n";
        QTest::addRow("signs asked for") << QStringList{"--debfin", "1", "--text", "A"} << QByteArray()
                                         << "A" << "VVV A +";
        QTest::addRow("own signs") << QStringList{"--deb", "CQ", "--fin", "K", "--text", "E"}
                                   << QByteArray() << "E" << "CQ E K";
    }

    void render()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, input);
        QFETCH(QString, textCopy);
        QFETCH(QString, sameSoundAs);
        const Run r = run(QStringList{"render"} + options, input);
        QCOMPARE(r.status, 0);
        QVERIFY(r.out.contains(m_root + "/tmp/test.wav"));
        QVERIFY(r.out.contains("Durée : "));
        QCOMPARE(testsupport::readFile(m_root + "/tmp/test.txt"), textCopy.toLatin1());
        const QByteArray sound = testsupport::readFile(m_root + "/tmp/test.wav");

        const QString other = m_fixture.path("other.wav");
        const Run reference = run({"render", "--debfin", "0", "--text", sameSoundAs, "-o", other,
                                   "--txt", m_fixture.path("other.txt")});
        QCOMPARE(reference.status, 0);
        QVERIFY(testsupport::readFile(other) == sound);
    }

    void exercisePinned_data()
    {
        // The text of seed 7 for every kind. A change here is a change in the order of the
        // draws: a teacher's seed would no longer give the class the same exercise.
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("text");
        const QStringList kinds{"letters", "digits", "punctuation", "mixed", "exam", "progression-words",
                                "words", "words-plain", "callsigns", "mock-exam"};
        const QStringList texts{
            QStringLiteral("ggekrt zkt ek krt "),
            QStringLiteral("110k01 k111 0k01 001k "),
            QStringLiteral("..?k.. ?.. ?? .? "),
            QStringLiteral("g.gk1. 1k0z1 ?kztze k0 "),
            QStringLiteral("ggekr tzzkt ekgmz thekr rzkgh ehkgt mhhtk kgzeg hzmkr krhtz egkgr tgkhm rgkrm aeeek ekget thkmz zemkz grkmr khreh tzhke hahrk zhtgk khggz arkmm hkgae aegak ghtka hkhtr ehkmh hamgk 10000 11000 00000 10111 11010 01000 "),
            QStringLiteral("terre terre gare terre "),
            QStringLiteral("mer zèbre arc-en-ciel zèbre "),
            QStringLiteral("mer zebre arc/en/ciel zebre "),
            QStringLiteral("Y8DBV SP3IV ZG6HB E3RQN "),
            QStringLiteral("ggekr tzzkt ekgmz thekr rzkgh ehkgt mhhtk kgzeg hzmkr krhtz egkgr tgkhm rgkrm aeeek ekget thkmz zemkz grkmr khreh tzhke hahrk zhtgk khggz arkmm hkgae aegak ghtka hkhtr ehkmh hamgk 10000 11000 00000 10111 11010 01000 \r\n\r\n ete age terre foret gare  4588 gare zebre arc/en/ciel gare terre mer , arc/en/ciel terre foret arc/en/ciel age age ? terre gare terre foret ete terre ."),
        };
        for (qsizetype i = 0; i < kinds.size(); ++i)
            QTest::newRow(qPrintable(kinds[i])) << kinds[i] << texts.value(i);
    }

    void exercisePinned()
    {
        QFETCH(QString, kind);
        QFETCH(QString, text);
        const Run r = run({"--seed", "7", "exercise", kind, "--count", "4", "--progress", "egmz0ahtr1.?",
                           "--min", "2", "--max", "6", "--renfor", " k "});
        QCOMPARE(r.status, 0);
        QCOMPARE(r.err, QString());
        QCOMPARE(r.out, text);
    }

    void writeFailure_data()
    {
        QTest::addColumn<QString>("setup");  // run first, in a mount namespace when it mounts; "old" writes the last exercise
        QTest::addColumn<QString>("output"); // -o, relative to the root
        QTest::addColumn<QString>("reason");
        QTest::addRow("full disk") << "mount -t tmpfs -o size=16k tmpfs tmp && old" << "tmp/test.wav" << "plus de place sur le disque";
        QTest::addRow("read-only folder") << "mount -t tmpfs tmpfs tmp && old && mount -o remount,ro tmp" << "tmp/test.wav" << "en lecture seule";
        QTest::addRow("/dev/full") << "old" << "/dev/full" << "pas un fichier ordinaire";
        QTest::addRow("a folder") << "old" << "tmp" << "c'est un dossier";
    }

    // A sound that cannot be written is an error (exit 2) naming the file and the reason,
    // never "Fichier écrit"; the sound and text of the last exercise stay as they were.
    void writeFailure()
    {
        QFETCH(QString, setup);
        QFETCH(QString, output);
        QFETCH(QString, reason);
        const bool mounts = setup.contains("mount");
        if (mounts && QProcess::execute("unshare", {"-rm", "true"}) != 0)
            QSKIP("no user namespace here (unshare -rm): the mounted file systems cannot be made");
        const QString cli = QString::fromUtf8(testpaths::treeDir) + "/kelvora-cli";
        QString script = "old() { printf old > tmp/test.wav && printf old > tmp/test.txt; }\n"
                         "cd \"$1\" && " + setup + " || exit 99\n"
                         "\"$2\" --root . --settings \"$3\" render --text \"$4\" -o \"$5\"\n"
                         "echo \"status=$? wav=$(cat tmp/test.wav) txt=$(cat tmp/test.txt) files=$(ls -A tmp | tr '\\n' ' ')\"\n";
        QStringList arguments{"-c", script, "sh", m_root, cli, m_ini, QString("PARIS ").repeated(20), output};
        QProcess p;
        if (mounts)
            p.start("unshare", QStringList{"-rm", "sh"} + arguments);
        else
            p.start("sh", arguments);
        QVERIFY(p.waitForFinished(30000));
        const QString out = QString::fromUtf8(p.readAllStandardOutput());
        const QString err = QString::fromUtf8(p.readAllStandardError());
        QVERIFY2(out.contains("status=2 wav=old txt=old files=test.txt test.wav \n") && !out.contains("Fichier écrit"), qPrintable(out + err));
        QVERIFY2(err.startsWith("Impossible d'écrire le fichier « " + output + " » : ") && err.contains(reason), qPrintable(err));
        QVERIFY(!QFileInfo("/dev/full").isFile());
    }

    // The program killed in the middle of a large import: the table is as it was and the
    // backup written before it is whole.
    void killedImportLeavesTheTableWhole()
    {
        QVERIFY(QDir().mkpath(m_root + "/import"));
        QVERIFY(run({"words", "create", "gros"}).status == 0);
        {
            WordDatabase db(m_root + "/db/kvmot.sqlite");
            for (int i = 0; i < 500; ++i)
                QVERIFY(db.exec("insert into gros (mot) values (?)", {QStringLiteral("ancien%1").arg(i)}));
        }
        QByteArray big;
        for (int i = 0; i < 3'000'000; ++i)
            big += "mot" + QByteArray::number(i) + "\r\n";
        const QString file = m_root + "/import/gros.txt";
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(big) == big.size());
        f.close();

        QProcess p;
        p.setProgram(QString::fromUtf8(testpaths::treeDir) + "/kelvora-cli");
        p.setArguments({"--root", m_root, "--settings", m_ini, "words", "import", "--table", "gros", "--file", file});
        p.start();
        // The backup's path comes first; the import runs after it.
        QVERIFY(p.waitForReadyRead(30000));
        const QString backup = QString::fromUtf8(p.readLine()).trimmed();
        p.kill();
        QVERIFY(p.waitForFinished(10000));
        QCOMPARE(p.exitStatus(), QProcess::CrashExit);

        WordDatabase db(m_root + "/db/kvmot.sqlite");
        QCOMPARE(db.query("pragma integrity_check").rows.front().value(0).toString(), QStringLiteral("ok"));
        QCOMPARE(db.query("select count(*) from gros where mot like 'ancien*'").rows.front().value(0).toInt(), 500);
        QCOMPARE(db.query("select count(*) from gros").rows.front().value(0).toInt(), 500);
        const QByteArray saved = testsupport::readFile(backup);
        QCOMPARE(saved.count("\r\n"), 500);
        QVERIFY(saved.startsWith("ancien0\r\nancien1\r\nancien10\r\n"));
        QVERIFY(db.exec("drop table gros"));
    }

private:
    struct Run {
        int status;
        QString out;
        QString err;
    };
    Run run(QStringList arguments, const QByteArray &input = {});

    testsupport::RefFixture m_fixture;
    QString m_root;
    QString m_ini;
};

CliTest::Run CliTest::run(QStringList arguments, const QByteArray &input)
{
    arguments = QStringList{"kelvora-cli", "--root", m_root, "--settings", m_ini} + arguments;
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    QBuffer in;
    in.setData(input);
    in.open(QIODevice::ReadOnly);
    const int status = cli::run(arguments, "/nowhere", outStream, errStream, in);
    outStream.flush();
    errStream.flush();
    return {status, out, err};
}

QTEST_GUILESS_MAIN(CliTest)
#include "tst_cli.moc"
