#include "RefFixture.h"
#include "ScriptedPrompts.h"
#include "morse/PatternLookup.h"
#include "morse/SoundSettingsPanel.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QtTest>

#include <memory>

using namespace kelvora;

using PanelSignal = void (SoundSettingsPanel::*)();
Q_DECLARE_METATYPE(PanelSignal)

namespace {

const QString examGrid = QStringLiteral("120 48 108 48 11 120 144 108 144 99 615");
const QString examInformation =
    QStringLiteral("Soit 97 Millièmes de secondes pour un point (arrondie à l'unité inférieure)");

QString information(int dot)
{
    return QStringLiteral("Soit %1 Millièmes de secondes pour un point (arrondie à l'unité "
                          "inférieure)")
        .arg(dot);
}

// The panel as the main window holds it, shown and active so that focus moves.
struct Harness {
    explicit Harness(WordDatabase &database)
        : lookup(database)
        , panel(lookup, prompts)
    {
    }
    testsupport::ScriptedPrompts prompts;
    PatternLookup lookup;
    SoundSettingsPanel panel;
};

} // namespace

class SoundSettingsPanelTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void startsWithTheProfileDefaults_data();
    void startsWithTheProfileDefaults();
    void labelsNameTheirBoxes_data();
    void labelsNameTheirBoxes();
    void buttonsAndHeadings_data();
    void buttonsAndHeadings();
    void everyControlIsNamedAndExplained_data();
    void everyControlIsNamedAndExplained();
    void resultBoxesRefuseTyping_data();
    void resultBoxesRefuseTyping();

    void validateShowsTheCalculation_data();
    void validateShowsTheCalculation();
    void typingAppliesTheBoxRules_data();
    void typingAppliesTheBoxRules();
    void typingUpdatesTheGrid_data();
    void typingUpdatesTheGrid();
    void leavingABox_data();
    void leavingABox();
    void choosingFromAList_data();
    void choosingFromAList();
    void programSetTextRunsTheRules_data();
    void programSetTextRunsTheRules();
    void dashLengthWaitsForATrigger_data();
    void dashLengthWaitsForATrigger();
    void failedCalculationKeepsThePlan_data();
    void failedCalculationKeepsThePlan();

    void presetsRestoreEveryValue_data();
    void presetsRestoreEveryValue();
    void buttonsEmitTheirRequest_data();
    void buttonsEmitTheirRequest();
    void sentPatternPositionsAddToEsp_data();
    void sentPatternPositionsAddToEsp();

private:
    SoundSettingsPanel &panel() { return m_harness->panel; }
    QStringList &messages() { return m_harness->prompts.messages; }
    QWidget *box(const QString &name);
    QComboBox *combo(const QString &name);
    QLineEdit *edit(const QString &name);
    QPushButton *button(const QString &name);
    QString grid();
    void typeInto(const QString &name, const QString &text);
    void leave(const QString &name);
    void setLikeARestore(const QString &name, const QString &text);
    bool planUsesDash(double dots);

    testsupport::RefFixture m_fixture;
    std::unique_ptr<Harness> m_harness;
};

void SoundSettingsPanelTest::initTestCase()
{
    QVERIFY(m_fixture.isValid());
}

void SoundSettingsPanelTest::init()
{
    m_harness = std::make_unique<Harness>(m_fixture.database());
    panel().resize(900, 760);
    panel().show();
    panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&panel()));
}

void SoundSettingsPanelTest::cleanup()
{
    m_harness.reset();
}

QWidget *SoundSettingsPanelTest::box(const QString &name)
{
    QWidget *w = panel().findChild<QWidget *>(name);
    if (!w)
        qFatal("no control %s", qPrintable(name));
    return w;
}

QComboBox *SoundSettingsPanelTest::combo(const QString &name)
{
    return qobject_cast<QComboBox *>(box(name));
}

QLineEdit *SoundSettingsPanelTest::edit(const QString &name)
{
    return qobject_cast<QLineEdit *>(box(name));
}

