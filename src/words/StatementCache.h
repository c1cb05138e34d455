#pragma once

#include <QHash>
#include <QString>

#include <list>
#include <memory>

struct sqlite3_stmt;

namespace kelvora {

// Prepared statements keyed by the caller's SQL text, least recently used dropped first.
// The cache owns the statements and finalizes them when they leave it.
class StatementCache {
public:
    explicit StatementCache(int capacity);
    ~StatementCache();
    StatementCache(const StatementCache &) = delete;
    StatementCache &operator=(const StatementCache &) = delete;

    // The statement prepared for this text, or nullptr; a hit becomes the most recent.
    sqlite3_stmt *find(const QString &sql);
    // Takes ownership of `statement`; may finalize the least recently used one.
    void insert(const QString &sql, sqlite3_stmt *statement);
    void clear();
    int size() const { return int(m_entries.size()); }
    int capacity() const { return m_capacity; }

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };
    struct Entry {
        QString sql;
        std::unique_ptr<sqlite3_stmt, Finalizer> statement;
    };

    int m_capacity;
    std::list<Entry> m_entries; // most recent first
    QHash<QString, std::list<Entry>::iterator> m_index;
};

} // namespace kelvora
