#include "MainWindowFixture.h"
#include "app/MainPF.h"
#include "panels/SoundSettingsPanel.h"
#include "settings/SettingKeys.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QtTest>

using namespace kelvora;
using testsupport::MainWindowFixture;

namespace {
const QString firstUseQuestion = QStringLiteral(
    "c'est votre première utilisation de ce programme, Entrez votre prénom on un pseudo qui "
    "vous permetra si vous etes plusieurs utilisateurs de ce programme de retrouver propres "
    "vos paramètres ");
const QString changeQuestion = QStringLiteral(
    "Entrez un nom d'utilisateur different de ceux déjà existant ce-ci vous permetre de "
    "retrouver vos propres paramètres ");

QString valueOf(const QWidget *w)
{
    if (auto *c = qobject_cast<const QComboBox *>(w))
        return c->currentText();
    if (auto *e = qobject_cast<const QLineEdit *>(w))
        return e->text();
    if (auto *b = qobject_cast<const QAbstractButton *>(w))
        return b->isChecked() ? "1" : "0";
    return {};
}

// Replaces a box's text as a user pasting it would: select all, then paste. (Typing it
// key by key would let the box's rule act on every partial text.)
void pasteInto(QWidget *w, const QString &text)
{
    QWidget *target = w;
    if (auto *c = qobject_cast<QComboBox *>(w))
        target = c->lineEdit();
    target->setFocus();
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(target, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(target, Qt::Key_V, Qt::ControlModifier);
}
// A click on a check box's square, where a user clicks.
void tick(QWidget *box)
{
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}
} // namespace

class ProfilesTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void firstUseAsksForAName();
    void changingToANewUserShowsDefaults();
    void changingToAnExistingUserShowsItsValues();
    void cancellingTheChangeWritesNothing();
    void resetForgetsEveryProfile();
    void quitEndsTheProgramWithoutSaving();
    void memoriseStoresSeventeenKeysAndANewWindowRestoresThem();
    void eachControlSavesItsKeyAtItsMoment_data();
    void eachControlSavesItsKeyAtItsMoment();
    void groupCountIsClampedThenSaved_data();
    void groupCountIsClampedThenSaved();

private:
    QWidget *control(const QString &name) { return m_window->findChild<QWidget *>(name); }
    void open()
    {
        m_window = m_fixture->openWindow();
        // Large enough for every option to be on screen without scrolling.
        m_window->resize(1200, 820);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
};

void ProfilesTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
    QVERIFY(m_fixture->isValid());
}

void ProfilesTest::cleanup()
{
    m_window.reset();
    m_fixture.reset();
}

void ProfilesTest::firstUseAsksForAName()
{
    m_fixture->store("lastuser", "user", "parametres");
    m_fixture->prompts.textAnswers.push_back(QStringLiteral("Lucie"));
    open();
    QCOMPARE(m_fixture->prompts.questions, QStringList{firstUseQuestion});
    QCOMPARE(m_fixture->stored("lastuser", "user"), QStringLiteral("Lucie"));
    QVERIFY(m_window->windowTitle().endsWith(",   Utilisateur=Lucie"));
    QCOMPARE(m_window->findChild<QMenu *>("Putilisateur")->title(), QStringLiteral("Utilisateurs (Lucie)"));
    QVERIFY(m_window->findChild<QPlainTextEdit *>("EXO")->toPlainText().startsWith("73 Lucie de "));
}

void ProfilesTest::changingToANewUserShowsDefaults()
{
    m_fixture->store("défaut", "vitesse", "20");
    m_fixture->store("défaut", "qrm20", "1");
    open();
    QCOMPARE(valueOf(control("VITESSE")), QStringLiteral("20"));
    m_fixture->prompts.textAnswers.push_back(QStringLiteral("Marc"));
    m_window->findChild<QAction *>("utilchanger")->trigger();

    QCOMPARE(m_fixture->prompts.questions, QStringList{changeQuestion});
    QCOMPARE(valueOf(control("VITESSE")), QStringLiteral("12"));
    QCOMPARE(valueOf(control("Q2")), QStringLiteral("0"));
    QCOMPARE(m_window->findChild<QMenu *>("Putilisateur")->title(), QStringLiteral("Utilisateurs (Marc)"));
    QVERIFY(m_window->windowTitle().endsWith(",   Utilisateur=Marc"));
    QCOMPARE(m_fixture->stored("lastuser", "user"), QStringLiteral("Marc"));
    // The previous profile is left as it was.
    QCOMPARE(m_fixture->stored("défaut", "vitesse"), QStringLiteral("20"));
    QCOMPARE(m_fixture->stored("défaut", "qrm20"), QStringLiteral("1"));
}

