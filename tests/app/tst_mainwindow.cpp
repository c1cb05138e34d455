// The main window as it opens, its menus and views, and the settings panel in its place.
#include "WindowTest.h"
#include "ui/QtFrench.h"
#include "panels/SoundSettingsPanel.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"
#include "settings/UserProfile.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBrowser>
#include <QtEndian>
#include <QtTest>

using namespace kelvora;

namespace {
const QString examination = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*");

// A file the window wrote: a WAV header that counts its samples.
bool wholeWav(const QByteArray &wav)
{
    return wav.size() > 44 && wav.left(4) == "RIFF" && qFromLittleEndian<quint32>(wav.constData() + 40) == quint32(wav.size() - 44);
}
} // namespace

class MainWindowTest : public testsupport::WindowTest {
    Q_OBJECT
    QString shownViews() const
    {
        QStringList shown;
        for (const char *name : {"EXO", "Text1", "List1", "File1", "Web"})
            if (w(name)->isVisible())
                shown << name;
        return shown.join(' ');
    }

private slots:
    // At 200 % a 1280x1024 screen is 640x512 of the window's own pixels: the main window
    // and its settings page (columns that scroll) must go down to that, title bar aside.
    void fitsA1280x1024ScreenAt200Percent()
    {
        open();
        const QSize fits(640, 512 - 40);
        QVERIFY2(win->minimumSizeHint().boundedTo(fits) == win->minimumSizeHint(),
                 qPrintable(QStringLiteral("%1x%2").arg(win->minimumSizeHint().width()).arg(win->minimumSizeHint().height())));
        trigger("reglager"); // the settings page
        QVERIFY(win->minimumSizeHint().boundedTo(fits) == win->minimumSizeHint());
    }

    // Qt's own buttons speak French, as the program does.
    void qtTextsInFrench()
    {
        if (!loadQtFrench())
            QFAIL("Qt's French translations are missing: scripts/install-deps.sh installs qt6-translations-l10n");
        QDialogButtonBox box(QDialogButtonBox::Cancel | QDialogButtonBox::Yes);
        QCOMPARE(box.button(QDialogButtonBox::Cancel)->text().remove('&') + box.button(QDialogButtonBox::Yes)->text().remove('&'), "AnnulerOui");
    }

    void opensOnTheGreetingWithTheDefaults()
    {
        open();
        const UserProfile defaults = UserProfile::defaults();
        for (const SettingKey &key : userKeys::all)
            if (key.control)
                QCOMPARE(valueOf(key.control), defaults.text(key));
        QCOMPARE(win->windowTitle(), banner("mot", fx->words("mot").size()));
        QCOMPARE(w<QLabel>("bandeau")->text(), win->windowTitle());
        QCOMPARE(w<QMenu>("Putilisateur")->title(), QStringLiteral("Utilisateurs (défaut)"));
        QCOMPARE(w<QLabel>("Label31")->text(), QStringLiteral("Requête sur les mots de la Table mot"));

        const QString text = exerciseText();
        QVERIFY2(text.startsWith("73 défaut de F4KLV. ") && text.count('\n') == 3 && text.contains("si vous n'etes pas défaut"), qPrintable(text));
        QVERIFY(text.endsWith("ce-ci à fin d'utiliser vos propres paramètres. et de ne pas modifier les paramètres de défaut Merci."));
        QVERIFY(wholeWav(testsupport::fileBytes(fx->path("tmp/test.wav"))));
        QVERIFY(testsupport::fileBytes(fx->path("tmp/test.txt")).startsWith("73 d\xe9" "faut de F4KLV."));

        // The greeting is prepared: the player stands in the place of "Préparer la musique".
        for (const char *shown : {"Frame2", "EXO", "Text1", "Text14", "PLAYER"})
            QVERIFY2(w(shown)->isVisible(), shown);
        for (const char *hidden : {"Frame1", "List1", "File1", "Web", "Command1"})
            QVERIFY2(!w(hidden)->isVisible(), hidden);
        QCOMPARE(w<QTextBrowser>("Web")->documentTitle(), QStringLiteral("Kelvora - aide"));
        QVERIFY(fx->prompts.questions.isEmpty() && fx->prompts.messages.isEmpty());
    }

