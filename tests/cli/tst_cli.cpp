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
    void initTestCase();
    void init();
    void timingWithDefaults();
    void timingOptions_data();
    void timingOptions();
    void profileValuesAreUsed();
    void pattern_data();
    void pattern();
    void render_data();
    void render();
    void renderFromWindows1252File();
    void exercisePinned_data();
    void exercisePinned();
    void exerciseOptions_data();
    void exerciseOptions();
    void badUsage_data();
    void badUsage();
    void realProcessExitStatus_data();
    void realProcessExitStatus();
    void writeFailure_data();
    void writeFailure();
    void words_data();
    void words();
    void killedImportLeavesTheTableWhole();
    void text_data();
    void text();

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

void CliTest::initTestCase()
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
}

void CliTest::init()
{
    m_ini = m_fixture.path("does-not-exist-yet.ini");
    QFile::remove(m_ini);
    QFile::remove(m_root + "/tmp/test.wav");
    QFile::remove(m_root + "/tmp/test.txt");
}

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

void CliTest::timingWithDefaults()
{
    const Run r = run({"timing"});
    QCOMPARE(r.status, 0);
    QCOMPARE(r.out, QStringLiteral(
                        "NP=120\nNT=48\nES=108\nEL=48\nEM=11\nVP=120\nVT=144\nVS=108\nVL=144\n"
                        "VM=99\nTT=615\ndot=97\ndash=291\nelementGap=97\nletterGap=291\n"
                        "wordGap=873\nSoit 97 Millièmes de secondes pour un point (arrondie à "
                        "l'unité inférieure)\n"));
    QVERIFY(r.err.isEmpty());
}

void CliTest::timingOptions_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("lines"); // lines that must appear
    QTest::addRow("word gap of 7") << QStringList{"--cm", "7"} << QStringList{"TT=593", "dot=101", "wordGap=707"};
    QTest::addRow("speed clamped to 3") << QStringList{"--wpm", "2"} << QStringList{"EM=2", "NP=30"};
    QTest::addRow("fractional dash") << QStringList{"--ct", "3.5"} << QStringList{"VT=168", "dot=93", "dash=325.5"};
    QTest::addRow("reference word trimmed") << QStringList{"--wpm", "10", "--word", " CODEX "} << QStringList{"TT=611"};
    QTest::addRow("option with =") << QStringList{"--wpm=20"} << QStringList{"EM=19"};
}

void CliTest::timingOptions()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, lines);
    const Run r = run(options + QStringList{"timing"});
    QCOMPARE(r.status, 0);
    const QStringList got = r.out.split('\n');
    for (const QString &line : lines)
        QVERIFY2(got.contains(line), qPrintable(line + " not in\n" + r.out));
}

void CliTest::profileValuesAreUsed()
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

void CliTest::pattern_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out");
    QTest::addRow("letter") << "A" << 0 << ".-\ta.wav\n";
    QTest::addRow("double quote") << "\"" << 0 << ".-..-.\tguillemet.wav\n";
    QTest::addRow("accented capital") << "È" << 0 << ".-..-\te_grave.wav\n";
    QTest::addRow("no row in a fresh process") << "~" << 2 << "";
}

void CliTest::pattern()
{
    QFETCH(QString, character);
    QFETCH(int, status);
    QFETCH(QString, out);
    const Run r = run({"pattern", character});
    QCOMPARE(r.status, status);
    QCOMPARE(r.out, out);
    QCOMPARE(r.err.isEmpty(), status == 0);
}

