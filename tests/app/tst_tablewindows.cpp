// The word tables in the main window: the list, the record bar, the query field, the
// Table menu with its messages and captions, the query window, and the table editor.
#include "WindowTest.h"
#include "core/Windows1252.h"
#include "ui/TableEditor.h"
#include "ui/WordGridModel.h"
#include "ui/WordTableArea.h"
#include "words/QueryComposer.h"
#include "words/WordDatabase.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTableView>
#include <QtTest>

using namespace kelvora;
using queryComposer::Piece;

class TableWindowsTest : public testsupport::WindowTest {
    Q_OBJECT
    // The five entries' captions, joined.
    QString captions() const
    {
        QStringList texts;
        for (const char *name : {"importmot1", "exportmot", "edittablcourante", "videtable", "supprimetable"})
            texts << w<QAction>(name)->text();
        return texts.join(" | ");
    }
    // A chosen table is named "la table" in three entries; at start it is not.
    static QString longCaptions(const QString &t, const QString &la = "la table ")
    {
        return QStringLiteral("Importer des mots dans %2'%1' | Exporter les mots de %2'%1' | "
                              "Editer %2'%1' | Vider '%1' | Supprimer '%1'").arg(t, la);
    }
    // The banner, the record bar, the query's label and the table menu all name `table`.
    void checkShown(const QString &table, bool chosen)
    {
        const QStringList words = fx->words(table);
        QCOMPARE(valueOf("TABLES"), table);
        QCOMPARE(win->windowTitle(), banner(table, words.size()));
        QCOMPARE(caption(), QString::number(words.size()));
        QCOMPARE(word(), words.front());
        QCOMPARE(w<QLabel>("Label31")->text(), "Requête sur les mots de la Table " + table);
        QCOMPARE(captions(), longCaptions(table, chosen ? "la table " : ""));
    }
    QString caption() const { return w<QLabel>("Data1caption")->text(); }
    QString word() const { return w<QLabel>("Text14")->text(); }
    void chooseTable(const QString &table) { choose("TABLES", w<QComboBox>("TABLES")->findText(table)); }
    // The export file a "Table sauvegardé sous : " message names, as words.
    QStringList exported() const
    {
        const QString prefix = QStringLiteral("Table sauvegardé sous : ");
        for (const QString &m : fx->prompts.messages)
            if (m.startsWith(prefix)) {
                const QString text = windows1252::decode(testsupport::fileBytes(QDir::fromNativeSeparators(m.mid(prefix.size()))));
                return text.split("\r\n", Qt::SkipEmptyParts);
            }
        return {};
    }
    QWidget *queryWindow()
    {
        click("Command17");
        return fsql();
    }
    QWidget *fsql() const { return w<QWidget>("Fsql"); }
    // The query window's own buttons (the main window has buttons of the same names).
    void fsqlClick(const QString &name) { testsupport::press(fsql()->findChild<QPushButton *>(name)); }
    QPushButton *piece(Piece p) { return fsql()->findChild<QPushButton *>(QStringLiteral("Command%1").arg(int(p) + 1)); }
    QPlainTextEdit *rq() { return fsql()->findChild<QPlainTextEdit *>("rq"); }

private slots:
    void tableShown_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("chosen"); // then picked in the list, if any
        QTest::addRow("nothing stored") << "<absent>" << "";
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
            return checkShown(stored == "<absent>" ? "mot" : stored, false);
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

