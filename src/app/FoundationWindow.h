#pragma once

#include <QWidget>

#include <memory>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace kelvora {

class PatternLookup;
class SettingsStore;
class WordDatabase;

// The window of the first release: the caption banner, the exercise text and
// "Préparer la musique", which renders the text into tmp/test.wav.
class FoundationWindow : public QWidget {
    Q_OBJECT
public:
    explicit FoundationWindow(const QString &settingsPath, QWidget *parent = nullptr);
    ~FoundationWindow() override;

    void affichebandeau();
    // Returns false, after a message box, when the sound could not be prepared.
    bool prepareSound();

private:
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<WordDatabase> m_refDatabase;
    std::unique_ptr<PatternLookup> m_lookup;
    QPlainTextEdit *m_exo = nullptr;
    QPushButton *m_prepare = nullptr;
    QLabel *m_banner = nullptr;
    QLabel *m_status = nullptr;
};

} // namespace kelvora
