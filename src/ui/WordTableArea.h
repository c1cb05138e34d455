#pragma once

#include "words/RecordSet.h"

#include <QObject>

class QAction;
class QAbstractButton;
class QComboBox;
class QLabel;

namespace kelvora {
struct Session;
}

namespace kelvora {

// What the main window shows of the word tables: the table list TABLES, the record set
// Data1 with its navigation arrows and its caption, the current word Text14, the query
// field REQ with its heading Label31, and the table menu captions that name the table.
class WordTableArea : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QComboBox *tables = nullptr;   // TABLES
        QAbstractButton *first = nullptr, *previous = nullptr, *next = nullptr, *last = nullptr;
        QLabel *caption = nullptr;     // Data1's caption: a count or a position
        QLabel *currentWord = nullptr; // Text14
        QLabel *queryHeading = nullptr; // Label31
        QComboBox *query = nullptr;    // REQ
        QAction *importWords = nullptr, *exportWords = nullptr, *editTable = nullptr,
                *emptyTable = nullptr, *deleteTable = nullptr;
    };

    WordTableArea(const Controls &controls, Session &session, QObject *parent = nullptr);

    // The word tables of the database: attributes 0 and a name other than "ref".
    void fillTables();
    // At start and after a change of user: the stored table becomes current.
    void restore(const QString &table);
    // A choice in the list: the table becomes current (tableSelected follows).
    void select(const QString &table);
    // The query field's condition applied to the current table.
    void applyQuery();
    // `condition` applied to the current table (the query window's); false when the
    // engine refused it or it ran too long (its reason in error()).
    bool applyCondition(const QString &condition);
    // The query field shows `condition` (the query window composes it).
    void setQueryText(const QString &condition);
    // After the table's words changed: read it again, count it, redraw the banner.
    void reopen();
    QString error() const { return m_records.error(); }
    // Reads the record set again (each time the window becomes active).
    void refresh();

    int count() const { return m_records.count(); }
    QString table() const; // the current table
    // The record at `position` (0-based) becomes current and shows in Text14; its word.
    QString moveTo(int position);
    // The condition of REQ in force on the current table; empty when none is.
    QString condition() const { return m_condition; }
    RecordSet &records() { return m_records; }

signals:
    // After a choice of table: the banner and the stored "lasttable" follow it.
    void tableSelected(const QString &table);
    // The number of words changed (a query): the banner follows it.
    void countChanged();
    // A double click on the current word: it is to be played.
    void wordDoubleClicked(const QString &word);
    // Something to tell in the status bar (a typed condition stopped for running too long).
    void notice(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Move { First, Previous, Next, Last };
    void move(Move move);
    void showCurrentWord();
    void showCount();
    void nameTableInMenus(const QString &table, bool longForm);
    void openSource(const QString &table, const QString &rest);

    Controls m_c;
    Session &m_session;
    RecordSet m_records;
    QString m_condition;
};

} // namespace kelvora
