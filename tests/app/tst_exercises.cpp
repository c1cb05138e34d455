// The "Exercices" menu in the main window: each entry fills the exercise text and
// prepares its sound (or not), the options it reads are saved, the watchdog gives up.
#include "WindowTest.h"

#include "exercises/Generators.h"
#include "app/kvglobal.h"
#include "ui/ExerciseGenerator.h"
#include "ui/KeyboardWindow.h"
#include "words/WordDatabase.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QStatusBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

using namespace kelvora;

class ExercisesTest : public testsupport::WindowTest {
    Q_OBJECT
    bool prepared() const { return w("PLAYER")->isVisible() && !w("Command1")->isVisible(); }
    void openWith(const QList<std::pair<QString, QString>> &values)
    {
        fx->useSteppedClock();
        open(values);
    }
    static bool matches(const QString &pattern, const QString &text)
    {
        return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                                  QRegularExpression::DotMatchesEverythingOption)
            .match(text)
            .hasMatch();
    }

private slots:
    void menuEntry_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<bool>("ready");
        QTest::newRow("Lettres: not prepared") << "G36lettres" << "([egmz]{5} ){4}" << false;
        QTest::newRow("Chiffres") << "G36chiffres" << "(0{5} ){4}" << true;
        QTest::newRow("Ponctuations: none in egmz0") << "G12ponctuations" << " " << true;
        QTest::newRow("Mélangés") << "G36Mélangés" << "([egmz0]{5} ){4}" << true;
        QTest::newRow("Examen (30+6)") << "G36EXAMEN" << "([egmz]{5} ){30}(0{5} ){6}" << true;
        QTest::newRow("Indicatifs") << "indicatifs" << "([A-Z0-9]{5}(/P|/M|/MM)? ){4}" << true;
        QTest::newRow("Tous") << "MaleatoiresAcc" << "(gem |mezze ){4}" << true;
        QTest::newRow("Sans accents") << "Maleatoires" << "(gem |mezze ){4}" << true;
        QTest::newRow("Avec caractères de la progression") << "motprogression" << "(gem |mezze ){4}" << true;
    }
    void menuEntry()
    {
        QFETCH(QString, action);
        QFETCH(QString, pattern);
        QFETCH(bool, ready);
        // A table of two words, both made of the progression's characters.
        WordDatabase db(fx->path("db/kvmot.sqlite"));
        QVERIFY(db.exec("create table court (mot text)"));
        QVERIFY(db.exec("insert into court (mot) values ('gem'), ('mezze')"));
        openWith({{"progress", "egmz0"}, {"nbgroup", "4"}, {"lasttable", "court"}});
        QVERIFY(w<QAction>(action)->isEnabled());
        trigger(action);
        // Preparing the sound trims the text in the box.
        const QString shown = ready ? exerciseText() + u' ' : exerciseText();
        QVERIFY2(matches(pattern, shown), qPrintable(exerciseText()));
        QCOMPARE(prepared(), ready);
        QCOMPARE(fx->prompts.messages, QStringList());
    }

    void optionsAreSaved_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("key");
        QTest::newRow("nbgroup 150") << "nbgroup" << "150" << "102" << "nbgroup";
        QTest::newRow("progression") << "PROGRESS" << "eish5" << "eish5" << "progress";
        QTest::newRow("renfor trimmed") << "renfor" << "  k " << "k" << "";
        // delaimot is typed key by key, then Enter: "2000" must not stop at "2" -> "50".
        QTest::newRow("delaimot 20") << "delaimot" << "20" << "50" << "delaimot";
        QTest::newRow("delaimot 2000") << "delaimot" << "2000" << "2000" << "delaimot";
        QTest::newRow("delaimot 20000") << "delaimot" << "20000" << "10000" << "delaimot";
    }
    void optionsAreSaved()
    {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(QString, key);
        openWith({});
        if (box == "delaimot") {
            QLineEdit *line = w<QComboBox>(box)->lineEdit();
            line->setFocus();
            line->selectAll();
            QTest::keyClicks(line, typed);
            QVERIFY(w<QTimer>("Timer4")->interval() >= 50 && w<QTimer>("Timer4")->interval() <= 10000);
            QTest::keyClick(line, Qt::Key_Return);
            QCOMPARE(w<QTimer>("Timer4")->interval(), shown.toInt());
        } else {
            paste(box, typed);
        }
        QCOMPARE(valueOf(box), shown);
        if (!key.isEmpty())
            QCOMPARE(fx->stored("défaut", key), shown);
    }

    void clickInProgressionSavesIt()
    {
        openWith({{"progress", "egmz0"}});
        fx->store("défaut", "progress", "autre");
        QTest::mouseClick(w<QComboBox>("PROGRESS")->lineEdit(), Qt::LeftButton);
        QCOMPARE(fx->stored("défaut", "progress"), QString("egmz0"));
    }

    void appendThenClear()
    {
        openWith({{"progress", "e"}, {"nbgroup", "1"}});
        w<QPlainTextEdit>("EXO")->setPlainText("abc ");
        trigger("ajout");
        QVERIFY(w<QAction>("ajout")->isChecked());
        trigger("G36lettres");
        QCOMPARE(exerciseText(), QString("abc  eeeee "));
        trigger("cls");
        QCOMPARE(exerciseText(), QString());
    }

    void mockExamRestoresItsOptions()
    {
        openWith({{"progress", "egmz0"}, {"nbgroup", "20"}, {"lasttable", "qcode"}});
        trigger("ajout");
        trigger("EXAMENCOMPLET");
        // The box keeps a line break as one "\n".
        QVERIFY2(matches("([egmz]{5} ){30}(0{5} ){6}\n\n( \\S+){5}  [0-9]{4}( .*){6} ,( .*){6} \\?( .*){6} \\.",
                         exerciseText()),
                 qPrintable(exerciseText()));
        QCOMPARE(valueOf("nbgroup"), QString("20"));
        QCOMPARE(fx->stored("défaut", "nbgroup"), QString("20"));
        QVERIFY(!w<QAction>("ajout")->isChecked());
        QCOMPARE(valueOf("TABLES"), QString("mot"));
        QVERIFY(win->windowTitle().contains("Table : mot ("));
        QVERIFY(prepared());
    }

    void typedDrillWaitsForTheExactWord()
    {
        openWith({{"lasttable", "mot"}, {"fcorrection", "1"}, {"debfin", "1"}});
        trigger("motclavier");
        const QString first = w<QLabel>("Text14")->text();
        QVERIFY(fx->words("mot").contains(first));
        QCOMPARE(items("List1"), QStringList{first});
        QCOMPARE(exerciseText(), first);
        QVERIFY(w("List1")->isVisible());
        QCOMPARE(valueOf("Fcorrection") + valueOf("debfin"), QString("00"));

        auto *typing = w<QLineEdit>("Text17");
        click("Data1dernier"); // the word shown moves on; the one awaited does not
        QTest::keyClicks(typing, first.toUpper()); // another case is another word
        QCOMPARE(items("List1").size(), 1);
        typing->clear();
        QTest::keyClicks(typing, first.chopped(1)); // not yet whole
        QCOMPARE(items("List1").size(), 1);
        QTest::keyClicks(typing, first.right(1));
        QCOMPARE(items("List1").size(), 2);
        QCOMPARE(typing->text(), QString());
        click("Data1premier");
        click("Command12"); // skips the word, the box being empty
        QCOMPARE(items("List1").size(), 3);
        QCOMPARE(typing->text(), QString());
    }

    void wordLoopThenCorrection()
    {
        openWith({{"lasttable", "mot"}, {"delaimot", "50"}, {"fcorrection", "0"}, {"debfin", "0"},
                  {"cdelai", "1"}, {"cache", "1"}});
        trigger("motenboucle");
        // "Cache" ticked: the words are heard, not seen.
        QVERIFY(w("Web")->isVisible() && !w("Text14")->isVisible() && !w("EXO")->isVisible());
        QVERIFY(fx->runUntil([&] { return items("List1").size() == 5; }));
        trigger("motenboucle");
        QVERIFY(w("List1")->isVisible());
        QVERIFY(fx->runUntil([&] { return fx->session.playerFree; }));
        QCOMPARE(items("List1").size(), 5);
        const QStringList sent = items("List1");
        for (const QString &word : sent)
            QVERIFY(fx->words("mot").contains(word));
        trigger("cjouer");
        QCOMPARE(exerciseText().remove('\r'), sent.join('\n') + '\n');
    }

    void wordLoopOnAnEmptyTableStops()
    {
        WordDatabase db(fx->path("db/kvmot.sqlite"));
        QVERIFY(db.exec("create table vide (mot text)"));
        openWith({{"lasttable", "vide"}});
        trigger("motenboucle");
        QVERIFY(fx->runUntil([&] { return !w<QAction>("motenboucle")->isChecked(); }));
        QCOMPARE(statusText(), QString("La table « vide » ne contient aucun mot."));
        QVERIFY(items("List1").isEmpty());
    }

    void keyboardQueuesTheKeysOfOneSound()
    {
        openWith({{"debfin", "1"}, {"vitesse", "50"}, {"fcorrection", "1"}});
        click("Command18");
        auto *keyboard = qobject_cast<KeyboardWindow *>(kvglobal::keyboardWindow.data());
        QVERIFY(keyboard && keyboard->isVisible());
        QCOMPARE(keyboard->windowTitle(), QString("Kelvora Version 3 - Clavier"));
        // A key for each character of the reference table.
        const QList<QPushButton *> keys = keyboard->findChildren<QPushButton *>();
        QCOMPARE(keys.size(), WordDatabase(fx->path("db/kvmot.sqlite")).query("select count(car) from ref").rows.at(0).at(0).toInt());
        const auto n = std::find_if(keys.begin(), keys.end(), [](QPushButton *key) { return key->text() == "n"; });
        QVERIFY(n != keys.end());

        QTest::keyClicks(keyboard, "e"); // the player is free: at once, without signs
        QCOMPARE(exerciseText(), QString("e"));
        QCOMPARE(valueOf("debfin"), QString("0"));
        QVERIFY(!fx->session.playerFree);
        QTest::keyClicks(keyboard, "ta"); // during the sound: they wait
        testsupport::press(*n);
        QCOMPARE(exerciseText(), QString("e"));
        QVERIFY(fx->runUntil([&] { return exerciseText() == "tan"; })); // one text, in order
        QCOMPARE(keyboard->findChild<QLabel *>("Label2")->text(), QString("tan"));
        QVERIFY(fx->session.keyboardQueue.isEmpty());
        // A key is no exercise: its end starts no correction.
        QVERIFY(fx->runUntil([&] { return fx->session.playerFree; }));
        QCOMPARE(w<QTimer>("Timer5")->interval(), 0);
        testsupport::press(*n);
        keyboard->close(); // what waits is forgotten
        QVERIFY(fx->session.keyboardQueue.isEmpty());
    }

    void watchdogStopsALongSearch()
    {
        WordDatabase db(fx->path("db/kvmot.sqlite"));
        QVERIFY(db.exec("create table longue (mot text)"));
        QVERIFY(db.exec("with recursive n(i) as (select 1 union all select i + 1 from n where i < 50000) "
                        "insert into longue (mot) select 'chat' from n"));
        openWith({{"progress", "chat"}, {"nbgroup", "3"}, {"lasttable", "longue"}});
        // The search asks the window to go on every few thousand steps: a watchdog that
        // fires at once stops it there, once.
        win->generator()->timer3()->setInterval(0);
        trigger("motprogression");
        QCOMPARE(fx->prompts.messages, QStringList{QString::fromUtf8(exercises::abandonMessage)});
        QCOMPARE(exerciseText(), QString());
        QVERIFY(!win->generator()->timer3()->isActive());

        // The window closed during a search: it stops there, and no message outlives it.
        fx->prompts.messages.clear();
        win->generator()->timer3()->setInterval(5000);
        QTimer::singleShot(0, win.get(), [this] { win->close(); });
        trigger("motprogression");
        QVERIFY(fx->prompts.messages.isEmpty() && exerciseText().isEmpty() && win->isHidden());
    }
};

QTEST_MAIN(ExercisesTest)
#include "tst_exercises.moc"