QPushButton *SoundSettingsPanelTest::button(const QString &name)
{
    return qobject_cast<QPushButton *>(box(name));
}

// NP NT ES EL EM VP VT VS VL VM TT, as shown.
QString SoundSettingsPanelTest::grid()
{
    QStringList parts;
    for (const char *name : {"NP", "NT", "ES", "EL", "EM", "VP", "VT", "VS", "VL", "VM", "TT"})
        parts << edit(QString::fromLatin1(name))->text();
    return parts.join(' ');
}

// Clicks into the box, selects its whole text and types over it.
void SoundSettingsPanelTest::typeInto(const QString &name, const QString &text)
{
    QWidget *w = box(name);
    w->setFocus(Qt::MouseFocusReason);
    QVERIFY(w->hasFocus());
    QTest::keyClick(w, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(w, text);
}

// Tab to the next control.
void SoundSettingsPanelTest::leave(const QString &name)
{
    QWidget *w = box(name);
    QVERIFY(w->hasFocus());
    QTest::keyClick(w, Qt::Key_Tab);
    QVERIFY(!w->hasFocus());
}

// What the profile restore does: put the text into the box by program.
void SoundSettingsPanelTest::setLikeARestore(const QString &name, const QString &text)
{
    if (QComboBox *c = qobject_cast<QComboBox *>(box(name)))
        c->setEditText(text);
    else
        edit(name)->setText(text);
}

// Whether the plan in force was calculated with a dash of `dots` dots.
bool SoundSettingsPanelTest::planUsesDash(double dots)
{
    const TimingPlan plan = panel().timingPlan();
    return plan.dot > 0 && plan.dash == plan.dot * dots;
}

void SoundSettingsPanelTest::startsWithTheProfileDefaults_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("entries"); // -1: a text box
    QTest::addRow("speed") << "VITESSE" << "12" << 46;
    QTest::addRow("reference word") << "MOT" << "PARIS" << 2;
    QTest::addRow("frequency") << "FRE" << "700" << 73;
    QTest::addRow("volume") << "VOL" << "127" << 26;
    QTest::addRow("dash") << "CT" << "3" << -1;
    QTest::addRow("gap between signs") << "CS" << "1" << -1;
    QTest::addRow("gap between letters") << "CL" << "3" << -1;
    QTest::addRow("gap between words") << "CM" << "9" << -1;
    QTest::addRow("thinking time") << "SUP" << "1" << 14;
    QTest::addRow("start sign") << "DEB" << "VVV" << -1;
    QTest::addRow("end sign") << "FIN" << "+" << -1;
    QTest::addRow("shortest group") << "GRMIN" << "5" << 12;
    QTest::addRow("longest group") << "GRMAX" << "5" << 12;
}

void SoundSettingsPanelTest::startsWithTheProfileDefaults()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(int, entries);
    QCOMPARE(panel().objectName(), QStringLiteral("Frame1"));
    QCOMPARE(panel().boxText(name), text);
    if (entries < 0) {
        QVERIFY(edit(name));
        QVERIFY(!edit(name)->isReadOnly());
    } else {
        QCOMPARE(combo(name)->count(), entries);
    }
    QVERIFY(messages().isEmpty());
}

void SoundSettingsPanelTest::labelsNameTheirBoxes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addRow("speed") << "VITESSE" << "Vitesse";
    QTest::addRow("frequency") << "FRE" << "Fréquence";
    QTest::addRow("volume") << "VOL" << "Volume";
    QTest::addRow("reference word") << "MOT" << "Mot de Référence";
    QTest::addRow("dash") << "CT" << "Nb points pour un trait";
    QTest::addRow("gap between signs") << "CS" << "Nb points entre signes";
    QTest::addRow("gap between letters") << "CL" << "Nb points entre lettres";
    QTest::addRow("gap between words") << "CM" << "Nb points entre mots";
    QTest::addRow("thinking time, two blanks before mots")
        << "SUP"
        << "Coefficient multiplicateur de temps de réflexion supplémentaire, lorsqu'il est "
           "supérieure à 1 permet aux débutants de travailler avec plus d'espace entre les "
           "lettres et entre les  mots tout en respectant la vitesse pure du caractère.";
    QTest::addRow("shortest group") << "GRMIN" << "Mini";
    QTest::addRow("longest group") << "GRMAX" << "Maxi";
}

