#include "words/WordDatabase.h"

#include "words/JetFunctions.h"
#include "words/QueryDialect.h"
#include "words/SqlToken.h"
#include "words/SqliteValue.h"
#include "words/StatementCache.h"
#include "words/Transaction.h"

#include <QDeadlineTimer>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <optional>

#include <sqlite3.h>

namespace kelvora {
namespace {

// Enough for every character of the reference table, each looked up by its own text.
constexpr int statementCacheSize = 128;
constexpr int busyTimeoutMs = 5000;
// Attribute of the engine's own tables (sqlite_sequence, sqlite_stat1...).
constexpr int systemTableAttribute = 2;

// The engine's reason in French for what a user can meet and act on; else its own words.
QString reasonFor(sqlite3 *db, int rc)
{
    switch (rc & 0xff) {
    case SQLITE_NOTADB: return QStringLiteral("ce fichier n'est pas une base de données");
    case SQLITE_CANTOPEN: return QStringLiteral("le fichier est absent ou ne peut pas être ouvert");
    case SQLITE_CORRUPT: return QStringLiteral("la base est endommagée");
    case SQLITE_READONLY: return QStringLiteral("la base de mots ne peut pas être modifiée (fichier en lecture seule)");
    case SQLITE_FULL: return QStringLiteral("le disque est plein");
    case SQLITE_IOERR: return QStringLiteral("erreur de lecture ou d'écriture sur le disque");
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return QStringLiteral("la base de mots est occupée par un autre programme");
    default: return db ? QString::fromUtf8(sqlite3_errmsg(db)) : QString::fromUtf8(sqlite3_errstr(rc));
    }
}

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// Anything after the first statement other than blanks, comments and semicolons.
bool hasAnotherStatement(const char *tail, const char *end)
{
    const QString rest = QString::fromUtf8(tail, end - tail);
    for (const SqlToken &token : SqlToken::tokenize(rest)) {
        if (!token.isBlank() && !token.isPunct(rest, ';'))
            return true;
    }
    return false;
}

// The authorizer of guarded statements: `data` is the one table they may read.
int readOnlyAuthorizer(void *data, int action, const char *first, const char *, const char *,
                       const char *)
{
    const QString &table = *static_cast<const QString *>(data);
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_FUNCTION:
        return SQLITE_OK;
    case SQLITE_READ:
        return first && QString::fromUtf8(first).compare(table, Qt::CaseInsensitive) == 0
                   ? SQLITE_OK
                   : SQLITE_DENY;
    default:
        return SQLITE_DENY;
    }
}

} // namespace

struct WordDatabase::Private {
    QString path;
    QString error;
    QString openError; // why the file could not be opened
    sqlite3 *db = nullptr;
    StatementCache cache{statementCacheSize};
    std::optional<QString> readableTable; // set: statements are guarded, and never cached
    int timeLimitMs = 0;
    QDeadlineTimer deadline = QDeadlineTimer::Forever;
    std::function<bool()> keepGoing;
    bool interrupted = false;
    bool timedOut = false;

    // SQLite's progress handler: a non-zero answer interrupts the statement.
    static int shouldStop(void *data)
    {
        auto *self = static_cast<Private *>(data);
        if (self->deadline.hasExpired() || (self->keepGoing && !self->keepGoing()))
            self->interrupted = true;
        return self->interrupted ? 1 : 0;
    }

    // The time limit counts from the start of each statement that returns rows.
    void startClock()
    {
        deadline = timeLimitMs > 0 ? QDeadlineTimer(timeLimitMs) : QDeadlineTimer(QDeadlineTimer::Forever);
    }
    void stopClock() { deadline = QDeadlineTimer(QDeadlineTimer::Forever); }

    void installProgressHandler()
    {
        const bool watched = timeLimitMs > 0 || keepGoing;
        if (db)
            sqlite3_progress_handler(db, watched ? 10000 : 0, watched ? &Private::shouldStop : nullptr,
                                     this);
    }

    sqlite3_stmt *guardedStatement = nullptr;

