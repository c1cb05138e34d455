#include "ui/Accessibility.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QFormLayout>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QStackedWidget>

namespace kelvora::accessibility {

namespace {

// The label that names `w`: a label whose buddy it is, or its label in a form.
QString labelFor(const QWidget *w, const QHash<const QWidget *, const QLabel *> &buddies)
{
    if (const QLabel *label = buddies.value(w))
        return label->text().remove(u'&');
    for (const QWidget *p = w->parentWidget(); p; p = p->parentWidget()) {
        if (const auto *form = qobject_cast<const QFormLayout *>(p->layout())) {
            if (const auto *label = qobject_cast<const QLabel *>(form->labelForField(const_cast<QWidget *>(w))))
                return label->text().remove(u'&');
        }
    }
    return {};
}

// A combo box named by its label, its value apart, with its text box and list as
// children, as Qt's own interface has them.
class ComboBoxAccessible : public QAccessibleWidget {
public:
    explicit ComboBoxAccessible(QWidget *w)
        : QAccessibleWidget(w, QAccessible::ComboBox)
    {
        addControllingSignal(QStringLiteral("activated(int)"));
    }

    QComboBox *combo() const { return static_cast<QComboBox *>(object()); }

    QString text(QAccessible::Text t) const override
    {
        switch (t) {
        case QAccessible::Name: // set from its label by nameControls
            return combo()->accessibleName();
        case QAccessible::Value:
            return combo()->currentText();
        default:
            return QAccessibleWidget::text(t);
        }
    }

    int childCount() const override { return combo()->isEditable() && combo()->lineEdit() ? 2 : 1; }
    QAccessibleInterface *child(int index) const override
    {
        if (index == 0)
            return QAccessible::queryAccessibleInterface(combo()->view());
        if (index == 1 && combo()->isEditable())
            return QAccessible::queryAccessibleInterface(combo()->lineEdit());
        return nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        if (child && child->object() == combo()->view())
            return 0;
        if (child && combo()->isEditable() && child->object() == combo()->lineEdit())
            return 1;
        return -1;
    }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        s.expandable = true;
        s.editable = combo()->isEditable();
        s.expanded = combo()->view()->isVisible();
        s.collapsed = !s.expanded;
        return s;
    }

    QStringList actionNames() const override
    {
        return QStringList{showMenuAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString &name) override
    {
        if (name == showMenuAction() || name == pressAction())
            combo()->view()->isVisible() ? combo()->hidePopup() : combo()->showPopup();
        else
            QAccessibleWidget::doAction(name);
    }
};

QAccessibleInterface *comboBoxFactory(const QString &className, QObject *object)
{
    if (className == QLatin1String("QComboBox") && object && object->isWidgetType())
        return new ComboBoxAccessible(static_cast<QWidget *>(object));
    return nullptr;
}

} // namespace

void install()
{
    QAccessible::installFactory(comboBoxFactory);
}

void nameControls(QWidget *root)
{
    QHash<const QWidget *, const QLabel *> buddies;
    for (const QLabel *label : root->findChildren<QLabel *>()) {
        if (label->buddy())
            buddies.insert(label->buddy(), label);
    }
    for (QWidget *w : root->findChildren<QWidget *>()) {
        auto *combo = qobject_cast<QComboBox *>(w);
        const bool control = combo || qobject_cast<QLineEdit *>(w) || qobject_cast<QAbstractItemView *>(w);
        if (!control)
            continue;
        if (w->accessibleName().isEmpty()) {
            const QString label = labelFor(w, buddies);
            w->setAccessibleName(label.isEmpty() ? w->toolTip() : label);
        }
        if (combo && !combo->accessibleName().isEmpty()) {
            if (combo->lineEdit())
                combo->lineEdit()->setAccessibleName(combo->accessibleName());
            combo->view()->setAccessibleName(combo->accessibleName() + QStringLiteral(" : liste des choix"));
        }
    }
}

void hideItemsOfHiddenPages(QStackedWidget *pages)
{
    const auto apply = [pages] {
        for (QListView *list : pages->findChildren<QListView *>()) {
            if (!list->model())
                continue;
            // The page holding the list is the stack's child it lies in (or the list itself).
            QWidget *page = list;
            while (page->parentWidget() != pages)
                page = page->parentWidget();
            const bool hidden = page != pages->currentWidget();
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row)
                list->setRowHidden(row, hidden);
        }
    };
    QObject::connect(pages, &QStackedWidget::currentChanged, pages, apply);
    // Rows added while their page is hidden are hidden too.
    for (QListView *list : pages->findChildren<QListView *>()) {
        if (list->model())
            QObject::connect(list->model(), &QAbstractItemModel::rowsInserted, pages, apply);
    }
    apply();
}

} // namespace kelvora::accessibility
