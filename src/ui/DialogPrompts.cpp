#include "ui/DialogPrompts.h"

#include <QColorDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>

namespace kelvora {

void DialogPrompts::message(QWidget *parent, const QString &text)
{
    QMessageBox::information(parent, QStringLiteral("Kelvora"), text);
}

std::optional<QString> DialogPrompts::askText(QWidget *parent, const QString &prompt)
{
    QInputDialog dialog(parent);
    // Named for screen readers, which would otherwise find a nameless window.
    dialog.setWindowTitle(QStringLiteral("Kelvora"));
    dialog.setAccessibleName(QStringLiteral("Question de Kelvora"));
    dialog.setAccessibleDescription(prompt);
    dialog.setLabelText(prompt);
    dialog.setInputMode(QInputDialog::TextInput);
    if (auto *field = dialog.findChild<QLineEdit *>())
        field->setAccessibleName(QStringLiteral("Votre réponse"));
    // The long questions wrap in a window of a reading width, not one line across the screen.
    if (auto *label = dialog.findChild<QLabel *>()) {
        label->setWordWrap(true);
        label->setMinimumWidth(label->fontMetrics().averageCharWidth() * 60);
    }
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

std::optional<QColor> DialogPrompts::askColour(QWidget *parent, const QColor &initial)
{
    const QColor colour = QColorDialog::getColor(initial, parent);
    if (!colour.isValid())
        return std::nullopt;
    return colour;
}

} // namespace kelvora
