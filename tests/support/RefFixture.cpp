#include "RefFixture.h"

#include "TestPaths.h"
#include "DataBuilder.h"
#include "words/WordDatabase.h"

#include <QFile>

namespace kelvora::testsupport {

RefFixture::RefFixture()
{
    // The reference table as the installation's data builder makes it.
    QString error;
    if (!datagen::buildDatabase(databasePath(), QString::fromUtf8(testpaths::sourceDataDir) + "/ref/ref.tsv",
                                {}, &error))
        qWarning("reference table: %s", qPrintable(error));
    m_database = std::make_unique<WordDatabase>(databasePath());
    m_database->exec("CREATE TABLE mot (mot TEXT )");
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
