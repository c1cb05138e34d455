#include "settings/SettingsStore.h"

#include "core/CheckedFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <optional>

namespace kelvora {

namespace {
constexpr auto lastUserSection = "lastuser";
constexpr auto lastUserKey = "user";
} // namespace

namespace {

// What QSettings reads from the INI file, every value as text.
QMap<QString, QString> readIni(const QString &path)
{
    QMap<QString, QString> values;
    if (!QFileInfo(path).isFile())
        return values;
    const QSettings settings(path, QSettings::IniFormat);
    for (const QString &key : settings.allKeys()) {
        const QVariant v = settings.value(key);
        // A value stored as a list ("a, b" written by hand in the INI file) reads back joined.
        values.insert(key, v.typeId() == QMetaType::QStringList ? v.toStringList().join(", ")
                                                                : v.toString());
    }
    return values;
}

// The INI text QSettings would write for `values`, made in a scratch folder and read
// back to be sure it is whole (QSettings does not tell a cut write); empty and the
// system's reason in *why when it cannot be made.
std::optional<QByteArray> layOut(const QMap<QString, QString> &values, QString *why)
{
    const QTemporaryDir scratch;
    const QString path = scratch.filePath(QStringLiteral("settings.ini"));
    if (scratch.isValid()) {
        {
            QSettings settings(path, QSettings::IniFormat);
            for (auto it = values.begin(); it != values.end(); ++it)
                settings.setValue(it.key(), it.value());
        }
        // Read back under another name: QSettings would answer from its cache.
        QFile file(path);
        if (values.isEmpty() && !file.exists())
            return QByteArray();
        const QString check = scratch.filePath(QStringLiteral("check.ini"));
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArray text = file.readAll();
            if (CheckedFile::writeAll(check, text, why) && readIni(check) == values)
                return text;
        }
    }
    // Why the scratch file came out short: a trial write of the same kind says.
    CheckedFile trial(scratch.isValid() ? scratch.filePath(QStringLiteral("trial"))
                                        : QDir::temp().filePath(QStringLiteral("kelvora-trial")));
    if (!trial.open() || !trial.write(QByteArray(1 << 16, ' ')))
        *why = trial.reasonString();
    else
        *why = QStringLiteral("la mise en forme des réglages a échoué");
    return std::nullopt;
}

} // namespace

SettingsStore::SettingsStore(const QString &iniPath)
    : m_path(QFileInfo(iniPath).absoluteFilePath())
    , m_values(readIni(m_path))
{
}

SettingsStore::~SettingsStore()
{
    if (!m_changed.isEmpty() || m_cleared) {
        if (const QString problem = sync(); !problem.isEmpty())
            qWarning("%s", qPrintable(problem));
    }
}

QString SettingsStore::fileName() const
{
    return m_path;
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
    return m_values.value(section + '/' + key, defaultValue);
}

QString SettingsStore::value(const QString &section, const SettingKey &key) const
{
    return value(section, QString::fromUtf8(key.name), QString::fromUtf8(key.defaultValue));
}

bool SettingsStore::setValue(const QString &section, const QString &key, const QString &value)
{
    if (!usableSection(section) || key.isEmpty())
        return false;
    m_values.insert(section + '/' + key, value);
    m_changed.insert(section + '/' + key);
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

QString SettingsStore::removeAll()
{
    m_values.clear();
    m_changed.clear();
    m_cleared = true;
    return sync();
}

QString SettingsStore::sync()
{
    const QFileInfo info(m_path);
    if (info.exists() && !info.isFile())
        return CheckedFile::failure(m_path, QStringLiteral("ce n'est pas un fichier ordinaire"));
    QMap<QString, QString> merged = m_cleared ? QMap<QString, QString>() : readIni(m_path);
    for (const QString &key : std::as_const(m_changed))
        merged.insert(key, m_values.value(key));
    QString why;
    const std::optional<QByteArray> text = layOut(merged, &why);
    if (!text)
        return CheckedFile::failure(m_path, why);
    QString problem;
    if (!CheckedFile::writeAll(m_path, *text, &problem))
        return problem;
    m_values = merged;
    m_changed.clear();
    m_cleared = false;
    return {};
}

} // namespace kelvora
