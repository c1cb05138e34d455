#pragma once

namespace kelvora {

class WordDatabase;

// Commits on commit(), rolls back when it goes out of scope without one.
class Transaction {
public:
    explicit Transaction(WordDatabase &db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    bool isActive() const { return m_active; }
    bool commit();

private:
    WordDatabase &m_db;
    bool m_active = false;
};

} // namespace kelvora
