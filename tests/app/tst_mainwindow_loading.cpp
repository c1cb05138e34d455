#include "MainWindowFixture.h"
#include "app/MainPF.h"
#include "settings/UserProfile.h"
#include "panels/SoundSettingsPanel.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBrowser>
#include <QtEndian>
#include <QtTest>

using namespace kelvora;
using testsupport::MainWindowFixture;

namespace {
const QString later = QStringLiteral("Disponible dans une prochaine version");

QString valueOf(const QWidget *w)
{
    if (auto *c = qobject_cast<const QComboBox *>(w))
        return c->currentText();
    if (auto *e = qobject_cast<const QLineEdit *>(w))
        return e->text();
    if (auto *b = qobject_cast<const QAbstractButton *>(w))
        return b->isChecked() ? "1" : "0";
    return "<" + QString::fromLatin1(w->metaObject()->className()) + ">";
}

QStringList entries(const QComboBox *box)
{
    QStringList list;
    for (int i = 0; i < box->count(); ++i)
        list << box->itemText(i);
    return list;
}
} // namespace

class MainWindowLoadingTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void freshStoreShowsEveryDefault();
    void bannerNamesVersionTableAndUser();
    void choiceListsHoldTheirEntries_data();
    void choiceListsHoldTheirEntries();
    void greetingIsWrittenAndReadyToPlay();
    void startsOnTheExerciseWithTheSettingsHidden();
    void menuTreeHasItsCaptions_data();
    void menuTreeHasItsCaptions();
    void laterCommandsAreDisabledWithAHint();
    void everyControlIsNamedAndExplained();
    void controlsNeitherOverlapNorLeaveTheirParent();
    void prepareWritesTheExerciseSound_data();
    void prepareWritesTheExerciseSound();
    void timersRunAsAtStart();

private:
    template<typename T = QWidget>
    T *control(const char *name)
    {
        auto *w = m_window->findChild<T *>(QString::fromUtf8(name));
        if (!w)
            qWarning("no control %s", name);
        return w;
    }
    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
};

void MainWindowLoadingTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
    QVERIFY(m_fixture->isValid());
    m_window = m_fixture->openWindow();
}

void MainWindowLoadingTest::cleanup()
{
    m_window.reset();
    m_fixture.reset();
}

void MainWindowLoadingTest::freshStoreShowsEveryDefault()
{
    // The defaults themselves are pinned by the profile test; here, each reaches its control.
    const UserProfile defaults = UserProfile::defaults();
    for (const SettingKey &key : userKeys::all) {
        if (!key.control)
            continue;
        const QWidget *w = m_window->findChild<QWidget *>(QString::fromLatin1(key.control));
        QVERIFY2(w, key.control);
        QCOMPARE(valueOf(w), defaults.text(key));
    }
    QVERIFY(m_fixture->prompts.questions.isEmpty());
}

void MainWindowLoadingTest::bannerNamesVersionTableAndUser()
{
    const int words = int(m_fixture->words("mot").size());
    const QString banner =
        QStringLiteral("Kelvora Version 3.2.5, Table : mot (%1),   Utilisateur=défaut").arg(words);
    QCOMPARE(m_window->windowTitle(), banner);
    QCOMPARE(control<QLabel>("bandeau")->text(), banner);
    QCOMPARE(control<QMenu>("Putilisateur")->title(), QStringLiteral("Utilisateurs (défaut)"));
    QCOMPARE(control<QLabel>("Label31")->text(), QStringLiteral("Requête sur les mots de la Table mot"));
}