void CliTest::render_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("textCopy");
    QTest::addColumn<QString>("sameSoundAs"); // a text that, sent whole without signs, sounds the same
    QTest::addRow("text option, signs off") << QStringList{"--debfin", "0", "--text", "E E"}
                                            << QByteArray() << "E E" << "E E";
    QTest::addRow("signs from the profile default") << QStringList{"--text", "A"} << QByteArray()
                                                    << "A" << "VVV A +";
    QTest::addRow("standard input loses one line feed")
        << QStringList{"--debfin", "0"} << QByteArray("ET\n") << "ET" << "ET";
    QTest::addRow("standard input loses one CR LF only")
        << QStringList{"--debfin", "0"} << QByteArray("ET\r\n\r\n") << "ET\r\n" << "ET\r\n";
    QTest::addRow("standard input is UTF-8") << QStringList{"--debfin", "0"}
                                             << QByteArray("\xc3\xa9t\xc3\xa9") << "été" << "été";
    QTest::addRow("selection past every number") << QStringList{"--debfin", "0", "--text", "EEE", "--selection", "2,9223372036854775807"}
                                                 << QByteArray() << "EEE" << "E";
    QTest::addRow("selection counts after the trim")
        << QStringList{"--debfin", "0", "--text", "  TE ET", "--selection", "3,2"} << QByteArray()
        << "TE ET" << "ET";
    QTest::addRow("signs asked for") << QStringList{"--debfin", "1", "--text", "A"} << QByteArray()
                                     << "A" << "VVV A +";
    QTest::addRow("own signs") << QStringList{"--deb", "CQ", "--fin", "K", "--text", "E"}
                               << QByteArray() << "E" << "CQ E K";
}

void CliTest::render()
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

void CliTest::renderFromWindows1252File()
{
    const QString path = m_fixture.path("texte.txt");
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("\xe9t\xe9\r\n"); // bytes are taken as they are: the CR LF stays
    f.close();
    const Run r = run({"render", "--file", path, "--debfin", "0"});
    QCOMPARE(r.status, 0);
    QCOMPARE(testsupport::readFile(m_root + "/tmp/test.txt"), QByteArray("\xe9t\xe9\r\n"));
}

void CliTest::exercisePinned_data()
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

void CliTest::exercisePinned()
{
    QFETCH(QString, kind);
    QFETCH(QString, text);
    const Run r = run({"--seed", "7", "exercise", kind, "--count", "4", "--progress", "egmz0ahtr1.?",
                       "--min", "2", "--max", "6", "--renfor", " k "});
    QCOMPARE(r.status, 0);
    QCOMPARE(r.err, QString());
    QCOMPARE(r.out, text);
}

void CliTest::exerciseOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("outPattern");
    QTest::addColumn<QString>("err");

    QTest::newRow("profile's values: 36 groups of 5 of the whole set")
        << QStringList{"exercise", "letters"} << 0 << "([A-Z]{5} ){36}" << "";
    QTest::newRow("count 0 is 1") << QStringList{"exercise", "callsigns", "--count", "0"} << 0 << "\\S+ " << "";
    QTest::newRow("count 150 is 102") << QStringList{"exercise", "digits", "--count", "150", "--progress", "7"}
                                      << 0 << "(7{5} ){102}" << "";
    QTest::newRow("count not a number is 1") << QStringList{"exercise", "digits", "--count", "abc", "--progress", "7"}
                                             << 0 << "7{5} " << "";
    QTest::newRow("append") << QStringList{"exercise", "digits", "--count", "1", "--progress", "7", "--append", "AB"}
                            << 0 << "AB 7{5} " << "";
    QTest::newRow("table and condition") << QStringList{"exercise", "words", "--count", "2", "--where", "len(mot) = 3"}
                                         << 0 << "((été|mer|âge) ){2}" << "";
    QTest::newRow("empty table: said, not an error") << QStringList{"exercise", "words", "--table", "vide"}
                                                     << 0 << "" << "ne contient aucun mot";
    QTest::newRow("missing table") << QStringList{"exercise", "words", "--table", "absente"} << 2 << ""
                                   << "absente";
    QTest::newRow("condition refused") << QStringList{"exercise", "words-plain", "--where", "mot like"} << 2 << ""
                                       << "a échoué";
    QTest::newRow("progression without words") << QStringList{"exercise", "progression-words", "--progress", "xyz"}
                                               << 0 << "" << "Pas assez de lettes";
    QTest::newRow("mock exam reads mot whatever the table")
        << QStringList{"exercise", "mock-exam", "--table", "vide", "--progress", "a1"}
        << 0 << "(a{5} ){30}(1{5} ){6}\r\n\r\n( \\S+){5}  [0-9]{4}.*\\." << "";
    QTest::newRow("seed not a number") << QStringList{"--seed", "sept", "exercise", "letters"} << 2 << ""
                                       << "--seed attend un nombre entier";
    QTest::newRow("unknown kind") << QStringList{"exercise", "lettres"} << 2 << "" << "Genre d'exercice inconnu";
    QTest::newRow("no kind") << QStringList{"exercise"} << 2 << "" << "un seul genre";
}

