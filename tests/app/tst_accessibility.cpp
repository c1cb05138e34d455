// The main window as a screen reader reads it: through Qt's accessible interfaces, not
// the widgets' own properties.
#include "WindowTest.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QStatusBar>
#include <QtTest>

#include <functional>

using namespace kelvora;

namespace {

bool interactive(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::List:
    case QAccessible::Table:
        return true;
    default:
        return false;
    }
}

QString describe(QAccessibleInterface *iface)
{
    const QObject *o = iface->object();
    return QStringLiteral("%1 %2 (role %3, name « %4 », value « %5 »)")
        .arg(o ? QString::fromLatin1(o->metaObject()->className()) : QStringLiteral("?"),
             o ? o->objectName() : QString())
        .arg(int(iface->role()))
        .arg(iface->text(QAccessible::Name), iface->text(QAccessible::Value));
}

// Every interface shown to assistive technologies, from `root` down.
void walk(QAccessibleInterface *root, QList<QAccessibleInterface *> *shown, int depth = 0)
{
    if (!root || depth > 40 || root->state().invisible)
        return;
    shown->append(root);
    for (int i = 0; i < root->childCount(); ++i)
        walk(root->child(i), shown, depth + 1);
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
        QTest::addRow("files") << "Command16";
    }
    // Named after its label or its purpose, never by the value it holds.
    void everyControlHasItsOwnName()
    {
        QFETCH(QString, view);
        open();
        click(view.toLatin1());
        QList<QAccessibleInterface *> shown;
        walk(QAccessible::queryAccessibleInterface(win.get()), &shown);
        QStringList faults;
        int controls = 0;
        for (QAccessibleInterface *iface : std::as_const(shown)) {
            if (!interactive(iface->role()))
                continue;
            ++controls;
            const QString name = iface->text(QAccessible::Name).trimmed();
            const QString value = iface->text(QAccessible::Value).trimmed();
            // A list's value is its name again in Qt: only what holds a value is asked.
            const bool holdsValue = iface->role() == QAccessible::ComboBox || iface->role() == QAccessible::EditableText
                                    || iface->role() == QAccessible::SpinBox;
            if (name.isEmpty() || (holdsValue && !value.isEmpty() && name == value))
                faults << describe(iface);
        }
        QVERIFY2(controls > 30, qPrintable(QString::number(controls)));
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    // A hidden view is hidden to assistive technologies as well, down to its items.
    void hiddenViewsAreNotShown()
    {
        open();
        click("Command14");
        QStringList showing;
        const std::function<void(QAccessibleInterface *, bool, int)> visit = [&](QAccessibleInterface *iface, bool inHiddenView, int depth) {
            if (!iface || depth > 40)
                return;
            const QObject *o = iface->object();
            inHiddenView = inHiddenView || (o && (o->objectName() == "List1" || o->objectName() == "File1"));
            if (inHiddenView && !iface->state().invisible)
                showing << describe(iface);
            for (int i = 0; i < iface->childCount(); ++i)
                visit(iface->child(i), inHiddenView, depth + 1);
        };
        visit(QAccessible::queryAccessibleInterface(win.get()), false, 0);
        QVERIFY2(showing.isEmpty(), qPrintable(showing.join('\n')));
    }

    // What the status bar says can be read, and so can the banner and the word count.
    void statusTextsAreRead()
    {
        open();
        win->statusBar()->showMessage(QStringLiteral("Bonjour"));
        QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(win->statusBar());
        QVERIFY2(bar->text(QAccessible::Name).contains("Bonjour") || bar->text(QAccessible::Description).contains("Bonjour"),
                 qPrintable(bar->text(QAccessible::Name)));
        for (const char *label : {"bandeau", "REF", "Data1caption"}) {
            QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(w(label));
            QVERIFY2(!iface->text(QAccessible::Name).isEmpty() && iface->text(QAccessible::Name) == w<QLabel>(label)->text(),
                     qPrintable(describe(iface)));
        }
    }
};

QTEST_MAIN(AccessibilityTest)
#include "tst_accessibility.moc"