void MainWindowLoadingTest::choiceListsHoldTheirEntries_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("expected");
    QTest::addRow("nbgroup") << "nbgroup"
                             << QStringList{"6",  "12", "18", "24", "30", "36", "42", "48", "54",
                                            "60", "66", "72", "78", "84", "90", "96", "102"};
    QTest::addRow("delaimot") << "delaimot"
                              << QStringList{"50",   "100",  "500",  "1000", "2000",
                                             "3000", "4000", "5000", "6000", "7000",
                                             "8000", "9000", "10000"};
    QTest::addRow("cdelai") << "cdelai"
                            << QStringList{"1",    "10",   "100",  "500",  "1000",
                                           "2000", "3000", "4000", "5000", "10000"};
    QTest::addRow("PROGRESS")
        << "PROGRESS"
        << QStringList{"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*",
                       "egmz0",
                       "egmz0ahtr1",
                       "egmz0ahtr1nujf2",
                       "egmz0ahtr1nujf2idpc3",
                       "egmz0ahtr1nujf2idpc3wbyq4",
                       "egmz0ahtr1nujf2idpc3wbyq4xovl5",
                       "egmz0ahtr1nujf2idpc3wbyq4xovl5sk786",
                       "egmz0ahtr1nujf2idpc3wbyq4xovl5sk786.+?/9",
                       "egmz0ahtr1nujf2idpc3wbyq4xovl5sk786.+?/9,'<*",
                       "eish5'",
                       "eish5'ptmo08/",
                       "eish5'ptmo08/awjqn1+",
                       "eish5'ptmo08/awjqn1+dbkx6.",
                       "eish5'ptmo08/awjqn1+dbkx6.9,gz7?c",
                       "eish5'ptmo08/awjqn1+dbkx6.9,gz7?cy4lrf2",
                       "eish5'ptmo08/awjqn1+dbkx6.9,gz7?cy4lrf2v3?<*"};
    QTest::addRow("REQ")
        << "REQ"
        << QStringList{"mot like '*'", "mot like '*û*' or mot like '*î*'",
                       "mot like '?" "?" "?" "?" "?'", "mot like 'ab*'",
                       "mot not like '*é*' and mot not like '*è*'and mot not like '*ê*'and mot not "
                       "like '*ç*'and mot not like '*-*'and mot not like '*ë*'and mot not like "
                       "'*ï*'and mot not like '*ô*'and mot not like '*â*'and mot not like "
                       "'*î*'and mot not like '*û*'and mot not like '*à*' "};
    QTest::addRow("TABLES") << "TABLES" << MainWindowFixture::wordTables();
}

void MainWindowLoadingTest::choiceListsHoldTheirEntries()
{
    QFETCH(QString, name);
    QFETCH(QStringList, expected);
    auto *box = m_window->findChild<QComboBox *>(name);
    QVERIFY(box);
    QCOMPARE(entries(box), expected);
}

void MainWindowLoadingTest::greetingIsWrittenAndReadyToPlay()
{
    const QString text = control<QPlainTextEdit>("EXO")->toPlainText();
    QVERIFY2(text.startsWith("73 défaut de F4KLV. "), qPrintable(text));
    QVERIFY(text.contains("si vous n'etes pas défaut"));
    QVERIFY(text.contains("identifiez vous en utilisant le menu Parametre,Utilisateur,Changer "));
    QVERIFY(text.endsWith("ce-ci à fin d'utiliser vos propres paramètres. et de ne pas modifier "
                          "les paramètres de défaut Merci."));
    QCOMPARE(text.count('\n'), 3);

    const QByteArray wav = testsupport::fileBytes(m_fixture->path("tmp/test.wav"));
    QVERIFY(wav.size() > 44 + 8000); // more than a second of Morse
    QCOMPARE(wav.left(4), QByteArray("RIFF"));
    QCOMPARE(qFromLittleEndian<quint32>(wav.constData() + 40), quint32(wav.size() - 44));
    QVERIFY(testsupport::fileBytes(m_fixture->path("tmp/test.txt")).startsWith("73 d\xe9" "faut de F4KLV."));
}

void MainWindowLoadingTest::startsOnTheExerciseWithTheSettingsHidden()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    // The greeting is prepared: the player stands in the place of "Préparer la musique".
    for (const char *shown : {"Frame2", "EXO", "Text1", "Text14", "PLAYER"})
        QVERIFY2(control(shown)->isVisible(), shown);
    for (const char *hidden : {"Frame1", "List1", "File1", "Web", "Command1"})
        QVERIFY2(!control(hidden)->isVisible(), hidden);
    QVERIFY(!control<QAbstractButton>("Check1")->isChecked());
    QCOMPARE(control<QListWidget>("List1")->count(), 3);
    QCOMPARE(control<QListWidget>("List1")->item(0)->text(), QStringLiteral("Cliquez sur le boutton 'T'"));
    QCOMPARE(control<QTextBrowser>("Web")->source(),
             QUrl::fromLocalFile(m_fixture->path("doc/kvmenu.htm")));
    QCOMPARE(m_window->soundPanel()->objectName(), QStringLiteral("Frame1"));
}

