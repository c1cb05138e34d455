#include "ui/TableCommands.h"

#include "core/TextUtils.h"
#include "core/Windows1252.h"
#include "settings/Session.h"
#include "ui/UserPrompts.h"
#include "ui/WordTableArea.h"

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QTextCursor>

namespace kelvora {

namespace {

constexpr int showProgressAfterMs = 400;
constexpr int drawEveryMs = 50;

const char *stepLabel(WordTables::Step step)
{
    switch (step) {
    case WordTables::Step::Export:
        return "Exportation de la table…";
    case WordTables::Step::Import:
        return "Importation des mots…";
    case WordTables::Step::Clean:
        return "Nettoyage de la table…";
    case WordTables::Step::Empty:
        return "La table se vide…";
    }
    return "";
}

} // namespace

TableCommands::TableCommands(const Controls &controls, Session &session, WordTableArea &area,
                             UserPrompts &prompts, QWidget *window, QObject *parent)
    : QObject(parent)
    , m_c(controls)
    , m_session(session)
    , m_area(area)
    , m_prompts(prompts)
    , m_window(window)
{
    connect(m_c.create, &QAction::triggered, this, &TableCommands::createTable);
    connect(m_c.importWords, &QAction::triggered, this, &TableCommands::importWords);
    connect(m_c.exportWords, &QAction::triggered, this, &TableCommands::exportTable);
    connect(m_c.emptyTable, &QAction::triggered, this, &TableCommands::emptyTable);
    connect(m_c.deleteTable, &QAction::triggered, this, &TableCommands::deleteTable);
    connect(m_c.asc, &QAbstractButton::clicked, this, &TableCommands::showCharacterCode);
    connect(m_c.blank, &QAbstractButton::clicked, this, &TableCommands::removeEmptyWords);
    connect(m_c.repairAccents, &QAbstractButton::clicked, this, &TableCommands::repairAccents);
    connect(m_c.duplicates, &QAbstractButton::clicked, this, &TableCommands::removeDuplicates);
}

TableCommands::~TableCommands() = default;

WordTables TableCommands::tables()
{
    WordTables t(m_session.paths.wordDatabasePath, QFileInfo(m_session.paths.importFilePath).path(), m_clock);
    m_working.start();
    m_lastEvents.start();
    t.setProgress([this](WordTables::Step step, qint64 done, qint64 total) { reportProgress(step, done, total); });
    t.setBackupDone([this](const WordTables::Export &backup) { announce(backup); });
    return t;
}

void TableCommands::reportProgress(WordTables::Step step, qint64 done, qint64 total)
{
    // Short work shows nothing; long work a dialog that keeps the window drawn. The
    // dialog is modal, so nothing else can start meanwhile.
    if (m_working.elapsed() < showProgressAfterMs || m_lastEvents.elapsed() < drawEveryMs)
        return;
    if (!m_progress) {
        m_progress = new QProgressDialog(m_window);
        m_progress->setWindowTitle(QStringLiteral("Kelvora"));
        m_progress->setCancelButton(nullptr);
        m_progress->setWindowModality(Qt::WindowModal);
        m_progress->setMinimumDuration(0);
        m_progress->setAutoClose(false);
        m_progress->setAutoReset(false);
    }
    m_progress->setLabelText(QString::fromUtf8(stepLabel(step)));
    // Work of unknown length turns the bar into a busy indicator.
    m_progress->setRange(0, total > 0 ? 1000 : 0);
    m_progress->setValue(total > 0 ? int(done * 1000 / total) : 0);
    m_progress->show();
    QCoreApplication::processEvents();
    m_lastEvents.start();
}

void TableCommands::waitMessage()
{
    m_prompts.message(m_window, QStringLiteral("cliquez sur 'OK' et Patientez s.v.p. !"));
}

void TableCommands::announce(const WordTables::Export &backup)
{
    if (m_progress)
        m_progress->hide();
    m_prompts.message(m_window, QStringLiteral("Table sauvegardé sous : ")
                                    + QDir::toNativeSeparators(backup.announcedPath));
    m_working.start();
}

void TableCommands::failed(const WordTables &tables)
{
    if (m_progress)
        m_progress->hide();
    m_prompts.message(m_window, tables.errorString());
}

void TableCommands::createTable()
{
    const std::optional<QString> name =
        m_prompts.askText(m_window, QStringLiteral("donnez moi le nom de cette nouvelle table ?"));
    if (!name || name->isEmpty())
        return;
    WordTables t = tables();
    if (!t.create(*name)) {
        m_prompts.message(m_window, QStringLiteral("erreur de creation de table"));
        return;
    }
    m_area.fillTables();
    m_area.select(*name);
    emit editRequested();
}

void TableCommands::exportTable()
{
    waitMessage();
    m_area.refresh();
    WordTables t = tables();
    const WordTables::Export e = t.exportTable(m_session.currentTable);
    if (!e.ok)
        return failed(t);
    announce(e);
}

void TableCommands::importWords()
{
    m_prompts.message(m_window, QStringLiteral("Avant l'import je fait une sauvegarde au cas ou !"));
    waitMessage();
    WordTables t = tables();
    t.setBackupDone([this](const WordTables::Export &backup) {
        announce(backup);
        m_area.refresh();
        m_prompts.message(m_window, QStringLiteral("placez ou éditez dans le repertoire de Kelvora/import "
                                                   "un fichier nomé mot.txt (un mot par ligne)"));
        m_working.start();
    });
    const WordTables::Import r = t.importFile(m_session.currentTable, m_session.paths.importFilePath);
    if (!r.ok)
        return failed(t);
    if (m_progress)
        m_progress->hide();
    m_area.reopen();
    QString text = QStringLiteral("avant import %1 Après import %2").arg(r.before).arg(r.after);
    if (r.fileMissing)
        text += QStringLiteral("\n\nLe fichier %1 n'existe pas : aucun mot n'a été importé.")
                    .arg(QDir::toNativeSeparators(m_session.paths.importFilePath));
    m_prompts.message(m_window, text);
}

void TableCommands::emptyTable()
{
    m_prompts.message(m_window, QStringLiteral("Avant la bétise je vous fait une exportation !"));
    waitMessage();
    WordTables t = tables();
    const WordTables::Export e = t.empty(m_session.currentTable);
    if (!e.ok)
        return failed(t);
    if (m_progress)
        m_progress->hide();
    m_area.reopen();
    m_prompts.message(m_window, QStringLiteral("La Table est maintenant vide"));
}

void TableCommands::deleteTable()
{
    if (m_session.currentTable == QLatin1String("mot"))
        return; // the default table stays, without a word
    m_prompts.message(m_window, QStringLiteral("Avant la bétise je vous fait une exportation !"));
    waitMessage();
    WordTables t = tables();
    const WordTables::Export e = t.remove(m_session.currentTable);
    if (!e.ok)
        return failed(t);
    if (m_progress)
        m_progress->hide();
    m_area.fillTables();
    m_area.restore(QStringLiteral("mot")); // the short captions, while the message shows
    m_prompts.message(m_window, QStringLiteral("La Table est Supprimée"));
    m_area.select(QStringLiteral("mot"));
}

void TableCommands::showCharacterCode()
{
    const QString text = m_c.exercise->toPlainText();
    const int caret = m_c.exercise->textCursor().position();
    if (caret >= text.size())
        return; // no character follows the caret
    const QByteArray code = windows1252::encode(text.mid(caret, text::characterWidth(text, caret)));
    m_prompts.message(m_window, QString::number(quint8(code.at(0))));
}

void TableCommands::cleanUp(const std::function<qint64(WordTables &, const QString &)> &clean,
                            const QString &done)
{
    WordTables t = tables();
    const qint64 n = clean(t, m_session.currentTable);
    if (m_progress)
        m_progress->hide();
    if (n < 0)
        return failed(t);
    m_area.reopen();
    emit notice(done.arg(n));
}

void TableCommands::removeEmptyWords()
{
    cleanUp([](WordTables &t, const QString &table) { return t.removeEmptyWords(table); },
            QStringLiteral("Mots vides retirés : %1"));
}

void TableCommands::repairAccents()
{
    m_c.repairAccents->hide();
    cleanUp([](WordTables &t, const QString &table) { return t.repairAccents(table); },
            QStringLiteral("Mots corrigés : %1"));
    m_c.repairAccents->show();
}

void TableCommands::removeDuplicates()
{
    cleanUp([](WordTables &t, const QString &table) { return t.removeDuplicates(table, true); },
            QStringLiteral("Doublons retirés : %1"));
}

} // namespace kelvora
