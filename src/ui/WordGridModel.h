#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>

#include <map>
#include <memory>
#include <vector>

namespace kelvora {

class WordDatabase;

// The rows of one table of the word database for the table editor, in the order of
// one column (mot for a word table, car for ref; French, case-insensitive, then exact
// text, then rowid). Rows are addressed by rowid, since a word table may hold the same
// word twice. Only the order is read at once; a row's cells are read when shown, so a
// table of 350,000 words opens without reading them all. A last empty line takes a new
// row. Edits wait until save(), which writes them all in one transaction.
class WordGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    WordGridModel(const QString &databasePath, const QString &table, const QString &orderColumn,
                  QObject *parent = nullptr);
    ~WordGridModel() override;

    // Reads the table again; pending edits are dropped. False with error() on failure.
    bool reload();
    // Writes every pending edit and new row in one transaction. A row deleted meanwhile
    // elsewhere is written as a new row, and said in notices(). False with error().
    bool save();
    // Deletes the row at once; false with error().
    bool removeRow(int row);
    // Adds the row " " and saves it (an empty table then shows one row).
    bool addSeedRow();

    bool hasPendingEdits() const { return !m_edits.empty() || !m_newRows.empty(); }
    int recordCount() const { return int(m_rowids.size() + m_newRows.size()); }
    QString error() const { return m_error; }
    QStringList notices() const { return m_notices; }
    QString table() const { return m_table; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

private:
    QVariantList cells(int row) const;
    bool fail(const QString &message);

    QString m_databasePath;
    QString m_table;
    QString m_orderColumn;
    std::unique_ptr<WordDatabase> m_db;
    QStringList m_columns;
    std::vector<qint64> m_rowids;              // saved rows, in order
    std::vector<QVariantList> m_newRows;       // typed on the new-row line, not saved yet
    std::map<qint64, std::map<int, QVariant>> m_edits; // rowid -> column -> value
    mutable QHash<qint64, QVariantList> m_cache;
    QString m_error;
    QStringList m_notices;
};

} // namespace kelvora
