#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace kelvora {

class WordDatabase;

namespace testsupport {

// A fresh word database in a temporary folder holding the repository's reference
// table (data/ref/ref.tsv) and a small `mot` table.
class RefFixture {
public:
    RefFixture();
    ~RefFixture();
    bool isValid() const;
    QString databasePath() const;
    QString path(const QString &name) const; // a file in the temporary folder
    WordDatabase &database();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<WordDatabase> m_database;
};

QByteArray readFile(const QString &path);

} // namespace testsupport
} // namespace kelvora
