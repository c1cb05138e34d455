#include "RefFixture.h"
#include "ScriptedPrompts.h"
#include "morse/PatternLookup.h"
#include "panels/SoundSettingsPanel.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QtTest>

#include <memory>

using namespace kelvora;

namespace {

const QString examGrid = QStringLiteral("120 48 108 48 11 120 144 108 144 99 615");
const QStringList timingBoxes = {"VITESSE", "MOT", "CT", "CS", "CL", "CM"};
const QStringList allBoxes = {"VITESSE", "FRE", "VOL", "MOT", "CT",    "CS",   "CL",
                              "CM",      "DEB", "FIN", "SUP", "GRMIN", "GRMAX"};
const QStringList examValues = {"12", "700", "127", "PARIS", "3", "1", "3", "9", "VVV", "+", "1", "5", "5"};

QString information(int dot)
{
    return QStringLiteral("Soit %1 Millièmes de secondes pour un point (arrondie à l'unité inférieure)").arg(dot);
}

// The panel as the main window holds it.
struct Harness {
    explicit Harness(WordDatabase &database) : lookup(database), panel(lookup, prompts) {}
    testsupport::ScriptedPrompts prompts;
    PatternLookup lookup;
    SoundSettingsPanel panel;
};

} // namespace

class SoundSettingsPanelTest : public QObject {
    Q_OBJECT

    testsupport::RefFixture m_fixture;
    std::unique_ptr<Harness> m_harness;

    SoundSettingsPanel &panel() { return m_harness->panel; }
    QStringList &messages() { return m_harness->prompts.messages; }

    template <typename T = QWidget> T *box(const QString &name)
    {
        T *w = qobject_cast<T *>(panel().findChild<QWidget *>(name));
        if (!w)
            qFatal("no control %s", qPrintable(name));
        return w;
    }

    // NP NT ES EL EM VP VT VS VL VM TT, as shown.
    QString grid()
    {
        QStringList parts;
        for (const char *name : {"NP", "NT", "ES", "EL", "EM", "VP", "VT", "VS", "VL", "VM", "TT"})
            parts << box<QLineEdit>(QString::fromLatin1(name))->text();
        return parts.join(' ');
    }

