#include "RefFixture.h"

#include "TestPaths.h"
#include "words/Transaction.h"
#include "words/WordDatabase.h"

#include <QFile>

namespace kelvora::testsupport {

RefFixture::RefFixture()
{
    m_database = std::make_unique<WordDatabase>(databasePath(),
                                                WordDatabase::OpenMode::ReadWriteCreate);
    m_database->exec("CREATE TABLE ref (car TEXT, cw TEXT, wav TEXT)");
    m_database->exec("CREATE TABLE mot (mot TEXT )");
    QFile tsv(QString::fromUtf8(testpaths::sourceDataDir) + "/ref/ref.tsv");
    if (!tsv.open(QIODevice::ReadOnly))
        return;
    Transaction transaction(*m_database);
    for (const QString &line : QString::fromUtf8(tsv.readAll()).split('\n')) {
        const QStringList f = line.split('\t');
        if (f.size() == 3 && !line.startsWith('#'))
            m_database->exec("INSERT INTO ref (car, cw, wav) VALUES (?, ?, ?)", {f[0], f[1], f[2]});
    }
    transaction.commit();
}

RefFixture::~RefFixture() = default;

bool RefFixture::isValid() const
{
    return m_dir.isValid() && m_database && m_database->isOpen();
}

QString RefFixture::databasePath() const
{
    return m_dir.filePath("kvmot.sqlite");
}

QString RefFixture::path(const QString &name) const
{
    return m_dir.filePath(name);
}

WordDatabase &RefFixture::database()
{
    return *m_database;
}

QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace kelvora::testsupport
