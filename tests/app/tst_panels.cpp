#include "MainWindowFixture.h"
#include "app/MainPF.h"
#include "ui/WindowTimers.h"
#include "core/Random.h"
#include "panels/SoundSettingsPanel.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBrowser>
#include <QtTest>

using namespace kelvora;
using testsupport::MainWindowFixture;

// Stands in for the system browser.
class UrlCatcher : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl &url) { urls << url; }
};

class PanelsTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void viewCommandsShowOneView_data();
    void viewCommandsShowOneView();
    void hidingTheTextShowsTheHelpPage();
    void helpTogglesTheHiddenText();
    void fileViewListsTheTexts();
    void settingsReplaceTheExerciseUntilValidated();
    void closingIsRefusedWhileTheSettingsAreShown();
    void validateBlinks();
    void testingTheSettingsPlaysTheReferenceWord();
    void examinationPresetSetsTheProgression();
    void aboutBoxNamesTheVersion();
    void morseKeyOpensTheLearningPage();
    void idleTimeAndMouseMovesStirTheRandomSequence();

private:
    template<typename T = QWidget>
    T *control(const char *name) { return m_window->findChild<T *>(QString::fromUtf8(name)); }
    QString visibleViews() const;
    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
};

void PanelsTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
    QVERIFY(m_fixture->isValid());
}

void PanelsTest::cleanup()
{
    m_window.reset();
    m_fixture.reset();
}

QString PanelsTest::visibleViews() const
{
    QStringList shown;
    for (const char *name : {"EXO", "Text1", "List1", "File1", "Web"}) {
        if (m_window->findChild<QWidget *>(name)->isVisible())
            shown << name;
    }
    return shown.join(' ');
}

void PanelsTest::viewCommandsShowOneView_data()
{
    QTest::addColumn<QString>("storedCache"); // how the text was left at the last session
    QTest::addColumn<QString>("command");     // a panel button or a menu entry
    QTest::addColumn<QString>("views");
    QTest::addColumn<bool>("hidden");         // Check1 afterwards
    for (const char *cache : {"0", "1"}) {
        const QString c = QString::fromLatin1(cache);
        QTest::addRow("Exercice, cache %s", cache) << c << "Command14" << "EXO Text1" << false;
        QTest::addRow("Cache, cache %s", cache) << c << "Command15" << "Web" << true;
        QTest::addRow("Fichier, cache %s", cache) << c << "Command16" << "File1" << false;
        QTest::addRow("Liste, cache %s", cache) << c << "Command11" << "List1" << false;
        QTest::addRow("menu Exercices, cache %s", cache) << c << "AfExercices" << "EXO Text1" << false;
        QTest::addRow("menu Cache, cache %s", cache) << c << "afcache" << "Web" << true;
        QTest::addRow("menu Fichiers, cache %s", cache) << c << "affichiers" << "File1" << false;
        QTest::addRow("menu Liste, cache %s", cache) << c << "aflistmot" << "List1" << false;
    }
}

void PanelsTest::viewCommandsShowOneView()
{
    QFETCH(QString, storedCache);
    QFETCH(QString, command);
    QFETCH(QString, views);
    QFETCH(bool, hidden);
    m_fixture->store("défaut", "cache", storedCache);
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QCOMPARE(visibleViews(), storedCache == "1" ? QStringLiteral("Web") : QStringLiteral("EXO Text1"));

    if (auto *button = m_window->findChild<QPushButton *>(command))
        QTest::mouseClick(button, Qt::LeftButton);
    else
        m_window->findChild<QAction *>(command)->trigger();
    QCOMPARE(visibleViews(), views);
    QCOMPARE(control<QAbstractButton>("Check1")->isChecked(), hidden);
    QCOMPARE(control("Text14")->isVisible(), !hidden);
    QCOMPARE(m_fixture->stored("défaut", "cache"), hidden ? QStringLiteral("1") : QStringLiteral("0"));
}

