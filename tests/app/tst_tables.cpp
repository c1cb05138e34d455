// The word tables in the main window: the list, the record bar, the query field.
#include "WindowTest.h"
#include "ui/WordTableArea.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>
#include <QSignalSpy>
#include <QtTest>

using namespace kelvora;

class TablesTest : public testsupport::WindowTest {
    Q_OBJECT
    QString caption() const { return w<QLabel>("Data1caption")->text(); }
    QString word() const { return w<QLabel>("Text14")->text(); }
    void chooseTable(const QString &table) { choose("TABLES", w<QComboBox>("TABLES")->findText(table)); }
    // The banner, the record bar, the query's label and the table menu all name `table`.
    void checkShown(const QString &table, bool chosen)
    {
        const QStringList words = fx->words(table);
        QCOMPARE(valueOf("TABLES"), table);
        QCOMPARE(win->windowTitle(), banner(table, words.size()));
        QCOMPARE(caption(), QString::number(words.size()));
        QCOMPARE(word(), words.front());
        QCOMPARE(w<QLabel>("Label31")->text(), "Requête sur les mots de la Table " + table);
        // A chosen table is named "la table" in three entries; at start it is not.
        const QString la = chosen ? "la table " : "";
        const std::pair<const char *, QString> captions[] = {
            {"importmot1", "Importer des mots dans " + la + "'" + table + "'"}, {"exportmot", "Exporter les mots de " + la + "'" + table + "'"},
            {"edittablcourante", "Editer " + la + "'" + table + "'"}, {"videtable", "Vider '" + table + "'"}, {"supprimetable", "Supprimer '" + table + "'"}};
        for (const auto &[name, text] : captions)
            QCOMPARE(w<QAction>(name)->text(), text);
    }

private slots:
    void tableShown_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("chosen"); // then picked in the list, if any
        QTest::addRow("nothing stored") << "<absent>" << "";
        QTest::addRow("qcode") << "qcode" << "";
        QTest::addRow("mot to qcode") << "mot" << "qcode";
        QTest::addRow("qcode back to mot") << "qcode" << "mot";
    }
    void tableShown()
    {
        QFETCH(QString, stored);
        QFETCH(QString, chosen);
        if (stored != "<absent>")
            fx->store("défaut", "lasttable", stored);
        open();
        QCOMPARE(w("TABLES")->toolTip(), QStringLiteral("Sélectionne une Table"));
        if (chosen.isEmpty())
            return checkShown(stored.isEmpty() || stored == "<absent>" ? "mot" : stored, false);
        w<QComboBox>("REQ")->setCurrentIndex(3);
        chooseTable(chosen);
        checkShown(chosen, true);
        QCOMPARE(fx->stored("défaut", "lasttable"), chosen);
        QCOMPARE(valueOf("REQ"), QStringLiteral("mot like '*'"));
    }

    void arrowsMoveThroughTheTable_data()
    {
        // The caption shows where the record set stood when asked to move; the word is
        // the one it moved to. Words of mot: avion Bateau chemin dune éclair.
        QTest::addColumn<QString>("arrows"); // F first, P previous, N next, L last
        QTest::addColumn<QString>("shownCaption");
        QTest::addColumn<int>("wordIndex");
        QTest::addRow("next") << "N" << "0" << 1;
        QTest::addRow("last then previous") << "LP" << "4" << 3;
        QTest::addRow("next at the end stays") << "LN" << "4" << 4;
    }
    void arrowsMoveThroughTheTable()
    {
        QFETCH(QString, arrows);
        QFETCH(QString, shownCaption);
        QFETCH(int, wordIndex);
        open();
        chooseTable("qcode");
        chooseTable("mot");
        for (QChar arrow : arrows)
            QTest::mouseClick(w(arrow == 'F' ? "Data1premier" : arrow == 'P' ? "Data1precedent" : arrow == 'N' ? "Data1suivant" : "Data1dernier"),
                              Qt::LeftButton);
        QCOMPARE(caption(), shownCaption);
        QCOMPARE(word(), fx->words("mot").at(wordIndex));
    }

    void storedTableThatNoLongerExistsShowsNothing()
    {
        open({{"lasttable", "disparue"}});
        QCOMPARE(valueOf("TABLES"), QString());
        QCOMPARE(win->windowTitle(), banner("disparue", 0));
        QTest::mouseClick(w("Data1suivant"), Qt::LeftButton);
        QVERIFY(caption() == "0" && word().isEmpty());
        // Nothing repairs the setting until another table is chosen.
        QCOMPARE(fx->stored("défaut", "lasttable"), QStringLiteral("disparue"));
        chooseTable("qcode");
        QCOMPARE(fx->stored("défaut", "lasttable"), QStringLiteral("qcode"));
        QCOMPARE(word(), QStringLiteral("QRM"));
    }

    void queryNarrowsTheWords_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("first");
        QTest::addRow("starting with a or b") << "mot like '[ab]*'" << 2 << "avion";
        QTest::addRow("empty means every word") << "" << 5 << "avion";
        QTest::addRow("refused by the engine") << "mot lik 'a'" << 0 << "";
    }
    void queryNarrowsTheWords()
    {
        QFETCH(QString, condition);
        QFETCH(int, count);
        QFETCH(QString, first);
        open();
        QLineEdit *query = w<QComboBox>("REQ")->lineEdit();
        query->setFocus();
        query->selectAll();
        QTest::keyClick(w("REQ"), Qt::Key_Delete); // where a user's keys arrive: the combo box
        QTest::keyClicks(w("REQ"), condition);
        QTest::keyClick(w("REQ"), Qt::Key_Return);
        QCOMPARE(caption(), QString::number(count));
        QCOMPARE(word(), first);
        QVERIFY(win->windowTitle().contains(QStringLiteral("Table : mot (%1)").arg(count)));
        if (condition.isEmpty())
            QCOMPARE(query->text(), QStringLiteral("mot like '*'"));
        QVERIFY(fx->prompts.messages.isEmpty());
    }

    // A typed condition that would run for ever is stopped: the words of the last
    // condition stay, and the status bar says why (no message box).
    void runawayConditionIsStopped()
    {
        open();
        QLineEdit *query = w<QComboBox>("REQ")->lineEdit();
        const auto apply = [&](const QString &condition) {
            query->selectAll();
            QTest::keyClicks(w("REQ"), condition);
            QTest::keyClick(w("REQ"), Qt::Key_Return);
        };
        apply("mot like '[ab]*'");
        QStringList joins;
        for (char c = 'a'; c <= 'l'; ++c)
            joins << QStringLiteral("mot %1").arg(c);
        QSignalSpy notices(win->findChild<WordTableArea *>(), &WordTableArea::notice);
        apply("mot in (select a.mot from " + joins.join(", ") + ")");
        QCOMPARE(notices.size(), 1); // stopped, and run once for one Enter
        QCOMPARE(caption(), QStringLiteral("2"));
        QCOMPARE(word(), QStringLiteral("avion"));
        QVERIFY2(statusText().startsWith("Requête arrêtée au bout de 2 s"), qPrintable(statusText()));
        QVERIFY(fx->prompts.messages.isEmpty());
        click("Data1suivant"); // the set still moves
        QCOMPARE(word(), QStringLiteral("Bateau"));
    }

    void activationReadsTheTableAgain()
    {
        open();
        QVERIFY(fx->addWord("mot", "abeille"));
        QCOMPARE(word(), QStringLiteral("avion"));
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        win->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(win.get()));
        QCOMPARE(word(), QStringLiteral("abeille"));
    }
};

QTEST_MAIN(TablesTest)
#include "tst_tables.moc"
