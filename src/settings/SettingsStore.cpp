#include "settings/SettingsStore.h"

#include <QSettings>

namespace kelvora {

namespace {
constexpr auto lastUserSection = "lastuser";
constexpr auto lastUserKey = "user";
} // namespace

SettingsStore::SettingsStore(const QString &iniPath)
    : m_settings(std::make_unique<QSettings>(iniPath, QSettings::IniFormat))
{
}

SettingsStore::~SettingsStore() = default;

QString SettingsStore::fileName() const
{
    return m_settings->fileName();
}

namespace {
// A separator would address another section's key.
bool usableSection(const QString &section)
{
    return !section.isEmpty() && !section.contains(u'/') && !section.contains(u'\\');
}
} // namespace

QString SettingsStore::value(const QString &section, const QString &key,
                             const QString &defaultValue) const
{
    if (!usableSection(section))
        return defaultValue;
    const QVariant v = m_settings->value(section + '/' + key);
    if (!v.isValid())
        return defaultValue;
    // A value stored as a list ("a, b" written by hand in the INI file) reads back joined.
    if (v.typeId() == QMetaType::QStringList)
        return v.toStringList().join(", ");
    return v.toString();
}

QString SettingsStore::value(const QString &section, const SettingKey &key) const
{
    return value(section, QString::fromUtf8(key.name), QString::fromUtf8(key.defaultValue));
}

bool SettingsStore::setValue(const QString &section, const QString &key, const QString &value)
{
    if (!usableSection(section) || key.isEmpty())
        return false;
    m_settings->setValue(section + '/' + key, value);
    return true;
}

QString SettingsStore::lastUser() const
{
    return value(lastUserSection, lastUserKey, QString::fromUtf8(defaultUserName));
}

bool SettingsStore::setLastUser(const QString &name)
{
    if (name.isEmpty())
        return false;
    return setValue(lastUserSection, lastUserKey, name);
}

void SettingsStore::removeAll()
{
    m_settings->clear();
    m_settings->sync();
}

void SettingsStore::sync()
{
    m_settings->sync();
}

} // namespace kelvora