    bool guarded() const { return readableTable.has_value(); }

    ~Private()
    {
        sqlite3_finalize(guardedStatement);
        cache.clear(); // statements first: the connection closes only when none is left
        sqlite3_close(db);
    }

    bool fail(const QString &message)
    {
        error = message;
        return false;
    }

    bool failStatement(const QString &sql)
    {
        if (readableTable && sqlite3_errcode(db) == SQLITE_AUTH)
            return fail(QStringLiteral("La requête %1 est refusée : une condition ne peut que lire "
                                       "la table « %2 ».")
                            .arg(quoted(sql), *readableTable));
        return fail(QStringLiteral("La requête %1 a échoué : %2")
                        .arg(quoted(sql), reasonFor(db, sqlite3_extended_errcode(db))));
    }

    // The prepared statement for this text, reset and bound; nullptr with `error` set.
    sqlite3_stmt *prepare(const QString &sql, const QVariantList &values)
    {
        error.clear();
        interrupted = false;
        timedOut = false;
        if (!db) {
            // Said again with its reason: the message may be the first the user sees.
            fail(QStringLiteral("La base de mots %1 n'est pas ouverte : %2.").arg(quoted(path), openError));
            return nullptr;
        }
        sqlite3_stmt *statement = guarded() ? nullptr : cache.find(sql);
        if (statement) {
            sqlite3_reset(statement);
            sqlite3_clear_bindings(statement);
        } else {
            statement = prepareNew(sql);
            if (!statement)
                return nullptr;
        }
        const int expected = sqlite3_bind_parameter_count(statement);
        if (expected != values.size()) {
            fail(QStringLiteral("La requête %1 attend %2 valeur(s) mais en reçoit %3.")
                     .arg(quoted(sql))
                     .arg(expected)
                     .arg(values.size()));
            return nullptr;
        }
        for (int i = 0; i < expected; ++i) {
            if (!sqliteValue::bind(statement, i + 1, values.at(i))) {
                fail(QStringLiteral("La valeur n° %1 de la requête %2 (type %3) ne peut pas être utilisée.")
                         .arg(i + 1)
                         .arg(quoted(sql), QString::fromLatin1(values.at(i).typeName())));
                sqlite3_clear_bindings(statement);
                return nullptr;
            }
        }
        return statement;
    }

    sqlite3_stmt *prepareNew(const QString &sql)
    {
        const QByteArray translated = queryDialect::translate(sql).toUtf8();
        const char *tail = nullptr;
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v3(db, translated.constData(), int(translated.size()), SQLITE_PREPARE_PERSISTENT,
                               &statement, &tail) != SQLITE_OK) {
            failStatement(sql);
            sqlite3_finalize(statement);
            return nullptr;
        }
        if (!statement) {
            fail(QStringLiteral("La requête est vide."));
            return nullptr;
        }
        if (hasAnotherStatement(tail, translated.constData() + translated.size())) {
            sqlite3_finalize(statement);
            fail(QStringLiteral("Une seule instruction est permise par requête, rien n'a été exécuté : %1")
                     .arg(quoted(sql)));
            return nullptr;
        }
        if (guarded()) {
            // Not cached: the statement lives until the next guarded one.
            sqlite3_finalize(guardedStatement);
            guardedStatement = statement;
        } else {
            cache.insert(sql, statement);
        }
        return statement;
    }

    // Releases the statement's locks at once; cached statements are never left running.
    bool finish(sqlite3_stmt *statement, int rc, const QString &sql)
    {
        const bool ok = rc == SQLITE_DONE || rc == SQLITE_ROW;
        if (!ok)
            failStatement(sql);
        sqlite3_reset(statement);
        return ok;
    }

    // The end of a statement that returned rows under the time limit.
    bool finishRead(sqlite3_stmt *statement, int rc, const QString &sql)
    {
        const bool ok = finish(statement, rc, sql);
        timedOut = !ok && rc == SQLITE_INTERRUPT && deadline.hasExpired();
        if (timedOut)
            fail(QStringLiteral("Requête arrêtée au bout de %1 s : elle ne finissait pas.")
                     .arg(QLocale(QLocale::French).toString(timeLimitMs / 1000.0, 'g', 3)));
        stopClock();
        return ok;
    }
};

