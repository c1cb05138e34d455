#pragma once

#include <QColor>
#include <QString>

#include <optional>

class QWidget;

namespace kelvora {

// Every modal question the program asks the user goes through this seam, so that a
// test can answer in advance what a person would click.
class UserPrompts {
public:
    virtual ~UserPrompts() = default;
    // A message box with one OK button.
    virtual void message(QWidget *parent, const QString &text) = 0;
    // An input box (no title, no proposed answer); nullopt when cancelled.
    virtual std::optional<QString> askText(QWidget *parent, const QString &prompt) = 0;
    // The colour dialog; nullopt when cancelled.
    virtual std::optional<QColor> askColour(QWidget *parent, const QColor &initial) = 0;
};

} // namespace kelvora