void ProfilesTest::changingToAnExistingUserShowsItsValues()
{
    const std::pair<const char *, const char *> anne[] = {
        {"vitesse", "25"}, {"frequence", "900"}, {"nbgroup", "12"}, {"qrm30", "1"},
        {"debfin", "0"},   {"progress", "eish5'"}, {"lasttable", "qcode"}, {"cdelai", "500"},
    };
    for (const auto &[key, value] : anne)
        m_fixture->store("Anne", key, value);
    open();
    m_fixture->prompts.textAnswers.push_back(QStringLiteral("Anne"));
    m_window->findChild<QAction *>("utilchanger")->trigger();
    const std::pair<const char *, const char *> shown[] = {
        {"VITESSE", "25"}, {"FRE", "900"}, {"nbgroup", "12"}, {"Q3", "1"},
        {"debfin", "0"},   {"PROGRESS", "eish5'"}, {"TABLES", "qcode"}, {"cdelai", "500"},
    };
    for (const auto &[name, value] : shown)
        QCOMPARE(valueOf(control(name)), QString::fromUtf8(value));
    QVERIFY(m_window->windowTitle().contains("Table : qcode (4)"));
}

// Which answers are refused is the profile controller's test; here, what the window shows.
void ProfilesTest::cancellingTheChangeWritesNothing()
{
    const std::optional<QString> answer;
    m_fixture->store("lastuser", "user", "Paul");
    m_fixture->store("Paul", "vitesse", "18");
    open();
    const QByteArray before = testsupport::fileBytes(m_fixture->settingsPath());
    m_fixture->prompts.textAnswers.push_back(answer);
    m_window->findChild<QAction *>("utilchanger")->trigger();
    QCOMPARE(m_fixture->prompts.questions.size(), 1);
    QCOMPARE(testsupport::fileBytes(m_fixture->settingsPath()), before);
    QCOMPARE(m_window->findChild<QMenu *>("Putilisateur")->title(), QStringLiteral("Utilisateurs (Paul)"));
    QVERIFY(m_window->windowTitle().endsWith(",   Utilisateur=Paul"));
    QCOMPARE(valueOf(control("VITESSE")), QStringLiteral("18"));
    QVERIFY2(m_window->statusBar()->currentMessage().contains("« Paul »"),
             qPrintable(m_window->statusBar()->currentMessage()));
}

void ProfilesTest::resetForgetsEveryProfile()
{
    m_fixture->store("lastuser", "user", "Paul");
    m_fixture->store("Paul", "vitesse", "18");
    m_fixture->store("Anne", "vitesse", "25");
    open();
    QSignalSpy ending(m_window.get(), &MainPF::programEnding);
    auto *raz = m_window->findChild<QAction *>("raz");
    QCOMPARE(raz->text(), QStringLiteral("Quitter +  R.A.Z Paramètres"));
    raz->trigger();
    QCOMPARE(ending.size(), 1);
    QCOMPARE(m_fixture->storedSections(), QStringList());

    // The next start is a fresh installation.
    m_window.reset();
    open();
    QVERIFY(m_window->windowTitle().endsWith(",   Utilisateur=défaut"));
    QCOMPARE(valueOf(control("VITESSE")), QStringLiteral("12"));
}

void ProfilesTest::quitEndsTheProgramWithoutSaving()
{
    open();
    const QByteArray before = testsupport::fileBytes(m_fixture->settingsPath());
    QSignalSpy ending(m_window.get(), &MainPF::programEnding);
    m_window->findChild<QAction *>("quitter")->trigger();
    QCOMPARE(ending.size(), 1);
    QCOMPARE(testsupport::fileBytes(m_fixture->settingsPath()), before);
}