void PanelsTest::hidingTheTextShowsTheHelpPage()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    auto *check = control<QAbstractButton>("Check1");
    QCOMPARE(check->text(), QStringLiteral("Cache"));
    QCOMPARE(check->toolTip(), QStringLiteral("Cache le texte / Affiche l'aide en ou hors ligne"));

    QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
    QCOMPARE(visibleViews(), QStringLiteral("Web"));
    QVERIFY(!control("Text14")->isVisible());
    auto *web = control<QTextBrowser>("Web");
    QCOMPARE(web->source(), QUrl::fromLocalFile(m_fixture->path("doc/kvmenu.htm")));
    QCOMPARE(web->documentTitle(), QStringLiteral("Kelvora - aide"));
    QCOMPARE(m_fixture->stored("défaut", "cache"), QStringLiteral("1"));

    QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
    QCOMPARE(visibleViews(), QStringLiteral("EXO Text1"));
    QVERIFY(control("Text14")->isVisible());
    QCOMPARE(m_fixture->stored("défaut", "cache"), QStringLiteral("0"));
}

void PanelsTest::helpTogglesTheHiddenText()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    auto *help = control<QAction>("Aide");
    for (bool hidden : {true, false, true}) {
        help->trigger();
        QCOMPARE(control<QAbstractButton>("Check1")->isChecked(), hidden);
        QCOMPARE(visibleViews(), hidden ? QStringLiteral("Web") : QStringLiteral("EXO Text1"));
    }
}

void PanelsTest::fileViewListsTheTexts()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTest::mouseClick(control<QPushButton>("Command16"), Qt::LeftButton);
    auto *files = control<QListWidget>("File1");
    QStringList names;
    for (int i = 0; i < files->count(); ++i)
        names << files->item(i)->text();
    QCOMPARE(names, (QStringList{"abc.txt", "meteo.txt", "qso.txt"}));

    // A text added meanwhile shows at the next visit.
    QFile extra(m_fixture->path("textes/bulletin.txt"));
    QVERIFY(extra.open(QIODevice::WriteOnly));
    extra.close();
    QTest::mouseClick(control<QPushButton>("Command14"), Qt::LeftButton);
    QTest::mouseClick(control<QPushButton>("Command16"), Qt::LeftButton);
    QCOMPARE(files->count(), 4);
    QCOMPARE(files->item(1)->text(), QStringLiteral("bulletin.txt"));
}

void PanelsTest::settingsReplaceTheExerciseUntilValidated()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    const QList<QAction *> menus = m_window->menuBar()->actions();
    QCOMPARE(menus.size(), 8);

    control<QAction>("reglager")->trigger();
    QVERIFY(!control("Frame2")->isVisible());
    QVERIFY(control("Frame1")->isVisible());
    for (QAction *menu : menus)
        QVERIFY2(!menu->isVisible(), qPrintable(menu->text()));
    // Opening the settings clears the automatic correction.
    QVERIFY(!control<QAbstractButton>("Fcorrection")->isChecked());

    QPushButton *validate = m_window->soundPanel()->validateButton();
    QTest::mouseClick(validate, Qt::LeftButton);
    QVERIFY(control("Frame2")->isVisible());
    QVERIFY(!control("Frame1")->isVisible());
    for (QAction *menu : menus)
        QVERIFY(menu->isVisible());
}

void PanelsTest::closingIsRefusedWhileTheSettingsAreShown()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    control<QAction>("reglager")->trigger();
    QVERIFY(!m_window->close());
    QVERIFY(m_window->isVisible());
    QVERIFY(control("Frame1")->isVisible());

    QTest::mouseClick(m_window->soundPanel()->validateButton(), Qt::LeftButton);
    QVERIFY(m_window->close());
    QVERIFY(!m_window->isVisible());
}

void PanelsTest::validateBlinks()
{
    m_window = m_fixture->openWindow();
    QPushButton *validate = m_window->soundPanel()->validateButton();
    const QTimer *timer1 = m_window->findChild<QTimer *>("Timer1");
    QVERIFY(timer1->isActive());
    QStringList captions;
    QElapsedTimer clock;
    clock.start();
    // Five half-second ticks: the caption alternates between "Valider" and nothing.
    while (captions.size() < 5 && clock.elapsed() < 5000) {
        const QString before = validate->text();
        QTRY_VERIFY_WITH_TIMEOUT(validate->text() != before, 1500);
        captions << validate->text();
    }
    QCOMPARE(captions.size(), 5);
    for (int i = 1; i < captions.size(); ++i)
        QVERIFY(captions[i] != captions[i - 1]);
    QVERIFY(captions.contains(QStringLiteral("Valider")));
    QVERIFY(captions.contains(QString()));
    QCOMPARE(validate->accessibleName(), QStringLiteral("Valider"));
}

