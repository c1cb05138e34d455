#pragma once

#include <QObject>

#include <functional>

class QAbstractButton;
class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QTimer;

namespace kelvora {

class SettingsWriter;
class ViewSwitcher;
class WordTableArea;

// The two drills of single words from the current table: the word loop ("Mot diffusé
// en boucle", a word, its sound, the pause of delaimot from the end of that sound, the
// next word) and the typed-word drill ("Mots au clavier", the next word when the learner
// has typed the last one exactly). Every word sent goes into the list List1, which the
// correction then replays one word a line.
class WordDrills : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QAction *wordLoop = nullptr;    // motenboucle, checkable
        QAction *typedDrill = nullptr;  // motclavier
        QComboBox *delay = nullptr;     // delaimot, ms
        QListWidget *list = nullptr;    // List1
        QLineEdit *typing = nullptr;    // Text17
        QPushButton *next = nullptr;    // Command12
        QPlainTextEdit *exercise = nullptr; // EXO
        QLabel *currentWord = nullptr;  // Text14
        QAbstractButton *hideText = nullptr;       // Check1
        QAbstractButton *autoCorrection = nullptr; // Fcorrection
        QAbstractButton *debfin = nullptr;
    };
    // Prepares the exercise text and starts it as the bar's Play does; false when it
    // could not be prepared (the reason is told by whoever prepares).
    using PlayWord = std::function<bool()>;

    WordDrills(const Controls &controls, WordTableArea &tables, ViewSwitcher &views,
               SettingsWriter &writer, QTimer *wordTimer, PlayWord playWord,
               QObject *parent = nullptr);

    // Timer4's tick: one random word of the table, alone in the text, into the list, played.
    void sendWord();
    void toggleWordLoop(bool checked); // motenboucle
    void startTypedDrill();            // motclavier
    void nextTypedWord();              // Command12
    // Another exercise took the text's place: the typed drill stops waiting for its word.
    void stopTypedDrill() { m_typing = false; }
    // The exercise player started or ended a sound: the typing box takes the focus.
    void onPlayStarted();
    void onPlayEnded();

signals:
    void notice(const QString &text);

private:
    QString awaitedWord() const;
    void onTyped(const QString &text);
    void onDelayChanged(const QString &text);
    void onDelayTyped(); // Enter or the focus leaving the box
    void hideTextIfAsked();

    Controls m_c;
    WordTableArea &m_tables;
    ViewSwitcher &m_views;
    SettingsWriter &m_writer;
    QTimer *m_timer;
    PlayWord m_playWord;
    QString m_lastSent; // null until a word is sent
    bool m_typing = false;
    bool m_sending = false;
};

} // namespace kelvora