void MainWindowLoadingTest::menuTreeHasItsCaptions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<bool>("works"); // false: present, disabled, with the "later" hint
    const std::pair<const char *, const char *> menus[] = {
        {"menuFichier", "&Fichier"},       {"menuAffichage", "&Affichage"},
        {"menuExercices", "&Exercices"},   {"menuMusique", "&Musique"},
        {"menuOutils", "&Outils"},         {"menuCorrections", "C&orrections"},
        {"menuParametres", "&Paramètres"}, {"menuAide", "&?"},
        {"menutable", "Table"},            {"groupes", "Groupes"},
        {"Mots", "Mots"},
    };
    for (const auto &[name, caption] : menus)
        QTest::addRow("%s", name) << QString::fromUtf8(name) << QString::fromUtf8(caption) << true;
    const QStringList working = {"quitter",  "raz",         "AfExercices", "aflistmot",
                                 "afcache",  "affichiers",  "Pr_parer",    "reglager",
                                 "utilchanger", "apropos",  "Aide",        "jouer",
                                 "pstop",    "pause",       "cjouer",      "cpause",
                                 "cstop"};
    const std::pair<const char *, const char *> actions[] = {
        {"ouvrir", "Ouvrir un fichier texte"},
        {"createtable", "Nouvelle"},
        {"importmot1", "Importer des mots dans 'mot'"},
        {"exportmot", "Exporter les mots de 'mot'"},
        {"edittablcourante", "Editer 'mot'"},
        {"videtable", "Vider 'mot'"},
        {"supprimetable", "Supprimer 'mot'"},
        {"quitter", "Quitter"},
        {"raz", "Quitter +  R.A.Z Paramètres"},
        {"AfExercices", "Exercices"},
        {"aflistmot", "Liste des mots en boucle"},
        {"afcache", "Cache"},
        {"affichiers", "Fichiers"},
        {"fenreq", "Requêtte"},
        {"fencla", "Clavier"},
        {"fentable", "Table"},
        {"EXAMENCOMPLET", "Examen Blanc"},
        {"G36EXAMEN", "Examen (30+6)"},
        {"G36lettres", "Lettres"},
        {"G36chiffres", "Chiffres"},
        {"G12ponctuations", "Ponctuations"},
        {"G36Mélangés", "Mélangés"},
        {"motprogression", "Avec caractères de la progression"},
        {"Maleatoires", "Sans accents"},
        {"MaleatoiresAcc", "Tous"},
        {"indicatifs", "Indicatifs"},
        {"ajout", "Ajoute / n'ajoute pas au texte présent"},
        {"motenboucle", "Mot diffusé en boucle"},
        {"motclavier", "Mots au clavier"},
        {"Pr_parer", "Préparer"},
        {"jouer", "Jouer"},
        {"pstop", "Stop"},
        {"pause", "Pause"},
        {"textengroupe", "Transforme texte en groupes"},
        {"racc", "Retirer les accents du texte"},
        {"inversion", "Inverser le texte"},
        {"doubleespace", "Doubler les espaces"},
        {"cjouer", "Jouer"},
        {"cpause", "Pause"},
        {"cstop", "Stopper"},
        {"reglager", "Réglages"},
        {"utilchanger", "Changer"},
        {"apropos", "À propos"},
        {"Aide", "Aide"},
    };
    for (const auto &[name, caption] : actions)
        QTest::addRow("%s", name) << QString::fromUtf8(name) << QString::fromUtf8(caption)
                                  << working.contains(QString::fromUtf8(name));
}

void MainWindowLoadingTest::menuTreeHasItsCaptions()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(bool, works);
    if (auto *menu = m_window->findChild<QMenu *>(name)) {
        QCOMPARE(menu->title(), caption);
        QVERIFY(menu->toolTipsVisible());
        return;
    }
    auto *action = m_window->findChild<QAction *>(name);
    QVERIFY2(action, qPrintable(name));
    QCOMPARE(action->text(), caption);
    // Every entry is reachable from the menu bar.
    QVERIFY(!action->associatedObjects().isEmpty());
    QCOMPARE(action->isEnabled(), works);
    if (!works)
        QCOMPARE(action->toolTip(), later);
}

void MainWindowLoadingTest::laterCommandsAreDisabledWithAHint()
{
    // Buttons whose work comes later.
    for (const char *button : {"Command17", "Command18", "Command13"}) {
        QVERIFY2(!control(button)->isEnabled(), button);
        QCOMPARE(control(button)->toolTip(), later);
    }
    QVERIFY(control("Command1")->isEnabled());
}

void MainWindowLoadingTest::everyControlIsNamedAndExplained()
{
    const QWidget *panel = m_window->soundPanel();
    int checked = 0;
    for (QWidget *w : m_window->findChildren<QWidget *>()) {
        const bool isControl = qobject_cast<QAbstractButton *>(w) || qobject_cast<QComboBox *>(w)
                               || qobject_cast<QPlainTextEdit *>(w)
                               || qobject_cast<QAbstractItemView *>(w)
                               || (qobject_cast<QLineEdit *>(w) && !qobject_cast<QComboBox *>(w->parent()));
        // The settings panel's own controls and Qt's inner parts are not this window's.
        if (!isControl || w->objectName().isEmpty() || w->objectName().startsWith("qt_")
            || panel->isAncestorOf(w))
            continue;
        QVERIFY2(!w->accessibleName().isEmpty(), qPrintable(w->objectName()));
        QVERIFY2(!w->toolTip().isEmpty(), qPrintable(w->objectName()));
        ++checked;
    }
    QVERIFY2(checked >= 35, qPrintable(QString::number(checked)));
}

