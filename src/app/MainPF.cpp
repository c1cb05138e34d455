#include "app/MainPF.h"

#include "ui_MainPF.h"
#include "ui_MainPFOptions.h"

#include "ui/AboutBox.h"
#include "ui/Accessibility.h"
#include "ui/BoxText.h"
#include "settings/ChoiceLists.h"
#include "ui/ColourScheme.h"
#include "ui/ExerciseGenerator.h"
#include "settings/Session.h"
#include "settings/MainTexts.h"
#include "ui/KeyboardWindow.h"
#include "ui/MorseKeyArt.h"
#include "ui/ProfileController.h"
#include "settings/SettingsStore.h"
#include "ui/SettingsWriter.h"
#include "ui/UserPrompts.h"
#include "ui/ViewSwitcher.h"
#include "ui/WindowTimers.h"
#include "ui/WordDrills.h"
#include "ui/QueryWindow.h"
#include "ui/TableCommands.h"
#include "ui/TableEditor.h"
#include "ui/TextFileArea.h"
#include "ui/WordTableArea.h"
#include "app/kvglobal.h"
#include "playback/CorrectionReplay.h"
#include "morse/PatternLookup.h"
#include "panels/SoundSettingsPanel.h"
#include "playback/BackgroundNoise.h"
#include "playback/ExercisePlayback.h"
#include "playback/PushToTalkControl.h"
#include "words/WordDatabase.h"

#include <QAccessible>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFontDatabase>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

#include <tuple>
#include <utility>

