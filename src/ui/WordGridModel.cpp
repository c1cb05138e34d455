#include "ui/WordGridModel.h"

#include "words/WordBlock.h"
#include "words/WordDatabase.h"

#include <QFont>

namespace kelvora {

WordGridModel::WordGridModel(const QString &databasePath, const QString &table,
                             const QString &orderColumn, QObject *parent)
    : QAbstractTableModel(parent)
    , m_databasePath(databasePath)
    , m_table(table)
    , m_orderColumn(orderColumn)
{
}

WordGridModel::~WordGridModel() = default;

bool WordGridModel::fail(const QString &message)
{
    m_error = message;
    return false;
}

bool WordGridModel::reload()
{
    beginResetModel();
    m_error.clear();
    m_rowids.clear();
    m_newRows.clear();
    m_edits.clear();
    m_cache.clear();
    m_columns.clear();
    m_db = std::make_unique<WordDatabase>(m_databasePath);
    bool ok = m_db->isOpen() || fail(m_db->errorString());
    if (ok && !WordDatabase::isTableName(m_table))
        ok = fail(QStringLiteral("« %1 » n'est pas un nom de table.").arg(m_table));
    if (ok) {
        const QueryResult shape = m_db->query(QStringLiteral("select * from ") + m_table + QStringLiteral(" limit 0"));
        ok = shape.ok || fail(shape.error);
        m_columns = shape.columns;
    }
    // The order is decided on the order column alone, read in the table's order; the
    // rowids come from a second scan in that same order.
    std::vector<qint64> rowids;
    WordBlock words;
    if (ok)
        ok = m_db->scanText(QStringLiteral("select rowid from ") + m_table, {}, [&rowids](std::string_view id) {
            rowids.push_back(QByteArrayView(id.data(), qsizetype(id.size())).toLongLong());
            return true;
        }) || fail(m_db->errorString());
    if (ok && m_columns.contains(m_orderColumn, Qt::CaseInsensitive))
        ok = m_db->scanText(QStringLiteral("select [") + m_orderColumn + QStringLiteral("] from ") + m_table, {},
                            [&words](std::string_view word) {
                                words.append(word);
                                return true;
                            })
            || fail(m_db->errorString());
    if (ok) {
        if (words.size() == rowids.size()) {
            m_rowids.reserve(rowids.size());
            for (quint32 i : words.recordOrder())
                m_rowids.push_back(rowids[i]);
        } else {
            m_rowids = std::move(rowids);
        }
    }
    endResetModel();
    return ok;
}

QVariantList WordGridModel::cells(int row) const
{
    if (row >= int(m_rowids.size())) {
        const size_t n = size_t(row) - m_rowids.size();
        return n < m_newRows.size() ? m_newRows[n] : QVariantList();
    }
    const qint64 rowid = m_rowids[size_t(row)];
    auto cached = m_cache.constFind(rowid);
    if (cached == m_cache.constEnd()) {
        const QueryResult r = m_db->query(QStringLiteral("select * from ") + m_table + QStringLiteral(" where rowid = ?"),
                                          {rowid});
        cached = m_cache.insert(rowid, r.ok && !r.rows.empty() ? r.rows.front() : QVariantList());
    }
    QVariantList values = *cached;
    const auto edited = m_edits.find(rowid);
    if (edited != m_edits.end()) {
        for (const auto &[column, value] : edited->second) {
            while (values.size() <= column)
                values.append(QVariant());
            values[column] = value;
        }
    }
    return values;
}

int WordGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : recordCount() + 1; // the new-row line
}

int WordGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant WordGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    return cells(index.row()).value(index.column());
}

QVariant WordGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return m_columns.value(section);
    return section < recordCount() ? QVariant(section + 1) : QVariant(QStringLiteral("*"));
}

Qt::ItemFlags WordGridModel::flags(const QModelIndex &index) const
{
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool WordGridModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    const int row = index.row();
    if (row == recordCount()) {
        // Typing on the new-row line makes a new row and a new new-row line.
        QVariantList values(m_columns.size());
        values[index.column()] = value;
        beginInsertRows({}, row + 1, row + 1);
        m_newRows.push_back(values);
        endInsertRows();
        emit dataChanged(index, index);
        emit headerDataChanged(Qt::Vertical, row, row + 1);
        return true;
    }
    if (row >= int(m_rowids.size()))
        m_newRows[size_t(row) - m_rowids.size()][index.column()] = value;
    else
        m_edits[m_rowids[size_t(row)]][index.column()] = value;
    emit dataChanged(index, index);
    return true;
}

bool WordGridModel::removeRow(int row)
{
    if (row < 0 || row >= recordCount())
        return false;
    if (row < int(m_rowids.size())) {
        const qint64 rowid = m_rowids[size_t(row)];
        if (!m_db->exec(QStringLiteral("delete from ") + m_table + QStringLiteral(" where rowid = ?"), {rowid}))
            return fail(m_db->errorString());
        beginRemoveRows({}, row, row);
        m_rowids.erase(m_rowids.begin() + row);
        m_edits.erase(rowid);
        m_cache.remove(rowid);
        endRemoveRows();
    } else {
        beginRemoveRows({}, row, row);
        m_newRows.erase(m_newRows.begin() + (row - qsizetype(m_rowids.size())));
        endRemoveRows();
    }
    return true;
}

bool WordGridModel::addSeedRow()
{
    const qsizetype column = std::max<qsizetype>(0, m_columns.indexOf(QStringLiteral("mot"), 0));
    if (!m_db->exec(QStringLiteral("insert into ") + m_table + QStringLiteral(" ([")
                        + m_columns.value(column, QStringLiteral("mot")) + QStringLiteral("]) values (' ')")))
        return fail(m_db->errorString());
    return reload();
}

bool WordGridModel::save()
{
    m_notices.clear();
    m_error.clear();
    QStringList columns;
    QStringList marks;
    for (const QString &c : std::as_const(m_columns)) {
        columns << u'[' + c + u']';
        marks << QStringLiteral("?");
    }
    const QString insert = QStringLiteral("insert into ") + m_table + QStringLiteral(" (") + columns.join(u',')
        + QStringLiteral(") values (") + marks.join(u',') + u')';
    QStringList notices;
    const bool ok = m_db->write([&](WordDatabase &db) {
        for (const auto &[rowid, edits] : m_edits) {
            for (const auto &[column, value] : edits) {
                if (!db.exec(QStringLiteral("update ") + m_table + QStringLiteral(" set [") + m_columns.value(column)
                                 + QStringLiteral("] = ? where rowid = ?"),
                             {value, rowid}))
                    return false;
                if (db.changes() > 0)
                    continue;
                // Deleted meanwhile by another window: the row is not lost, it comes back.
                const auto found = std::find(m_rowids.begin(), m_rowids.end(), rowid);
                QVariantList values = cells(int(found - m_rowids.begin()));
                values.resize(m_columns.size());
                if (!db.exec(insert, values))
                    return false;
                notices << QStringLiteral("la ligne « %1 » avait été supprimée ailleurs ; elle est "
                                          "enregistrée de nouveau")
                               .arg(values.value(0).toString());
                break;
            }
        }
        for (QVariantList values : m_newRows) {
            values.resize(m_columns.size());
            if (!db.exec(insert, values))
                return false;
        }
        return true;
    });
    if (!ok)
        return fail(m_db->errorString());
    m_notices = notices;
    return reload();
}

} // namespace kelvora
