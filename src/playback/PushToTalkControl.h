#pragma once

#include <QObject>

#include <memory>

class QAbstractButton;
class QComboBox;
class QWidget;

namespace kelvora {

class PushToTalk;
class SettingsWriter;
class UserPrompts;

// portcom with its two controls: Activecom switches push-to-talk on, NCOM chooses the
// port. The exercise keys the transmitter while it plays; the correction keys it for
// each character. A port that cannot be opened is reported in French (a message where
// the user acted, the status bar otherwise) and the sound plays without push-to-talk.
class PushToTalkControl : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QAbstractButton *enable = nullptr; // Activecom
        QComboBox *portBox = nullptr;      // NCOM
    };

    PushToTalkControl(const Controls &controls, std::unique_ptr<PushToTalk> port,
                      const SettingsWriter &writer, UserPrompts &prompts,
                      QObject *parent = nullptr);
    ~PushToTalkControl() override;

    bool isActive() const; // Activecom ticked
    bool isOpen() const;
    int portNumber() const { return m_portNumber; }

    // Start of play: keys the transmitter when Activecom is ticked. A port already open
    // (play pressed again after a pause) is keyed already.
    void openForPlay();
    // End of play, the player's Stop button.
    void closeIfOpen();
    // The correction's keying line, for one character: raised when Activecom is ticked
    // and the port is not open yet; lowered when Activecom is ticked.
    void raise(bool userActed);
    void lower();
    // A profile's "ncom": no clamp, the port is not opened.
    void restorePort(int portNumber);

signals:
    void notice(const QString &text);

private:
    void onPortBoxChanged(const QString &text);
    bool open(bool userActed, const QString &consequence);
    void report(const QString &message, bool userActed);
    void describePort();

    Controls m_controls;
    std::unique_ptr<PushToTalk> m_port; // portcom
    const SettingsWriter &m_writer;
    UserPrompts &m_prompts;
    int m_portNumber = 1;
};

} // namespace kelvora
