// MainPF: the areas that sound (player, noise, push-to-talk, correction) and rendering.
#include "app/MainPF.h"

#include "ui_MainPF.h"
#include "ui_MainPFOptions.h"

#include "ui/UserPrompts.h"
#include "playback/CorrectionReplay.h"
#include "panels/SoundSettingsPanel.h"
#include "playback/BackgroundNoise.h"
#include "playback/ExercisePlayback.h"
#include "playback/MediaDevice.h"
#include "playback/MediaDeviceFactory.h"
#include "playback/PushToTalkControl.h"
#include "playback/SerialPushToTalk.h"
#include "settings/Session.h"
#include "ui/WordDrills.h"

#include <QLabel>
#include <QLocale>
#include <QStatusBar>
#include <QTimer>

namespace kelvora {

void MainPF::buildPlayback()
{
    Ui::MainPF &ui = *m_ui;
    Ui::MainPFOptions &o = *m_options;
    // The word loop's timer, shared by the drills (its tick), the player and the
    // correction (which arm it again at the end of a sound).
    m_timer4 = new QTimer(this);
    m_timer4->setObjectName(QStringLiteral("Timer4"));

    m_noise = new BackgroundNoise({{o.Q1, o.Q2, o.Q3}, {o.qrm1, o.qrm2, o.qrm3}}, m_devices,
                                  m_prompts, this);
    m_ptt = new PushToTalkControl({ui.Activecom, ui.NCOM}, std::make_unique<SerialPushToTalk>(),
                                  *m_writer, m_prompts, this);
    m_correction = new CorrectionReplay(
        {ui.EXO, ui.List1, ui.cdelai, ui.motenboucle, ui.cjouer, ui.cpause, ui.cstop}, *m_views,
        *m_ptt, *m_lookup, m_session.paths, m_devices, m_timer4, this);
    m_playback = new ExercisePlayback(
        {ui.Command1, ui.PLAYER, ui.playerDebut, ui.playerJouer, ui.playerPause, ui.playerStop,
         ui.TRB, ui.EXO, ui.Check1, o.Fcorrection, ui.motenboucle, ui.Pr_parer, ui.jouer,
         ui.pstop, ui.pause},
        *m_lookup,
        [this] {
            SoundSettings settings = m_panel->settings();
            settings.debfin = m_options->debfin->isChecked();
            return settings;
        },
        m_session, m_devices, *m_noise, *m_ptt, m_timer4, m_prompts, this);
    m_drills = new WordDrills({ui.motenboucle, ui.motclavier, o.delaimot, ui.List1, o.Text17, o.Command12, ui.EXO,
                               o.Text14, ui.Check1, o.Fcorrection, o.debfin},
                              *m_tables, *m_views, *m_writer, m_timer4,
                              [this] {
                                  if (!m_playback->prepare(false))
                                      return false;
                                  m_playback->playPressed();
                                  return true;
                              },
                              this);
}

void MainPF::wirePlayback()
{
    connect(m_playback, &ExercisePlayback::correctionRequested, m_correction,
            [this] { m_correction->cjouer(false); });
    connect(m_playback, &ExercisePlayback::notice, this, &MainPF::showNotice);
    connect(m_playback, &ExercisePlayback::playStarted, m_drills, &WordDrills::onPlayStarted);
    connect(m_playback, &ExercisePlayback::playEnded, m_drills, &WordDrills::onPlayEnded);
    connect(m_drills, &WordDrills::notice, this, &MainPF::showNotice);
    connect(m_playback, &ExercisePlayback::rendered, this, &MainPF::showRendered);
    connect(m_playback, &ExercisePlayback::soundDiscarded, this, &MainPF::clearRendered);
    connect(m_noise, &BackgroundNoise::notice, this, &MainPF::showNotice);
    connect(m_ptt, &PushToTalkControl::notice, this, &MainPF::showNotice);
    connect(m_correction, &CorrectionReplay::notice, this, &MainPF::showNotice);
    // Whichever device finds no sound output first says so, once.
    for (MediaDevice *device : findChildren<MediaDevice *>())
        connect(device, &MediaDevice::silentNotice, this, &MainPF::showNotice);
}

bool MainPF::test(QString *error)
{
    QString reason;
    if (m_playback->test(&reason))
        return true;
    if (error)
        *error = reason;
    else
        showNotice(reason);
    return false;
}

void MainPF::showRendered(const RenderResult &r)
{
    m_panel->addSentPatternPositions(r.patternPositions);
    statusBar()->findChild<QLabel *>(QStringLiteral("dureeExercice"))
        ->setText(QStringLiteral("Exercice prêt : %1 s de Morse")
                      .arg(QLocale(QLocale::French).toString(r.durationSeconds(), 'f', 1)));
}

void MainPF::clearRendered()
{
    statusBar()->findChild<QLabel *>(QStringLiteral("dureeExercice"))->clear();
}

void MainPF::testReferenceWord()
{
    m_playback->player()->stop();
    m_panel->CALCCONFIG();
    m_ui->EXO->setPlainText(m_panel->boxText(QStringLiteral("MOT")));
    m_ui->EXO->selectAll();
    QString error;
    if (!test(&error)) {
        m_prompts.message(this, error);
        return;
    }
    m_playback->player()->play();
}

} // namespace kelvora
