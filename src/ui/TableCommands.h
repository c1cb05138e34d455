#pragma once

#include "words/WordTables.h"

#include <QElapsedTimer>
#include <QObject>

#include <functional>

class QAction;
class QAbstractButton;
class QPlainTextEdit;
class QProgressDialog;
class QWidget;

namespace kelvora {

struct Session;
class UserPrompts;
class WordTableArea;

// The "Table" menu and the four maintenance buttons of the main window: create, import,
// export, empty and delete the current table, and the clean-ups "blanc", "correc acc"
// and "doublons", with "asc" beside them. The work is done by WordTables; this object
// asks, tells, shows the progress of long work and brings the window's record set up
// to date after every change.
class TableCommands : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QAction *create = nullptr, *importWords = nullptr, *exportWords = nullptr,
                *emptyTable = nullptr, *deleteTable = nullptr;
        QAbstractButton *asc = nullptr, *blank = nullptr, *repairAccents = nullptr,
                        *duplicates = nullptr;
        QPlainTextEdit *exercise = nullptr; // EXO, for "asc"
    };

    TableCommands(const Controls &controls, Session &session, WordTableArea &tables,
                  UserPrompts &prompts, QWidget *window, QObject *parent = nullptr);
    ~TableCommands() override;

    // For tests: the clock that names the export files.
    void setClock(WordTables::Clock clock) { m_clock = std::move(clock); }

    void createTable();
    void exportTable();
    void importWords();
    void emptyTable();
    void deleteTable();
    void showCharacterCode();
    void removeEmptyWords();
    void repairAccents();
    void removeDuplicates();

signals:
    // A new table is made: the editor opens on it.
    void editRequested();
    void notice(const QString &text);

private:
    WordTables tables();
    void waitMessage();
    void announce(const WordTables::Export &backup);
    void failed(const WordTables &tables);
    void cleanUp(const std::function<qint64(WordTables &, const QString &)> &clean,
                 const QString &done);
    void reportProgress(WordTables::Step step, qint64 done, qint64 total);

    Controls m_c;
    Session &m_session;
    WordTableArea &m_area;
    UserPrompts &m_prompts;
    QWidget *m_window;
    WordTables::Clock m_clock;
    QProgressDialog *m_progress = nullptr;
    QElapsedTimer m_working;   // since the long work began
    QElapsedTimer m_lastEvents; // since the window last drew itself
};

} // namespace kelvora
