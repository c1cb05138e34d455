#include "words/Transaction.h"

#include "words/WordDatabase.h"

namespace kelvora {

Transaction::Transaction(WordDatabase &db)
    : m_db(db)
    , m_active(db.transaction())
{
}

Transaction::~Transaction()
{
    if (m_active)
        m_db.rollback();
}

bool Transaction::commit()
{
    if (!m_active)
        return false;
    // A failed commit leaves the transaction open, so the destructor still rolls back.
    m_active = !m_db.commit();
    return !m_active;
}

} // namespace kelvora
