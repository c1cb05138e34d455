// The "Exercices" menu in the main window: each entry fills the exercise text and
// prepares its sound (or not), the options it reads are saved, the watchdog gives up.
#include "WindowTest.h"

#include "exercises/Generators.h"
#include "ui/ExerciseGenerator.h"
#include "words/WordDatabase.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

using namespace kelvora;

class ExercisesTest : public testsupport::WindowTest {
    Q_OBJECT
    QString text() const { return w<QPlainTextEdit>("EXO")->toPlainText(); }
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
        const QString shown = ready ? text() + u' ' : text();
        QVERIFY2(matches(pattern, shown), qPrintable(text()));
        QCOMPARE(prepared(), ready);
        QCOMPARE(fx->prompts.messages, QStringList());
    }

    void optionsAreSaved_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("key");
        QTest::newRow("nbgroup 0") << "nbgroup" << "0" << "1" << "nbgroup";
        QTest::newRow("nbgroup -3") << "nbgroup" << "-3" << "1" << "nbgroup";
        QTest::newRow("nbgroup 150") << "nbgroup" << "150" << "102" << "nbgroup";
        QTest::newRow("nbgroup 102") << "nbgroup" << "102" << "102" << "nbgroup";
        QTest::newRow("progression") << "PROGRESS" << "eish5" << "eish5" << "progress";
        QTest::newRow("renfor trimmed") << "renfor" << "  k " << "k" << "";
    }
    void optionsAreSaved()
    {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(QString, key);
        openWith({});
        paste(box, typed);
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
        QCOMPARE(text(), QString("abc  eeeee "));
        trigger("cls");
        QCOMPARE(text(), QString());
    }

    void mockExamRestoresItsOptions()
    {
        openWith({{"progress", "egmz0"}, {"nbgroup", "20"}, {"lasttable", "qcode"}});
        trigger("ajout");
        trigger("EXAMENCOMPLET");
        // The box keeps a line break as one "\n".
        QVERIFY2(matches("([egmz]{5} ){30}(0{5} ){6}\n\n( \\S+){5}  [0-9]{4}( .*){6} ,( .*){6} \\?( .*){6} \\.",
                         text()),
                 qPrintable(text()));
        QCOMPARE(valueOf("nbgroup"), QString("20"));
        QCOMPARE(fx->stored("défaut", "nbgroup"), QString("20"));
        QVERIFY(!w<QAction>("ajout")->isChecked());
        QCOMPARE(valueOf("TABLES"), QString("mot"));
        QVERIFY(win->windowTitle().contains("Table : mot ("));
        QVERIFY(prepared());
    }

    void progressionWithoutWordsIsAbandoned()
    {
        openWith({{"progress", "xyz"}, {"nbgroup", "3"}});
        trigger("motprogression");
        QCOMPARE(fx->prompts.messages, QStringList{QString::fromUtf8(exercises::abandonMessage)});
        QCOMPARE(text(), QString());
        QVERIFY(prepared());
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
        QCOMPARE(text(), QString());
        QVERIFY(!win->generator()->timer3()->isActive());
    }
};

QTEST_MAIN(ExercisesTest)
#include "tst_exercises.moc"
