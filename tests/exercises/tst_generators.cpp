#include "RefFixture.h"
#include "core/Random.h"
#include "exercises/Generators.h"
#include "exercises/TableWords.h"
#include "words/FrenchCollation.h"
#include "words/RecordSet.h"
#include "words/WordDatabase.h"

#include <QRegularExpression>
#include <QtTest>

#include <map>
#include <set>

using namespace kelvora;
using exercises::Kind;

namespace {

// The groups of a generated text: it ends with a blank and holds one blank per group.
QStringList groupsOf(const QString &text)
{
    QStringList groups = text.split(u' ');
    if (!groups.isEmpty() && groups.last().isEmpty())
        groups.removeLast();
    return groups;
}

exercises::Result make(Kind kind, const exercises::Options &o, WordSource *words = nullptr,
                       const QString &present = {}, bool append = false)
{
    return exercises::generate(kind, present, append, o, words);
}

exercises::Options options(const QString &count, const QString &progression,
                           const QString &shortest = "5", const QString &longest = "5",
                           const QString &renfor = {})
{
    exercises::Options o;
    o.groupCount = count;
    o.progression = progression;
    o.shortest = shortest;
    o.longest = longest;
    o.reinforcement = renfor;
    return o;
}

} // namespace

class GeneratorsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { random::seed(20261123); }

    void groupFilters_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("progression");
        QTest::addColumn<QString>("count");
        QTest::addColumn<int>("groups");
        QTest::addColumn<QString>("groupPattern"); // every group matches it

        QTest::newRow("digits of eish5") << Kind::Digits << "eish5" << "12" << 12 << "5{5}";
        QTest::newRow("no sign in eish5: empty groups") << Kind::Punctuation << "eish5" << "7" << 7 << "";
        QTest::newRow("signs only, prosign marks too") << Kind::Punctuation << "ab1.,?<*" << "30" << 30
                                                       << "[.,?<*]{5}";
        QTest::newRow("upper-case letters pass, written as found") << Kind::Letters << "ABC1" << "30" << 30
                                                                   << "[ABC]{5}";
        QTest::newRow("accented letters are not letters") << Kind::Letters << "éèa" << "30" << 30 << "a{5}";
        QTest::newRow("exam ignores nbgroup: 30 letter groups...") << Kind::Exam << "ab12" << "3" << 36
                                                                   << "[ab]{5}|[12]{5}";
    }

    void groupFilters()
    {
        QFETCH(Kind, kind);
        QFETCH(QString, progression);
        QFETCH(QString, count);
        QFETCH(int, groups);
        QFETCH(QString, groupPattern);
        // The exam reads neither nbgroup nor the lengths.
        const auto r = make(kind, options(count, progression, kind == Kind::Exam ? "2" : "5",
                                          kind == Kind::Exam ? "7" : "5"));
        QVERIFY(r.text.endsWith(u' '));
        const QStringList found = groupsOf(r.text);
        QCOMPARE(found.size(), groups);
        const QRegularExpression pattern(QRegularExpression::anchoredPattern(groupPattern));
        for (const QString &group : found)
            QVERIFY2(pattern.match(group).hasMatch(), qPrintable(group));
        if (kind == Kind::Exam) {
            for (int g = 0; g < 36; ++g)
                QCOMPARE(found[g].contains(QRegularExpression("[12]")), g >= 30);
        }
    }

    void lengthBounds_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("shortest");
        QTest::addColumn<QString>("longest");
        QTest::addColumn<QList<int>>("lengths"); // each reached, nothing else
        QTest::addColumn<QString>("progression");

        QTest::newRow("3 to 7") << Kind::Letters << "3" << "7" << QList<int>{3, 4, 5, 6, 7} << "ab12";
        // Int(Rnd × (3 − 7 + 1)) + 7: the formula as it stands.
        QTest::newRow("GRMIN above GRMAX") << Kind::Letters << "7" << "3" << QList<int>{4, 5, 6} << "ab12";
        QTest::newRow("guard stops a huge group") << Kind::Letters << "99999999" << "99999999" << QList<int>{1000} << "ab";
        // Half the draws fail the filter: the guard ends each group at about 500 letters.
        QTest::newRow("mixed has no guard: cut at 1000") << Kind::Mixed << "99999999" << "99999999"
                                                         << QList<int>{1000} << "ab12";
        // Int(Rnd × 1.9) + 2: 2 or 3.
    }

    void lengthBounds()
    {
        QFETCH(Kind, kind);
        QFETCH(QString, shortest);
        QFETCH(QString, longest);
        QFETCH(QList<int>, lengths);
        QFETCH(QString, progression);
        const auto r = make(kind, options("102", progression, shortest, longest));
        std::map<int, int> seen;
        for (const QString &g : groupsOf(r.text + (r.text.endsWith(u' ') ? "" : " ")))
            ++seen[int(g.size())];
        // Groups of length 0 leave only their blanks.
        if (lengths == QList<int>{0}) {
            QCOMPARE(r.text, QString(102, u' '));
            return;
        }
        QList<int> reached;
        for (const auto &[length, n] : seen)
            reached << length;
        QCOMPARE(reached, lengths);
        // About as many of each length (102 groups over at most 5 lengths).
        for (const auto &[length, n] : seen)
            QVERIFY2(n >= 102 / int(lengths.size()) / 3, qPrintable(QString::number(length)));
    }

    void reinforcement_data()
    {
        QTest::addColumn<QString>("renfor");
        QTest::addColumn<QString>("length");
        QTest::addColumn<double>("rate"); // share of groups that hold it

        // The position is drawn from 1 to 5 whatever the length.
        QTest::newRow("two-letter groups: 2 in 5") << "k" << "2" << 0.4;
        QTest::newRow("five-letter groups: all") << "k" << "5" << 1.0;
        QTest::newRow("blank: never") << "" << "5" << 0.0;
    }

    void reinforcement()
    {
        QFETCH(QString, renfor);
        QFETCH(QString, length);
        QFETCH(double, rate);
        int with = 0;
        for (int run = 0; run < 10; ++run) {
            const auto more = make(Kind::Letters, options("102", "abc", length, length, renfor));
            for (const QString &g : groupsOf(more.text))
                with += !renfor.isEmpty() && g.contains(renfor) ? 1 : 0;
        }
        QVERIFY(qAbs(with / 1020.0 - rate) < 0.06);
        // The digit groups of the exam never carry it.
        const auto exam = make(Kind::Exam, options("1", "ab1", "5", "5", "k"));
        for (const QString &g : groupsOf(exam.text).mid(30))
            QVERIFY(!g.contains(u'k'));
    }

    // Appended after a double blank, or in place of the text.
    void startRule()
    {
        for (const bool append : {false, true}) {
            const QString text = make(Kind::Letters, options("1", "ab"), nullptr, "abcde ", append).text;
            const QRegularExpression pattern(QRegularExpression::anchoredPattern(append ? "abcde  [ab]{5} " : "[ab]{5} "));
            QVERIFY2(pattern.match(text).hasMatch(), qPrintable(text));
        }
    }

    void itemCount_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count");
        QTest::newRow("above") << "150" << 102;
        QTest::newRow("text") << "abc" << 0;
        QTest::newRow("exponent") << "1e9" << 102;
    }

    void itemCount()
    {
        QFETCH(QString, text);
        QFETCH(int, count);
        QCOMPARE(exercises::itemCount(text), count);
        QCOMPARE(groupsOf(make(Kind::CallSigns, options(text, "")).text).size(), count);
    }

    void callSignShapesAndMarks()
    {
        const QRegularExpression shape(
            QRegularExpression::anchoredPattern("([A-Z]|[0-9])([A-Z][0-9]|[0-9][A-Z])[A-Z]{2}(/P|/M|/MM)?"));
        std::map<QString, int> marks;
        int digitFirst = 0, total = 0;
        for (int run = 0; run < 40; ++run) {
            for (const QString &sign : groupsOf(make(Kind::CallSigns, options("100", "")).text)) {
                QVERIFY2(shape.match(sign).hasMatch(), qPrintable(sign));
                ++total;
                digitFirst += sign[0].isDigit() ? 1 : 0;
                if (sign.contains(u'/'))
                    ++marks[sign.mid(sign.indexOf(u'/'))];
            }
        }
        QCOMPARE(total, 4000);
        const auto share = [total](int n) { return double(n) / total; };
        QVERIFY(qAbs(share(digitFirst) - 1.0 / 8) < 0.02);
        QVERIFY(qAbs(share(marks["/P"]) - 1.0 / 16) < 0.015);
        QVERIFY(qAbs(share(marks["/M"]) - 1.0 / 32) < 0.012);
        QVERIFY(qAbs(share(marks["/MM"]) - 1.0 / 32) < 0.012);
    }

    void randomWords_data()
    {
        QTest::addColumn<QStringList>("table");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("present");
        QTest::addColumn<QString>("expected"); // empty: check notice
        QTest::addColumn<QString>("notice");

        QTest::newRow("été three times") << QStringList{"été"} << Kind::Words << "" << "" << "été été été " << "";
        QTest::newRow("appended text loses its accents too")
            << QStringList{"été"} << Kind::WordsPlain << "" << "à-côté" << "a/cote ete ete ete " << "";
        QTest::newRow("empty table") << QStringList{} << Kind::Words << "" << "" << ""
                                     << "La table « mot » ne contient aucun mot.";
        QTest::newRow("condition keeps one") << QStringList{"été", "chat"} << Kind::Words << "len(mot) = 4" << ""
                                             << "chat chat chat " << "";
        QTest::newRow("condition refused") << QStringList{"été"} << Kind::Words << "mot like" << "" << ""
                                           << "a échoué";
        QTest::newRow("condition reading another table") << QStringList{"été"} << Kind::Words
                                                         << "mot in (select car from ref)" << "" << "" << "ne peut que lire la table « mot »";
    }

    void randomWords()
    {
        QFETCH(QStringList, table);
        QFETCH(Kind, kind);
        QFETCH(QString, condition);
        QFETCH(QString, present);
        QFETCH(QString, expected);
        QFETCH(QString, notice);
        fillTable(table);
        TableWords words(m_fixture.databasePath(), "mot", condition);
        const auto r = make(kind, options("3", ""), &words, present, !present.isEmpty());
        QVERIFY2(r.notice.contains(notice), qPrintable(r.notice));
        QCOMPARE(r.notice.isEmpty(), notice.isEmpty());
        if (!expected.isEmpty())
            QCOMPARE(r.text, expected);
        else
            QCOMPARE(r.text, QString());
    }

    void progressionWords_data()
    {
        QTest::addColumn<QString>("progression");
        QTest::addColumn<QStringList>("allowed");
        QTest::newRow("egmz0") << "egmz0" << QStringList{"gem", "mezze", "", "gem0"};
        // The upper-case entry matches lower-case words once lowered; accents do not.
        QTest::newRow("upper-case progression") << "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*"
                                                << QStringList{"gem", "mezze", "", "gem0", "chat", "a.b"};
    }

    void progressionWords()
    {
        QFETCH(QString, progression);
        QFETCH(QStringList, allowed);
        // Gem has a capital, été accents: they never qualify; the empty word always does.
        fillTable({"gem", "mezze", "Gem", "été", "", "gem0", "chat", "a.b"});
        TableWords words(m_fixture.databasePath(), "mot");
        std::set<QString> seen;
        for (int run = 0; run < 20; ++run) {
            const auto r = make(Kind::ProgressionWords, options("102", progression), &words);
            QVERIFY(!r.abandoned);
            const QStringList found = r.text.split(u' ').mid(0, 102);
            QCOMPARE(r.text.count(u' '), 102);
            for (const QString &w : found) {
                QVERIFY2(allowed.contains(w), qPrintable(w));
                seen.insert(w);
            }
        }
        QCOMPARE(seen.size(), size_t(allowed.size())); // every one drawn, uniformly enough
    }

    void abandonedSearchKeepsNothing()
    {
        fillTable({"chat", "chien"});
        TableWords words(m_fixture.databasePath(), "mot");
        // No word of the table: abandoned at once, the text keeps its start.
        auto r = exercises::generate(Kind::ProgressionWords, "abc ", true, options("5", "egmz0"), &words);
        QVERIFY(r.abandoned);
        QCOMPARE(r.text, QString("abc  "));
        // A search given up by the watchdog writes nothing either (a table long enough for
        // the search to ask).
        fillTable(QStringList(20000, QStringLiteral("chat")));
        r = exercises::generate(Kind::ProgressionWords, "", false, options("5", "chatien"), &words,
                                [] { return false; });
        QVERIFY(r.abandoned);
        QCOMPARE(r.text, QString());
    }

    void mockExamLayout()
    {
        fillTable({"été", "forêt", "chat", "arc-en-ciel"});
        TableWords words(m_fixture.databasePath(), "mot");
        const auto r = exercises::generate(Kind::MockExam, "old text", true, options("20", "ab12", "2", "7", "k"),
                                           &words);
        const QString word = "(ete|foret|chat|arc/en/ciel)";
        const QRegularExpression layout(QRegularExpression::anchoredPattern(
            "([abk]{5} ){30}([12]{5} ){6}\r\n\r\n (" + word + " ){5} [0-9]{4}( (" + word + " ){6}[,?.]){3}"));
        QVERIFY2(layout.match(r.text).hasMatch(), qPrintable(r.text));
    }

    void drawsFollowTheWindowsOrder()
    {
        // The positions drawn count in the order the window's record set shows the table,
        // without sorting it whole: every position must give the same word.
        const QStringList table{"côte", "Cote", "coté", "côté", "cote", "Zèbre", "zebre", "œuf", "oeuvre", "a-b",
                                "ab", "Ab", "", "éléphant", "elephant", "ELEPHANTS", "abcdefghij", "abcdefghi",
                                "abcdefghé", "abcdefghe", "ß", "ss", "9", "10", "é"};
        fillTable(table);
        RecordSet shown(m_fixture.databasePath(), "select * from mot order by mot");
        QVERIFY(shown.refresh());
        TableWords words(m_fixture.databasePath(), "mot");
        QCOMPARE(words.count(), int(table.size()));
        std::vector<int> all(table.size());
        for (size_t i = 0; i < all.size(); ++i)
            all[i] = int(all.size() - 1 - i); // asked in any order
        const std::vector<QString> picked = words.wordsAt(all);
        for (size_t i = 0; i < all.size(); ++i) {
            QVERIFY(shown.moveTo(all[i]));
            // Words equal in the order (côte, Cote) may stand either way round.
            QVERIFY2(frenchCollation::equal(shown.word(), picked[i]), qPrintable(shown.word() + " / " + picked[i]));
        }
    }

private:
    // A word table `mot` holding `words`, read as the window reads it.
    void fillTable(const QStringList &words)
    {
        WordDatabase &db = m_fixture.database();
        QVERIFY(db.exec("delete from mot"));
        QVERIFY(db.write([&](WordDatabase &w) {
            for (const QString &word : words) {
                if (!w.exec("insert into mot (mot) values (?)", {word.isNull() ? QVariant() : QVariant(word)}))
                    return false;
            }
            return true;
        }));
    }
    testsupport::RefFixture m_fixture;
};

QTEST_GUILESS_MAIN(GeneratorsTest)
#include "tst_generators.moc"
