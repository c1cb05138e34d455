#pragma once

#include <QString>

#include <optional>

namespace kelvora {

struct Session;

namespace keyboard {

// Which keys of the keyboard window sound, and when. The keys waiting and the player's
// freedom are the session's (the main window gives the player back at the end of each
// sound); a key never overtakes one already waiting, and whatever waits sounds as one
// text as soon as the player is free.
class KeyQueue {
public:
    explicit KeyQueue(Session &session) : m_session(session) {}

    // A key typed: the text to sound at once, or nothing when it waits its turn.
    std::optional<QString> typed(const QString &key);
    // A key clicked: it always waits for the next tick.
    void clicked(const QString &key);
    // The 100 ms tick: everything waiting, as one text, when the player is free.
    std::optional<QString> tick();
    // The window closes: nothing waits any more.
    void clear();

    QString waiting() const;

private:
    Session &m_session;
};

} // namespace keyboard
} // namespace kelvora
