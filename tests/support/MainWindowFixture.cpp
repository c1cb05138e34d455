#include "MainWindowFixture.h"

#include "TestPaths.h"
#include "settings/Session.h"
#include "app/MainPF.h"
#include "morse/SoundRenderer.h"
#include "words/Transaction.h"
#include "words/WordDatabase.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QSettings>
#include <QTest>

#include <cmath>

namespace kelvora::testsupport {

namespace {
const QStringList motWords = {"chemin", "avion", "Bateau", "éclair", "dune"};
const QStringList qcodeWords = {"QRZ", "QSL", "QRM", "QTH"};
const QStringList animalWords = {"zèbre", "ours"};

// A quiet 8-bit tone of `ms` at 8000 samples per second, made once per process.
void writeTone(const QString &path, int ms, double hz)
{
    static QHash<QPair<int, double>, QByteArray> made;
    QByteArray &wav = made[{ms, hz}];
    if (wav.isEmpty()) {
        QByteArray samples(ms * 8, char(128));
        for (qsizetype i = 0; i < samples.size(); ++i)
            samples[i] = char(128 + int(20 * std::sin(2 * M_PI * hz * double(i) / 8000)));
        wav = wavHeader(quint32(samples.size())) + samples;
    }
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(wav);
}
} // namespace

MainWindowFixture::MainWindowFixture()
    : m_root(m_dir.filePath("root"))
    , m_ini(m_dir.filePath("Kelvora.ini"))
{
    QDir().mkpath(m_root + "/db");
    QDir().mkpath(m_root + "/tmp");
    QDir().mkpath(m_root + "/doc");
    QDir().mkpath(m_root + "/textes");
    QFile::copy(m_ref.databasePath(), m_root + "/db/kvmot.sqlite");
    QFile::copy(QString::fromUtf8(testpaths::sourceDataDir) + "/doc/kvmenu.htm",
                m_root + "/doc/kvmenu.htm");
    for (const char *name : {"qso.txt", "meteo.txt", "Conte.TXT.bak", "abc.txt"}) {
        QFile f(m_root + "/textes/" + name);
        if (f.open(QIODevice::WriteOnly))
            f.write("CQ CQ DE F4KLV");
    }
    WordDatabase db(m_root + "/db/kvmot.sqlite");
    // One transaction: a commit per row would wait for the disk every time.
    Transaction transaction(db);
    db.exec("CREATE TABLE qcode (mot TEXT )");
    db.exec("CREATE TABLE animaux (mot TEXT )");
    // AUTOINCREMENT makes the engine create its own table, sqlite_sequence.
    db.exec("CREATE TABLE compteur (id INTEGER PRIMARY KEY AUTOINCREMENT, mot TEXT)");
    db.exec("INSERT INTO compteur (mot) VALUES ('x')");
    db.exec("DROP TABLE compteur");
    for (const QString &w : motWords)
        db.exec("INSERT INTO mot (mot) VALUES (?)", {w});
    for (const QString &w : qcodeWords)
        db.exec("INSERT INTO qcode (mot) VALUES (?)", {w});
    for (const QString &w : animalWords)
        db.exec("INSERT INTO animaux (mot) VALUES (?)", {w});
    transaction.commit();
    // The noises, longer than the tests' exercises, and a short sound per character.
    QDir().mkpath(m_root + "/qrm");
    QDir().mkpath(m_root + "/wav");
    for (int n = 1; n <= 3; ++n)
        writeTone(m_root + QStringLiteral("/qrm/qrm%1.wav").arg(n), 8000, 300 + 100 * n);
    for (const QVariantList &row : db.query("select wav from ref").rows)
        writeTone(m_root + "/wav/" + row.value(0).toString(), 30, 700);
    session.paths = AppPaths::fromProgramDir(m_root);
}

bool MainWindowFixture::isValid() const
{
    return m_ref.isValid() && m_dir.isValid() && QFile::exists(m_root + "/db/kvmot.sqlite")
           && QFile::exists(m_root + "/doc/kvmenu.htm");
}

QStringList MainWindowFixture::words(const QString &table) const
{
    WordDatabase db(m_root + "/db/kvmot.sqlite", WordDatabase::OpenMode::ReadOnly);
    QStringList list;
    for (const QVariantList &row : db.query("select mot from " + table + " order by mot").rows)
        list << row.value(0).toString();
    return list;
}

bool MainWindowFixture::addWord(const QString &table, const QString &word)
{
    WordDatabase db(m_root + "/db/kvmot.sqlite");
    return db.exec("INSERT INTO " + table + " (mot) VALUES (?)", {word});
}

std::unique_ptr<MainPF> MainWindowFixture::openWindow()
{
    return std::make_unique<MainPF>(session, m_ini, prompts, devices);
}

std::unique_ptr<MainPF> MainWindowFixture::openShown(const QList<std::pair<QString, QString>> &values)
{
    for (const auto &[key, value] : values)
        store(QStringLiteral("défaut"), key, value);
    std::unique_ptr<MainPF> window = openWindow();
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get()))
        qWarning("the window was not exposed");
    return window;
}

void MainWindowFixture::store(const QString &section, const QString &key, const QString &value)
{
    QSettings settings(m_ini, QSettings::IniFormat);
    settings.setValue(section + '/' + key, value);
}

QString MainWindowFixture::stored(const QString &section, const QString &key) const
{
    QSettings settings(m_ini, QSettings::IniFormat);
    const QVariant v = settings.value(section + '/' + key);
    return v.isValid() ? v.toString() : QStringLiteral("<absent>");
}

QStringList MainWindowFixture::storedSections() const
{
    QSettings settings(m_ini, QSettings::IniFormat);
    return settings.childGroups();
}

bool MainWindowFixture::runUntil(const std::function<bool()> &done)
{
    QElapsedTimer waited;
    waited.start();
    while (!done()) {
        if (waited.elapsed() > 20000)
            return false;
        clock.advance(10);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

QByteArray fileBytes(const QString &path)
{
    return readFile(path);
}

void press(QWidget *control)
{
    QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(8, control->height() / 2));
}

} // namespace kelvora::testsupport
