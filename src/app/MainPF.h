#pragma once

#include "playback/MediaDeviceFactory.h"

#include <QMainWindow>
#include <QPointer>

class QTimer;

#include <memory>

namespace Ui {
class MainPF;
class MainPFOptions;
} // namespace Ui

namespace kelvora {

class BackgroundNoise;
class ColourScheme;
class CorrectionReplay;
class ExerciseGenerator;
class ExercisePlayback;
class PatternLookup;
class ProfileController;
class PushToTalkControl;
class QueryWindow;
class TableCommands;
class TableEditor;
class TextFileArea;
class SettingsStore;
class SettingsWriter;
struct Session;
class SoundSettingsPanel;
class UserPrompts;
class ViewSwitcher;
class WindowTimers;
class WordDatabase;
class WordDrills;
class WordTableArea;
struct RenderResult;

// The main window. It owns the controls (MainPF.ui, MainPFOptions.ui) and the sound
// settings panel; the behaviour of each area lives in the objects it wires up.
class MainPF : public QMainWindow {
    Q_OBJECT
public:
    // `session` is the program's shared state (paths, user, table, player);
    // `settingsPath` is the INI file of the profiles; `prompts` answers every modal
    // question; `devices` makes the sound devices. Loading (last user, lists, greeting,
    // profile, first rendering) runs here.
    MainPF(Session &session, const QString &settingsPath, UserPrompts &prompts,
           const MediaDeviceFactory &devices = MediaDeviceFactory(), QWidget *parent = nullptr);
    ~MainPF() override;

    // The caption: "Kelvora Version 3.2.5, Table : mot (N),   Utilisateur=user".
    void affichebandeau();
    // Puts the current user's profile into the controls, then recalculates and renders.
    void restorparamuser();
    // Renders the exercise text into tmp/test.wav with the panel's settings, closing the
    // player before and opening it again after; false when the sound is not ready, with
    // the reason in `error` (or in the status bar when `error` is null).
    bool test(QString *error = nullptr);

    void reglager(); // shows the settings panel in place of the exercise frame
    void valider();  // the reverse, once the panel has recalculated
    void memorise(); // "Mémoriser ces paramètres"
    void utilchanger();
    void raz();
    void quitter();

    SoundSettingsPanel *soundPanel() const { return m_panel; }
    WindowTimers *timers() const { return m_timers; }
    ColourScheme *colours() const { return m_colours; }
    ExercisePlayback *playback() const { return m_playback; }
    BackgroundNoise *noise() const { return m_noise; }
    PushToTalkControl *pushToTalk() const { return m_ptt; }
    CorrectionReplay *correction() const { return m_correction; }
    ExerciseGenerator *generator() const { return m_generator; }
    TableCommands *tableCommands() const { return m_tableCommands; }
    TableEditor *tableEditor() const;

signals:
    // "Quitter" or the reset: the program ends now.
    void programEnding();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildAreas();
    void buildPlayback();
    void wirePlayback();
    void clearRendered();
    void showRendered(const RenderResult &result);
    void decorate();
    void wireCommands();
    void wireSettingWriters();
    void wirePanel();
    void showKeyboard();
    void Form_Load();
    void fillChoiceLists();
    void writeGreeting();
    void showReferenceCount();
    void setUserCaption(const QString &user);
    void showNotice(const QString &text);
    void testReferenceWord();
    void showAbout();
    void openLearningPage();
    void onGroupCountChanged(const QString &text);
    void onDebfinToggled();
    void setMenusVisible(bool visible);
    void fitToScreen();
    void wireTables();
    void wireTextFiles();
    void openEditor(bool reference);
    void showQueryWindow();
    QString editorCaption(int count) const;

    std::unique_ptr<Ui::MainPF> m_ui;
    std::unique_ptr<Ui::MainPFOptions> m_options;
    Session &m_session;
    UserPrompts &m_prompts;
    MediaDeviceFactory m_devices;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<WordDatabase> m_refDatabase;
    std::unique_ptr<PatternLookup> m_lookup;

    SoundSettingsPanel *m_panel = nullptr;
    ProfileController *m_profiles = nullptr;
    SettingsWriter *m_writer = nullptr;
    ViewSwitcher *m_views = nullptr;
    ColourScheme *m_colours = nullptr;
    WordTableArea *m_tables = nullptr;
    WindowTimers *m_timers = nullptr;
    QTimer *m_timer4 = nullptr; // the word loop's timer
    WordDrills *m_drills = nullptr;
    BackgroundNoise *m_noise = nullptr;
    PushToTalkControl *m_ptt = nullptr;
    CorrectionReplay *m_correction = nullptr;
    ExercisePlayback *m_playback = nullptr;
    ExerciseGenerator *m_generator = nullptr;
    TableCommands *m_tableCommands = nullptr;
    TextFileArea *m_textFiles = nullptr;
    QPointer<TableEditor> m_editor;

};

} // namespace kelvora
