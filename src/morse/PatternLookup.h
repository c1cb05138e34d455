#pragma once

#include <QHash>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace kelvora {

class Transaction;
class WordDatabase;

struct RefRow {
    QString car;
    QString cw;
    QString wav;
};

// The one lookup every user of the reference table performs. It behaves like one
// cursor on the table: a character without a row gives the row found last (never an
// error), and before any row has been found, an empty pattern. Nothing is cached, so
// an edit of `ref` is heard at the next lookup.
class PatternLookup {
public:
    explicit PatternLookup(WordDatabase &database);

    // The row for one character (lower-cased, case-insensitive match). `error` receives
    // a database failure; the row is then the previous one too.
    RefRow findRow(const QString &character, QString *error = nullptr);
    QString findPattern(const QString &character, QString *error = nullptr)
    {
        return findRow(character, error).cw;
    }

    // Every row's `car` in the order the main window reads the table ("order by car"),
    // a null QString for a row without one (the keyboard's keys). `error` receives a
    // database failure; the list is then empty.
    std::vector<QString> characters(QString *error = nullptr);

    bool hasCurrentRow() const { return m_current.has_value(); }

    // `car = "x"`, with a double quote doubled.
    static QString condition(const QString &character);

    // While a snapshot lives, lookups read one state of the table inside a read
    // transaction, so a character's answer can be remembered until the snapshot ends
    // without missing an edit: rendering a long text asks the database once per
    // distinct character instead of once per character.
    class Snapshot {
    public:
        explicit Snapshot(PatternLookup &lookup);
        ~Snapshot();
        Snapshot(const Snapshot &) = delete;
        Snapshot &operator=(const Snapshot &) = delete;

    private:
        PatternLookup &m_lookup;
        std::unique_ptr<Transaction> m_transaction;
    };

private:
    WordDatabase &m_database;
    std::optional<RefRow> m_current;
    bool m_remember = false;
    QHash<QString, std::optional<RefRow>> m_remembered; // lower-cased character -> row or none
};

} // namespace kelvora