void SoundSettingsPanelTest::labelsNameTheirBoxes()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QLabel *found = nullptr;
    for (QLabel *label : panel().findChildren<QLabel *>()) {
        if (label->buddy() == box(name))
            found = label;
    }
    QVERIFY2(found, qPrintable(name));
    QCOMPARE(found->text(), caption);
    QVERIFY(found->isVisible());
    // A long caption wraps instead of being cut at the window's edge.
    QVERIFY(found->geometry().right() <= found->parentWidget()->contentsRect().right());
}

void SoundSettingsPanelTest::buttonsAndHeadings_data()
{
    QTest::addColumn<QString>("name");  // empty: any label or group box
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("hint");  // empty: not checked
    QTest::addRow("validate") << "command2" << "Valider" << "";
    QTest::addRow("examination preset") << "examen" << "Paramètres Examen" << "";
    QTest::addRow("handicapped preset") << "handicape" << ""
                                        << "Cliquez ici pour valider les paramètres \"handicapé\"";
    QTest::addRow("store") << "memoriser" << "Mémoriser ces paramètres" << "";
    QTest::addRow("test") << "tester" << "Tester les paramètres" << "";
    QTest::addRow("reference table, as misspelt") << "editreftable"
                                                  << "Editer la table de rérérence" << "";
    for (const char *heading : {"Timing", "Nombre", "eq Points", "Points", "Traits", "Esp signes",
                                "Esp lettres", "Esp mots", "Informations calculs",
                                "Groupes de longueur variable"})
        QTest::addRow("heading %s", heading) << "" << QString::fromUtf8(heading) << "";
}

void SoundSettingsPanelTest::buttonsAndHeadings()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(QString, hint);
    if (name.isEmpty()) {
        bool shown = false;
        for (QLabel *label : panel().findChildren<QLabel *>())
            shown = shown || (label->text() == caption && label->isVisible());
        for (QGroupBox *group : panel().findChildren<QGroupBox *>())
            shown = shown || (group->title() == caption && group->isVisible());
        QVERIFY2(shown, qPrintable(caption));
        return;
    }
    QPushButton *b = button(name);
    QVERIFY(b->isVisible());
    if (!caption.isEmpty())
        QCOMPARE(b->text(), caption);
    if (!hint.isEmpty())
        QCOMPARE(b->toolTip(), hint);
    // The caption fits: the button is at least as wide as its text needs.
    QVERIFY(b->width() >= b->minimumSizeHint().width());
}

void SoundSettingsPanelTest::everyControlIsNamedAndExplained_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addRow("drop-downs") << "QComboBox";
    QTest::addRow("text boxes") << "QLineEdit";
    QTest::addRow("buttons") << "QPushButton";
    QTest::addRow("summary") << "QTextEdit";
}

void SoundSettingsPanelTest::everyControlIsNamedAndExplained()
{
    QFETCH(QString, kind);
    int checked = 0;
    for (QWidget *w : panel().findChildren<QWidget *>()) {
        // The line edit inside an editable drop-down is part of the drop-down.
        if (!w->inherits(qPrintable(kind)) || qobject_cast<QComboBox *>(w->parentWidget()))
            continue;
        ++checked;
        QVERIFY2(!w->accessibleName().isEmpty(), qPrintable(w->objectName()));
        QVERIFY2(!w->toolTip().isEmpty(), qPrintable(w->objectName()));
    }
    QVERIFY(checked > 0);
}

