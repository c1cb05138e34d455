#include "ui/ColourScheme.h"

#include "ui/SettingsWriter.h"
#include "settings/UserProfile.h"
#include "ui/UserPrompts.h"
#include "core/Random.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace kelvora {

namespace {
// Labels and check boxes keep a readable caption on any background colour.
QColor captionColourOn(const QColor &background)
{
    const double luminance =
        0.2126 * background.redF() + 0.7152 * background.greenF() + 0.0722 * background.blueF();
    return luminance < 0.5 ? QColor(Qt::white) : QColor(Qt::black);
}

void paintBackground(QWidget *widget, const QColor &colour)
{
    QPalette p = widget->palette();
    p.setColor(QPalette::Window, colour);
    p.setColor(QPalette::WindowText, captionColourOn(colour));
    widget->setPalette(p);
    widget->setAutoFillBackground(true);
}

void watchDoubleClick(QWidget *widget, QObject *filter)
{
    if (!widget)
        return;
    widget->installEventFilter(filter);
    // A text box receives its mouse events on its viewport.
    if (auto *area = qobject_cast<QAbstractScrollArea *>(widget))
        area->viewport()->installEventFilter(filter);
}
} // namespace

ColourScheme::ColourScheme(const Targets &targets, SettingsWriter &writer, UserPrompts &prompts,
                           QObject *parent)
    : QObject(parent)
    , m_targets(targets)
    , m_writer(writer)
    , m_prompts(prompts)
{
    for (QWidget *widget : std::as_const(m_targets.unpainted)) {
        QPalette standard = widget->palette();
        for (QPalette::ColorRole role : {QPalette::Window, QPalette::WindowText})
            standard.setColor(role, QApplication::palette().color(role));
        widget->setPalette(standard);
        widget->setAutoFillBackground(true);
    }
    watchDoubleClick(m_targets.frame, this);
    watchDoubleClick(m_targets.exercise, this);
    watchDoubleClick(m_targets.answer, this);
}

QColor ColourScheme::fromStored(quint32 bgr)
{
    return QColor(redOf(bgr), greenOf(bgr), blueOf(bgr));
}

quint32 ColourScheme::toStored(const QColor &colour)
{
    return storedColour(colour.red(), colour.green(), colour.blue());
}

void ColourScheme::F2ch(quint32 bgr)
{
    m_frameColour = bgr;
    const QColor colour = fromStored(bgr);
    // The frame's labels and check boxes take the frame's palette.
    paintBackground(m_targets.frame, colour);
    paintBackground(m_targets.window, colour);
}

void ColourScheme::setTextBackground(quint32 bgr)
{
    m_textBackground = bgr;
    paintTextViews();
}

void ColourScheme::setTextColour(quint32 bgr)
{
    m_textColour = bgr;
    paintTextViews();
}

void ColourScheme::paintTextViews()
{
    const QColor base = fromStored(m_textBackground);
    const QColor text = fromStored(m_textColour);
    for (QWidget *view : std::as_const(m_targets.textViews)) {
        QPalette p = view->palette();
        for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
            p.setColor(group, QPalette::Base, base);
            p.setColor(group, QPalette::Text, text);
        }
        view->setPalette(p);
    }
}

void ColourScheme::chooseFrameColour()
{
    if (const auto colour = m_prompts.askColour(m_targets.frame, fromStored(m_frameColour))) {
        const quint32 bgr = toStored(*colour);
        m_writer.save(userKeys::color1, QString::number(bgr));
        F2ch(bgr);
    }
}

void ColourScheme::chooseTextBackground()
{
    if (const auto colour = m_prompts.askColour(m_targets.exercise, fromStored(m_textBackground))) {
        setTextBackground(toStored(*colour));
        m_writer.save(userKeys::color2, QString::number(m_textBackground));
    }
}

void ColourScheme::chooseTextColour()
{
    if (const auto colour = m_prompts.askColour(m_targets.answer, fromStored(m_textColour))) {
        setTextColour(toStored(*colour));
        m_writer.save(userKeys::color3, QString::number(m_textColour));
    }
}

void ColourScheme::randomFrameColour()
{
    F2ch(quint32(random::draw(256 * 256 * 256)));
}

bool ColourScheme::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonDblClick)
        return QObject::eventFilter(watched, event);
    auto isOrViewportOf = [watched](QWidget *target) {
        if (watched == target)
            return true;
        auto *area = qobject_cast<QAbstractScrollArea *>(target);
        return area && watched == area->viewport();
    };
    if (isOrViewportOf(m_targets.exercise))
        chooseTextBackground();
    else if (isOrViewportOf(m_targets.answer))
        chooseTextColour();
    else if (watched == m_targets.frame)
        chooseFrameColour();
    return QObject::eventFilter(watched, event);
}

} // namespace kelvora