    // Every entry of every menu works: enabled, reachable, captioned, tool tips shown.
    void menus()
    {
        win = fx->openWindow();
        int entries = 0;
        for (QMenu *menu : win->menuBar()->findChildren<QMenu *>(QRegularExpression("."))) {
            QVERIFY2(menu->toolTipsVisible(), qPrintable(menu->title()));
            for (const QAction *a : menu->actions()) {
                QVERIFY2(a->isSeparator() || (a->isEnabled() && !a->text().isEmpty()), qPrintable(menu->title() + " " + a->text()));
                entries += a->isSeparator() || a->menu() ? 0 : 1;
            }
        }
        QCOMPARE(entries, 45);
    }

    // Explained by a tool tip, and laid out without overlaps at two sizes.
    void controlsAreExplainedAndFit()
    {
        open();
        const auto counts = [](const QWidget *c) { return c->isVisible() && !c->objectName().isEmpty() && !c->objectName().startsWith("qt_") && !c->isWindow(); };
        for (QWidget *c : win->findChildren<QWidget *>()) {
            const bool control = qobject_cast<QAbstractButton *>(c) || qobject_cast<QComboBox *>(c) || qobject_cast<QAbstractItemView *>(c);
            QVERIFY2(!counts(c) || !control || !c->toolTip().isEmpty() || win->soundPanel()->isAncestorOf(c), qPrintable(c->objectName()));
        }
        for (const QSize size : {QSize(1180, 800), QSize(900, 640)}) {
            win->resize(size);
            QCoreApplication::processEvents();
            QVERIFY(win->width() >= win->minimumSizeHint().width());
            for (QWidget *c : win->findChildren<QWidget *>()) {
                if (!counts(c) || !c->parentWidget())
                    continue;
                // A scroll area's content may be larger than its viewport: it scrolls.
                const bool scrolled = qobject_cast<QAbstractScrollArea *>(c->parentWidget()->parentWidget());
                QVERIFY2(scrolled || c->parentWidget()->rect().contains(c->geometry()), qPrintable(c->objectName() + " leaves its parent"));
                for (QWidget *other : c->parentWidget()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
                    QVERIFY2(other == c || !counts(other) || !c->geometry().intersects(other->geometry()),
                             qPrintable(c->objectName() + " overlaps " + other->objectName()));
            }
        }
    }

    void prepare_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QPoint>("selection"); // UTF-16 positions, as the box counts them
        QTest::addColumn<QString>("boxAfter");
        QTest::addColumn<QString>("selectedAfter");
        // Pattern positions sent: VVV 12, the text, + 5.
        QTest::addRow("whole text is trimmed") << "  E E  " << QPoint(0, 0) << "E E" << "";
        QTest::addRow("selection survives the trim") << "  ET TE" << QPoint(5, 7) << "ET TE" << "TE";
        QTest::addRow("emoji before the selection") << "😀 ET" << QPoint(3, 5) << "😀 ET" << "ET";
    }
    void prepare()
    {
        QFETCH(QString, text);
        QFETCH(QPoint, selection);
        QFETCH(QString, boxAfter);
        QFETCH(QString, selectedAfter);
        open();
        auto *exo = w<QPlainTextEdit>("EXO");
        QCOMPARE(w<QPushButton>("Command1")->text(), QStringLiteral("Préparer la musique"));
        QFile::remove(fx->path("tmp/test.wav"));
        const double sentBefore = win->soundPanel()->boxText("ES").toDouble();
        exo->setPlainText(text);
        QTextCursor c = exo->textCursor();
        c.setPosition(selection.x());
        c.setPosition(selection.y(), QTextCursor::KeepAnchor);
        exo->setTextCursor(c);
        QTest::mouseClick(w("Command1"), Qt::LeftButton);
        QCOMPARE(exo->toPlainText(), boxAfter);
        QCOMPARE(exo->textCursor().selectedText(), selectedAfter);
        QVERIFY(wholeWav(testsupport::fileBytes(fx->path("tmp/test.wav"))));
        QCOMPARE(win->soundPanel()->boxText("ES").toDouble(), sentBefore + 12 + 2 + 5);
        QVERIFY(fx->prompts.messages.isEmpty());
    }

