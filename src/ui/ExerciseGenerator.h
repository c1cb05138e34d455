#pragma once

#include "exercises/Generators.h"

#include <QObject>

#include <functional>

class QAction;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QTimer;
class QWidget;

namespace kelvora {

struct Session;
class UserPrompts;
class WordTableArea;

// The "Exercices" menu: each entry writes its exercise into the exercise text (the
// generators of the core do the writing), then asks for the sound to be prepared, except
// after "Lettres". It also holds "ajout", "cls" and the watchdog Timer3 that gives the
// search of the progression's words five seconds.
class ExerciseGenerator : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QPlainTextEdit *exercise = nullptr; // EXO
        QComboBox *groupCount = nullptr;    // nbgroup
        QComboBox *progression = nullptr;   // PROGRESS
        QLineEdit *reinforcement = nullptr; // renfor
        QAction *append = nullptr;          // ajout, checkable
        QAction *clear = nullptr;           // cls
        QAction *mockExam = nullptr, *exam = nullptr, *letters = nullptr, *digits = nullptr,
                *punctuation = nullptr, *mixed = nullptr, *progressionWords = nullptr,
                *wordsPlain = nullptr, *words = nullptr, *callSigns = nullptr;
    };
    // GRMIN and GRMAX as their boxes hold them (they stand on the settings panel).
    using LengthSource = std::function<std::pair<QString, QString>()>;

    ExerciseGenerator(const Controls &controls, Session &session, WordTableArea &tables,
                      LengthSource lengths, UserPrompts &prompts, QWidget *dialogParent,
                      QObject *parent = nullptr);

    // One entry of the menu, as its click does it.
    void run(exercises::Kind kind);
    QTimer *timer3() const { return m_timer3; }
    // The program is ending: a search under way gives up at once, without a message
    // that would outlive the window.
    void stop();

signals:
    // The Command1 action: prepare the sound of the new text.
    void prepareRequested();
    void notice(const QString &text);

private:
    exercises::Options options() const;
    void abandon(); // Timer3's tick
    void mockExamSetUp();

    Controls m_c;
    Session &m_session;
    WordTableArea &m_tables;
    LengthSource m_lengths;
    UserPrompts &m_prompts;
    QWidget *m_dialogParent;
    QTimer *m_timer3;
    bool m_busy = false;
    bool m_abandoned = false; // ProgressionAbandoned
};

} // namespace kelvora
