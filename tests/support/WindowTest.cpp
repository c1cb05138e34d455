#include "WindowTest.h"

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTest>

namespace kelvora::testsupport {

void WindowTest::init()
{
    fx = std::make_unique<MainWindowFixture>();
    QVERIFY(fx->isValid());
}

void WindowTest::cleanup()
{
    win.reset();
    fx.reset();
}

void WindowTest::open(const QList<std::pair<QString, QString>> &values)
{
    win = fx->openShown(values);
    win->resize(1200, 820);
}

void WindowTest::trigger(const QString &action) const
{
    w<QAction>(action)->trigger();
}

QString WindowTest::valueOf(const QString &control) const
{
    const QWidget *c = w(control);
    if (auto *box = qobject_cast<const QComboBox *>(c))
        return box->currentText();
    if (auto *edit = qobject_cast<const QLineEdit *>(c))
        return edit->text();
    if (auto *button = qobject_cast<const QAbstractButton *>(c))
        return button->isChecked() ? "1" : "0";
    return "<" + QString::fromLatin1(c->metaObject()->className()) + ">";
}

void WindowTest::paste(const QString &control, const QString &text) const
{
    QWidget *target = w(control);
    if (auto *box = qobject_cast<QComboBox *>(target))
        target = box->lineEdit();
    target->setFocus();
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(target, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(target, Qt::Key_V, Qt::ControlModifier);
}

void WindowTest::choose(const QString &list, int index) const
{
    auto *box = w<QComboBox>(list);
    box->setFocus();
    while (box->currentIndex() < index)
        QTest::keyClick(box, Qt::Key_Down);
    while (box->currentIndex() > index)
        QTest::keyClick(box, Qt::Key_Up);
}

QStringList WindowTest::items(const QString &list) const
{
    QStringList entries;
    if (auto *box = win->findChild<QComboBox *>(list))
        for (int i = 0; i < box->count(); ++i)
            entries << box->itemText(i);
    else
        for (auto *view = w<QListWidget>(list); entries.size() < view->count();)
            entries << view->item(int(entries.size()))->text();
    return entries;
}

QString WindowTest::exerciseText() const
{
    return w<QPlainTextEdit>("EXO")->toPlainText();
}

QString WindowTest::statusText() const
{
    return win->statusBar()->currentMessage();
}

QString WindowTest::banner(const QString &table, int count)
{
    return QStringLiteral("Kelvora Version 3.2.5, Table : %1 (%2),   Utilisateur=défaut").arg(table).arg(count);
}

} // namespace kelvora::testsupport
