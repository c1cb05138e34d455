#include "words/StatementCache.h"

#include <sqlite3.h>

#include <algorithm>

namespace kelvora {

void StatementCache::Finalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

StatementCache::StatementCache(int capacity)
    : m_capacity(std::max(1, capacity))
{
}

StatementCache::~StatementCache() = default;

sqlite3_stmt *StatementCache::find(const QString &sql)
{
    const auto found = m_index.constFind(sql);
    if (found == m_index.constEnd())
        return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, found.value());
    return m_entries.front().statement.get();
}

void StatementCache::insert(const QString &sql, sqlite3_stmt *statement)
{
    std::unique_ptr<sqlite3_stmt, Finalizer> owned(statement);
    if (const auto old = m_index.find(sql); old != m_index.end()) {
        m_entries.erase(old.value());
        m_index.erase(old);
    }
    while (int(m_entries.size()) >= m_capacity) {
        m_index.remove(m_entries.back().sql);
        m_entries.pop_back();
    }
    m_entries.push_front({sql, std::move(owned)});
    m_index.insert(sql, m_entries.begin());
}

void StatementCache::clear()
{
    m_index.clear();
    m_entries.clear();
}

} // namespace kelvora