void SoundSettingsPanelTest::resultBoxesRefuseTyping_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"NP", "NT", "ES", "EL", "EM", "VP", "VT", "VS", "VL", "VM", "TT", "infocalcul"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
    QTest::addRow("handicapped summary") << "infohandicape";
}

void SoundSettingsPanelTest::resultBoxesRefuseTyping()
{
    QFETCH(QString, name);
    QVERIFY(panel().CALCCONFIG());
    QWidget *w = box(name);
    auto text = [w] {
        if (auto *e = qobject_cast<QLineEdit *>(w))
            return e->text();
        return qobject_cast<QTextEdit *>(w)->toPlainText();
    };
    const QString before = text();
    QVERIFY(!before.isEmpty());
    w->setFocus(Qt::MouseFocusReason);
    QTest::keyClicks(w, "99");
    QTest::keyClick(w, Qt::Key_Backspace);
    QCOMPARE(text(), before);
}

void SoundSettingsPanelTest::validateShowsTheCalculation_data()
{
    QTest::addColumn<QStringList>("boxes"); // VITESSE MOT CT CS CL CM
    QTest::addColumn<QString>("expectedGrid");
    QTest::addColumn<int>("dot");
    QTest::addColumn<double>("dash");
    QTest::addColumn<double>("wordGap");
    QTest::addColumn<QString>("wordAfter");
    QTest::addRow("examination values")
        << QStringList{"12", "PARIS", "3", "1", "3", "9"} << examGrid << 97 << 291.0 << 873.0
        << "PARIS";
    QTest::addRow("word gap of 7 dots")
        << QStringList{"12", "PARIS", "3", "1", "3", "7"}
        << "120 48 108 48 11 120 144 108 144 77 593" << 101 << 303.0 << 707.0 << "PARIS";
    QTest::addRow("blanks around the word are removed from the box")
        << QStringList{"12", "  PARIS ", "3", "1", "3", "9"} << examGrid << 97 << 291.0
        << 873.0 << "PARIS";
    QTest::addRow("half dots in a dash")
        << QStringList{"12", "PARIS", "3.5", "1", "3", "9"}
        << "120 48 108 48 11 120 168 108 144 99 639" << 93 << 325.5 << 837.0 << "PARIS";
    QTest::addRow("other reference word")
        << QStringList{"12", "CODEX", "3", "1", "3", "9"}
        << "84 96 120 48 11 84 288 120 144 99 735" << 81 << 243.0 << 729.0 << "CODEX";
}

void SoundSettingsPanelTest::validateShowsTheCalculation()
{
    QFETCH(QStringList, boxes);
    QFETCH(QString, expectedGrid);
    QFETCH(int, dot);
    QFETCH(double, dash);
    QFETCH(double, wordGap);
    QFETCH(QString, wordAfter);
    const QStringList names = {"VITESSE", "MOT", "CT", "CS", "CL", "CM"};
    for (int i = 0; i < names.size(); ++i)
        setLikeARestore(names[i], boxes[i]);
    QSignalSpy validated(&panel(), &SoundSettingsPanel::validated);
    QTest::mouseClick(button("command2"), Qt::LeftButton);
    QCOMPARE(validated.count(), 1);
    QCOMPARE(grid(), expectedGrid);
    QCOMPARE(edit("infocalcul")->text(), information(dot));
    QCOMPARE(panel().boxText("MOT"), wordAfter);
    const TimingPlan plan = panel().timingPlan();
    QCOMPARE(plan.dot, double(dot));
    QCOMPARE(plan.dash, dash);
    QCOMPARE(plan.elementGap, double(dot));
    QCOMPARE(plan.letterGap, 3.0 * dot);
    QCOMPARE(plan.wordGap, wordGap);
    QVERIFY(messages().isEmpty());
}

