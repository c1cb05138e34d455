#pragma once

#include <QAudioDevice>

class QObject;

namespace kelvora {

class MediaDevice;
class PlayClock;

// Makes the media devices of the windows: on the system's sound output (or a chosen
// one), or silent ones that keep time on a given clock (a test's stepped clock).
class MediaDeviceFactory {
public:
    MediaDeviceFactory() = default;
    explicit MediaDeviceFactory(PlayClock &clock)
        : m_clock(&clock)
    {
    }

    explicit MediaDeviceFactory(const QAudioDevice &output)
        : m_output(output)
    {
    }

    MediaDevice *create(QObject *parent) const;

private:
    PlayClock *m_clock = nullptr;
    QAudioDevice m_output; // null: the system's default output
};

} // namespace kelvora
