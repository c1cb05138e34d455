// The tree the build assembles must be complete and runnable as it stands.
#include "TestPaths.h"
#include "core/TextUtils.h"
#include "core/Windows1252.h"
#include "morse/PatternLookup.h"
#include "morse/SoundRenderer.h"
#include "morse/SoundSettings.h"
#include "words/WordDatabase.h"

#include <QFileInfo>
#include <QSet>
#include <QtTest>

using namespace kelvora;

namespace {
QByteArray read(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

quint32 u32(const QByteArray &b, int at)
{
    return qFromLittleEndian<quint32>(b.constData() + at);
}
quint16 u16(const QByteArray &b, int at)
{
    return qFromLittleEndian<quint16>(b.constData() + at);
}
} // namespace

class InstallationTreeTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        m_tree = QString::fromUtf8(testpaths::treeDir);
        m_db = std::make_unique<WordDatabase>(path("db/kvmot.sqlite"), WordDatabase::OpenMode::ReadOnly);
        QVERIFY2(m_db->isOpen(), qPrintable(m_db->errorString()));
        const QueryResult rows = m_db->query("select car from ref");
        QVERIFY(rows.ok);
        for (const QVariantList &row : rows.rows)
            m_characters.insert(row.value(0).toString().toLower());
    }

    void folders()
    {
        for (const char *folder : {"tmp", "qrm", "doc", "db", "import", "wav", "textes"})
            QVERIFY2(QFileInfo(path(folder)).isDir(), folder);
        for (const char *exe : {"kelvora", "kelvora-cli"})
            QVERIFY2(QFileInfo(path(exe)).isExecutable(), exe);
    }

    void everyEmittedCharacterHasARow_data()
    {
        QTest::addColumn<QString>("characters");
        QTest::addRow("examination alphabet") << "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*";
        QTest::addRow("first learning order") << "egmz0ahtr1nujf2idpc3wbyq4xovl5sk786.+?/9,'<*";
        QTest::addRow("second learning order") << "eish5'ptmo08/awjqn1+dbkx6.9,gz7?cy4lrf2v3?<*";
        QTest::addRow("French accented letters") << "éèêëàâäîïôöùûüçñ";
    }

    void everyEmittedCharacterHasARow()
    {
        QFETCH(QString, characters);
        for (const QChar c : characters)
            QVERIFY2(m_characters.contains(QString(c).toLower()), qPrintable(QString(c)));
    }

    void everyRowHasItsSound()
    {
        // Each file is what the program's own synthesiser makes of its character today.
        const QueryResult rows = m_db->query("select car, wav from ref");
        QVERIFY(rows.ok);
        QTemporaryDir scratch;
        PatternLookup lookup(*m_db);
        const SoundSettings settings = SoundSettings::defaults();
        const TimingResult timing = CALCCONFIG(settings.timingInputs(), lookup);
        QVERIFY(timing.ok);
        for (const QVariantList &row : rows.rows) {
            const QString file = path("wav/" + row.value(1).toString());
            const QByteArray wav = read(file);
            QVERIFY2(wav.size() > 44, qPrintable(file));
            QCOMPARE(u32(wav, 40), quint32(wav.size() - 44));
            RenderRequest request;
            request.exerciseText = row.value(0).toString();
            request.tone = settings.toneSettings(timing.plan);
            request.wavPath = scratch.filePath("c.wav");
            request.textPath = scratch.filePath("c.txt");
            test(request, lookup);
            QVERIFY2(read(request.wavPath) == wav, qPrintable(file + " is not up to date"));
        }
    }

    void wordTables_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<int>("atLeast");
        QTest::addRow("mot") << "mot" << 2000;
        QTest::addRow("qcode") << "qcode" << 20;
        QTest::addRow("abrev") << "abrev" << 40;
    }

    void wordTables()
    {
        QFETCH(QString, table);
        QFETCH(int, atLeast);
        const QueryResult words = m_db->query("select mot from " + table + " order by mot");
        QVERIFY2(words.ok, qPrintable(words.error));
        QVERIFY(int(words.rows.size()) >= atLeast);
        for (const QVariantList &row : words.rows) {
            const QString word = row.value(0).toString();
            QVERIFY(!word.isEmpty());
            QCOMPARE(windows1252::decode(windows1252::encode(word)), word);
            for (const QChar c : word)
                QVERIFY2(m_characters.contains(QString(c).toLower()), qPrintable(word));
        }
    }

    void noiseRecordings()
    {
        QList<QByteArray> seen;
        for (const char *file : {"qrm/qrm1.wav", "qrm/qrm2.wav", "qrm/qrm3.wav"}) {
            const QByteArray wav = read(path(file));
            QVERIFY2(wav.size() > 44 && wav.left(4) == "RIFF" && wav.mid(8, 4) == "WAVE" && u16(wav, 20) == 1, file); // PCM
            QVERIFY2(u32(wav, 28) > 0 && (wav.size() - 44) / double(u32(wav, 28)) >= 60.0, file); // a minute at least
            QVERIFY2(!seen.contains(wav), file);
            seen << wav;
        }
    }

    void helpPage()
    {
        const QString page = QString::fromUtf8(read(path("doc/kvmenu.htm")));
        QVERIFY(page.size() > 2000);
        for (const char *caption : {"Paramètres Examen", "Mémoriser ces paramètres", "Mots au clavier"})
            QVERIFY2(page.contains(QString::fromUtf8(caption)), caption);
    }

    void practiceTexts()
    {
        const QFileInfoList texts = QDir(path("textes")).entryInfoList({"*.txt"}, QDir::Files);
        QVERIFY(texts.size() >= 5);
        for (const QFileInfo &info : texts) {
            const QByteArray bytes = read(info.filePath());
            QVERIFY2(!bytes.contains("\n") || bytes.count("\n") == bytes.count("\r\n"),
                     qPrintable(info.fileName() + " has a line feed without CR"));
            const QString text = windows1252::decode(bytes);
            QVERIFY2(text.size() >= 150 && text.size() <= 1500, qPrintable(info.fileName()));
            for (const QChar c : text) {
                if (c != u'\r' && c != u'\n' && c != u' ')
                    QVERIFY2(m_characters.contains(QString(c).toLower()),
                             qPrintable(info.fileName() + ": " + QString(c)));
            }
        }
    }

private:
    QString path(const QString &relative) const { return m_tree + '/' + relative; }
    QString m_tree;
    std::unique_ptr<WordDatabase> m_db;
    QSet<QString> m_characters; // lower-cased `car` values
};

QTEST_GUILESS_MAIN(InstallationTreeTest)
#include "tst_installationtree.moc"