    void viewCommands_data()
    {
        QTest::addColumn<QString>("storedCache"); // how the text was left at the last session
        QTest::addColumn<QString>("command");     // a panel button, a menu entry, the check box
        QTest::addColumn<QString>("views");
        for (const char *cache : {"0", "1"}) {
            const std::pair<const char *, const char *> commands[] = {
                {"Command14", "EXO Text1"}, {"Command15", "Web"}, {"Command16", "File1"}, {"Command11", "List1"},
                {"AfExercices", "EXO Text1"}, {"afcache", "Web"}, {"affichiers", "File1"}, {"aflistmot", "List1"}};
            for (const auto &[command, views] : commands)
                QTest::addRow("%s, cache %s", command, cache) << cache << command << views;
            // The help entry and the check box toggle the hidden text.
            for (const char *toggle : {"Aide", "Check1"})
                QTest::addRow("%s, cache %s", toggle, cache) << cache << toggle << (*cache == '1' ? "EXO Text1" : "Web");
        }
    }
    void viewCommands()
    {
        QFETCH(QString, storedCache);
        QFETCH(QString, command);
        QFETCH(QString, views);
        open({{"cache", storedCache}});
        QCOMPARE(shownViews(), storedCache == "1" ? "Web" : "EXO Text1");
        if (win->findChild<QAction *>(command))
            trigger(command);
        else
            click(command);
        const bool hidden = views == "Web";
        QCOMPARE(shownViews(), views);
        QCOMPARE(valueOf("Check1"), hidden ? "1" : "0");
        QCOMPARE(w("Text14")->isVisible(), !hidden);
        QCOMPARE(fx->stored("défaut", "cache"), hidden ? "1" : "0");
    }

