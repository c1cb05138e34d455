#pragma once

class QObject;

namespace kelvora {

class MediaDevice;
class PlayClock;

// Makes the media devices of the windows: on the system's sound output, or silent ones
// that keep time on a given clock (a test's stepped clock).
class MediaDeviceFactory {
public:
    MediaDeviceFactory() = default;
    explicit MediaDeviceFactory(PlayClock &clock)
        : m_clock(&clock)
    {
    }

    MediaDevice *create(QObject *parent) const;

private:
    PlayClock *m_clock = nullptr;
};

} // namespace kelvora