// Typed without leaving the box. A dash of 5 dots is put in first (it has no rule of
// its own), so a plan using 5 shows that the typing recalculated.
void SoundSettingsPanelTest::typingAppliesTheBoxRules_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("recalculates");
    QTest::addRow("speed below 3") << "VITESSE" << "2" << "3" << true;
    QTest::addRow("speed in range") << "VITESSE" << "40" << "40" << true;
    QTest::addRow("frequency above 8000") << "FRE" << "9000" << "8000" << true;
    QTest::addRow("frequency below 1") << "FRE" << "0" << "1" << true;
    QTest::addRow("frequency in range") << "FRE" << "440" << "440" << true;
    QTest::addRow("volume above 127") << "VOL" << "200" << "127" << false;
    QTest::addRow("volume below 1") << "VOL" << "0" << "1" << false;
    QTest::addRow("volume in range") << "VOL" << "64" << "64" << false;
    QTest::addRow("reference word, not on each key") << "MOT" << "CODEX" << "CODEX" << false;
    QTest::addRow("gap between signs, not before leaving") << "CS" << "2" << "2" << false;
    QTest::addRow("thinking time") << "SUP" << "9" << "9" << false;
    QTest::addRow("start sign") << "DEB" << "CQ" << "CQ" << false;
}

void SoundSettingsPanelTest::typingAppliesTheBoxRules()
{
    QFETCH(QString, name);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(bool, recalculates);
    QVERIFY(panel().CALCCONFIG());
    setLikeARestore("CT", "5");
    const QString gridBefore = grid();
    typeInto(name, typed);
    QCOMPARE(panel().boxText(name), shown);
    QCOMPARE(planUsesDash(5), recalculates);
    QCOMPARE(grid() != gridBefore, recalculates);
    QVERIFY(messages().isEmpty());
}

void SoundSettingsPanelTest::typingUpdatesTheGrid_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("thenLeave");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("expectedGrid");
    QTest::addColumn<int>("dot");
    QTest::addRow("speed 2 is calculated as 3")
        << "VITESSE" << "2" << false << "3" << "30 12 27 12 2 30 36 27 36 18 147" << 408;
    QTest::addRow("speed 40") << "VITESSE" << "40" << false << "40"
                              << "400 160 360 160 39 400 480 360 480 351 2071" << 28;
    QTest::addRow("reference word, on leaving") << "MOT" << "CODEX" << true << "CODEX"
                                                << "84 96 120 48 11 84 288 120 144 99 735" << 81;
    QTest::addRow("gap between signs, on leaving")
        << "CS" << "2" << true << "2" << "120 48 108 48 11 120 144 216 144 99 723" << 82;
    QTest::addRow("gap between letters, on leaving")
        << "CL" << "5" << true << "5" << "120 48 108 48 11 120 144 108 240 99 711" << 84;
    QTest::addRow("gap between words, on leaving")
        << "CM" << "7" << true << "7" << "120 48 108 48 11 120 144 108 144 77 593" << 101;
}

void SoundSettingsPanelTest::typingUpdatesTheGrid()
{
    QFETCH(QString, name);
    QFETCH(QString, typed);
    QFETCH(bool, thenLeave);
    QFETCH(QString, shown);
    QFETCH(QString, expectedGrid);
    QFETCH(int, dot);
    QVERIFY(panel().CALCCONFIG());
    typeInto(name, typed);
    if (thenLeave)
        leave(name);
    QCOMPARE(panel().boxText(name), shown);
    QCOMPARE(grid(), expectedGrid);
    QCOMPARE(edit("infocalcul")->text(), information(dot));
    QCOMPARE(panel().timingPlan().dot, double(dot));
}

void SoundSettingsPanelTest::leavingABox_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("recalculates");
    QTest::addRow("speed") << "VITESSE" << true;
    QTest::addRow("reference word") << "MOT" << true;
    QTest::addRow("gap between signs") << "CS" << true;
    QTest::addRow("gap between letters") << "CL" << true;
    QTest::addRow("gap between words") << "CM" << true;
    QTest::addRow("dash itself") << "CT" << false;
    QTest::addRow("frequency") << "FRE" << false;
    QTest::addRow("volume") << "VOL" << false;
    QTest::addRow("thinking time") << "SUP" << false;
    QTest::addRow("start sign") << "DEB" << false;
    QTest::addRow("end sign") << "FIN" << false;
}

