// The tools of the "Outils" menu and the loading of a text file.
#include "texttools/Accents.h"
#include "texttools/TextFile.h"
#include "texttools/Transforms.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace kelvora;

class TextToolsTest : public QObject {
    Q_OBJECT
private slots:
    void transforms_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        QTest::newRow("groups A to L") << "groups" << "ABCDEFGHIJKL" << "ABCDE FGHIJ ";
        QTest::newRow("groups 5 or fewer") << "groups" << "ABCDE" << "";
        QTest::newRow("groups 11 give two") << "groups" << "ABCDEFGHIJK" << "ABCDE FGHIJ ";
        // In a run of n blanks, n / 2 survive and take a place in the groups.
        QTest::newRow("groups 1 blank") << "groups" << "abc defgh" << "abcde ";
        QTest::newRow("groups 2 blanks") << "groups" << "abc  defgh" << "abc d ";
        QTest::newRow("groups 3 blanks") << "groups" << "abc   defgh" << "abc d ";
        QTest::newRow("groups 4 blanks") << "groups" << "abc    defgh" << "abc   ";
        QTest::newRow("groups 5 blanks") << "groups" << "abc     defgh" << "abc   ";
        QTest::newRow("groups line ends kept") << "groups" << "ab\ncdefgh" << "ab\ncd ";
        QTest::newRow("reverse trims blanks") << "reverse" << "  abc  " << "cba";
        QTest::newRow("reverse CR LF stays") << "reverse" << "ab\r\ncd" << "dc\r\nba";
        QTest::newRow("spaces a blank b") << "spaces" << "a b" << "a   b ";
        QTest::newRow("spaces trims first") << "spaces" << " ab " << "a b ";
        QTest::newRow("spaces emoji") << "spaces" << "😀é" << "😀 é ";
        QTest::newRow("acc: capitals and ü kept, hyphen") << "acc" << "Noël-ÉÜ" << "Noel/ÉÜ";
    }
    void transforms()
    {
        QFETCH(QString, tool);
        QFETCH(QString, text);
        QFETCH(QString, result);
        const QString out = tool == "groups" ? textTools::fiveCharacterGroups(text)
                            : tool == "reverse" ? textTools::reversed(text)
                            : tool == "acc"     ? textTools::acc(text)
                                                : textTools::spacedOut(text);
        QCOMPARE(out, result);
    }

    void fileBytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("CR LF joins the lines") << QByteArray("CQ CQ\r\nDE F4KVX\r\n") << "CQ CQDE F4KVX";
        QTest::newRow("LF") << QByteArray("a\nb\n") << "ab";
        QTest::newRow("CR") << QByteArray("a\rb") << "ab";
        QTest::newRow("no line end") << QByteArray("abc") << "abc";
        QTest::newRow("Windows-1252 accents") << QByteArray("No\xebl \x80 \x9c") << "Noël € œ";
        QTest::newRow("NUL kept") << QByteArray("a\0b", 3) << QString("a") + QChar(0) + "b";
    }
    void fileBytes()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(textFile::textOf(bytes), text);
    }

    void loadingAFile()
    {
        QTemporaryDir dir;
        for (const char *name : {"b.txt", "A.TXT", "c.txt.bak", "a2.txt"}) {
            QFile f(dir.filePath(name));
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write("x\r\n") == 3);
        }
        QVERIFY(QDir(dir.path()).mkdir("d.txt")); // a folder is not a text
        QCOMPARE(textFile::list(dir.path()), QStringList({"A.TXT", "a2.txt", "b.txt"}));
        const textFile::Read r = textFile::read(dir.filePath("b.txt"));
        QVERIFY(r.ok && r.text == "x" && r.error.isEmpty());
        QCOMPARE(textFile::loaded("texte", false, r.text), QStringLiteral("x"));
        QCOMPARE(textFile::loaded("texte", true, r.text), QStringLiteral("texte x"));
        // Gone between the listing and the click: an error, and no file made.
        const textFile::Read gone = textFile::read(dir.filePath("parti.txt"));
        QVERIFY(!gone.ok && gone.error.contains("parti.txt"));
        QVERIFY(!QFile::exists(dir.filePath("parti.txt")));
        QCOMPARE(textFile::list(dir.filePath("absent")), QStringList());
    }

    // A text longer than the box takes keeps its whole words, and whole characters.
    void cutForTheBox_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("limit");
        QTest::addColumn<QString>("kept");
        QTest::newRow("fits") << "abc def" << 7 << "abc def";
        QTest::newRow("at the blank") << "abc def" << 5 << "abc";
        QTest::newRow("blank at the limit") << "abc def" << 4 << "abc";
        QTest::newRow("one long word") << "abcdef" << 3 << "abc";
        QTest::newRow("emoji not halved") << QString::fromUtf8("ab\U0001F600") << 3 << "ab";
    }
    void cutForTheBox()
    {
        QFETCH(QString, text);
        QFETCH(int, limit);
        QFETCH(QString, kept);
        QCOMPARE(textFile::cutAtBlank(text, limit), kept);
    }
};

QTEST_GUILESS_MAIN(TextToolsTest)
#include "tst_texttools.moc"
