#include "playback/CorrectionReplay.h"

#include "settings/AppPaths.h"
#include "playback/MediaDeviceFactory.h"
#include "ui/ViewSwitcher.h"
#include "core/Logging.h"
#include "core/Numbers.h"
#include "morse/PatternLookup.h"
#include "playback/MediaDevice.h"
#include "playback/PushToTalkControl.h"

#include <QAction>
#include <QComboBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTextCursor>

#include <algorithm>
#include <limits>

namespace kelvora {

CorrectionReplay::CorrectionReplay(const Controls &controls, ViewSwitcher &views,
                                   PushToTalkControl &ptt, PatternLookup &lookup,
                                   const AppPaths &paths, const MediaDeviceFactory &devices,
                                   QTimer *wordTimer, QObject *parent)
    : QObject(parent)
    , m_controls(controls)
    , m_views(views)
    , m_ptt(ptt)
    , m_lookup(lookup)
    , m_paths(paths)
    , m_wordTimer(wordTimer)
    , m_timer(new QTimer(this))
    , m_player(devices.create(this))
{
    m_timer->setObjectName(QStringLiteral("Timer5"));
    m_timer->setTimerType(Qt::PreciseTimer); // the delay is heard: a coarse timer adds 5 %
    m_player->setObjectName(QStringLiteral("playerc"));
    m_player->setNotifyPeriod(0);
    connect(m_timer, &QTimer::timeout, this, &CorrectionReplay::tick);
    connect(m_player, &MediaDevice::completed, this, &CorrectionReplay::onSoundEnded);
    connect(m_player, &MediaDevice::errorOccurred, this, [this](const QString &message) {
        emit notice(QStringLiteral("Correction : ") + message);
    });
    connect(m_controls.play, &QAction::triggered, this, [this] { cjouer(true); });
    connect(m_controls.pause, &QAction::triggered, this, &CorrectionReplay::cpause);
    connect(m_controls.stop, &QAction::triggered, this, &CorrectionReplay::cstop);
    m_controls.exercise->installEventFilter(this);
}

void CorrectionReplay::cjouer(bool userActed)
{
    QPlainTextEdit *exercise = m_controls.exercise;
    m_ptt.raise(userActed);
    QListWidget *list = m_controls.wordList;
    if (list->isVisibleTo(list->window())) {
        // The words of the drill, one per line.
        exercise->clear();
        QString words;
        for (int i = 0; i < list->count(); ++i) {
            list->setCurrentRow(i);
            words += list->item(i)->text() + QStringLiteral("\r\n");
        }
        exercise->setPlainText(words);
    }
    const QString text = exercise->toPlainText();
    if (text.isEmpty())
        return;
    m_views.showExercise();
    CorrectionStepper::Selection caret;
    m_stepper.start(text, selection(), delay(), &caret);
    select(caret);
    m_enabled = true;
    arm();
    exercise->setFocus();
}

void CorrectionReplay::cpause()
{
    m_stepper.pause(delay());
    arm();
}

void CorrectionReplay::cstop()
{
    select(m_stepper.stop());
    arm();
}

void CorrectionReplay::tick()
{
    // The next step is armed when this character's sound has ended, so that the delay
    // counts from there.
    m_enabled = false;
    arm();
    m_ptt.raise(false);
    const CorrectionStepper::Step step =
        m_stepper.step(m_controls.exercise->toPlainText(), selection());
    if (!step.played) {
        finishSilently();
        return;
    }
    select(step.selection);
    // A character without a row sounds as the row found last, without a word.
    const RefRow row = m_lookup.findRow(step.character);
    const QString file = row.wav.isEmpty() ? QString() : m_paths.charWavDir + row.wav;
    qCDebug(lcPlayback) << "correction" << step.character << file;
    emit characterPlayed(step.character, file);
    if (file.isEmpty()) {
        finishSilently();
        return;
    }
    m_player->close();
    if (!m_player->open(file)) {
        finishSilently(); // the device has told why
        return;
    }
    m_player->play();
}

// No sound to wait for: the step ends as if its sound had.
void CorrectionReplay::finishSilently()
{
    QTimer::singleShot(0, this, &CorrectionReplay::onSoundEnded);
}

void CorrectionReplay::onSoundEnded()
{
    if (!m_stepper.isRunning() && m_controls.wordLoop->isChecked())
        m_wordTimer->start();
    m_controls.exercise->show();
    m_controls.exercise->setFocus();
    if (m_ptt.isActive())
        m_ptt.lower();
    m_enabled = true;
    arm();
}

// Timer5 ticks while it is enabled and its interval is not 0; a change restarts the count.
void CorrectionReplay::arm()
{
    if (m_enabled && m_stepper.interval() > 0)
        m_timer->start(m_stepper.interval());
    else
        m_timer->stop();
}

int CorrectionReplay::delay() const
{
    const double ms = numbers::leadingNumber(m_controls.delay->currentText());
    return int(std::clamp(ms, 0.0, double(std::numeric_limits<int>::max())));
}

CorrectionStepper::Selection CorrectionReplay::selection() const
{
    const QTextCursor c = m_controls.exercise->textCursor();
    return {c.selectionStart(), c.selectionEnd() - c.selectionStart()};
}

void CorrectionReplay::select(CorrectionStepper::Selection s)
{
    QTextCursor c = m_controls.exercise->textCursor();
    c.setPosition(int(s.start));
    c.setPosition(int(s.start + s.length), QTextCursor::KeepAnchor);
    m_controls.exercise->setTextCursor(c);
}

bool CorrectionReplay::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_controls.exercise && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->text() == QLatin1String(" ")
        && (m_stepper.isRunning() || m_controls.exercise->textCursor().hasSelection())) {
        // The space pauses or resumes the correction and is not typed.
        cpause();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace kelvora
