// The main window as a screen reader reads it: through Qt's accessible interfaces, not
// the widgets' own properties.
#include "WindowTest.h"

#include <QAccessible>
#include <QLabel>
#include <QStatusBar>
#include <QtTest>

using namespace kelvora;

namespace {

const QList<QAccessible::Role> controls = {QAccessible::PushButton, QAccessible::CheckBox,   QAccessible::RadioButton,    QAccessible::ComboBox,
                                           QAccessible::EditableText, QAccessible::SpinBox, QAccessible::Slider,       QAccessible::ButtonMenu,
                                           QAccessible::ButtonDropDown, QAccessible::List,  QAccessible::Table};

QString describe(QAccessibleInterface *iface)
{
    const QObject *o = iface->object();
    return QStringLiteral("%1 (role %2, name « %3 », value « %4 »)")
        .arg(o ? o->objectName() : QString())
        .arg(int(iface->role()))
        .arg(iface->text(QAccessible::Name), iface->text(QAccessible::Value));
}

} // namespace

class AccessibilityTest : public testsupport::WindowTest {
    Q_OBJECT
private slots:
    void everyControlHasItsOwnName_data()
    {
        QTest::addColumn<QString>("view"); // the button that shows it
        QTest::addRow("exercise") << "Command14";
        QTest::addRow("word list") << "Command11";
    }
    // Named after its label or its purpose, never by the value it holds; a hidden view is
    // hidden to assistive technologies as well, down to its items.
    void everyControlHasItsOwnName()
    {
        QFETCH(QString, view);
        open();
        click(view);
        const QString hiddenView = view == "Command14" ? "List1" : "EXO";
        QStringList faults;
        int named = 0;
        const std::function<void(QAccessibleInterface *, bool, int)> visit = [&](QAccessibleInterface *iface, bool hidden, int depth) {
            if (!iface || depth > 40)
                return;
            hidden = hidden || (iface->object() && iface->object()->objectName() == hiddenView);
            if (hidden && !iface->state().invisible)
                faults << "shown: " + describe(iface);
            if (iface->state().invisible && !hidden)
                return;
            const QString name = iface->text(QAccessible::Name).trimmed(), value = iface->text(QAccessible::Value).trimmed();
            // A list's value is its name again in Qt: only what holds a value is asked.
            const bool holdsValue = iface->role() == QAccessible::ComboBox || iface->role() == QAccessible::EditableText
                                    || iface->role() == QAccessible::SpinBox;
            if (!hidden && controls.contains(iface->role())) {
                ++named;
                if (name.isEmpty() || (holdsValue && !value.isEmpty() && name == value))
                    faults << describe(iface);
            }
            for (int i = 0; i < iface->childCount(); ++i)
                visit(iface->child(i), hidden, depth + 1);
        };
        visit(QAccessible::queryAccessibleInterface(win.get()), false, 0);
        QVERIFY2(named > 30, qPrintable(QString::number(named)));
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    // What the status bar says can be read, and so can the banner and the word count.
    void statusTextsAreRead()
    {
        open();
        win->statusBar()->showMessage(QStringLiteral("Bonjour"));
        QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(win->statusBar());
        QVERIFY(bar->text(QAccessible::Name).contains("Bonjour") || bar->text(QAccessible::Description).contains("Bonjour"));
        for (const char *label : {"bandeau", "Data1caption"})
            QCOMPARE(QAccessible::queryAccessibleInterface(w(label))->text(QAccessible::Name), w<QLabel>(label)->text());
    }
};

QTEST_MAIN(AccessibilityTest)
#include "tst_accessibility.moc"