    // Clicks into the box, selects its whole text and types over it.
    void typeInto(const QString &name, const QString &text)
    {
        QWidget *w = box(name);
        w->setFocus(Qt::MouseFocusReason);
        QVERIFY(w->hasFocus());
        QTest::keyClick(w, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(w, text);
    }

    // Enters the box if needed, then tabs to the next control.
    void leave(const QString &name)
    {
        QWidget *w = box(name);
        w->setFocus(Qt::MouseFocusReason);
        QTest::keyClick(w, Qt::Key_Tab);
        QVERIFY(!w->hasFocus());
    }

    QStringList allTexts()
    {
        QStringList texts;
        for (const QString &name : allBoxes)
            texts << panel().boxText(name);
        return texts;
    }

    // Whether the plan in force was calculated with a dash of `dots` dots.
    bool planUsesDash(double dots)
    {
        const TimingPlan plan = panel().timingPlan();
        return plan.dot > 0 && plan.dash == plan.dot * dots;
    }

private slots:
    void initTestCase() { QVERIFY(m_fixture.isValid()); }

    // Shown and active, so that focus moves.
    void init()
    {
        m_harness = std::make_unique<Harness>(m_fixture.database());
        panel().resize(900, 760);
        panel().show();
        panel().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&panel()));
    }

    // Every control is named for screen readers and explained; the results refuse typing.
    void controlsAreNamed()
    {
        for (QWidget *w : panel().findChildren<QWidget *>()) {
            if (!w->inherits("QComboBox") && !w->inherits("QLineEdit") && !w->inherits("QPushButton"))
                continue;
            QVERIFY2(qobject_cast<QComboBox *>(w->parentWidget()) || (!w->accessibleName().isEmpty() && !w->toolTip().isEmpty()), qPrintable(w->objectName()));
            if (auto *e = qobject_cast<QLineEdit *>(w); e && !qobject_cast<QComboBox *>(w->parentWidget()))
                QCOMPARE(e->isReadOnly(), !allBoxes.contains(e->objectName()));
        }
    }

    // A dash of 5 dots is put in first (it has no rule of its own), so a plan using 5
    // shows that the change recalculated.
    void clamps_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("typed"); // else set by a program
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("recalculates");
        QTest::addRow("speed 2, typed") << "VITESSE" << "2" << true << "3" << true;
        QTest::addRow("frequency 9000, typed") << "FRE" << "9000" << true << "8000" << true;
        QTest::addRow("frequency 0, program") << "FRE" << "0" << false << "1" << true;
        QTest::addRow("volume 200, typed") << "VOL" << "200" << true << "127" << false;
    }

    void clamps()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(bool, typed);
        QFETCH(QString, shown);
        QFETCH(bool, recalculates);
        QVERIFY(panel().CALCCONFIG());
        panel().setBoxText("CT", "5");
        if (typed)
            typeInto(name, text);
        else
            QVERIFY(panel().setBoxText(name, text));
        QCOMPARE(panel().boxText(name), shown);
        QCOMPARE(planUsesDash(5), recalculates);
        QCOMPARE(panel().settings().timingInputs().vitesse, panel().boxText("VITESSE"));
        QVERIFY(messages().isEmpty());
    }

    // CT typed as 5 and left for DEB (no rule) waits for a trigger; then the action on the box.
    void recalculationTriggers_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("action"); // leave, choose (next list entry) or type
        QTest::addColumn<bool>("recalculates");
        for (const char *name : {"CS", "CL", "CM", "VITESSE", "MOT"})
            QTest::addRow("leaving %s", name) << name << "leave" << true;
        for (const char *name : {"CT", "FRE", "VOL", "SUP", "DEB"})
            QTest::addRow("leaving %s", name) << name << "leave" << false;
        for (const char *name : {"VITESSE", "MOT", "FRE"})
            QTest::addRow("choosing %s", name) << name << "choose" << true;
        for (const char *name : {"VOL", "SUP"})
            QTest::addRow("choosing %s", name) << name << "choose" << false;
        QTest::addRow("typing MOT, still inside") << "MOT" << "type" << false;
        QTest::addRow("typing CS, still inside") << "CS" << "type" << false;
    }

    void recalculationTriggers()
    {
        QFETCH(QString, name);
        QFETCH(QString, action);
        QFETCH(bool, recalculates);
        QVERIFY(panel().CALCCONFIG());
        typeInto("CT", "5");
        box("DEB")->setFocus(Qt::TabFocusReason);
        QVERIFY(planUsesDash(3));
        if (action == QLatin1String("leave")) {
            leave(name);
        } else if (action == QLatin1String("choose")) {
            auto *c = box<QComboBox>(name);
            QSignalSpy activated(c, &QComboBox::activated);
            c->setFocus(Qt::MouseFocusReason);
            QTest::keyClick(c, Qt::Key_Down);
            QCOMPARE(activated.count(), 1);
        } else {
            typeInto(name, name == QLatin1String("MOT") ? "CODEX" : "2");
        }
        QCOMPARE(planUsesDash(5), recalculates);
        QCOMPARE(grid() != examGrid, recalculates);
    }

    void validateShowsTheCalculation_data()
    {
        QTest::addColumn<QStringList>("boxes"); // VITESSE MOT CT CS CL CM
        QTest::addColumn<QString>("expectedGrid");
        QTest::addColumn<QList<double>>("plan"); // dot, dash, gaps between elements, letters, words
        QTest::addRow("other reference word") << QStringList{"12", "CODEX", "3", "1", "3", "9"}
                                              << "84 96 120 48 11 84 288 120 144 99 735"
                                              << QList<double>{81, 243, 81, 243, 729};
    }

    void validateShowsTheCalculation()
    {
        QFETCH(QStringList, boxes);
        QFETCH(QString, expectedGrid);
        QFETCH(QList<double>, plan);
        for (int i = 0; i < timingBoxes.size(); ++i)
            panel().setBoxText(timingBoxes[i], boxes[i]); // as a profile restore does
        QSignalSpy validated(&panel(), &SoundSettingsPanel::validated);
        QTest::mouseClick(box<QPushButton>("command2"), Qt::LeftButton);
        QCOMPARE(validated.count(), 1);
        QCOMPARE(grid(), expectedGrid);
        QCOMPARE(box<QLineEdit>("infocalcul")->text(), information(int(plan[0])));
        QCOMPARE(panel().boxText("MOT"), boxes[1].trimmed());
        const TimingPlan p = panel().timingPlan();
        QCOMPARE(QList<double>({p.dot, p.dash, p.elementGap, p.letterGap, p.wordGap}), plan);
        QVERIFY(messages().isEmpty());
    }

    void failedCalculationKeepsThePlan_data()
    {
        QTest::addColumn<QStringList>("boxes"); // MOT CT CS CL set, then CM typed
        QTest::addColumn<QString>("total");     // TT: how far the calculation got
        QTest::addRow("a dash-only word, every count zero") << QStringList{"T", "0", "0", "0", "0"} << "0";
        QTest::addRow("an overflowing word gap") << QStringList{"PARIS", "3", "1", "3", "1e308"} << "615";
    }

    void failedCalculationKeepsThePlan()
    {
        QFETCH(QStringList, boxes);
        QFETCH(QString, total);
        QVERIFY(panel().CALCCONFIG());
        for (int i = 0; i < 4; ++i)
            panel().setBoxText(timingBoxes[1 + i], boxes[i]);
        QVERIFY(messages().isEmpty());
        typeInto("CM", boxes[4]);
        leave("CM");
        QCOMPARE(messages().size(), 1);
        QVERIFY(!messages().first().isEmpty());
        QCOMPARE(box<QLineEdit>("TT")->text(), total);
        QCOMPARE(box<QLineEdit>("infocalcul")->text(), information(97));
        // Valider cannot close the panel on such values; the previous plan stays.
        QSignalSpy validated(&panel(), &SoundSettingsPanel::validated);
        QTest::mouseClick(box<QPushButton>("command2"), Qt::LeftButton);
        QCOMPARE(messages().size(), 2);
        QCOMPARE(validated.count(), 0);
        QCOMPARE(panel().timingPlan().dot, 97.0);
        QCOMPARE(panel().timingPlan().wordGap, 873.0);
    }

    void presets_data()
    {
        QTest::addColumn<QString>("presetButton");
        QTest::addColumn<QString>("thinkingTime");
        QTest::addRow("examination") << "examen" << "1";
        QTest::addRow("handicapped") << "handicape" << "3";
    }

    void presets()
    {
        QFETCH(QString, presetButton);
        QFETCH(QString, thinkingTime);
        const QStringList modified = {"20", "900", "50", "CODEX", "4", "2", "4", "8", "AAA", "AR", "1.5", "3", "7"};
        for (int i = 0; i < allBoxes.size(); ++i)
            QVERIFY(panel().setBoxText(allBoxes[i], modified[i]));

        // The character set comes after SUP and before the group lengths.
        QStringList atCharacterSet;
        connect(&panel(), &SoundSettingsPanel::characterSetRequested, this, [&](const QString &characters) {
            atCharacterSet << characters << panel().boxText("SUP") << panel().boxText("GRMIN");
        });
        QTest::mouseClick(box<QPushButton>(presetButton), Qt::LeftButton);
        QCOMPARE(atCharacterSet, QStringList({"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*", "1", "3"}));

        QStringList expected = examValues;
        expected[allBoxes.indexOf("SUP")] = thinkingTime;
        QCOMPARE(allTexts(), expected);
        QTest::mouseClick(box<QPushButton>("command2"), Qt::LeftButton);
        QCOMPARE(grid(), examGrid);
        QVERIFY(messages().isEmpty());
    }

    void cleanup() { m_harness.reset(); }
};

QTEST_MAIN(SoundSettingsPanelTest)
#include "tst_soundsettingspanel.moc"