// Entering and leaving a box without typing, after the dash was changed.
void SoundSettingsPanelTest::leavingABox()
{
    QFETCH(QString, name);
    QFETCH(bool, recalculates);
    QVERIFY(panel().CALCCONFIG());
    setLikeARestore("CT", "5");
    box(name)->setFocus(Qt::MouseFocusReason);
    QVERIFY(planUsesDash(3));
    leave(name);
    QCOMPARE(planUsesDash(5), recalculates);
    QCOMPARE(edit("VT")->text(), recalculates ? QStringLiteral("240") : QStringLiteral("144"));
}

void SoundSettingsPanelTest::choosingFromAList_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<bool>("recalculates");
    QTest::addRow("speed") << "VITESSE" << "13" << true;
    QTest::addRow("frequency") << "FRE" << "725" << true;
    QTest::addRow("reference word") << "MOT" << "CODEX" << true;
    QTest::addRow("volume 0 becomes 1") << "VOL" << "1" << false;
    QTest::addRow("thinking time") << "SUP" << "1.1" << false;
}

// The arrow key picks the next entry of the list, as a choice with the mouse does.
void SoundSettingsPanelTest::choosingFromAList()
{
    QFETCH(QString, name);
    QFETCH(QString, chosen);
    QFETCH(bool, recalculates);
    QVERIFY(panel().CALCCONFIG());
    setLikeARestore("CT", "5");
    QComboBox *c = combo(name);
    QSignalSpy activated(c, &QComboBox::activated);
    c->setFocus(Qt::MouseFocusReason);
    QTest::keyClick(c, Qt::Key_Down);
    QCOMPARE(activated.count(), 1);
    QCOMPARE(c->currentText(), chosen);
    QCOMPARE(planUsesDash(5), recalculates);
}

void SoundSettingsPanelTest::programSetTextRunsTheRules_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("recalculates");
    QTest::addRow("speed 1") << "VITESSE" << "1" << "3" << true;
    QTest::addRow("speed not a number") << "VITESSE" << "vite" << "3" << true;
    QTest::addRow("speed 25") << "VITESSE" << "25" << "25" << true;
    QTest::addRow("frequency 12000") << "FRE" << "12000" << "8000" << true;
    QTest::addRow("frequency negative") << "FRE" << "-5" << "1" << true;
    QTest::addRow("volume 300") << "VOL" << "300" << "127" << false;
    QTest::addRow("volume empty") << "VOL" << "" << "1" << false;
    QTest::addRow("volume 100") << "VOL" << "100" << "100" << false;
    QTest::addRow("reference word") << "MOT" << "CODEX" << "CODEX" << false;
    QTest::addRow("gap between words") << "CM" << "7" << "7" << false;
}

void SoundSettingsPanelTest::programSetTextRunsTheRules()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QFETCH(bool, recalculates);
    QVERIFY(panel().CALCCONFIG());
    setLikeARestore("CT", "5");
    setLikeARestore(name, text);
    QCOMPARE(panel().boxText(name), shown);
    QCOMPARE(planUsesDash(5), recalculates);
    // The same through the panel's own setter.
    QVERIFY(panel().setBoxText(name, text));
    QCOMPARE(panel().boxText(name), shown);
    QCOMPARE(panel().settings().timingInputs().vitesse, panel().boxText("VITESSE"));
}

void SoundSettingsPanelTest::dashLengthWaitsForATrigger_data()
{
    QTest::addColumn<QString>("trigger");
    QTest::addRow("leaving the gap between signs") << "CS";
    QTest::addRow("leaving the gap between words") << "CM";
    QTest::addRow("leaving the speed") << "VITESSE";
    QTest::addRow("Valider") << "command2";
}

