#include "words/JetPattern.h"

#include <QtTest>

using namespace kelvora;

class TestJetPattern : public QObject {
    Q_OBJECT
private slots:
    void matches_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("expected");

        // The conditions offered to the user.
        QTest::newRow("* empty") << "*" << "" << true;
        QTest::newRow("????? arbre") << "?????" << "arbre" << true;
        QTest::newRow("????? accented letters count one each") << "?????" << "flûte" << true;
        QTest::newRow("ab* capital") << "ab*" << "Abricot" << true;
        QTest::newRow("*é* été") << "*é*" << "été" << true;
        QTest::newRow("*e* not é") << "*e*" << "été" << false;
        QTest::newRow("*-* hyphen") << "*-*" << "arc-en-ciel" << true;

        // Code points, not UTF-16 units.
        QTest::newRow("? emoji") << "?" << QString::fromUtf8("\xf0\x9f\x98\x80") << true;

        // Digits and sets.
        QTest::newRow("# digit") << "#" << "7" << true;
        QTest::newRow("# letter") << "#" << "a" << false;
        QTest::newRow("set member") << "[abc]" << "b" << true;
        QTest::newRow("negated set") << "[!abc]" << "d" << true;
        QTest::newRow("range") << "[a-c]x" << "bx" << true;
        QTest::newRow("negated range") << "[!a-c]" << "d" << true;
        QTest::newRow("range with accents in dictionary order") << "[a-z]" << "é" << true;
        QTest::newRow("empty brackets are nothing") << "a[]b" << "ab" << true;
        QTest::newRow("closing bracket alone") << "a]" << "a]" << true;

        // A wildcard written in brackets is itself.
        QTest::newRow("[*] star") << "[*]" << "*" << true;
        QTest::newRow("[#] hash") << "[#]1" << "#1" << true;

        // Backtracking over stars.
        QTest::newRow("star backtracks") << "*a*b" << "xaxab" << true;
        QTest::newRow("long run") << "*a*a*a*a*b" << QString(200, u'a') << false;
    }

    void matches()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, text);
        QFETCH(bool, expected);
        const JetPattern compiled(pattern);
        QVERIFY(compiled.isValid());
        QCOMPARE(compiled.matches(text), expected);
        const QByteArray utf8 = text.toUtf8(); // as the database hands words over
        QCOMPARE(compiled.matchesUtf8(utf8.constData(), utf8.size()), expected);
    }

    void malformed_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("unclosed set") << "[abc";
        QTest::newRow("reversed range") << "[z-a]";
    }

    void malformed()
    {
        QFETCH(QString, pattern);
        const JetPattern compiled(pattern);
        QVERIFY(!compiled.isValid());
        QVERIFY(compiled.errorString().contains(pattern));
        QVERIFY(!compiled.matches(pattern));
        QVERIFY(!compiled.matches(QString()));
    }
};

QTEST_GUILESS_MAIN(TestJetPattern)
#include "tst_jetpattern.moc"
