#pragma once

#include "audio/WavSound.h"

#include <QObject>

namespace kelvora {

// Where a media device's samples go: a real sound output, or a clock that only keeps
// time when there is none. Time comes from the output so that positions match what is
// heard.
class PcmOutput : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Takes the sound to play; false when this output cannot play it at all.
    virtual bool prepare(const WavSound &sound) = 0;
    // Starts from `fromMs` into the sound; false when it cannot start.
    virtual bool start(qint64 fromMs) = 0;
    virtual void suspend() = 0;
    virtual void resume() = 0;
    virtual void halt() = 0;
    // Milliseconds played since start(), pauses excluded.
    virtual qint64 playedMs() const = 0;

signals:
    // The output was lost while playing (device gone, server stopped, stream stalled).
    void failed(const QString &reason);
};

} // namespace kelvora