void SoundSettingsPanelTest::dashLengthWaitsForATrigger()
{
    QFETCH(QString, trigger);
    QVERIFY(panel().CALCCONFIG());
    typeInto("CT", "5");
    box("DEB")->setFocus(Qt::TabFocusReason);
    QCOMPARE(panel().boxText("CT"), QStringLiteral("5"));
    QCOMPARE(grid(), examGrid);
    QCOMPARE(panel().timingPlan().dash, 291.0);

    if (trigger == QLatin1String("command2")) {
        QTest::mouseClick(button(trigger), Qt::LeftButton);
    } else {
        box(trigger)->setFocus(Qt::MouseFocusReason);
        leave(trigger);
    }
    QCOMPARE(grid(), QStringLiteral("120 48 108 48 11 120 240 108 144 99 711"));
    QCOMPARE(panel().timingPlan().dot, 84.0);
    QCOMPARE(panel().timingPlan().dash, 420.0);
}

void SoundSettingsPanelTest::failedCalculationKeepsThePlan_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("dashAndGaps"); // CT CS CL, then CM typed
    QTest::addColumn<QString>("typedWordGap");
    QTest::addColumn<QString>("total"); // TT as shown afterwards
    QTest::addRow("a dash-only word, every count zero") << "T" << "0 0 0" << "0" << "0";
    QTest::addRow("negative counts") << "PARIS" << "-3 -1 -3" << "-9" << "-375";
    QTest::addRow("an overflowing word gap leaves the total as it was")
        << "PARIS" << "3 1 3" << "1e308" << "615";
}

void SoundSettingsPanelTest::failedCalculationKeepsThePlan()
{
    QFETCH(QString, word);
    QFETCH(QString, dashAndGaps);
    QFETCH(QString, typedWordGap);
    QFETCH(QString, total);
    QVERIFY(panel().CALCCONFIG());
    setLikeARestore("MOT", word);
    const QStringList counts = dashAndGaps.split(' ');
    setLikeARestore("CT", counts[0]);
    setLikeARestore("CS", counts[1]);
    setLikeARestore("CL", counts[2]);
    QVERIFY(messages().isEmpty());

    typeInto("CM", typedWordGap);
    leave("CM");
    QCOMPARE(messages().size(), 1);
    QVERIFY(!messages().first().isEmpty());
    QCOMPARE(edit("TT")->text(), total); // the grid shows how far the calculation got
    QCOMPARE(edit("infocalcul")->text(), examInformation);
    QCOMPARE(panel().timingPlan().dot, 97.0);
    QCOMPARE(panel().timingPlan().wordGap, 873.0);

    // Valider cannot close the panel on such values.
    QSignalSpy validated(&panel(), &SoundSettingsPanel::validated);
    QTest::mouseClick(button("command2"), Qt::LeftButton);
    QCOMPARE(messages().size(), 2);
    QCOMPARE(validated.count(), 0);
    QCOMPARE(panel().timingPlan().dot, 97.0);
}

void SoundSettingsPanelTest::presetsRestoreEveryValue_data()
{
    QTest::addColumn<QString>("presetButton");
    QTest::addColumn<QString>("thinkingTime");
    QTest::addRow("Paramètres Examen") << "examen" << "1";
    QTest::addRow("handicapped") << "handicape" << "3";
}

