// MainPF: loading, profile restore and caption banner.
#include "app/MainPF.h"

#include "ui_MainPF.h"
#include "ui_MainPFOptions.h"

#include "ui/BoxText.h"
#include "settings/ChoiceLists.h"
#include "ui/ColourScheme.h"
#include "settings/Session.h"
#include "settings/MainTexts.h"
#include "ui/ProfileController.h"
#include "ui/SettingsWriter.h"
#include "settings/UserProfile.h"
#include "ui/UserPrompts.h"
#include "ui/ViewSwitcher.h"
#include "ui/WindowTimers.h"
#include "ui/WordTableArea.h"
#include "panels/SoundSettingsPanel.h"
#include "playback/BackgroundNoise.h"
#include "playback/ExercisePlayback.h"
#include "playback/PushToTalkControl.h"
#include "words/RecordSet.h"

#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QLineEdit>
#include <QScreen>
#include <QStatusBar>

namespace kelvora {


void MainPF::Form_Load()
{
    // 1. Last user, or the first-use question.
    setUserCaption(m_profiles->startUser(this));
    // 2. The settings panel waits for "Réglages".
    m_panel->hide();
    m_ui->pageReglages->hide();
    fitToScreen();
    // 3. The word tables.
    m_tables->fillTables();
    // 4. The reference table.
    showReferenceCount();
    // 5. Hints in the word list, until a drill fills it.
    m_ui->List1->addItems(choiceLists::startupHints());
    // 6. The stock queries.
    m_options->REQ->addItems(choiceLists::stockQueries());
    // 7. The choice lists.
    fillChoiceLists();
    // 8. The greeting.
    writeGreeting();
    // 9. The help page.
    m_views->loadHelpPage();
    // 10. The sound devices: the three noises, then the player.
    const AppPaths &paths = m_session.paths;
    m_noise->openAll({paths.noiseWavPath1, paths.noiseWavPath2, paths.noiseWavPath3});
    // A first start has no exercise sound yet: the preparation below makes and opens it.
    if (QFileInfo::exists(paths.testWavPath))
        m_playback->openPlayer();
    // 11. The profile, then the preparation, so that the greeting is ready to play.
    restorparamuser();
    m_playback->prepare(false);
    m_timers->start();
}

void MainPF::fillChoiceLists()
{
    const Ui::MainPFOptions &o = *m_options;
    const std::pair<QComboBox *, QStringList> lists[] = {
        {o.nbgroup, choiceLists::groupCounts()},
        {o.delaimot, choiceLists::wordDelays()},
        {m_ui->cdelai, choiceLists::correctionDelays()},
        {o.PROGRESS, choiceLists::progressions()},
        {m_ui->NCOM, choiceLists::portNumbers()},
    };
    for (const auto &[box, entries] : lists) {
        // Filling a list is not a change of its value: nothing is saved.
        const QSignalBlocker blocker(box);
        box->addItems(entries);
        // No inline completion: it would turn a typed "1" into "12" before the box's rule
        // and its writer see it.
        box->setCompleter(nullptr);
    }
    m_options->REQ->setCompleter(nullptr);
}

void MainPF::writeGreeting()
{
    m_ui->EXO->setPlainText(mainTexts::greeting(m_session.currentUser));
}

void MainPF::showReferenceCount()
{
    RecordSet ref(m_session.paths.wordDatabasePath,
                  QStringLiteral("select * from ref order by car"));
    ref.refresh();
    statusBar()->findChild<QLabel *>(QStringLiteral("REF"))->setText(
        QStringLiteral("Table de référence : %1 caractères").arg(ref.count()));
}

void MainPF::fitToScreen()
{
    // A comfortable size, never larger than the screen at any scale factor.
    QSize size(1180, 800);
    if (const QScreen *s = screen())
        size = size.boundedTo(s->availableGeometry().size() * 0.94);
    resize(size.expandedTo(minimumSizeHint()));
}

void MainPF::restorparamuser()
{
    namespace k = userKeys;
    const UserProfile p = UserProfile::read(*m_store, m_session.currentUser);
    {
        const SettingsWriter::Restoring restoring(*m_writer);
        for (const SettingKey &key : k::all) {
            const QString value = p.text(key);
            // Each value goes into its control as a program sets it; the panel's boxes go
            // through the panel, so that their own rules run.
            if (key.control) {
                const QString name = QString::fromLatin1(key.control);
                if (key == k::lasttable)
                    m_tables->restore(value);
                else if (!m_panel->setBoxText(name, value))
                    boxText::setText(findChild<QWidget *>(name), value);
            }
            // What a key does beyond its control.
            if (key == k::fichier1)
                m_views->setLastFile(value);
            else if (key == k::ncom)
                m_ptt->restorePort(p.portNumber());
            else if (key == k::cache)
                m_views->applyHideText();
            else if (key == k::progress)
                m_options->PROGRESS->lineEdit()->setCursorPosition(0); // read from its start
            else if (key == k::color1)
                m_colours->F2ch(quint32(p.number(key)));
            else if (key == k::color2)
                m_colours->setTextBackground(quint32(p.number(key)));
            else if (key == k::color3)
                m_colours->setTextColour(quint32(p.number(key)));
        }
    }
    affichebandeau();
    m_panel->CALCCONFIG();
    test();
}

void MainPF::affichebandeau()
{
    setWindowTitle(mainTexts::banner(m_session.currentTable, m_tables->count(), m_session.currentUser));
    statusBar()->findChild<QLabel *>(QStringLiteral("bandeau"))->setText(windowTitle());
}

} // namespace kelvora