void CliTest::exerciseOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, outPattern);
    QFETCH(QString, err);
    const Run r = run(arguments);
    QCOMPARE(r.status, status);
    QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(outPattern),
                                QRegularExpression::DotMatchesEverythingOption)
                 .match(r.out)
                 .hasMatch(),
             qPrintable(r.out));
    QVERIFY2(err.isEmpty() ? r.err.isEmpty() : r.err.contains(err), qPrintable(r.err));
}

void CliTest::badUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::addRow("no command") << QStringList{} << "Il manque la commande";
    QTest::addRow("unknown command") << QStringList{"joue"} << "Commande inconnue";
    QTest::addRow("unknown option") << QStringList{"--vitesse", "12", "timing"} << "Option inconnue";
    QTest::addRow("missing value") << QStringList{"timing", "--wpm"} << "Il manque la valeur";
    QTest::addRow("debfin not 0 or 1") << QStringList{"--debfin", "oui", "timing"} << "--debfin";
    QTest::addRow("selection not numbers") << QStringList{"render", "--text", "E", "--selection", "a"} << "--selection";
    QTest::addRow("negative selection") << QStringList{"render", "--text", "E", "--selection", "-1,2"} << "--selection";
    QTest::addRow("pattern without character") << QStringList{"pattern"} << "caractère";
    QTest::addRow("pattern of two characters") << QStringList{"pattern", "ab"} << "un seul caractère";
    QTest::addRow("unreadable file") << QStringList{"render", "--file", "/nonexistent/x.txt"} << "Impossible de lire";
    QTest::addRow("calculation error") << QStringList{"--cm", "-100", "timing"} << "positif";
    QTest::addRow("speed too high for a dot") << QStringList{"--wpm", "1e9", "render", "--text", "E"} << "point de 0 ms";
    QTest::addRow("speed beyond any number") << QStringList{"--wpm", "9999999999999999999999", "render", "--text", "E"} << "point de 0 ms";
    QTest::addRow("empty user") << QStringList{"--user", "", "timing"} << "vide";
}

void CliTest::badUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Run r = run(arguments);
    QCOMPARE(r.status, 2);
    QVERIFY2(r.err.contains(message), qPrintable(r.err));
    QVERIFY(!QFile::exists(m_root + "/tmp/test.wav"));
}

void CliTest::realProcessExitStatus_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addRow("render") << QStringList{"render", "--text", "PARIS"} << 0;
    QTest::addRow("bad usage") << QStringList{"nothing"} << 2;
    QTest::addRow("missing database") << QStringList{"--root", "/nonexistent", "timing"} << 2;
}

void CliTest::realProcessExitStatus()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QProcess p;
    p.setProgram(QString::fromUtf8(testpaths::treeDir) + "/kelvora-cli");
    p.setArguments(QStringList{"--root", m_root, "--settings", m_ini} + arguments);
    p.setProcessChannelMode(QProcess::SeparateChannels);
    p.start();
    QVERIFY(p.waitForFinished(30000));
    QCOMPARE(p.exitCode(), status);
    if (status != 0)
        QVERIFY(!p.readAllStandardError().isEmpty());
}

void CliTest::writeFailure_data()
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
void CliTest::writeFailure()
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