void ProfilesTest::memoriseStoresSeventeenKeysAndANewWindowRestoresThem()
{
    open();
    m_window->findChild<QAction *>("reglager")->trigger();
    const std::pair<const char *, const char *> typed[] = {
        {"VITESSE", "18"}, {"MOT", "CODEX"}, {"FRE", "850"}, {"VOL", "90"}, {"CT", "4"},
        {"CS", "2"},       {"CL", "4"},      {"CM", "8"},    {"DEB", "CQ"}, {"FIN", "AR"},
        {"SUP", "1.5"},    {"NCOM", "3"},    {"cdelai", "500"},
    };
    for (const auto &[name, text] : typed)
        pasteInto(control(name), QString::fromUtf8(text));
    for (auto [name, index] : {std::pair{"GRMIN", 2}, std::pair{"GRMAX", 6}}) {
        auto *box = qobject_cast<QComboBox *>(control(name));
        box->setFocus();
        box->setCurrentIndex(index);
    }
    tick(control("Activecom"));
    m_window->findChild<QPushButton *>("memoriser")->click();

    // In the order of "Mémoriser": the picked group lengths, the typed boxes, the group
    // count left as it was, the port and the ticked push-to-talk.
    const QStringList values = {"3", "7", "18", "CODEX", "850", "90", "4", "2", "4",
                                "8", "CQ", "AR", "1.5", "36", "3", "1", "500"};
    QCOMPARE(qsizetype(userKeys::memorised.size()), values.size());
    for (qsizetype i = 0; i < values.size(); ++i)
        QCOMPARE(m_fixture->stored("défaut", userKeys::memorised[i].key()), values[i]);

    m_window->soundPanel()->validateButton()->click();
    m_window.reset();
    open();
    for (qsizetype i = 0; i < values.size(); ++i)
        QCOMPARE(valueOf(control(QString::fromLatin1(userKeys::memorised[i].control))), values[i]);
}

void ProfilesTest::eachControlSavesItsKeyAtItsMoment_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("gesture"); // "click", "pick N" or "type TEXT"
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addRow("delaimot typed") << "delaimot" << "type 750" << "delaimot" << "750";
    QTest::addRow("delaimot picked") << "delaimot" << "pick 4" << "delaimot" << "2000";
    QTest::addRow("progression picked") << "PROGRESS" << "pick 1" << "progress" << "egmz0";
    QTest::addRow("progression typed") << "PROGRESS" << "type abc" << "progress" << "abc";
    QTest::addRow("QRM1") << "Q1" << "click" << "qrm10" << "1";
    QTest::addRow("QRM2") << "Q2" << "click" << "qrm20" << "1";
    QTest::addRow("QRM3") << "Q3" << "click" << "qrm30" << "1";
    QTest::addRow("correction") << "Fcorrection" << "click" << "fcorrection" << "0";
    QTest::addRow("start and end signs") << "debfin" << "click" << "debfin" << "0";
    QTest::addRow("hide the text") << "Check1" << "click" << "cache" << "1";
    QTest::addRow("group count picked") << "nbgroup" << "pick 0" << "nbgroup" << "6";
}

void ProfilesTest::eachControlSavesItsKeyAtItsMoment()
{
    QFETCH(QString, control);
    QFETCH(QString, gesture);
    QFETCH(QString, key);
    QFETCH(QString, value);
    m_fixture->store("lastuser", "user", "Zoé");
    open();
    QCOMPARE(m_fixture->stored("Zoé", key), QStringLiteral("<absent>"));
    QWidget *w = this->control(control);
    if (gesture == "click") {
        tick(w);
    } else if (gesture.startsWith("pick ")) {
        auto *box = qobject_cast<QComboBox *>(w);
        box->setFocus();
        const int target = gesture.mid(5).toInt();
        // Arrow keys pick entries as the list does.
        QTest::keyClick(box, Qt::Key_Home);
        for (int i = box->currentIndex(); i < target; ++i)
            QTest::keyClick(box, Qt::Key_Down);
        for (int i = box->currentIndex(); i > target; --i)
            QTest::keyClick(box, Qt::Key_Up);
        QCOMPARE(box->currentIndex(), target);
    } else {
        pasteInto(w, gesture.mid(5));
    }
    QCOMPARE(m_fixture->stored("Zoé", key), value);
    QCOMPARE(m_fixture->storedSections(), (QStringList{"Zo\u00e9", "lastuser"}));
}

void ProfilesTest::groupCountIsClampedThenSaved_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addRow("zero") << "0" << "1";
    QTest::addRow("negative") << "-3" << "1";
    QTest::addRow("above the bound") << "150" << "102";
    QTest::addRow("the bound") << "102" << "102";
    QTest::addRow("inside") << "24" << "24";
}

void ProfilesTest::groupCountIsClampedThenSaved()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    open();
    pasteInto(control("nbgroup"), typed);
    QCOMPARE(valueOf(control("nbgroup")), shown);
    QCOMPARE(m_fixture->stored("défaut", "nbgroup"), shown);
}

QTEST_MAIN(ProfilesTest)
#include "tst_profiles.moc"
