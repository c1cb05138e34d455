// MainPF: loading, profile restore and caption banner.
#include "app/MainPF.h"

#include "ui_MainPF.h"
#include "ui_MainPFOptions.h"

#include "app/BoxText.h"
#include "app/ChoiceLists.h"
#include "app/ColourScheme.h"
#include "app/ExerciseSound.h"
#include "app/GlobalState.h"
#include "app/MainTexts.h"
#include "app/ProfileController.h"
#include "app/SettingControls.h"
#include "app/SettingsWriter.h"
#include "app/UserProfile.h"
#include "app/UserPrompts.h"
#include "app/ViewSwitcher.h"
#include "app/WindowTimers.h"
#include "app/WordTableArea.h"
#include "morse/SoundSettingsPanel.h"
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

namespace {
QString numberOrDefault(const QString &stored, const SettingKey &key)
{
    bool ok = false;
    stored.trimmed().toDouble(&ok);
    return ok ? stored : QString::fromUtf8(key.defaultValue);
}
} // namespace

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
    const AppPaths &paths = globalState().paths;
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
    m_ui->EXO->setPlainText(mainTexts::greeting(globalState().currentUser));
}

void MainPF::showReferenceCount()
{
    RecordSet ref(globalState().paths.wordDatabasePath,
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
    const ProfileValues p = readProfile(*m_store, globalState().currentUser);
    {
        const SettingsWriter::Restoring restoring(*m_writer);
        // Each value goes into its control as a program sets it; the panel's boxes go
        // through the panel, so that their own rules run.
        const auto put = [this](const SettingKey &key, const QString &text) {
            const QString name = QString::fromLatin1(settingControls::controlOf(key));
            if (!m_panel->setBoxText(name, text))
                boxText::setText(findChild<QWidget *>(name), text);
        };
        put(k::delaimot, p.delaimot);
        put(k::vitesse, p.vitesse);
        put(k::mot, p.mot);
        put(k::frequence, p.frequence);
        put(k::volume, p.volume);
        put(k::cdelai, p.cdelai);
        put(k::ct, p.ct);
        put(k::cs, p.cs);
        put(k::cl, p.cl);
        put(k::cm, p.cm);
        put(k::grmin, p.grmin);
        put(k::grmax, p.grmax);
        put(k::deb, p.deb);
        put(k::fin, p.fin);
        put(k::sup, p.sup);
        put(k::qrm10, QString::number(p.qrm10));
        put(k::qrm20, QString::number(p.qrm20));
        put(k::qrm30, QString::number(p.qrm30));
        put(k::nbgroup, p.nbgroup);
        m_fichier1 = p.fichier1;
        put(k::activecom, QString::number(p.activecom));
        // A port that is not a number shows as the default port.
        put(k::ncom, numberOrDefault(p.ncom, k::ncom));
        m_ptt->restorePort(p.ncomPort);
        put(k::fcorrection, QString::number(p.fcorrection));
        put(k::debfin, QString::number(p.debfin));
        put(k::cache, QString::number(p.cache));
        m_views->applyHideText();
        put(k::progress, p.progress);
        // A long progression reads from its first characters.
        m_options->PROGRESS->lineEdit()->setCursorPosition(0);
        m_colours->F2ch(p.color1);
        m_colours->setTextBackground(p.color2);
        m_colours->setTextColour(p.color3);
        m_tables->restore(p.lasttable);
    }
    affichebandeau();
    m_panel->CALCCONFIG();
    test();
}

void MainPF::affichebandeau()
{
    const GlobalState &state = globalState();
    setWindowTitle(mainTexts::banner(state.currentTable, m_tables->count(), state.currentUser));
    statusBar()->findChild<QLabel *>(QStringLiteral("bandeau"))->setText(windowTitle());
}

} // namespace kelvora
