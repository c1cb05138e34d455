#include "playback/BackgroundNoise.h"

#include "ui/UserPrompts.h"
#include "playback/MediaDevice.h"
#include "playback/MediaDeviceFactory.h"

#include <QAbstractButton>
#include <QStyle>

namespace kelvora {

BackgroundNoise::BackgroundNoise(const Controls &controls, const MediaDeviceFactory &devices,
                                 UserPrompts &prompts, QObject *parent)
    : QObject(parent)
    , m_controls(controls)
    , m_prompts(prompts)
{
    for (int i = 0; i < count; ++i) {
        MediaDevice *device = devices.create(this);
        device->setObjectName(QStringLiteral("qrm%1").arg(i + 1));
        // Nothing here reads the noise's position.
        device->setNotifyPeriod(0);
        m_devices[std::size_t(i)] = device;
        connect(device, &MediaDevice::completed, this, [this, i] { showState(i); });
        connect(device, &MediaDevice::errorOccurred, this, [this, i](const QString &message) {
            emit notice(QStringLiteral("Bruit de fond %1 : %2").arg(i + 1).arg(message));
        });
        QAbstractButton *button = m_controls.buttons[std::size_t(i)];
        button->setCheckable(true);
        connect(button, &QAbstractButton::clicked, this,
                [this, i](bool checked) { onButtonClicked(i, checked); });
        showState(i);
    }
}

void BackgroundNoise::openAll(const QStringList &files)
{
    for (int i = 0; i < count && i < files.size(); ++i) {
        m_devices[std::size_t(i)]->open(files[i]);
        showState(i);
    }
}

void BackgroundNoise::startTicked()
{
    for (int i = 0; i < count; ++i) {
        if (!m_controls.autoStart[std::size_t(i)]->isChecked())
            continue;
        MediaDevice *device = m_devices[std::size_t(i)];
        device->prev();
        device->play();
        showState(i);
    }
}

void BackgroundNoise::stopAll()
{
    for (int i = 0; i < count; ++i) {
        m_devices[std::size_t(i)]->stop();
        showState(i);
    }
}

void BackgroundNoise::rewindAll()
{
    for (int i = 0; i < count; ++i) {
        MediaDevice *device = m_devices[std::size_t(i)];
        const bool playing = device->isPlaying();
        device->prev();
        if (playing)
            device->play();
        showState(i);
    }
}

void BackgroundNoise::onButtonClicked(int index, bool start)
{
    MediaDevice *device = m_devices[std::size_t(index)];
    if (start && !device->isOpen()) {
        QString reason = device->errorString();
        if (reason.isEmpty())
            reason = QStringLiteral("son fichier n'a pas été ouvert.");
        m_prompts.message(m_controls.buttons[std::size_t(index)]->window(),
                          QStringLiteral("Le bruit de fond %1 ne peut pas être joué : %2")
                              .arg(index + 1)
                              .arg(reason));
    } else if (start) {
        // A recording heard to its end starts again from its beginning.
        if (device->positionMs() >= device->lengthMs())
            device->prev();
        device->play();
    } else {
        device->stop();
    }
    showState(index);
}

void BackgroundNoise::showState(int index)
{
    const bool playing = m_devices[std::size_t(index)]->isPlaying();
    QAbstractButton *button = m_controls.buttons[std::size_t(index)];
    button->setChecked(playing);
    button->setIcon(button->style()->standardIcon(playing ? QStyle::SP_MediaStop
                                                          : QStyle::SP_MediaPlay));
}

} // namespace kelvora
