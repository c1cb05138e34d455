#pragma once

#include <QObject>
#include <QStringList>

#include <array>

class QAbstractButton;

namespace kelvora {

class MediaDevice;
class MediaDeviceFactory;
class UserPrompts;

// The three interference recordings qrm1..qrm3, each on its own device with its own
// start/stop button, and the boxes Q1..Q3 that start them with every exercise. A
// recording that reaches its end stops there; it is not looped.
class BackgroundNoise : public QObject {
    Q_OBJECT
public:
    static constexpr int count = 3;

    struct Controls {
        std::array<QAbstractButton *, count> autoStart{}; // Q1..Q3
        std::array<QAbstractButton *, count> buttons{};   // start/stop by hand
    };

    BackgroundNoise(const Controls &controls, const MediaDeviceFactory &devices, UserPrompts &prompts,
                    QObject *parent = nullptr);

    // At load, in the order 1, 2, 3; a file that cannot be opened is named in the status bar.
    void openAll(const QStringList &files);
    // Start of play: each ticked noise from its beginning, in the order 1, 2, 3.
    void startTicked();
    void stopAll();
    // Back to the beginning. A playing noise goes on from there: it runs on under the
    // correction or the next word of the loop.
    void rewindAll();

    MediaDevice *device(int index) const { return m_devices[std::size_t(index)]; } // 0..2

signals:
    void notice(const QString &text);

private:
    void onButtonClicked(int index, bool start);
    void showState(int index);

    Controls m_controls;
    UserPrompts &m_prompts;
    std::array<MediaDevice *, count> m_devices{}; // children of this object
};

} // namespace kelvora
