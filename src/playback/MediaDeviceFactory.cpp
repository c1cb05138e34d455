#include "playback/MediaDeviceFactory.h"

#include "playback/MediaDevice.h"

namespace kelvora {

MediaDevice *MediaDeviceFactory::create(QObject *parent) const
{
    if (m_clock)
        return new MediaDevice(*m_clock, parent);
    auto *device = new MediaDevice(parent);
    device->setOutputDevice(m_output);
    return device;
}

} // namespace kelvora