    void fileViewListsAndLoadsTheTexts_data()
    {
        QTest::addColumn<bool>("append");
        QTest::addColumn<QString>("file"); // clicked; "parti.txt" is deleted first
        QTest::addColumn<QString>("exercise");
        QTest::addRow("appended after a blank") << true << "qso.txt" << "VVV CQ CQ DE F4KLVNoël";
        QTest::addRow("gone since listed") << false << "parti.txt" << "VVV";
    }
    void fileViewListsAndLoadsTheTexts()
    {
        QFETCH(bool, append);
        QFETCH(QString, file);
        QFETCH(QString, exercise);
        QFile qso(fx->path("textes/qso.txt"));
        QVERIFY(qso.open(QIODevice::WriteOnly) && qso.write("CQ CQ DE F4KLV\r\nNo\xebl\r\n") == 22);
        qso.close();
        QFile gone(fx->path("textes/parti.txt"));
        QVERIFY(gone.open(QIODevice::WriteOnly));
        gone.close();
        open();
        w<QPlainTextEdit>("EXO")->setPlainText("VVV");
        w<QAction>("ajout")->setChecked(append);
        trigger("ouvrir");
        auto *files = w<QListWidget>("File1");
        const auto names = [files] {
            QStringList n;
            for (int i = 0; i < files->count(); ++i)
                n << files->item(i)->text();
            return n;
        };
        QCOMPARE(names(), (QStringList{"abc.txt", "meteo.txt", "parti.txt", "qso.txt"}));
        QVERIFY(QFile::remove(fx->path("textes/parti.txt"))); // after the listing
        QFile::remove(fx->path("tmp/test.wav")); // the sound prepared at start
        const QRect place = files->visualItemRect(files->findItems(file, Qt::MatchExactly).first());
        QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, place.center());
        QCOMPARE(w<QPlainTextEdit>("EXO")->toPlainText(), exercise);
        const bool loaded = file != "parti.txt";
        QCOMPARE(fx->stored("défaut", "fichier1"), loaded ? file : QStringLiteral("<absent>"));
        QCOMPARE(shownViews(), loaded ? QStringLiteral("EXO Text1") : QStringLiteral("File1"));
        QCOMPARE(QFile::exists(fx->path("tmp/test.wav")), loaded); // its sound prepared
        QCOMPARE(fx->prompts.messages, loaded ? QStringList() : QStringList{"Le fichier « " + QDir::toNativeSeparators(fx->path("textes/parti.txt")) + " » n'existe pas."});
        // Shown again, the list has the folder as it is, the last file loaded picked.
        click("Command16");
        QCOMPARE(names(), (QStringList{"abc.txt", "meteo.txt", "qso.txt"}));
    }

    void toolRewritesTheTextWithoutPlaying()
    {
        open();
        w<QPlainTextEdit>("EXO")->setPlainText("ABCDEFGHIJKL");
        QFile::remove(fx->path("tmp/test.wav"));
        trigger("textengroupe");
        QCOMPARE(exerciseText(), QStringLiteral("ABCDE FGHIJ "));
        QVERIFY(!QFile::exists(fx->path("tmp/test.wav")));
    }

    // The settings replace the exercise and the menus until validated; meanwhile the
    // window does not close.
    void settingsPanelStandsInForTheExercise()
    {
        open({{"progress", "eish5'"}});
        const QList<QAction *> menus = win->menuBar()->actions();
        QCOMPARE(menus.size(), 8);
        trigger("reglager");
        QVERIFY(!w("Frame2")->isVisible() && w("Frame1")->isVisible());
        for (QAction *menu : menus)
            QVERIFY(!menu->isVisible());
        QCOMPARE(valueOf("Fcorrection"), "0"); // the automatic correction is cleared
        QVERIFY(!win->close() && win->isVisible());

        // The examination preset sets the progression too.
        w<QPushButton>("examen")->click();
        QCOMPARE(valueOf("PROGRESS"), examination);
        QCOMPARE(fx->stored("défaut", "progress"), examination);

        // "Tester" plays the reference word through the exercise player.
        const qint64 greeting = QFileInfo(fx->path("tmp/test.wav")).size();
        w<QPushButton>("tester")->click();
        auto *exo = w<QPlainTextEdit>("EXO");
        QVERIFY(exo->toPlainText() == "PARIS" && exo->textCursor().selectedText() == "PARIS");
        QCOMPARE(testsupport::fileBytes(fx->path("tmp/test.txt")), QByteArray("PARIS"));
        const qint64 size = QFileInfo(fx->path("tmp/test.wav")).size();
        QVERIFY(size > 44 && size < greeting);
        QVERIFY(win->playback()->player()->isPlaying());
        QCOMPARE(win->playback()->player()->lengthMs(), (size - 44) / 8);

        QTest::mouseClick(win->soundPanel()->validateButton(), Qt::LeftButton);
        QVERIFY(w("Frame2")->isVisible() && !w("Frame1")->isVisible());
        for (QAction *menu : menus)
            QVERIFY(menu->isVisible());
        QVERIFY(win->close());
    }

    void aboutBox()
    {
        open();
        trigger("apropos");
        trigger("apropos"); // one box, not two
        QCOMPARE(win->findChildren<QMessageBox *>().size(), 1);
        auto *box = win->findChild<QMessageBox *>();
        QVERIFY(box->isVisible() && box->windowTitle() == "À propos de Kelvora");
        QVERIFY2(box->text().contains("Version 3.2.5") && box->informativeText().contains("Morse"), qPrintable(box->text()));
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
