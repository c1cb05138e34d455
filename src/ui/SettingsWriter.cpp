#include "ui/SettingsWriter.h"

#include "ui/BoxText.h"
#include "settings/Session.h"
#include "settings/SettingsStore.h"
#include "core/Logging.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>

#include <functional>

namespace kelvora {

SettingsWriter::SettingsWriter(SettingsStore &store, const Session &session, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_session(session)
{
}

bool SettingsWriter::save(const SettingKey &key, const QString &value)
{
    if (isRestoring())
        return false;
    const bool written =
        m_store.setValue(m_session.currentUser, QString::fromUtf8(key.name), value);
    if (!written) {
        qCWarning(lcApp) << "setting not written:" << key.name;
        return false;
    }
    // The program may end at any moment without a chance to save: write through now.
    if (const QString problem = m_store.sync(); !problem.isEmpty()) {
        qCWarning(lcApp) << problem;
        emit writeFailed(problem);
        return false;
    }
    return true;
}

void SettingsWriter::saveOnChange(QComboBox *box, const SettingKey &key)
{
    connect(box, &QComboBox::currentTextChanged, this,
            [this, key](const QString &text) { save(key, text); });
}

namespace {
// Calls `action` on every mouse press on the watched widgets.
class ClickWatcher : public QObject {
public:
    ClickWatcher(std::function<void()> action, QObject *parent)
        : QObject(parent)
        , m_action(std::move(action))
    {
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress)
            m_action();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_action;
};
} // namespace

void SettingsWriter::saveOnClick(QComboBox *box, const SettingKey &key)
{
    auto *watcher = new ClickWatcher([this, box, key] { save(key, box->currentText()); }, box);
    box->installEventFilter(watcher);
    if (box->lineEdit())
        box->lineEdit()->installEventFilter(watcher);
}

void SettingsWriter::saveOnToggle(QAbstractButton *box, const SettingKey &key)
{
    connect(box, &QAbstractButton::toggled, this, [this, key](bool checked) {
        save(key, checked ? QStringLiteral("1") : QStringLiteral("0"));
    });
}

void SettingsWriter::memorise(const QWidget *root)
{
    for (const SettingKey &key : userKeys::memorised) {
        const auto *box =
            root->findChild<QWidget *>(QString::fromLatin1(key.control));
        if (box)
            save(key, boxText::text(box));
        else
            qCWarning(lcApp) << "no control for" << key.name;
    }
}

SettingsWriter::Restoring::Restoring(SettingsWriter &writer)
    : m_writer(writer)
{
    ++m_writer.m_restoring;
}

SettingsWriter::Restoring::~Restoring()
{
    --m_writer.m_restoring;
}

} // namespace kelvora
