#include "ui/ExerciseGenerator.h"

#include "exercises/TableWords.h"
#include "settings/Session.h"
#include "ui/UserPrompts.h"
#include "ui/WordTableArea.h"

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>

#include <memory>

namespace kelvora {

using exercises::Kind;

ExerciseGenerator::ExerciseGenerator(const Controls &controls, Session &session, WordTableArea &tables,
                                     LengthSource lengths, UserPrompts &prompts, QWidget *dialogParent,
                                     QObject *parent)
    : QObject(parent)
    , m_c(controls)
    , m_session(session)
    , m_tables(tables)
    , m_lengths(std::move(lengths))
    , m_prompts(prompts)
    , m_dialogParent(dialogParent)
    , m_timer3(new QTimer(this))
{
    m_timer3->setObjectName(QStringLiteral("Timer3"));
    m_timer3->setInterval(5000);
    connect(m_timer3, &QTimer::timeout, this, &ExerciseGenerator::abandon);

    const std::pair<QAction *, Kind> entries[] = {
        {m_c.mockExam, Kind::MockExam},       {m_c.exam, Kind::Exam},
        {m_c.letters, Kind::Letters},         {m_c.digits, Kind::Digits},
        {m_c.punctuation, Kind::Punctuation}, {m_c.mixed, Kind::Mixed},
        {m_c.progressionWords, Kind::ProgressionWords},
        {m_c.wordsPlain, Kind::WordsPlain},   {m_c.words, Kind::Words},
        {m_c.callSigns, Kind::CallSigns},
    };
    for (const auto &[action, kind] : entries) {
        const Kind k = kind;
        connect(action, &QAction::triggered, this, [this, k] { run(k); });
    }
    connect(m_c.clear, &QAction::triggered, m_c.exercise, &QPlainTextEdit::clear);
}

exercises::Options ExerciseGenerator::options() const
{
    exercises::Options o;
    o.groupCount = m_c.groupCount->currentText();
    std::tie(o.shortest, o.longest) = m_lengths();
    o.progression = m_c.progression->currentText();
    o.reinforcement = m_c.reinforcement->text();
    return o;
}

void ExerciseGenerator::abandon()
{
    m_timer3->stop();
    m_prompts.message(m_dialogParent, QString::fromUtf8(exercises::abandonMessage));
    m_abandoned = true;
}

void ExerciseGenerator::stop()
{
    m_timer3->stop();
    m_abandoned = m_busy;
}

void ExerciseGenerator::mockExamSetUp()
{
    m_c.append->setChecked(false);
    // The current table becomes "mot", with the first stock query.
    m_tables.select(QStringLiteral("mot"));
}

void ExerciseGenerator::run(Kind kind)
{
    // The search of the progression's words lets the window work meanwhile; a second
    // exercise cannot start inside it.
    if (m_busy)
        return;
    m_busy = true;
    m_abandoned = false;

    const bool mockExam = kind == Kind::MockExam;
    QString keptCount;
    if (mockExam) {
        mockExamSetUp();
        keptCount = m_c.groupCount->currentText();
        // The box saves each value it is given, as the examination sets it.
        m_c.groupCount->setEditText(QStringLiteral("5"));
        m_c.groupCount->setEditText(QStringLiteral("6"));
    }
    std::unique_ptr<TableWords> words;
    if (mockExam || kind == Kind::ProgressionWords || kind == Kind::Words || kind == Kind::WordsPlain)
        words = std::make_unique<TableWords>(m_session.paths.wordDatabasePath, m_session.currentTable,
                                             mockExam ? QString() : m_tables.condition());

    if (kind == Kind::ProgressionWords)
        m_timer3->start();
    const exercises::Result result = exercises::generate(
        kind, m_c.exercise->toPlainText(), !mockExam && m_c.append->isChecked(), options(), words.get(),
        [this] {
            QCoreApplication::processEvents(); // lets Timer3 fire
            return !m_abandoned;
        });
    m_timer3->stop();

    // Set once: its change handling stops the player and shows "Préparer la musique".
    m_c.exercise->setPlainText(result.text);
    if (result.abandoned && !m_abandoned) // nothing to search: said at once
        abandon();
    if (!result.notice.isEmpty())
        emit notice(result.notice);
    if (mockExam)
        m_c.groupCount->setEditText(keptCount);
    if (kind != Kind::Letters)
        emit prepareRequested();
    if (mockExam)
        m_c.append->setChecked(false);
    m_busy = false;
}

} // namespace kelvora
