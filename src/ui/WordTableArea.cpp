#include "ui/WordTableArea.h"

#include "settings/Session.h"
#include "words/QueryComposer.h"
#include "words/WordDatabase.h"
#include "words/WordTables.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>

namespace kelvora {

WordTableArea::WordTableArea(const Controls &controls, Session &session, QObject *parent)
    : QObject(parent)
    , m_c(controls)
    , m_session(session)
{
    connect(m_c.tables, &QComboBox::textActivated, this, &WordTableArea::select);
    connect(m_c.first, &QAbstractButton::clicked, this, [this] { move(Move::First); });
    connect(m_c.previous, &QAbstractButton::clicked, this, [this] { move(Move::Previous); });
    connect(m_c.next, &QAbstractButton::clicked, this, [this] { move(Move::Next); });
    connect(m_c.last, &QAbstractButton::clicked, this, [this] { move(Move::Last); });
    // Enter in the query field, or a pick in its list, applies the condition.
    connect(m_c.query->lineEdit(), &QLineEdit::returnPressed, this, &WordTableArea::applyQuery);
    connect(m_c.query, &QComboBox::activated, this, &WordTableArea::applyQuery);
    m_c.currentWord->installEventFilter(this);
}

bool WordTableArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_c.currentWord && event->type() == QEvent::MouseButtonDblClick)
        emit wordDoubleClicked(m_c.currentWord->text());
    return QObject::eventFilter(watched, event);
}

void WordTableArea::fillTables()
{
    WordDatabase db(m_session.paths.wordDatabasePath, WordDatabase::OpenMode::ReadOnly);
    const QSignalBlocker blocker(m_c.tables);
    m_c.tables->clear();
    m_c.tables->addItems(WordTables::wordTables(db));
}

void WordTableArea::restore(const QString &table)
{
    m_session.currentTable = table.isEmpty() ? QStringLiteral("mot") : table;
    {
        const QSignalBlocker blocker(m_c.tables);
        // A table that no longer exists leaves the list blank rather than naming another.
        m_c.tables->setCurrentIndex(m_c.tables->findText(m_session.currentTable));
    }
    m_condition.clear();
    openSource(m_session.currentTable, QStringLiteral(" order by mot"));
    showCount();
    nameTableInMenus(m_session.currentTable, false);
    m_c.queryHeading->setText(QStringLiteral("Requête sur les mots de la Table ") + m_session.currentTable);
}

void WordTableArea::select(const QString &table)
{
    m_session.currentTable = table;
    m_condition.clear();
    if (m_c.tables->currentText() != table) { // chosen by the program (the mock examination)
        const QSignalBlocker blocker(m_c.tables);
        m_c.tables->setCurrentIndex(m_c.tables->findText(table));
    }
    if (m_c.query->count() > 0) {
        m_c.query->setCurrentIndex(0);
        m_c.query->setEditText(m_c.query->itemText(0));
    }
    openSource(table, QStringLiteral("  order by mot"));
    showCount();
    nameTableInMenus(table, true);
    emit tableSelected(table);
    m_c.queryHeading->setText(QStringLiteral("Requête sur les mots de la Table ") + table);
}

void WordTableArea::applyQuery()
{
    if (m_c.query->currentText().isEmpty())
        m_c.query->setEditText(QString::fromLatin1(queryComposer::neutral));
    applyCondition(m_c.query->currentText()); // a typed condition fails silently
}

bool WordTableArea::applyCondition(const QString &condition)
{
    const QString previous = m_records.source();
    openSource(m_session.currentTable,
               QStringLiteral(" where ") + condition + QStringLiteral("\n order by mot"));
    if (m_records.timedOut()) {
        // The words shown stay those of the last condition that finished; no message box
        // for a typed condition, a word in the status bar.
        m_records.setSource(previous);
        emit notice(m_records.error());
        return false;
    }
    m_condition = condition;
    showCount();
    emit countChanged();
    return m_records.error().isEmpty();
}

void WordTableArea::setQueryText(const QString &condition)
{
    m_c.query->setEditText(condition);
}

void WordTableArea::reopen()
{
    m_records.refresh();
    showCurrentWord();
    showCount();
    emit countChanged();
}

void WordTableArea::refresh()
{
    m_records.refresh();
    showCurrentWord();
}

void WordTableArea::openSource(const QString &table, const QString &rest)
{
    m_records.setDatabasePath(m_session.paths.wordDatabasePath);
    // A name that cannot be a table, or a condition that reads anything but the table,
    // gives an empty set.
    m_records.setReadableTable(table);
    m_records.setSource(WordDatabase::isTableName(table)
                            ? QStringLiteral("select * from ") + table + rest
                            : QString());
    // A table that does not exist, or a condition the engine refuses, gives an empty set.
    m_records.refresh();
    showCurrentWord();
}

void WordTableArea::move(Move move)
{
    if (m_records.isEmpty())
        return;
    // The caption shows where the record set stood when it was asked to move.
    m_c.caption->setText(QString::number(m_records.position()));
    switch (move) {
    case Move::First:
        m_records.moveFirst();
        break;
    case Move::Previous:
        m_records.movePrevious();
        break;
    case Move::Next:
        m_records.moveNext();
        break;
    case Move::Last:
        m_records.moveLast();
        break;
    }
    showCurrentWord();
}

QString WordTableArea::table() const
{
    return m_session.currentTable;
}

QString WordTableArea::moveTo(int position)
{
    m_records.moveTo(position);
    showCurrentWord();
    return m_c.currentWord->text();
}

void WordTableArea::showCurrentWord()
{
    m_c.currentWord->setText(m_records.word());
}

void WordTableArea::showCount()
{
    m_c.caption->setText(QString::number(m_records.count()));
}

void WordTableArea::nameTableInMenus(const QString &table, bool longForm)
{
    const QString quoted = u'\'' + table + u'\'';
    const QString ofTable = longForm ? QStringLiteral("la table ") : QString();
    m_c.importWords->setText(QStringLiteral("Importer des mots dans ") + ofTable + quoted);
    m_c.exportWords->setText(QStringLiteral("Exporter les mots de ") + ofTable + quoted);
    m_c.editTable->setText(QStringLiteral("Editer ") + ofTable + quoted);
    m_c.emptyTable->setText(QStringLiteral("Vider ") + quoted);
    m_c.deleteTable->setText(QStringLiteral("Supprimer ") + quoted);
}

} // namespace kelvora