    void tableOperations_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("table");  // current before
        QTest::addColumn<QString>("answer"); // to the name question; "<cancel>" cancels
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("after"); // current table after
        QTest::addColumn<QStringList>("tables");
        const QStringList all = {"animaux", "mot", "qcode"};
        const QString wait = "cliquez sur 'OK' et Patientez s.v.p. !", before = "Avant la bétise je vous fait une exportation !";
        QTest::addRow("create") << "createtable" << "mot" << "liste" << QStringList() << "liste" << QStringList{"animaux", "liste", "mot", "qcode"};
        QTest::addRow("create cancelled") << "createtable" << "qcode" << "<cancel>" << QStringList() << "qcode" << all;
        QTest::addRow("create with a blank") << "createtable" << "qcode" << "ma liste" << QStringList{"erreur de creation de table"} << "qcode" << all;
        QTest::addRow("empty qcode") << "videtable" << "qcode" << "" << QStringList{before, wait, "<backup>", "La Table est maintenant vide"} << "qcode" << all;
        QTest::addRow("delete qcode") << "supprimetable" << "qcode" << "" << QStringList{before, wait, "<backup>", "La Table est Supprimée"} << "mot" << QStringList{"animaux", "mot"};
        QTest::addRow("delete mot does nothing") << "supprimetable" << "mot" << "" << QStringList() << "mot" << all;
        QTest::addRow("export") << "exportmot" << "animaux" << "" << QStringList{wait, "<backup>"} << "animaux" << all;
        QTest::addRow("empty, no import folder") << "videtable" << "qcode" << "<no folder>" << QStringList{before, wait, "<no folder>"} << "qcode" << all;
    }
    void tableOperations()
    {
        QFETCH(QString, entry);
        QFETCH(QString, table);
        QFETCH(QString, answer);
        QFETCH(QStringList, messages);
        QFETCH(QString, after);
        QFETCH(QStringList, tables);
        const QStringList words = fx->words(table);
        if (answer != "<no folder>")
            QVERIFY(QDir().mkpath(fx->path("import")));
        open({{"lasttable", table == "mot" ? "qcode" : "mot"}});
        choose("TABLES", w<QComboBox>("TABLES")->findText(table));
        fx->prompts.textAnswers.push_back(answer == "<cancel>" ? std::nullopt : std::optional<QString>(answer));
        QStringList shownBehind; // the captions while each message is open
        fx->prompts.onMessage = [&](const QString &) { shownBehind << captions(); };
        trigger(entry);

        QStringList seen = fx->prompts.messages;
        for (QString &m : seen)
            if (m.startsWith("Table sauvegardé sous : " + QDir::toNativeSeparators(fx->path("import/" + table))) && m.endsWith(".txt"))
                m = "<backup>";
            else if (m == QStringLiteral("Le dossier « %1 » n'existe pas : la table n'a pas été touchée.").arg(QDir::toNativeSeparators(fx->path("import"))))
                m = "<no folder>";
        QCOMPARE(seen, messages);
        if (messages.contains("<backup>"))
            QCOMPARE(exported(), words); // every former word, in the window's order
        QCOMPARE(items("TABLES"), tables);
        QCOMPARE(fx->stored("défaut", "lasttable"), after);
        if (!fx->words(after).isEmpty())
            checkShown(after, true);
        else
            QCOMPARE(win->windowTitle(), banner(after, 0));
        if (entry == "videtable")
            QCOMPARE(fx->words(table), answer == "<no folder>" ? words : QStringList());
        if (entry == "supprimetable" && !messages.isEmpty()) // the short form, while the last message shows
            QCOMPARE(shownBehind.last(), longCaptions("mot", ""));
        // A new table opens in the editor, empty.
        TableEditor *editor = win->tableEditor();
        QCOMPARE(editor != nullptr, entry == "createtable" && after == answer);
        if (editor)
            QCOMPARE(editor->windowTitle(), "Kelvora Version 3.2.5 Table : " + answer + " (0)");
    }

    void importAddsTheFileWords_data()
    {
        QTest::addColumn<QByteArray>("file"); // "<none>": no file
        QTest::addColumn<QStringList>("added");
        QTest::addColumn<QString>("last");
        // mot holds 5 words; a blank, a duplicate and a last line without CR are not added.
        QTest::addRow("words") << QByteArray("z\xe8" "bre\r\nabeille\r\nz\xe8" "bre\r\n  \r\nfin") << QStringList{"abeille", "zèbre"} << "avant import 5 Après import 7";
        QTest::addRow("no file") << QByteArray("<none>") << QStringList() << "avant import 5 Après import 5\n\nLe fichier %1 n'existe pas : aucun mot n'a été importé.";
    }
    void importAddsTheFileWords()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, added);
        QFETCH(QString, last);
        QVERIFY(QDir().mkpath(fx->path("import")));
        if (file != "<none>") {
            QFile f(fx->path("import/mot.txt"));
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(file) == file.size());
        }
        const QStringList before = fx->words("mot");
        open();
        trigger("importmot1");
        const QStringList m = fx->prompts.messages;
        QCOMPARE(m.size(), 5);
        QCOMPARE(m.mid(0, 2), QStringList({"Avant l'import je fait une sauvegarde au cas ou !", "cliquez sur 'OK' et Patientez s.v.p. !"}));
        QVERIFY(m[2].startsWith("Table sauvegardé sous : "));
        QCOMPARE(m[3], QStringLiteral("placez ou éditez dans le repertoire de Kelvora/import un fichier nomé mot.txt (un mot par ligne)"));
        QCOMPARE(m[4], last.arg(QDir::toNativeSeparators(fx->path("import/mot.txt"))));
        QCOMPARE(exported(), before);
        QStringList expected = before + added;
        const QStringList now = fx->words("mot");
        QCOMPARE(QSet<QString>(now.begin(), now.end()), QSet<QString>(expected.begin(), expected.end()));
        QCOMPARE(win->windowTitle(), banner("mot", expected.size()));
        QCOMPARE(QFile::exists(fx->path("import/mot.txt")), file != "<none>"); // never made up
    }

    void cleanUpButtonsSayWhatTheyRemoved_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QStringList>("extra"); // added to qcode's QRZ QSL QRM QTH
        QTest::addColumn<QString>("notice");
        QTest::addColumn<QStringList>("after");
        QTest::addRow("blanc") << "Command8" << QStringList{" ", "", "QRZ "} << "Mots vides retirés : 1" << QStringList{" ", "QRM", "QRZ", "QRZ ", "QSL", "QTH"};
        QTest::addRow("doublons, case kept") << "Command10" << QStringList{"QRZ", "qrz", "QRZ"} << "Doublons retirés : 2" << QStringList{"QRM", "QRZ", "qrz", "QSL", "QTH"};
        QTest::addRow("correc acc") << "Command9" << QStringList{"z\u00afbre"} << "Mots corrigés : 1" << QStringList{"QRM", "QRZ", "QSL", "QTH", "zèbre"};
    }
    void cleanUpButtonsSayWhatTheyRemoved()
    {
        QFETCH(QString, button);
        QFETCH(QStringList, extra);
        QFETCH(QString, notice);
        QFETCH(QStringList, after);
        for (const QString &word : extra)
            QVERIFY(fx->addWord("qcode", word));
        open({{"lasttable", "qcode"}});
        click(button);
        QCOMPARE(statusText(), notice);
        QCOMPARE(fx->words("qcode"), after);
        QCOMPARE(win->windowTitle(), banner("qcode", after.size()));
        QVERIFY(fx->prompts.messages.isEmpty());
    }

    void ascTellsTheCodeAfterTheCaret_data()
    {
        QTest::addColumn<int>("caret");
        QTest::addColumn<QStringList>("messages");
        QTest::addRow("é") << 1 << QStringList{"233"};
        QTest::addRow("euro") << 2 << QStringList{"128"};
    }
    void ascTellsTheCodeAfterTheCaret()
    {
        QFETCH(int, caret);
        QFETCH(QStringList, messages);
        open();
        auto *exo = w<QPlainTextEdit>("EXO");
        exo->setPlainText("aé€");
        QTextCursor c = exo->textCursor();
        c.setPosition(caret);
        exo->setTextCursor(c);
        click("Command7");
        QCOMPARE(fx->prompts.messages, messages);
    }

    // Each row presses pieces in turn ("ET", "OU", ">=", "<=", "has", "lacks", ...) and
    // then reads the query field, the count and the state of the connectives.
    void queryWindowComposes_data()
    {
        QTest::addColumn<QString>("ch");
        QTest::addColumn<QList<int>>("pieces");
        QTest::addColumn<QString>("req");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("connectivesOn");
        const int atLeast = int(Piece::AtLeast), atMost = int(Piece::AtMost), andP = int(Piece::And), orP = int(Piece::Or);
        QTest::addRow("3 to 5 letters") << "" << QList<int>{atLeast, andP, atMost} << "len(mot) >= 3 and len(mot) <= 5 " << 2 << true;
        QTest::addRow("ends with a connective") << "" << QList<int>{atLeast, orP} << "len(mot) >= 3 or " << 0 << false;
        QTest::addRow("letters a and n") << "an" << QList<int>{int(Piece::HasLetters)} << "mot like '*a*'  and mot like '*n*' " << 1 << true;
        QTest::addRow("lacks e") << "e" << QList<int>{int(Piece::LacksLetters)} << "mot not like '*e*' " << 2 << true;
        QTest::addRow("ends, wildcard kept") << "?" << QList<int>{int(Piece::EndsWith)} << "mot like '*?'" << 5 << true;
    }
    void queryWindowComposes()
    {
        QFETCH(QString, ch);
        QFETCH(QList<int>, pieces);
        QFETCH(QString, req);
        QFETCH(int, count);
        QFETCH(bool, connectivesOn);
        open();
        queryWindow()->findChild<QLineEdit *>("ch")->setText(ch);
        w<QComboBox>("moins")->setCurrentText("3");
        w<QComboBox>("plus")->setCurrentText("5");
        for (int p : pieces) {
            QVERIFY(piece(Piece(p))->isEnabled());
            testsupport::press(piece(Piece(p)));
        }
        QCOMPARE(valueOf("REQ"), req);
        QCOMPARE(rq()->toPlainText(), req);
        for (int p = 0; p < 10; ++p)
            QCOMPARE(piece(Piece(p))->isEnabled(), (p < 2) == connectivesOn);
        // A refusal is told in the status bar, and taken back by the piece that completes it.
        QCOMPARE(statusText().isEmpty(), connectivesOn);
        QCOMPARE(w<QLabel>("Data1caption")->text(), QString::number(count));
        QCOMPARE(queryWindow()->windowTitle(), banner("mot", count));
    }

    void okFinishes_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("rqAfter");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<int>("count");
        QTest::addRow("empty") << "" << "mot like '*'" << true << 5;
        QTest::addRow("trailing or") << "mot like 'a*' or " << "mot like 'a*' " << true << 1;
        // A refused condition leaves the record set empty, as in the query field.
        QTest::addRow("unclosed quote") << "mot like 'a" << "mot like 'a" << false << 0;
        QTest::addRow("another table") << "mot in (select car from ref)" << "mot in (select car from ref)" << false << 0;
    }
    void okFinishes()
    {
        QFETCH(QString, typed);
        QFETCH(QString, rqAfter);
        QFETCH(bool, hidden);
        QFETCH(int, count);
        open();
        QWidget *window = queryWindow();
        rq()->setPlainText(typed);
        fsqlClick("Command11");
        QCOMPARE(rq()->toPlainText(), rqAfter);
        QCOMPARE(window->isHidden(), hidden);
        QCOMPARE(fx->prompts.messages, hidden ? QStringList() : QStringList{"Votre requette ne fonctionne pas veuillez la reformuler s.v.p. ! "});
        QCOMPARE(win->windowTitle(), banner("mot", count));
        // Shown again, it is the same window with what was composed.
        QCOMPARE(queryWindow(), window);
        QCOMPARE(rq()->toPlainText(), rqAfter);
    }

    void resetAfterAConnectiveKeepsTheWords()
    {
        open();
        queryWindow()->findChild<QLineEdit *>("ch")->setText("c");
        testsupport::press(piece(Piece::StartsWith));
        testsupport::press(piece(Piece::And));
        const QString shown = win->windowTitle();
        fsqlClick("Command12");
        QVERIFY(rq()->toPlainText().isEmpty() && fsql()->findChild<QLineEdit *>("ch")->text().isEmpty());
        QVERIFY(!piece(Piece::And)->isEnabled() && piece(Piece::HasLetters)->isEnabled());
        QCOMPARE(win->windowTitle(), shown); // the record set untouched
        // After a condition, it applies the neutral condition and the buttons start over.
        testsupport::press(piece(Piece::StartsWith));
        fsqlClick("Command12");
        QVERIFY(!piece(Piece::And)->isEnabled() && piece(Piece::HasLetters)->isEnabled());
        QCOMPARE(w<QLabel>("Data1caption")->text(), QStringLiteral("5"));
        QVERIFY(rq()->toPlainText().isEmpty());
    }

    void progressionQueryWaitsForOk()
    {
        open();
        w<QComboBox>("PROGRESS")->setEditText("ABCdeHINOTUV");
        queryWindow();
        fsqlClick("Command13");
        QCOMPARE(queryWindow()->findChild<QLineEdit *>("ch")->text(), QStringLiteral("éèêëâàäïîôöûüùç€-"));
        fsqlClick("Command14");
        const QString q = rq()->toPlainText();
        QCOMPARE(q.count(" or "), 25);
        QVERIFY(q.startsWith("mot like '[abcdehinotuv]' or mot like '[abcdehinotuv][abcdehinotuv]' or "));
        QVERIFY(q.endsWith(QString("[abcdehinotuv]").repeated(26) + "' "));
        QCOMPARE(w<QLabel>("Data1caption")->text(), QStringLiteral("5")); // not applied yet
        QVERIFY(piece(Piece::AtLeast)->isEnabled());
        fsqlClick("Command11");
        QCOMPARE(win->windowTitle(), banner("mot", 3)); // avion Bateau dune
    }

    void editorAddsDeletesAndSaves()
    {
        QVERIFY(fx->addWord("qcode", "QRZ"));
        open({{"lasttable", "qcode"}});
        click("Command13"); // "Edition de la table courante"
        TableEditor *editor = win->tableEditor();
        QVERIFY(editor);
        QTableView *grid = editor->grid();
        WordGridModel *model = editor->model();
        QCOMPARE(editor->windowTitle(), QStringLiteral("Kelvora Version 3.2.5 Table : qcode (5)"));
        QCOMPARE(model->rowCount(), 6); // and the new-row line
        // The second QRZ changed, the first kept: rows are told apart.
        QVERIFY(model->setData(model->index(2, 0), "QRX", Qt::EditRole));
        QVERIFY(model->setData(model->index(5, 0), "QRV", Qt::EditRole));
        editor->findChild<QPushButton *>("cmdUpdate")->click();
        QCOMPARE(fx->words("qcode"), QStringList({"QRM", "QRV", "QRX", "QRZ", "QSL", "QTH"}));
        // Delete the last row: the cursor goes to the new last row.
        editor->findChild<QPushButton *>("cmdRefresh")->click();
        grid->setCurrentIndex(model->index(5, 0));
        editor->findChild<QPushButton *>("cmdDelete")->click();
        QCOMPARE(grid->currentIndex().row(), 4);
        QCOMPARE(editor->findChild<QLabel *>("datPrimaryRS")->text(), QStringLiteral("Record: 5"));
        QCOMPARE(fx->words("qcode"), QStringList({"QRM", "QRV", "QRX", "QRZ", "QSL"}));
        // A row deleted elsewhere while edited is written back, and said.
        QVERIFY(model->setData(model->index(0, 0), "QRO", Qt::EditRole));
        WordDatabase(fx->path("db/kvmot.sqlite")).exec("DELETE FROM qcode WHERE mot = 'QRM'");
        editor->findChild<QPushButton *>("cmdUpdate")->click();
        QCOMPARE(fx->prompts.messages.size(), 1);
        QVERIFY(fx->prompts.messages[0].startsWith("Data error event hit err:"));
        QVERIFY(fx->words("qcode").contains("QRO"));
        // Closing counts the table again, without leaving the window's title behind.
        editor->findChild<QPushButton *>("cmdClose")->click();
        QCOMPARE(win->windowTitle(), QStringLiteral("Kelvora Version 3.2.5 Table : qcode (5)"));
        QCOMPARE(w<QLabel>("Data1caption")->text(), QStringLiteral("5"));
    }

    void editorSeedsAnEmptyTable()
    {
        fx->prompts.textAnswers.push_back(QStringLiteral("liste"));
        open();
        trigger("createtable");
        TableEditor *editor = win->tableEditor();
        editor->findChild<QPushButton *>("cmdAdd")->click();
        QCOMPARE(fx->words("liste"), QStringList{" "});
        QCOMPARE(editor->grid()->currentIndex().row(), 1); // the new-row line
        QVERIFY(editor->model()->setData(editor->grid()->currentIndex(), "bonjour", Qt::EditRole));
        editor->close(); // pending words are written, not dropped
        QCOMPARE(fx->words("liste"), QStringList({" ", "bonjour"}));
        QCOMPARE(w<QLabel>("Data1caption")->text(), QStringLiteral("2"));
    }

    void editorOnRefShowsTheCurrentTable()
    {
        open({{"lasttable", "animaux"}});
        trigger("reglager");
        click("editreftable");
        TableEditor *editor = win->tableEditor();
        const int refRows = WordDatabase(fx->path("db/kvmot.sqlite")).query("select count(*) from ref").rows[0][0].toInt();
        QCOMPARE(editor->windowTitle(), QStringLiteral("Kelvora Version 3.2.5 Table : animaux (%1)").arg(refRows));
        QCOMPARE(editor->model()->columnCount(), 3); // car, cw, wav
        QCOMPARE(editor->model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("car"));
        // Any row of ref can be changed, as any word.
        QVERIFY(editor->model()->setData(editor->model()->index(0, 1), "-.-.-", Qt::EditRole));
        editor->findChild<QPushButton *>("cmdUpdate")->click();
        QVERIFY(fx->prompts.messages.isEmpty());
        editor->close();
        QCOMPARE(win->windowTitle(), QStringLiteral("Kelvora Version 3.2.5 Table : animaux (2)"));
    }
};

QTEST_MAIN(TableWindowsTest)
#include "tst_tablewindows.moc"
