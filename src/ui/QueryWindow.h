#pragma once

#include "words/QueryComposer.h"

#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kelvora {

struct Session;
class UserPrompts;
class WordTableArea;

// Fsql, the query builder: buttons that compose a condition on the words of the current
// table in `rq`, condition and connective in turn, each press applied at once to the
// main window's record set. Made once and hidden by "OK- FIN", so that what is composed
// stays until "R.A.Z".
class QueryWindow : public QWidget {
    Q_OBJECT
public:
    struct Hooks {
        std::function<QString()> progression; // the main window's PROGRESS
        std::function<QString()> banner;      // the caption text with the current count
    };

    QueryWindow(Session &session, WordTableArea &area, UserPrompts &prompts, Hooks hooks,
                QWidget *parent = nullptr);

    // The composing buttons, "ET" first, in the order of their pieces.
    QPushButton *pieceButton(queryComposer::Piece piece) const;
    void press(queryComposer::Piece piece);
    void finish();   // "OK- FIN"
    void reset();    // "R.A.Z"
    void accentsAndSpecials();
    void progressionQuery(); // "req sur progress"
    // Gives the window the main window's background.
    void setBackground(const QPalette &window);

signals:
    // "OK- FIN" applied the condition: the main window's caption follows.
    void finished();
    void notice(const QString &text);

private:
    void refresh();
    void showCaption();

    Session &m_session;
    WordTableArea &m_area;
    UserPrompts &m_prompts;
    Hooks m_hooks;
    QPlainTextEdit *m_rq = nullptr;
    QLineEdit *m_ch = nullptr;
    QComboBox *m_moins = nullptr;
    QComboBox *m_plus = nullptr;
    QPushButton *m_pieces[10] = {};
    bool m_told = false; // a refusal is in the status bar
};

} // namespace kelvora