WordDatabase::WordDatabase(const QString &path, OpenMode mode)
    : d(std::make_unique<Private>())
{
    d->path = path;
    if (path.isEmpty()) {
        d->openError = QStringLiteral("aucun chemin");
        d->fail(QStringLiteral("Impossible d'ouvrir la base de mots \"\" : aucun chemin."));
        return;
    }
    const int flags = mode == OpenMode::ReadOnly ? SQLITE_OPEN_READONLY
        : mode == OpenMode::ReadWrite            ? SQLITE_OPEN_READWRITE
                                                 : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    sqlite3 *db = nullptr;
    int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &db, flags, nullptr);
    if (rc == SQLITE_OK)
        rc = jetFunctions::install(db);
    if (rc == SQLITE_OK)
        rc = sqlite3_busy_timeout(db, busyTimeoutMs);
    if (rc == SQLITE_OK) // a file that is not a database fails here rather than at first use
        rc = sqlite3_exec(db, "select count(*) from sqlite_master", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) {
        const QString reason = reasonFor(db, rc);
        d->openError = reason;
        d->fail(QStringLiteral("Impossible d'ouvrir la base de mots %1 : %2").arg(quoted(path), reason));
        sqlite3_close(db);
        return;
    }
    d->db = db;
}

WordDatabase::~WordDatabase() = default;

bool WordDatabase::isOpen() const
{
    return d->db != nullptr;
}

QString WordDatabase::path() const
{
    return d->path;
}

QString WordDatabase::errorString() const
{
    return d->error;
}

sqlite3 *WordDatabase::handle() const
{
    return d->db;
}

bool WordDatabase::exec(const QString &sql, const QVariantList &values)
{
    sqlite3_stmt *statement = d->prepare(sql, values);
    if (!statement)
        return false;
    int rc = SQLITE_ROW;
    while (rc == SQLITE_ROW)
        rc = sqlite3_step(statement);
    return d->finish(statement, rc, sql);
}

QueryResult WordDatabase::query(const QString &sql, const QVariantList &values, int maxRows)
{
    QueryResult result;
    d->startClock();
    sqlite3_stmt *statement = d->prepare(sql, values);
    if (!statement) {
        result.error = d->error;
        return result;
    }
    const int columns = sqlite3_column_count(statement);
    for (int c = 0; c < columns; ++c)
        result.columns.append(QString::fromUtf8(sqlite3_column_name(statement, c)));
    int rc = SQLITE_DONE;
    while (maxRows < 0 || qsizetype(result.rows.size()) < maxRows) {
        rc = sqlite3_step(statement);
        if (rc != SQLITE_ROW)
            break;
        QVariantList row;
        row.reserve(columns);
        for (int c = 0; c < columns; ++c)
            row.append(sqliteValue::column(statement, c));
        result.rows.push_back(std::move(row));
    }
    result.ok = d->finishRead(statement, rc, sql);
    if (!result.ok) {
        result.timedOut = d->timedOut;
        result.error = d->error;
        result.rows.clear();
    }
    return result;
}

bool WordDatabase::scanRows(const QString &sql, const QVariantList &values,
                            const std::function<bool(const RowView &)> &row)
{
    return scan(sql, values, row, true);
}

bool WordDatabase::scan(const QString &sql, const QVariantList &values,
                        const std::function<bool(const RowView &)> &row, bool tellTimeOut)
{
    d->startClock();
    sqlite3_stmt *statement = d->prepare(sql, values);
    if (!statement)
        return false;
    const RowView view(statement);
    int rc = SQLITE_DONE;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
        if (!row(view)) {
            rc = SQLITE_DONE;
            break;
        }
    }
    if (tellTimeOut)
        return d->finishRead(statement, rc, sql);
    d->stopClock();
    return d->finish(statement, rc, sql);
}