namespace kelvora {

namespace {

// A window of the program, shown in front and given the keyboard.
void bringForward(QWidget *window)
{
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace

MainPF::MainPF(Session &session, const QString &settingsPath, UserPrompts &prompts,
               const MediaDeviceFactory &devices, QWidget *parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::MainPF>())
    , m_options(std::make_unique<Ui::MainPFOptions>())
    , m_session(session)
    , m_prompts(prompts)
    , m_devices(devices)
    , m_store(std::make_unique<SettingsStore>(settingsPath))
{
    accessibility::install(); // before any interface of this window is made
    m_ui->setupUi(this);
    m_options->setupUi(m_ui->voletContenu);
    // The reference table stays open for the window's life, as its bound record set does.
    m_refDatabase = std::make_unique<WordDatabase>(m_session.paths.wordDatabasePath);
    m_lookup = std::make_unique<PatternLookup>(*m_refDatabase);

    buildAreas();
    decorate();
    wireSettingWriters();
    wireCommands();
    wirePlayback();
    wirePanel();
    wireTables();
    wireTextFiles();
    accessibility::nameControls(this);
    accessibility::hideItemsOfHiddenPages(m_ui->vues);
    Form_Load();
}

MainPF::~MainPF()
{
    // The sounding areas go first, while the controls they drive still stand: a sound
    // output that closes may run pending events.
    delete std::exchange(m_correction, nullptr);
    delete std::exchange(m_playback, nullptr);
    delete std::exchange(m_noise, nullptr);
    delete std::exchange(m_ptt, nullptr);
    // Then the controls: leaving them still runs their handlers (the panel
    // recalculates, a box saves its text), which need the store, the lookup and the Ui
    // objects that the members below hold.
    std::unique_ptr<QWidget> controls(takeCentralWidget());
}

void MainPF::buildAreas()
{
    m_panel = new SoundSettingsPanel(*m_lookup, m_prompts, m_ui->pageReglages);
    m_ui->dispositionReglages->insertWidget(0, m_panel, 1);
    m_profiles = new ProfileController(*m_store, m_session, m_prompts, this);
    m_writer = new SettingsWriter(*m_store, m_session, this);
    connect(m_writer, &SettingsWriter::writeFailed, this, &MainPF::showNotice);
    m_views = new ViewSwitcher({m_ui->vues, m_ui->pageExercice, m_ui->List1, m_ui->File1,
                                m_ui->Web, m_options->Text14, m_ui->Check1},
                               m_session.paths, this);
    m_colours = new ColourScheme({m_ui->fond,
                                  m_ui->Frame2,
                                  m_ui->EXO,
                                  m_ui->Text1,
                                  {m_ui->EXO, m_ui->Text1, m_ui->List1, m_ui->File1},
                                  {m_ui->pageReglages, m_options->Data1, m_ui->PLAYER}},
                                 *m_writer, m_prompts, this);
    Ui::MainPFOptions &o = *m_options;
    m_tables = new WordTableArea({o.TABLES, o.Data1premier, o.Data1precedent, o.Data1suivant,
                                  o.Data1dernier, o.Data1caption, o.Text14, o.Label31, o.REQ,
                                  m_ui->importmot1, m_ui->exportmot, m_ui->edittablcourante,
                                  m_ui->videtable, m_ui->supprimetable},
                                 m_session, this);
    connect(m_tables, &WordTableArea::notice, this, &MainPF::showNotice);
    m_timers = new WindowTimers(m_panel->validateButton(), this);
    m_timers->watchMouseMovement({this, m_ui->fond, m_ui->Frame2, m_ui->voletContenu});
    buildPlayback();

    const Ui::MainPF &ui = *m_ui;
    m_generator = new ExerciseGenerator(
        {m_ui->EXO, o.nbgroup, o.PROGRESS, o.renfor, ui.ajout, ui.cls, ui.EXAMENCOMPLET, ui.G36EXAMEN,
         ui.G36lettres, ui.G36chiffres, ui.G12ponctuations, ui.G36Mélangés, ui.motprogression,
         ui.Maleatoires, ui.MaleatoiresAcc, ui.indicatifs},
        m_session, *m_tables,
        [this] {
            return std::pair{m_panel->boxText(QStringLiteral("GRMIN")),
                             m_panel->boxText(QStringLiteral("GRMAX"))};
        },
        m_prompts, this, this);
    connect(m_generator, &ExerciseGenerator::prepareRequested, this, [this] {
        m_drills->stopTypedDrill();
        m_playback->prepare(true);
    });
    connect(m_generator, &ExerciseGenerator::notice, this, &MainPF::showNotice);
}

void MainPF::decorate()
{
    Ui::MainPFOptions &o = *m_options;
    // Icons drawn by the style, so that they follow the platform's look.
    const auto icon = [this](QStyle::StandardPixmap pixmap) { return style()->standardIcon(pixmap); };
    setWindowIcon(morseKeyArt::icon());
    m_ui->Picture1->setIcon(morseKeyArt::icon());
    m_ui->Command1->setIcon(icon(QStyle::SP_MediaVolume));
    m_ui->playerDebut->setIcon(icon(QStyle::SP_MediaSkipBackward));
    m_ui->playerJouer->setIcon(icon(QStyle::SP_MediaPlay));
    m_ui->playerPause->setIcon(icon(QStyle::SP_MediaPause));
    m_ui->playerStop->setIcon(icon(QStyle::SP_MediaStop));
    // Below its natural size (a small screen, 200 % scaling) the window scrolls rather
    // than spilling off the screen.
    auto *scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("defilementFenetre"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(takeCentralWidget());
    setCentralWidget(scroll);
    // The view buttons may come down to their text: the style's wider minimum would
    // push the window past a small screen.
    for (QPushButton *button : {m_ui->Command14, m_ui->Command15, m_ui->Command16, m_ui->Command11,
                                m_ui->Command17, m_ui->Command18}) {
        const int text = button->fontMetrics().horizontalAdvance(button->text());
        button->setMinimumWidth(text + 2 * button->fontMetrics().averageCharWidth() + 8);
    }
    // The time box holds "length - position" of an hour-long exercise, and no more.
    m_ui->TRB->setFixedWidth(m_ui->TRB->fontMetrics().horizontalAdvance(
                                 QStringLiteral("00'00''000 - 00'00''000"))
                             + 4 * m_ui->TRB->style()->pixelMetric(QStyle::PM_DefaultFrameWidth)
                             + 12);
    o.Data1premier->setIcon(icon(QStyle::SP_MediaSkipBackward));
    o.Data1precedent->setIcon(icon(QStyle::SP_MediaSeekBackward));
    o.Data1suivant->setIcon(icon(QStyle::SP_MediaSeekForward));
    o.Data1dernier->setIcon(icon(QStyle::SP_MediaSkipForward));

    // Groups of five are read more easily in a larger fixed-width font.
    QFont exerciseFont = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    exerciseFont.setPointSizeF(font().pointSizeF() * 1.35);
    m_ui->EXO->setFont(exerciseFont);
    m_ui->Text1->setFont(exerciseFont);

    // The status bar keeps, right of the messages: the prepared sound's length, the
    // banner (also the caption) and the size of the reference table.
    const std::tuple<const char *, const char *, const char *> labels[] = {
        {"dureeExercice", "Durée de l'exercice préparé",
         "Durée du son de l'exercice préparé (tmp/test.wav)"},
        {"bandeau", "Bandeau", "Version, table courante et utilisateur"},
        {"REF", "Caractères de la table de référence",
         "Nombre de caractères que Kelvora sait transmettre"},
    };
    bool first = true;
    QFrame *bannerSeparator = nullptr;
    for (const auto &[name, accessible, tip] : labels) {
        if (!std::exchange(first, false)) {
            auto *separator = new QFrame(statusBar());
            if (qstrcmp(name, "bandeau") == 0)
                bannerSeparator = separator;
            separator->setFrameShape(QFrame::VLine);
            separator->setFrameShadow(QFrame::Sunken);
            statusBar()->addPermanentWidget(separator);
        }
        auto *label = new QLabel(statusBar());
        label->setContentsMargins(6, 0, 6, 0);
        label->setObjectName(QString::fromLatin1(name));
        // Read as its text; what it is goes in the description.
        label->setAccessibleDescription(QString::fromUtf8(accessible));
        label->setToolTip(QString::fromUtf8(tip));
        // May be cut short in a narrow window, rather than widen it past the screen.
        label->setMinimumWidth(label->fontMetrics().averageCharWidth() * 6);
        statusBar()->addPermanentWidget(label);
    }
    // The banner is also the caption: it gives its room to a message while one shows,
    // which the fields would otherwise cut short.
    auto *banner = statusBar()->findChild<QLabel *>(QStringLiteral("bandeau"));
    connect(statusBar(), &QStatusBar::messageChanged, banner, [banner, bannerSeparator](const QString &message) {
        banner->setVisible(message.isEmpty());
        bannerSeparator->setVisible(message.isEmpty());
    });
}

void MainPF::wireSettingWriters()
{
    Ui::MainPFOptions &o = *m_options;
    m_writer->saveOnChange(o.PROGRESS, userKeys::progress);
    m_writer->saveOnClick(o.PROGRESS, userKeys::progress);
    m_writer->saveOnToggle(o.Q1, userKeys::qrm10);
    m_writer->saveOnToggle(o.Q2, userKeys::qrm20);
    m_writer->saveOnToggle(o.Q3, userKeys::qrm30);
    m_writer->saveOnToggle(o.Fcorrection, userKeys::fcorrection);
    // The view switcher reacted first (it was connected first); then the value is saved.
    m_writer->saveOnToggle(m_ui->Check1, userKeys::cache);
    connect(o.nbgroup, &QComboBox::currentTextChanged, this, &MainPF::onGroupCountChanged);
    connect(o.debfin, &QCheckBox::toggled, this, &MainPF::onDebfinToggled);
    connect(o.renfor, &QLineEdit::textChanged, this, [this](const QString &text) {
        // The reinforcement character never keeps surrounding blanks.
        const QString trimmed = text.trimmed();
        if (trimmed != text)
            m_options->renfor->setText(trimmed);
    });
    connect(m_tables, &WordTableArea::tableSelected, this, [this](const QString &table) {
        affichebandeau();
        m_writer->save(userKeys::lasttable, table);
    });
    connect(m_tables, &WordTableArea::countChanged, this, &MainPF::affichebandeau);
}

void MainPF::wireCommands()
{
    Ui::MainPF &ui = *m_ui;
    for (auto [button, action, slot] :
         {std::tuple{ui.Command14, ui.AfExercices, &ViewSwitcher::showExercise},
          std::tuple{ui.Command15, ui.afcache, &ViewSwitcher::showHelp},
          std::tuple{ui.Command16, ui.affichiers, &ViewSwitcher::showFiles},
          std::tuple{ui.Command11, ui.aflistmot, &ViewSwitcher::showList}}) {
        connect(button, &QPushButton::clicked, m_views, slot);
        connect(action, &QAction::triggered, m_views, slot);
    }
    connect(ui.Aide, &QAction::triggered, m_views, &ViewSwitcher::toggleHelp);
    connect(ui.reglager, &QAction::triggered, this, &MainPF::reglager);
    connect(ui.utilchanger, &QAction::triggered, this, &MainPF::utilchanger);
    connect(ui.quitter, &QAction::triggered, this, &MainPF::quitter);
    connect(ui.raz, &QAction::triggered, this, &MainPF::raz);
    connect(ui.apropos, &QAction::triggered, this, &MainPF::showAbout);
    connect(ui.Picture1, &QToolButton::clicked, this, &MainPF::openLearningPage);
    connect(m_profiles, &ProfileController::notice, this, &MainPF::showNotice);
    connect(m_timers->timer6(), &QTimer::timeout, m_colours, &ColourScheme::randomFrameColour);
}

void MainPF::wirePanel()
{
    connect(m_panel, &SoundSettingsPanel::validated, this, &MainPF::valider);
    connect(m_panel, &SoundSettingsPanel::memoriseRequested, this, &MainPF::memorise);
    connect(m_panel, &SoundSettingsPanel::testRequested, this, &MainPF::testReferenceWord);
    connect(m_panel, &SoundSettingsPanel::characterSetRequested, m_options->PROGRESS,
            &QComboBox::setEditText);
    if (auto *editReference = m_panel->findChild<QPushButton *>(QStringLiteral("editreftable")))
        connect(editReference, &QPushButton::clicked, this, [this] { openEditor(true); });
    if (QPushButton *validate = m_panel->validateButton())
        validate->setAccessibleName(QStringLiteral("Valider"));
}

void MainPF::wireTextFiles()
{
    const Ui::MainPF &ui = *m_ui;
    m_textFiles = new TextFileArea({ui.File1, ui.EXO, ui.ajout, ui.ouvrir, ui.textengroupe, ui.racc, ui.inversion,
                                    ui.doubleespace},
                                   m_session.paths, *m_views, *m_writer, m_prompts,
                                   [this] {
                                       m_drills->stopTypedDrill();
                                       m_playback->prepare(true);
                                   },
                                   this, this);
    connect(m_textFiles, &TextFileArea::notice, this, &MainPF::showNotice);
}

void MainPF::wireTables()
{
    const Ui::MainPF &ui = *m_ui;
    const Ui::MainPFOptions &o = *m_options;
    m_tableCommands = new TableCommands({ui.createtable, ui.importmot1, ui.exportmot, ui.videtable,
                                         ui.supprimetable, o.Command7, o.Command8, o.Command9, o.Command10,
                                         ui.EXO},
                                        m_session, *m_tables, m_prompts, this, this);
    connect(m_tableCommands, &TableCommands::notice, this, &MainPF::showNotice);
    connect(m_tableCommands, &TableCommands::editRequested, this, [this] { openEditor(false); });
    for (QAction *action : {ui.edittablcourante, ui.fentable})
        connect(action, &QAction::triggered, this, [this] { openEditor(false); });
    connect(o.Command13, &QPushButton::clicked, this, [this] { openEditor(false); });
    connect(ui.Command17, &QPushButton::clicked, this, &MainPF::showQueryWindow);
    connect(ui.Command18, &QPushButton::clicked, this, &MainPF::showKeyboard);
    connect(ui.fencla, &QAction::triggered, this, &MainPF::showKeyboard);
    connect(ui.fenreq, &QAction::triggered, this, &MainPF::showQueryWindow);
    // A double click on the current word plays it alone.
    connect(m_tables, &WordTableArea::wordDoubleClicked, this, [this](const QString &word) {
        m_ui->EXO->setPlainText(word);
        if (m_playback->prepare(true))
            m_ui->jouer->trigger();
    });
}

TableEditor *MainPF::tableEditor() const
{
    return m_editor.data();
}

QString MainPF::editorCaption(int count) const
{
    return QStringLiteral("Kelvora ") + mainTexts::versionText() + QStringLiteral(" Table : ")
        + m_session.currentTable + QStringLiteral(" (") + QString::number(count) + u')';
}

void MainPF::openEditor(bool reference)
{
    if (reference)
        reglager(); // the reference table is edited beside its settings
    if (m_editor)
        m_editor->close();
    const QString table = reference ? QStringLiteral("ref") : m_session.currentTable;
    m_editor = new TableEditor(m_session.paths.wordDatabasePath, table,
                               reference ? QStringLiteral("car") : QStringLiteral("mot"), m_prompts, this);
    m_editor->setCaption([this, reference](int gridCount) {
        return editorCaption(reference ? gridCount : m_tables->count());
    });
    connect(m_editor, &TableEditor::closing, this, [this] {
        m_tables->reopen();
        setWindowTitle(editorCaption(m_tables->count()));
    });
    bringForward(m_editor);
}

void MainPF::showQueryWindow()
{
    if (!kvglobal::queryWindow) {
        auto *window = new QueryWindow(
            m_session, *m_tables, m_prompts,
            {[this] { return m_options->PROGRESS->currentText(); },
             [this] { return mainTexts::banner(m_session.currentTable, m_tables->count(), m_session.currentUser); }},
            this);
        window->setBackground(m_ui->fond->palette());
        connect(window, &QueryWindow::finished, this, &MainPF::affichebandeau);
        connect(window, &QueryWindow::notice, this, &MainPF::showNotice);
        kvglobal::queryWindow = window;
    }
    bringForward(kvglobal::queryWindow);
}

void MainPF::showKeyboard()
{
    if (!kvglobal::keyboardWindow) {
        QString error;
        const std::vector<QString> characters = m_lookup->characters(&error);
        if (!error.isEmpty())
            showNotice(error);
        kvglobal::keyboardWindow = new KeyboardWindow(characters, m_session, [this](const QString &text) {
            m_ui->EXO->setPlainText(text);
            m_options->debfin->setChecked(false); // no start or end sign around a key
            if (!m_playback->prepare(false))
                return false;
            m_playback->playKeys();
            return true;
        }, this);
    }
    bringForward(kvglobal::keyboardWindow);
}

void MainPF::setUserCaption(const QString &user)
{
    m_ui->Putilisateur->setTitle(ProfileController::menuCaption(user));
}

void MainPF::showNotice(const QString &text)
{
    statusBar()->showMessage(text, 15000);
    // A screen reader is told, as it is of a label's new text.
    QAccessibleEvent changed(statusBar(), QAccessible::NameChanged);
    QAccessible::updateAccessibility(&changed);
}

void MainPF::onGroupCountChanged(const QString &text)
{
    const QString clamped = choiceLists::clampGroupCount(text);
    if (clamped != text) {
        // The change this makes comes back here and saves the bound.
        m_options->nbgroup->setEditText(clamped);
        return;
    }
    m_writer->save(userKeys::nbgroup, text);
}

void MainPF::onDebfinToggled()
{
    if (m_writer->isRestoring())
        return;
    // The sound follows the new choice at once, without a new "Préparer".
    m_playback->prepare(true);
    m_writer->save(userKeys::debfin, boxText::text(m_options->debfin));
}

void MainPF::reglager()
{
    m_options->Fcorrection->setChecked(false);
    m_ui->Frame2->hide();
    m_ui->pageReglages->show();
    m_panel->show();
    setMenusVisible(false);
}

void MainPF::valider()
{
    m_panel->hide();
    m_ui->pageReglages->hide();
    m_ui->Frame2->show();
    setMenusVisible(true);
}

void MainPF::setMenusVisible(bool visible)
{
    const Ui::MainPF &ui = *m_ui;
    for (QMenu *menu : {ui.menuFichier, ui.menuAffichage, ui.menuExercices, ui.menuMusique,
                        ui.menuOutils, ui.menuCorrections, ui.menuParametres, ui.menuAide})
        menu->menuAction()->setVisible(visible);
}

void MainPF::memorise()
{
    m_writer->memorise(this);
    showNotice(QStringLiteral("Paramètres mémorisés pour ") + m_session.currentUser);
}

void MainPF::utilchanger()
{
    if (!m_profiles->utilchanger(this))
        return;
    setUserCaption(m_session.currentUser);
    restorparamuser();
    clearRendered(); // the sound was made for the user before
}

void MainPF::raz()
{
    m_profiles->raz();
    quitter();
}

void MainPF::quitter()
{
    m_generator->stop();
    emit programEnding();
    // exit() ends the event loop without asking the windows to close, so the settings
    // panel cannot hold the program open.
    QCoreApplication::exit(0);
}

void MainPF::showAbout()
{
    if (!kvglobal::aboutWindow)
        kvglobal::aboutWindow = new AboutBox(this);
    bringForward(kvglobal::aboutWindow);
}

void MainPF::openLearningPage()
{
    const QUrl page(QString::fromLatin1(mainTexts::learningPageUrl));
    if (!QDesktopServices::openUrl(page))
        showNotice(QStringLiteral("Impossible d'ouvrir ") + page.toString());
}

void MainPF::closeEvent(QCloseEvent *event)
{
    if (m_panel->isVisibleTo(this)) {
        event->ignore();
        showNotice(QStringLiteral("Terminez d'abord les réglages avec « Valider »."));
        return;
    }
    m_generator->stop();
    event->accept();
}

void MainPF::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_tables->refresh();
    QMainWindow::changeEvent(event);
}

} // namespace kelvora
