#pragma once

#include "ui/UserPrompts.h"

#include <QStringList>

#include <deque>
#include <functional>

namespace kelvora::testsupport {

// Answers queued in advance; every message shown is recorded. A question with no
// answer queued counts as cancelled.
class ScriptedPrompts : public UserPrompts {
public:
    QStringList messages;
    QStringList questions;
    std::deque<std::optional<QString>> textAnswers;
    std::deque<std::optional<QColor>> colourAnswers;
    // Runs while a message is shown, to look at the window behind it.
    std::function<void(const QString &)> onMessage;

    void message(QWidget *, const QString &text) override
    {
        messages << text;
        if (onMessage)
            onMessage(text);
    }
    std::optional<QString> askText(QWidget *, const QString &prompt) override
    {
        questions << prompt;
        if (textAnswers.empty())
            return std::nullopt;
        const bool answered = textAnswers.front().has_value();
        const QString text = textAnswers.front().value_or(QString());
        textAnswers.pop_front();
        return answered ? std::optional<QString>(text) : std::nullopt;
    }
    std::optional<QColor> askColour(QWidget *, const QColor &) override
    {
        if (colourAnswers.empty())
            return std::nullopt;
        auto answer = colourAnswers.front();
        colourAnswers.pop_front();
        return answer;
    }
};

} // namespace kelvora::testsupport