bool WordDatabase::timedOut() const
{
    return d->timedOut;
}

QStringList RowView::columnNames() const
{
    QStringList names;
    for (int c = 0; c < sqlite3_column_count(m_statement); ++c)
        names.append(QString::fromUtf8(sqlite3_column_name(m_statement, c)));
    return names;
}

qint64 RowView::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

std::string_view RowView::text(int column) const
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    return text ? std::string_view(text, size_t(sqlite3_column_bytes(m_statement, column))) : std::string_view();
}

bool RowView::holdsText(int column) const
{
    const int type = sqlite3_column_type(m_statement, column);
    return type == SQLITE_TEXT || type == SQLITE_NULL;
}

void WordDatabase::readOnly(const QString &table)
{
    d->readableTable = table;
    if (d->db)
        sqlite3_set_authorizer(d->db, readOnlyAuthorizer, &*d->readableTable);
}

void WordDatabase::setTimeLimit(int ms)
{
    d->timeLimitMs = qMax(0, ms);
    d->installProgressHandler();
}

void WordDatabase::setInterruptCheck(std::function<bool()> keepGoing)
{
    d->keepGoing = std::move(keepGoing);
    d->installProgressHandler();
}

bool WordDatabase::wasInterrupted() const
{
    return d->interrupted;
}

bool WordDatabase::scanText(const QString &sql, const QVariantList &values,
                            const std::function<bool(std::string_view)> &row)
{
    return scan(sql, values, [&row](const RowView &view) { return row(view.text(0)); }, false);
}

void WordDatabase::readAnything()
{
    d->readableTable.reset();
    if (d->db)
        sqlite3_set_authorizer(d->db, nullptr, nullptr);
}

QByteArray WordDatabase::changeStamp(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray header = file.read(100);
    if (header.size() < 100 || !header.startsWith(QByteArrayView("SQLite format 3\0", 16)))
        return {};
    // Bytes 18 and 19 are 2 in write-ahead-log mode; 24 to 27 count the commits.
    const bool writeAheadLog = header[18] == 2 || header[19] == 2;
    if (writeAheadLog)
        return {};
    const QFileInfo info(file);
    return header.mid(24, 4) + QByteArray::number(info.size()) + '/'
        + QByteArray::number(info.lastModified().toMSecsSinceEpoch());
}

bool WordDatabase::isTableName(const QString &name)
{
    static const QRegularExpression plain(QStringLiteral("^[\\p{L}_][\\p{L}\\p{N}_]*$"));
    return plain.match(name).hasMatch() && !name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive);
}

bool WordDatabase::write(const std::function<bool(WordDatabase &)> &work)
{
    QString error;
    {
        Transaction transaction(*this);
        if (!transaction.isActive())
            return false;
        if (work(*this)) {
            if (transaction.commit())
                return true;
            error = QStringLiteral("Les changements de la base de mots %1 n'ont pas pu être "
                                   "enregistrés : %2")
                        .arg(quoted(d->path), d->error);
        } else {
            error = d->error;
        }
    } // rolled back here
    d->error = error; // the cause, not the rollback's outcome
    return false;
}

qint64 WordDatabase::changes() const
{
    return d->db ? qint64(sqlite3_changes64(d->db)) : 0;
}

bool WordDatabase::transaction()
{
    return exec(QStringLiteral("BEGIN"));
}

bool WordDatabase::commit()
{
    return exec(QStringLiteral("COMMIT"));
}

bool WordDatabase::rollback()
{
    return exec(QStringLiteral("ROLLBACK"));
}

std::vector<TableDefinition> WordDatabase::tableDefinitions()
{
    std::vector<TableDefinition> tables;
    const QueryResult result = query(QStringLiteral(
        "select name from sqlite_master where type = 'table' order by name, name collate binary"));
    for (const QVariantList &row : result.rows) {
        const QString name = row.value(0).toString();
        const bool engineTable = name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive);
        tables.push_back({name, engineTable ? systemTableAttribute : 0});
    }
    return tables;
}

} // namespace kelvora
