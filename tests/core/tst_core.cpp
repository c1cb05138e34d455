// The helpers every box, file and draw of the program goes through: the leading-number
// parse, the number format, the Windows-1252 code page and the one random source.
#include "core/Numbers.h"
#include "core/Random.h"
#include "core/Windows1252.h"

#include <QtTest>

#include <random>
#include <set>

using namespace kelvora;

class CoreTest : public QObject {
    Q_OBJECT
private slots:
    void leadingNumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        QTest::addRow("leading blanks, tab, line feed") << " \t\n7" << 7.0;
        QTest::addRow("blanks inside the digits") << "1 2\t3" << 123.0;
        QTest::addRow("minus") << "-5" << -5.0;
        QTest::addRow("blank after the sign") << "- 5" << -5.0;
        QTest::addRow("exponent") << "1e3" << 1000.0;
        QTest::addRow("exponent D, negative") << "25D-1" << 2.5;
        QTest::addRow("hexadecimal") << "&H1F" << 31.0;
        QTest::addRow("octal") << "&O17" << 15.0;
        QTest::addRow("not a number") << "abc" << 0.0;
    }
    void leadingNumber()
    {
        QFETCH(QString, text);
        QFETCH(double, value);
        QCOMPARE(numbers::leadingNumber(text), value);
    }

    void format_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::addRow("whole") << 97.0 << "97";
        QTest::addRow("negative") << -0.25 << "-0.25";
        QTest::addRow("very large") << 1e20 << "1e+20";
    }
    void format()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(numbers::format(value), text);
        QCOMPARE(numbers::leadingNumber(text), value); // reads back the same
    }

    void windows1252_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::addRow("accents") << QByteArray("\xe9\xe8\xe0\xe7\xd9") << "éèàçÙ";
        QTest::addRow("euro, quotes, oe") << QByteArray("\x80\x93\x94\x9c") << "€“”œ";
        // The five undefined bytes become the C1 controls of the same value, and back.
        QTest::addRow("undefined bytes") << QByteArray("\x81\x8d\x8f\x90\x9d")
                                         << QString::fromUtf16(u"\u0081\u008d\u008f\u0090\u009d");
    }
    void windows1252()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(windows1252::decode(bytes), text);
        QCOMPARE(windows1252::encode(text), bytes);
    }
    void windows1252Unwritable()
    {
        // Each character the code page lacks is one "?", an emoji too.
        QCOMPARE(windows1252::encode(QString::fromUtf8("a\xe2\x86\x92" "b\xf0\x9f\x98\x80")), QByteArray("a?b?"));
        QVERIFY(!windows1252::canEncode(U'\u2192'));
        QVERIFY(windows1252::canEncode(U'\u20ac'));
        // Every byte reads back as itself.
        QByteArray all;
        for (int b = 0; b < 256; ++b)
            all.append(char(b));
        QCOMPARE(windows1252::encode(windows1252::decode(all)), all);
    }

    void randomSeed()
    {
        // The same seed gives the same draws, each (next() >> 11) / 2^53 of mt19937_64.
        std::mt19937_64 reference(20261123);
        random::seed(20261123);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(random::rnd(), double(reference() >> 11) * 0x1p-53);
        random::seed(7);
        QList<int> first, again;
        for (int i = 0; i < 20; ++i)
            first << random::draw(44);
        random::seed(7);
        for (int i = 0; i < 20; ++i)
            again << random::draw(44);
        QCOMPARE(again, first);
    }
    void randomDraw_data()
    {
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("base");
        QTest::addRow("an index") << 44 << 0;
    }
    void randomDraw()
    {
        QFETCH(int, n);
        QFETCH(int, base);
        random::seed(1);
        std::set<int> seen;
        for (int i = 0; i < 20000; ++i)
            seen.insert(random::draw(n, base));
        QCOMPARE(int(seen.size()), n); // every value is reached, and none outside
        QCOMPARE(*seen.begin(), base);
        QCOMPARE(*seen.rbegin(), base + n - 1);
    }
};

QTEST_GUILESS_MAIN(CoreTest)
#include "tst_core.moc"