void SoundSettingsPanelTest::presetsRestoreEveryValue()
{
    QFETCH(QString, presetButton);
    QFETCH(QString, thinkingTime);
    const QStringList names = {"VITESSE", "FRE", "VOL", "MOT", "CT",    "CS",   "CL",
                               "CM",      "DEB", "FIN", "SUP", "GRMIN", "GRMAX"};
    const QStringList modified = {"20", "900", "50", "CODEX", "4", "2", "4",
                                  "8",  "AAA", "AR", "1.5", "3", "7"};
    for (int i = 0; i < names.size(); ++i)
        QVERIFY(panel().setBoxText(names[i], modified[i]));
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(panel().boxText(names[i]), modified[i]);

    // The character set comes after SUP and before the group lengths.
    QStringList atCharacterSet;
    connect(&panel(), &SoundSettingsPanel::characterSetRequested, this,
            [&](const QString &characters) {
                atCharacterSet << characters << panel().boxText("SUP") << panel().boxText("GRMIN");
            });
    QTest::mouseClick(button(presetButton), Qt::LeftButton);
    QCOMPARE(atCharacterSet,
             QStringList({"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*", "1", "3"}));

    const QStringList examination = {"12",  "700", "127", "PARIS", "3", "1", "3",
                                     "9",   "VVV", "+",   "1",     "5", "5"};
    for (int i = 0; i < names.size(); ++i) {
        const QString expected = names[i] == QLatin1String("SUP") ? thinkingTime : examination[i];
        QCOMPARE(panel().boxText(names[i]), expected);
    }
    QCOMPARE(panel().settings().sup, thinkingTime);
    QTest::mouseClick(button("command2"), Qt::LeftButton);
    QCOMPARE(grid(), examGrid);
    QCOMPARE(panel().timingPlan().letterGap, 291.0);
    QVERIFY(messages().isEmpty());
}

void SoundSettingsPanelTest::buttonsEmitTheirRequest_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<PanelSignal>("request");
    QTest::addColumn<bool>("hiddenMeanwhile");
    QTest::addRow("test") << "tester" << &SoundSettingsPanel::testRequested << true;
    QTest::addRow("store") << "memoriser" << &SoundSettingsPanel::memoriseRequested << false;
    QTest::addRow("reference table") << "editreftable"
                                     << &SoundSettingsPanel::editReferenceRequested << false;
    QTest::addRow("validate") << "command2" << &SoundSettingsPanel::validated << false;
}

void SoundSettingsPanelTest::buttonsEmitTheirRequest()
{
    QFETCH(QString, name);
    QFETCH(PanelSignal, request);
    QFETCH(bool, hiddenMeanwhile);
    QPushButton *b = button(name);
    QList<bool> visibleMeanwhile;
    connect(&panel(), request, this, [&] { visibleMeanwhile << b->isVisible(); });
    QTest::mouseClick(b, Qt::LeftButton);
    QCOMPARE(visibleMeanwhile, QList<bool>({!hiddenMeanwhile}));
    QVERIFY(b->isVisible());
}

void SoundSettingsPanelTest::sentPatternPositionsAddToEsp_data()
{
    QTest::addColumn<QList<int>>("renderings");
    QTest::addColumn<bool>("recalculateAfter");
    QTest::addColumn<QString>("shown");
    QTest::addRow("one rendering") << QList<int>{14} << false << "122";
    QTest::addRow("two renderings add up") << QList<int>{14, 5} << false << "127";
    QTest::addRow("nothing sent") << QList<int>{0} << false << "108";
    QTest::addRow("a recalculation shows the count again") << QList<int>{14} << true << "108";
}

void SoundSettingsPanelTest::sentPatternPositionsAddToEsp()
{
    QFETCH(QList<int>, renderings);
    QFETCH(bool, recalculateAfter);
    QFETCH(QString, shown);
    QVERIFY(panel().CALCCONFIG());
    for (const int n : renderings)
        panel().addSentPatternPositions(n);
    if (recalculateAfter)
        QTest::mouseClick(button("command2"), Qt::LeftButton);
    QCOMPARE(edit("ES")->text(), shown);
    QCOMPARE(edit("VS")->text(), QStringLiteral("108")); // only the count moves
    QCOMPARE(panel().timingPlan().elementGap, 97.0);
}

QTEST_MAIN(SoundSettingsPanelTest)
#include "tst_soundsettingspanel.moc"
