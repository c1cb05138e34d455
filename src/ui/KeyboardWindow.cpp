#include "ui/KeyboardWindow.h"

#include "keyboard/KeyGrid.h"
#include "settings/Session.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace kelvora {

KeyboardWindow::KeyboardWindow(const std::vector<QString> &characters, Session &session, PlayText play,
                               QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_session(session)
    , m_queue(session)
    , m_play(std::move(play))
    , m_timer(new QTimer(this))
{
    setObjectName(QStringLiteral("clavier"));
    setWindowTitle(QStringLiteral("Kelvora Version 3 - Clavier"));
    setAttribute(Qt::WA_DeleteOnClose); // made again from the table at the next opening
    setFocusPolicy(Qt::StrongFocus);    // the typed keys come to the window
    buildKeys(characters);
    m_timer->setObjectName(QStringLiteral("Timer1"));
    m_timer->setInterval(100);
    connect(m_timer, &QTimer::timeout, this, &KeyboardWindow::onTick);
    m_timer->start();
}

void KeyboardWindow::buildKeys(const std::vector<QString> &characters)
{
    const keyboard::KeyGrid grid = keyboard::layOut(characters);
    auto *layout = new QGridLayout(this);
    layout->setSpacing(3);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    // One size for every key, from the font: the widest caption fits at any scaling.
    const QFontMetrics metrics(font());
    int side = metrics.height() + 10;
    for (const keyboard::KeyPlace &key : grid.keys)
        side = std::max(side, metrics.horizontalAdvance(key.caption) + 12);
    for (const keyboard::KeyPlace &key : grid.keys) {
        auto *button = new QPushButton(QString(key.caption).replace(u'&', QStringLiteral("&&")), this);
        button->setObjectName(QStringLiteral("touche_%1").arg(key.index));
        button->setAccessibleName(QStringLiteral("Touche %1").arg(key.caption));
        button->setFixedSize(side, side);
        // The keyboard's keys are typed to the window, never to a button.
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [this, caption = key.caption] { m_queue.clicked(caption); });
        layout->addWidget(button, key.line - 1, key.column - 1);
    }
    const auto label = [&](const char *name, const QString &meaning, int line) {
        auto *shown = new QLabel(this);
        shown->setObjectName(QString::fromLatin1(name));
        shown->setAccessibleName(meaning);
        shown->setToolTip(meaning);
        shown->setTextFormat(Qt::PlainText);
        shown->setFrameShape(QFrame::StyledPanel);
        shown->setMinimumHeight(metrics.height() + 6);
        // The keys' grid gives the width; a long run of keys shows its end.
        shown->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        layout->addWidget(shown, line - 1, 0, 1, std::max(grid.columns, 1));
        return shown;
    };
    m_waiting = label("Label1", QStringLiteral("Touches en attente"), grid.waitingLine);
    m_sent = label("Label2", QStringLiteral("Touches envoyées"), grid.sentLine);
}

bool KeyboardWindow::sound(const QString &text)
{
    if (!m_play(text))
        return false;
    m_session.playerFree = false;
    return true;
}

void KeyboardWindow::showKeys(QLabel *label, const QString &keys)
{
    const int room = label->contentsRect().width() - 2 * label->margin() - 4;
    label->setText(label->fontMetrics().elidedText(keys, Qt::ElideLeft, std::max(room, 0)));
}

void KeyboardWindow::keyPressEvent(QKeyEvent *event)
{
    const QString key = event->text();
    if (key.isEmpty() || !key.front().isPrint()) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (const auto now = m_queue.typed(key)) {
        m_sent->clear();
        sound(*now);
    }
}

void KeyboardWindow::onTick()
{
    showKeys(m_waiting, m_queue.waiting());
    if (const auto text = m_queue.tick()) {
        showKeys(m_sent, *text);
        sound(*text);
    }
}

void KeyboardWindow::closeEvent(QCloseEvent *event)
{
    m_queue.clear();
    QWidget::closeEvent(event);
}

} // namespace kelvora
