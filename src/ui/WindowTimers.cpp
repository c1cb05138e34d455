#include "ui/WindowTimers.h"

#include "core/Random.h"

#include <QAbstractButton>
#include <QEvent>
#include <QTimer>
#include <QWidget>

namespace kelvora {

namespace {
QTimer *makeTimer(const char *name, int intervalMs, QObject *parent)
{
    auto *timer = new QTimer(parent);
    timer->setObjectName(QString::fromLatin1(name));
    timer->setInterval(intervalMs);
    return timer;
}
} // namespace

WindowTimers::WindowTimers(QAbstractButton *validateButton, QObject *parent)
    : QObject(parent)
    , m_validate(validateButton)
    , m_timer1(makeTimer("Timer1", 500, this))
    , m_timer2(makeTimer("Timer2", 100, this))
    , m_timer6(makeTimer("Timer6", 60000, this))
{
    connect(m_timer1, &QTimer::timeout, this, &WindowTimers::blinkValidate);
    connect(m_timer2, &QTimer::timeout, this, &WindowTimers::stirRandom);
}

void WindowTimers::start()
{
    m_timer1->start();
    m_timer2->start();
}

void WindowTimers::watchMouseMovement(const QList<QWidget *> &surfaces)
{
    for (QWidget *surface : surfaces) {
        surface->setMouseTracking(true);
        surface->installEventFilter(this);
    }
}

void WindowTimers::blinkValidate()
{
    stirRandom();
    if (m_validate)
        m_validate->setText(m_validate->text().isEmpty() ? QStringLiteral("Valider") : QString());
}

void WindowTimers::stirRandom()
{
    (void)random::rnd();
}

bool WindowTimers::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseMove)
        stirRandom();
    return QObject::eventFilter(watched, event);
}

} // namespace kelvora
