#include "keyboard/KeyQueue.h"

#include "settings/Session.h"

#include <utility>

namespace kelvora::keyboard {

std::optional<QString> KeyQueue::typed(const QString &key)
{
    QString &waiting = m_session.keyboardQueue;
    if (waiting.isEmpty() && m_session.playerFree)
        return key;
    waiting += key;
    return std::nullopt;
}

void KeyQueue::clicked(const QString &key)
{
    m_session.keyboardQueue += key;
}

std::optional<QString> KeyQueue::tick()
{
    QString &waiting = m_session.keyboardQueue;
    if (waiting.isEmpty() || !m_session.playerFree)
        return std::nullopt;
    return std::exchange(waiting, QString());
}

void KeyQueue::clear()
{
    m_session.keyboardQueue.clear();
}

QString KeyQueue::waiting() const
{
    return m_session.keyboardQueue;
}

} // namespace kelvora::keyboard
