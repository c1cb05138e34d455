#include "ui/DialogPrompts.h"

#include <QColorDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace kelvora {

void DialogPrompts::message(QWidget *parent, const QString &text)
{
    QMessageBox::information(parent, QStringLiteral("Kelvora"), text);
}

std::optional<QString> DialogPrompts::askText(QWidget *parent, const QString &prompt)
{
    bool ok = false;
    const QString answer = QInputDialog::getText(parent, QString(), prompt, QLineEdit::Normal,
                                                 QString(), &ok);
    if (!ok)
        return std::nullopt;
    return answer;
}

std::optional<QColor> DialogPrompts::askColour(QWidget *parent, const QColor &initial)
{
    const QColor colour = QColorDialog::getColor(initial, parent);
    if (!colour.isValid())
        return std::nullopt;
    return colour;
}

} // namespace kelvora
