#include "ui/BoxText.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>

namespace kelvora::boxText {

QString text(const QWidget *box)
{
    if (const auto *combo = qobject_cast<const QComboBox *>(box))
        return combo->currentText();
    if (const auto *edit = qobject_cast<const QLineEdit *>(box))
        return edit->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(box))
        return button->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    return {};
}

bool setText(QWidget *box, const QString &text)
{
    if (auto *combo = qobject_cast<QComboBox *>(box)) {
        const int index = combo->findText(text);
        if (combo->isEditable()) {
            // The matching entry is highlighted when the list opens; the text stays as given.
            if (index >= 0)
                combo->setCurrentIndex(index);
            combo->setEditText(text);
            return true;
        }
        if (index < 0)
            return false;
        combo->setCurrentIndex(index);
        return true;
    }
    if (auto *edit = qobject_cast<QLineEdit *>(box)) {
        edit->setText(text);
        return true;
    }
    if (auto *button = qobject_cast<QAbstractButton *>(box)) {
        button->setChecked(text.trimmed() == QLatin1String("1"));
        return true;
    }
    return false;
}

} // namespace kelvora::boxText
