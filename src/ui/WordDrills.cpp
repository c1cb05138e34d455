#include "ui/WordDrills.h"

#include "core/Random.h"
#include "exercises/Generators.h"
#include "settings/ChoiceLists.h"
#include "settings/SettingKeys.h"
#include "ui/SettingsWriter.h"
#include "ui/ViewSwitcher.h"
#include "ui/WordTableArea.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTimer>

#include <utility>

namespace kelvora {

WordDrills::WordDrills(const Controls &controls, WordTableArea &tables, ViewSwitcher &views,
                       SettingsWriter &writer, QTimer *wordTimer, PlayWord playWord, QObject *parent)
    : QObject(parent)
    , m_c(controls)
    , m_tables(tables)
    , m_views(views)
    , m_writer(writer)
    , m_timer(wordTimer)
    , m_playWord(std::move(playWord))
{
    m_timer->setInterval(3000);
    connect(m_timer, &QTimer::timeout, this, &WordDrills::sendWord);
    connect(m_c.wordLoop, &QAction::triggered, this, &WordDrills::toggleWordLoop);
    // However the loop is unticked (the bar's Stop does it too), no word follows.
    connect(m_c.wordLoop, &QAction::toggled, this, [this](bool on) {
        if (!on)
            m_timer->stop();
    });
    connect(m_c.typedDrill, &QAction::triggered, this, &WordDrills::startTypedDrill);
    connect(m_c.typing, &QLineEdit::textChanged, this, &WordDrills::onTyped);
    connect(m_c.next, &QPushButton::clicked, this, &WordDrills::nextTypedWord);
    connect(m_c.delay, &QComboBox::currentTextChanged, this, &WordDrills::onDelayChanged);
    connect(m_c.delay->lineEdit(), &QLineEdit::editingFinished, this, &WordDrills::onDelayTyped);
}

void WordDrills::sendWord()
{
    m_timer->stop();
    const int count = m_tables.count();
    if (count == 0) {
        // Nothing to send: the loop stops rather than tick on an empty table.
        m_c.wordLoop->setChecked(false);
        emit notice(exercises::emptyTableNotice(m_tables.table()));
        return;
    }
    const QString word = m_tables.moveTo(random::draw(count));
    m_lastSent = word;
    m_c.exercise->setPlainText(word);
    m_c.list->addItem(word);
    m_c.list->setCurrentRow(m_c.list->count() - 1);
    if (!m_playWord())
        m_c.wordLoop->setChecked(false);
    m_timer->setInterval(choiceLists::wordDelayOf(m_c.delay->currentText()));
}

void WordDrills::toggleWordLoop(bool checked)
{
    m_timer->setInterval(1); // the first word follows at once
    if (checked) {
        m_typing = false;
        m_c.list->clear();
        hideTextIfAsked();
        m_timer->start();
    } else {
        m_timer->stop();
        m_views.showListView();
    }
}

void WordDrills::startTypedDrill()
{
    m_lastSent = QString();
    m_c.list->clear();
    m_views.showListView();
    m_c.autoCorrection->setChecked(false);
    m_c.debfin->setChecked(false);
    m_typing = true;
    // The word shown is the one the box waits for: it goes at once.
    nextTypedWord();
    hideTextIfAsked();
}

void WordDrills::nextTypedWord()
{
    {
        const QSignalBlocker quiet(m_c.typing);
        m_c.typing->setText(awaitedWord());
    }
    onTyped(m_c.typing->text());
}

QString WordDrills::awaitedWord() const
{
    // The word sent last, whatever the record set shows since (it is read again when the
    // window comes back to the front); before any, the word shown, which starts the drill.
    return m_lastSent.isNull() ? m_c.currentWord->text() : m_lastSent;
}

void WordDrills::onTyped(const QString &text)
{
    // Exact: case, accents, nothing missing, nothing more.
    if (m_sending || text != awaitedWord())
        return;
    m_sending = true;
    sendWord();
    {
        const QSignalBlocker quiet(m_c.typing);
        m_c.typing->clear();
    }
    m_sending = false;
}

void WordDrills::onDelayChanged(const QString &text)
{
    const QString clamped = choiceLists::clampWordDelay(text);
    // While the learner types, "2000" passes through "2": the box is corrected when the
    // typing ends, the timer meanwhile never gets a value out of bounds.
    if (clamped != text && !m_c.delay->lineEdit()->hasFocus()) {
        // The change this makes comes back here, sets the timer and saves the bound.
        m_c.delay->setEditText(clamped);
        return;
    }
    m_timer->setInterval(choiceLists::wordDelayOf(clamped));
    if (clamped == text)
        m_writer.save(userKeys::delaimot, text);
}

void WordDrills::onDelayTyped()
{
    const QString text = m_c.delay->currentText();
    const QString clamped = choiceLists::clampWordDelay(text);
    if (clamped != text)
        m_c.delay->setEditText(clamped);
}

void WordDrills::hideTextIfAsked()
{
    if (m_c.hideText->isChecked())
        m_views.applyHideText(); // the help page in place of the list, the text and the word
}

void WordDrills::onPlayStarted()
{
    if (m_typing)
        m_c.typing->setFocus();
}

void WordDrills::onPlayEnded()
{
    if (m_typing && m_c.typing->isVisible())
        m_c.typing->setFocus();
}

} // namespace kelvora