void MainWindowLoadingTest::controlsNeitherOverlapNorLeaveTheirParent()
{
    for (const QSize size : {QSize(1180, 800), QSize(900, 640)}) {
        m_window->resize(size);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QCoreApplication::processEvents();
        QVERIFY(m_window->width() >= m_window->minimumSizeHint().width());
        const QList<QWidget *> all = m_window->findChildren<QWidget *>();
        for (QWidget *w : all) {
            if (!w->isVisible() || w->objectName().isEmpty() || w->objectName().startsWith("qt_")
                || !w->parentWidget() || w->isWindow())
                continue;
            // A scroll area's content may be larger than its viewport: it scrolls.
            const bool scrolled =
                qobject_cast<QAbstractScrollArea *>(w->parentWidget()->parentWidget());
            QVERIFY2(scrolled || w->parentWidget()->rect().contains(w->geometry()),
                     qPrintable(w->objectName() + " leaves " + w->parentWidget()->objectName()));
            for (QWidget *other : w->parentWidget()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
                if (other == w || !other->isVisible() || other->objectName().isEmpty()
                    || other->objectName().startsWith("qt_") || other->isWindow())
                    continue;
                QVERIFY2(!w->geometry().intersects(other->geometry()),
                         qPrintable(w->objectName() + " overlaps " + other->objectName()));
            }
        }
    }
}

void MainWindowLoadingTest::prepareWritesTheExerciseSound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("selectFrom"); // UTF-16 positions, as the box counts them
    QTest::addColumn<int>("selectTo");
    QTest::addColumn<QString>("boxAfter");
    QTest::addColumn<QString>("selectedAfter");
    QTest::addColumn<int>("positions"); // pattern positions sent: start sign, text, end sign
    // VVV = 12 positions, + = 5.
    QTest::addRow("whole text is trimmed") << "  E E  " << 0 << 0 << "E E" << "" << 12 + 2 + 5;
    QTest::addRow("selection survives the trim") << "  ET TE" << 5 << 7 << "ET TE" << "TE" << 12 + 2 + 5;
    QTest::addRow("emoji before the selection") << "😀 ET" << 3 << 5 << "😀 ET" << "ET" << 12 + 2 + 5;
}

void MainWindowLoadingTest::prepareWritesTheExerciseSound()
{
    QFETCH(QString, text);
    QFETCH(int, selectFrom);
    QFETCH(int, selectTo);
    QFETCH(QString, boxAfter);
    QFETCH(QString, selectedAfter);
    QFETCH(int, positions);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    auto *exo = control<QPlainTextEdit>("EXO");
    auto *prepare = control<QPushButton>("Command1");
    QCOMPARE(prepare->text(), QStringLiteral("Préparer la musique"));
    QFile::remove(m_fixture->path("tmp/test.wav"));
    const double esBefore = m_window->soundPanel()->boxText("ES").toDouble();

    exo->setPlainText(text);
    QTextCursor c = exo->textCursor();
    c.setPosition(selectFrom);
    c.setPosition(selectTo, QTextCursor::KeepAnchor);
    exo->setTextCursor(c);
    QTest::mouseClick(prepare, Qt::LeftButton);

    QCOMPARE(exo->toPlainText(), boxAfter);
    QCOMPARE(exo->textCursor().selectedText(), selectedAfter);
    const QByteArray wav = testsupport::fileBytes(m_fixture->path("tmp/test.wav"));
    QVERIFY(wav.size() > 44);
    QCOMPARE(qFromLittleEndian<quint32>(wav.constData() + 40), quint32(wav.size() - 44));
    QCOMPARE(m_window->soundPanel()->boxText("ES").toDouble(), esBefore + positions);
    QVERIFY(m_fixture->prompts.messages.isEmpty());
}

void MainWindowLoadingTest::timersRunAsAtStart()
{
    const QTimer *timer1 = m_window->findChild<QTimer *>("Timer1");
    const QTimer *timer2 = m_window->findChild<QTimer *>("Timer2");
    const QTimer *timer6 = m_window->findChild<QTimer *>("Timer6");
    QVERIFY(timer1 && timer2 && timer6);
    QCOMPARE(timer1->interval(), 500);
    QCOMPARE(timer2->interval(), 100);
    QCOMPARE(timer6->interval(), 60000);
    QVERIFY(timer1->isActive());
    QVERIFY(timer2->isActive());
    QVERIFY(!timer6->isActive());
}

QTEST_MAIN(MainWindowLoadingTest)
#include "tst_mainwindow_loading.moc"
