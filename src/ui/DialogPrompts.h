#pragma once

#include "ui/UserPrompts.h"

namespace kelvora {

// The prompts of the running program: Qt's message, input and colour dialogs.
class DialogPrompts : public UserPrompts {
public:
    void message(QWidget *parent, const QString &text) override;
    std::optional<QString> askText(QWidget *parent, const QString &prompt) override;
    std::optional<QColor> askColour(QWidget *parent, const QColor &initial) override;
};

} // namespace kelvora