void PanelsTest::testingTheSettingsPlaysTheReferenceWord()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    control<QAction>("reglager")->trigger();
    const qint64 greetingSize = QFileInfo(m_fixture->path("tmp/test.wav")).size();
    m_window->findChild<QPushButton *>("tester")->click();

    auto *exo = control<QPlainTextEdit>("EXO");
    QCOMPARE(exo->toPlainText(), QStringLiteral("PARIS"));
    QCOMPARE(exo->textCursor().selectedText(), QStringLiteral("PARIS"));
    QCOMPARE(testsupport::fileBytes(m_fixture->path("tmp/test.txt")), QByteArray("PARIS"));
    const qint64 size = QFileInfo(m_fixture->path("tmp/test.wav")).size();
    QVERIFY(size > 44 && size < greetingSize);
    // Heard at once, through the exercise player.
    const MediaDevice *player = m_window->playback()->player();
    QVERIFY(player->isPlaying());
    QCOMPARE(player->lengthMs(), (size - 44) / 8);
}

void PanelsTest::examinationPresetSetsTheProgression()
{
    m_fixture->store("défaut", "progress", "eish5'");
    m_window = m_fixture->openWindow();
    QCOMPARE(control<QComboBox>("PROGRESS")->currentText(), QStringLiteral("eish5'"));
    control<QAction>("reglager")->trigger();
    m_window->findChild<QPushButton *>("examen")->click();
    const QString examination = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*");
    QCOMPARE(control<QComboBox>("PROGRESS")->currentText(), examination);
    QCOMPARE(m_fixture->stored("défaut", "progress"), examination);
}

void PanelsTest::aboutBoxNamesTheVersion()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    control<QAction>("apropos")->trigger();
    auto *box = m_window->findChild<QMessageBox *>();
    QVERIFY(box);
    QVERIFY(box->isVisible());
    QCOMPARE(box->windowTitle(), QStringLiteral("À propos de Kelvora"));
    QVERIFY2(box->text().contains("Version 3.2.5"), qPrintable(box->text()));
    QVERIFY(box->informativeText().contains("Morse"));
    box->accept();
    control<QAction>("apropos")->trigger();
    QCOMPARE(m_window->findChildren<QMessageBox *>().size(), 1);
    QVERIFY(box->isVisible());
    box->accept();
}

void PanelsTest::morseKeyOpensTheLearningPage()
{
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler("https", &catcher, "open");
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    auto *key = control<QAbstractButton>("Picture1");
    QVERIFY(!key->icon().isNull());
    QTest::mouseClick(key, Qt::LeftButton);
    QDesktopServices::unsetUrlHandler("https");
    QCOMPARE(catcher.urls.size(), 1);
    QCOMPARE(catcher.urls.front().host(), QStringLiteral("www.uft.net"));
}

void PanelsTest::idleTimeAndMouseMovesStirTheRandomSequence()
{
    m_window = m_fixture->openWindow();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_window->timers()->timer1()->stop();
    m_window->timers()->timer2()->stop();
    random::seed(42);
    const double first = random::rnd();
    const double second = random::rnd();

    // A mouse movement over the exercise frame draws one number.
    random::seed(42);
    QWidget *frame = control("Frame2");
    QTest::mouseMove(frame, QPoint(4, 4));
    QTest::mouseMove(frame, QPoint(6, 5));
    QCoreApplication::processEvents();
    QVERIFY(random::rnd() != first);

    // So does each tick of Timer2.
    random::seed(42);
    m_window->timers()->timer2()->start();
    QTest::qWait(250);
    m_window->timers()->timer2()->stop();
    const double drawn = random::rnd();
    QVERIFY(drawn != first && drawn != second);
}

QTEST_MAIN(PanelsTest)
#include "tst_panels.moc"
