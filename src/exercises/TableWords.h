#pragma once

#include "exercises/WordSource.h"
#include "words/WordBlock.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvora {

class WordDatabase;

// The words of one table of the word database, with an optional condition in the
// program's query dialect, in the order "order by mot" gives them (French,
// case-insensitive; then the exact text; identical words in the table's order). The condition may read that
// table and nothing else, and runs for 2 s at most, as a condition typed in the window.
//
// A draw needs only the words at a few positions: they are picked out of one scan of
// the table instead of sorting the whole table, which on a list of 350,000 words is
// several times slower than the scan. The scan is made once, at the first count() or
// wordsAt(): one exercise sees one state of the table.
class TableWords : public WordSource {
public:
    TableWords(const QString &databasePath, const QString &table, const QString &condition = {});

    QString name() const override { return m_table; }
    int count() override;
    std::vector<QString> wordsAt(const std::vector<int> &positions) override;
    std::optional<std::vector<QString>>
    wordsMadeOf(const QString &characters, const std::function<bool()> &keepGoing) override;
    QString error() const override { return m_error; }

    void setTimeLimit(int ms) { m_timeLimitMs = ms; }

private:
    bool open(WordDatabase &db);
    const WordBlock *scanned(); // the set's words, scanned at the first call; null on failure
    bool scan(const QString &sql, const QVariantList &values, WordBlock &words,
              const std::function<bool()> &keepGoing = {});
    QString select() const; // "select mot from T [where C]"

    QString m_databasePath;
    QString m_table;
    QString m_condition;
    int m_timeLimitMs = 2000;
    QString m_error;
    std::optional<WordBlock> m_words;
};

} // namespace kelvora