void CliTest::words_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out"); // a regular expression the output must match
    QTest::addColumn<QString>("err");
    QTest::addRow("tables") << QStringList{"words", "tables"} << 0 << "^mot\nvide\n$" << "";
    QTest::addRow("count with a condition") << QStringList{"words", "count", "--where", "mot like '*e*'"} << 0 << "^6\n$" << "";
    QTest::addRow("list in order") << QStringList{"words", "list", "--where", "len(mot) <= 3"} << 0 << "^âge\nété\nmer\n$" << "";
    QTest::addRow("second statement") << QStringList{"words", "count", "--where", "1=1; drop table ref"} << 2 << "^$" << "Une seule instruction";
    QTest::addRow("union reading ref") << QStringList{"words", "list", "--where", "mot like '*' union select car from ref"} << 2 << "^$" << "ne peut que lire la table « mot »";
    QTest::addRow("unclosed quote") << QStringList{"words", "count", "--where", "mot like 'a"} << 2 << "^$" << "a échoué";
    QTest::addRow("table ref") << QStringList{"words", "count", "--table", "ref"} << 2 << "^$" << "n'existe pas";
    QTest::addRow("bad create") << QStringList{"words", "create", "a b"} << 2 << "^$" << "erreur de creation de table";
    QTest::addRow("delete mot") << QStringList{"words", "delete"} << 2 << "^$" << "ne peut pas être supprimée";
    QTest::addRow("export") << QStringList{"words", "export", "--table", "vide"} << 0 << "/import/vide\\d\\d-\\d\\d_\\d{6}\\.txt\\n$" << "";
    QTest::addRow("clean") << QStringList{"words", "clean", "--table", "vide", "--duplicates"} << 0 << "^Doublons retirés : 0\n$" << "";
    QTest::addRow("unknown action") << QStringList{"words", "sort"} << 2 << "^$" << "Action inconnue";
}

void CliTest::words()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, out);
    QFETCH(QString, err);
    QVERIFY(QDir().mkpath(m_root + "/import"));
    const Run r = run(arguments);
    QCOMPARE(r.status, status);
    QVERIFY2(QRegularExpression(out).match(r.out).hasMatch(), qPrintable(r.out));
    QVERIFY2(r.err.contains(err), qPrintable(r.err));
}

// The program killed in the middle of a large import: the table is as it was and the
// backup written before it is whole.
void CliTest::killedImportLeavesTheTableWhole()
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

void CliTest::text_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out"); // exactly; for an error, part of the message
    QTest::addRow("groups from standard input") << QStringList{"transform", "groups"} << QByteArray("ABCDEFGHIJKL\n") << 0 << "ABCDE FGHIJ ";
    QTest::addRow("accents") << QStringList{"transform", "accents", "--text", "Noël-Ü"} << QByteArray() << 0 << "Noel/Ü";
    QTest::addRow("reverse") << QStringList{"transform", "reverse", "--text", "  abc  "} << QByteArray() << 0 << "cba";
    QTest::addRow("spaces") << QStringList{"transform", "spaces", "--text", "a b"} << QByteArray() << 0 << "a   b ";
    QTest::addRow("empty text") << QStringList{"transform", "groups", "--text", ""} << QByteArray() << 0 << "";
    QTest::addRow("no tool") << QStringList{"transform"} << QByteArray() << 2 << "attend un outil";
    QTest::addRow("unknown tool") << QStringList{"transform", "upper"} << QByteArray() << 2 << "Outil inconnu";
    QTest::addRow("text file") << QStringList{"textfile", "qso.txt"} << QByteArray() << 0 << "CQ DE F4KVXNoël";
    QTest::addRow("text file appended") << QStringList{"textfile", "qso.txt", "--append", "VVV"} << QByteArray() << 0 << "VVV CQ DE F4KVXNoël";
    QTest::addRow("text file missing") << QStringList{"textfile", "absent.txt"} << QByteArray() << 2 << "absent.txt";
}

void CliTest::text()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, input);
    QFETCH(int, status);
    QFETCH(QString, out);
    const Run r = run(arguments, input);
    QCOMPARE(r.status, status);
    if (status == 0)
        QVERIFY(r.out == out && r.err.isEmpty());
    else
        QVERIFY2(r.err.contains(out), qPrintable(r.err));
    QVERIFY(!QFile::exists(m_root + "/textes/absent.txt"));
}

QTEST_GUILESS_MAIN(CliTest)
#include "tst_cli.moc"
