#include "words/FrenchCollation.h"

#include <QtTest>

#include <algorithm>

using namespace kelvora;

namespace {

int sign(int v)
{
    return (v > 0) - (v < 0);
}

int compareBoth(const QString &a, const QString &b)
{
    const int utf16 = sign(frenchCollation::compare(a, b));
    const QByteArray ua = a.toUtf8(), ub = b.toUtf8();
    const int utf8 = sign(frenchCollation::compareUtf8({ua.constData(), size_t(ua.size())},
                                                       {ub.constData(), size_t(ub.size())}));
    if (utf16 != utf8)
        return 99; // both encodings must give the same order
    return utf16;
}

} // namespace

class TestFrenchCollation : public QObject {
    Q_OBJECT
private slots:
    void compare_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("expected");

        QTest::newRow("case ignored") << "Arbre" << "arbre" << 0;
        QTest::newRow("accented capital equals small") << "ÉTÉ" << "été" << 0;
        QTest::newRow("accents matter") << "e" << "é" << -1;
        QTest::newRow("accent weaker than a letter") << "été" << "ether" << -1;
        QTest::newRow("cote < côte") << "cote" << "côte" << -1;
        QTest::newRow("côte < coté (last accent decides)") << "côte" << "coté" << -1;
        QTest::newRow("cedilla") << "ca" << "ça" << -1;
        QTest::newRow("oe ligature by its letters") << "œuf" << "oeufs" << -1;
        QTest::newRow("sharp s as ss") << "Straße" << "strasses" << -1;
        QTest::newRow("decomposed accent equals composed") << QString::fromUtf8("e\xcc\x81t\xc3\xa9") << "été" << 0;
        QTest::newRow("hyphen by its code") << "arc-en-ciel" << "arcade" << -1;
        QTest::newRow("emoji after letters") << QString::fromUtf8("\xf0\x9f\x98\x80") << "z" << 1;
    }

    void compare()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, expected);
        QCOMPARE(compareBoth(a, b), expected);
        QCOMPARE(compareBoth(b, a), -expected);
    }

    void sorts_data()
    {
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("dictionary")
            << QStringList{"à", "abeille", "abricot", "Ami", "Arbre", "arc-en-ciel", "Ça", "cab", "cote",
                           "côte", "coté", "côté", "Écran", "élève", "été", "fête", "flûte", "garçon",
                           "île", "maïs", "oeuf", "Œuf", "pêche", "péché", "straße", "Zèbre"};
    }

    void sorts()
    {
        QFETCH(QStringList, expected);
        QStringList words = expected;
        std::reverse(words.begin(), words.end());
        std::rotate(words.begin(), words.begin() + words.size() / 3, words.end());
        std::sort(words.begin(), words.end(),
                  [](const QString &a, const QString &b) { return frenchCollation::compare(a, b) < 0; });
        QCOMPARE(words, expected);
        // A sort is only sound if the order is consistent over every pair.
        for (qsizetype i = 0; i < words.size(); ++i) {
            for (qsizetype j = i + 1; j < words.size(); ++j)
                QVERIFY2(compareBoth(words[i], words[j]) == -1, qPrintable(words[i] + " / " + words[j]));
        }
    }
};

QTEST_GUILESS_MAIN(TestFrenchCollation)
#include "tst_frenchcollation.moc"
