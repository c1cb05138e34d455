#include "FileSizeLimit.h"
#include "RefFixture.h"
#include "WavBuilder.h"
#include "core/Windows1252.h"
#include "morse/PatternLookup.h"
#include "morse/SoundRenderer.h"
#include "words/WordDatabase.h"

#include <QtTest>

using namespace kelvora;
using testsupport::readFile;

class SoundRendererTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        m_bank = *calech(m_tone, nullptr);
        QFile::remove(m_fixture.path("test.wav"));
        QFile::remove(m_fixture.path("test.txt"));
    }

    void layout_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QPoint>("selection"); // start, length in characters
        QTest::addColumn<bool>("debfin");
        QTest::addColumn<QString>("symbols");
        const QString vvv = "...- l ...- l ...-";
        QTest::addRow("empty text: header only") << "" << QPoint() << false << "";
        QTest::addRow("letter gap between letters") << "ET" << QPoint() << false << ". l -";
        QTest::addRow("space is a word gap, no letter gap") << "E E" << QPoint() << false << ". w .";
        QTest::addRow("surrounding blanks trimmed") << "  E T  " << QPoint() << false << ". w -";
        QTest::addRow("start and end signs") << "A" << QPoint() << true << vvv + " w .- w .-.-.";
        QTest::addRow("selection only") << "TE ET" << QPoint(3, 2) << false << ". l -";
        QTest::addRow("selection of one character") << "TE" << QPoint(1, 1) << false << ".";
        QTest::addRow("empty selection sends everything") << "TE" << QPoint(1, 0) << false << "- l .";
        QTest::addRow("emoji is one character, sent as the previous row")
            << "E😀T" << QPoint() << false << ". l . l -";
    }

    void layout()
    {
        QFETCH(QString, text);
        QFETCH(QPoint, selection);
        QFETCH(bool, debfin);
        QFETCH(QString, symbols);
        RenderRequest r = request(text);
        r.selectionStart = selection.x();
        r.selectionLength = selection.y();
        r.debfin = debfin;
        PatternLookup lookup(m_fixture.database());
        const RenderResult result = test(r, lookup);
        QVERIFY2(result.ok, qPrintable(result.error));
        const QByteArray file = readFile(r.wavPath);
        const QByteArray want = expected(symbols);
        QCOMPARE(file.size(), want.size());
        QVERIFY(file == want);
        QCOMPARE(result.dataBytes, quint64(want.size() - wavHeaderSize));
    }

    // The canonical 44-byte header of 8-bit mono 8000 Hz PCM, its sizes those of the file.
    void header()
    {
        PatternLookup lookup(m_fixture.database());
        for (const QString &text : {QString(), QString("0123456789 ").repeated(40)}) { // empty, above 16 MiB
            const RenderResult result = test(request(text), lookup);
            const QByteArray file = readFile(m_fixture.path("test.wav"));
            const quint32 data = quint32(file.size() - 44);
            using namespace wavbuilder;
            QCOMPARE(file.left(44), "RIFF" + le32(data + 36) + "WAVEfmt " + le32(16) + le16(1) + le16(1) + le32(8000) + le32(8000)
                                        + le16(1) + le16(8) + "data" + le32(data));
            QCOMPARE(result.dataBytes, quint64(data));
        }
    }

    void textCopy_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addRow("trimmed, no line ending") << "  bonjour  " << QByteArray("bonjour");
        QTest::addRow("accents in Windows-1252") << "été à Noël" << QByteArray("\xe9t\xe9 \xe0 No\xebl");
        QTest::addRow("emoji becomes one ?") << "a😀b" << QByteArray("a?b");
    }

    void textCopy()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        RenderRequest r = request(text);
        r.selectionStart = 0;
        r.selectionLength = 1; // the copy holds the whole text, not the selection
        PatternLookup lookup(m_fixture.database());
        QVERIFY(test(r, lookup).ok);
        QCOMPARE(readFile(r.textPath), bytes);
    }

    void volumeErrorTouchesNoFile()
    {
        QFile old(m_fixture.path("test.wav"));
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("previous sound");
        old.close();
        RenderRequest r = request("E");
        r.tone.volume = "128";
        PatternLookup lookup(m_fixture.database());
        const RenderResult result = test(r, lookup);
        QVERIFY(!result.ok);
        QVERIFY(!result.error.isEmpty());
        QCOMPARE(readFile(r.wavPath), QByteArray("previous sound"));
        QVERIFY(!QFile::exists(r.textPath));
    }

    void failedWriteReplacesNothing_data()
    {
        QTest::addColumn<QString>("wav");         // relative to the fixture, or absolute
        QTest::addColumn<QString>("txt");
        QTest::addColumn<qint64>("fileSizeLimit"); // 0: none
        QTest::addColumn<QString>("reason");
        QTest::addRow("full disk") << "test.wav" << "test.txt" << qint64(3000) << "fichier trop grand";
        QTest::addRow("/dev/full") << "/dev/full" << "test.txt" << qint64(0) << "pas un fichier ordinaire";
        QTest::addRow("text copy in a folder") << "test.wav" << "folder" << qint64(0) << "c'est un dossier";
    }

    // The sound and its text are a pair: when either cannot be written, the pair of the last
    // exercise stays whole, no temporary file is left, and the error names the file and why.
    void failedWriteReplacesNothing()
    {
        QFETCH(QString, wav);
        QFETCH(QString, txt);
        QFETCH(qint64, fileSizeLimit);
        QFETCH(QString, reason);
        QDir dir(m_fixture.path(""));
        dir.mkpath("folder");
        QFile::link("/dev/full", m_fixture.path("full-link.wav"));
        for (const char *name : {"test.wav", "test.txt"}) {
            QFile old(m_fixture.path(name));
            QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
        }
        const QStringList before = dir.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        RenderRequest r = request(QString("PARIS ").repeated(20));
        r.wavPath = wav.startsWith('/') ? wav : m_fixture.path(wav);
        r.textPath = m_fixture.path(txt);
        PatternLookup lookup(m_fixture.database());
        RenderResult result;
        {
            const testsupport::FileSizeLimit limit(fileSizeLimit);
            result = test(r, lookup);
        }
        QVERIFY(!result.ok);
        const QString named = txt == "folder" ? r.textPath : r.wavPath;
        QVERIFY2(result.error.startsWith("Impossible d'écrire le fichier « " + QDir::toNativeSeparators(named) + " » : ")
                     && result.error.contains(reason),
                 qPrintable(result.error));
        QCOMPARE(readFile(m_fixture.path("test.wav")), QByteArray("old"));
        QCOMPARE(readFile(m_fixture.path("test.txt")), QByteArray("old"));
        QCOMPARE(dir.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot), before);
        QVERIFY(QFileInfo("/dev/full").exists() && !QFileInfo("/dev/full").isFile());
    }

    void stopsAtTheLargestCountableSize()
    {
        RenderRequest r = request("PARIS PARIS");
        r.maxDataBytes = 10000; // stands for the 4 GiB a header can count
        PatternLookup lookup(m_fixture.database());
        const RenderResult result = test(r, lookup);
        QVERIFY(result.truncated);
        const QByteArray file = readFile(r.wavPath);
        QCOMPARE(file.size(), 10000 + 44);
        QCOMPARE(qFromLittleEndian<quint32>(file.constData() + 40), 10000u);
        QCOMPARE(qFromLittleEndian<quint32>(file.constData() + 4), 10036u);
        // The samples written are the beginning of the full rendering.
        r.maxDataBytes = maxWavDataBytes;
        test(r, lookup);
        const QByteArray whole = readFile(r.wavPath);
        QCOMPARE(whole.mid(44, 10000), file.mid(44));
        // The window's player refuses a longer sound and keeps the last one.
        r.maxDataBytes = 8000 * 3600;
        r.exerciseText = QString(20000, u'0');
        r.refuseLonger = true;
        const RenderResult refused = test(r, lookup);
        QVERIFY(!refused.ok);
        QCOMPARE(refused.error, QString("Le texte donne plus de 1 h de Morse : sélectionnez-en une partie pour l'écouter."));
        QCOMPARE(readFile(r.wavPath), whole);
    }

    void lettersWithoutRowUsePreviousPattern()
    {
        RenderRequest r = request("T~");
        PatternLookup lookup(m_fixture.database());
        const RenderResult result = test(r, lookup);
        QCOMPARE(readFile(r.wavPath), expected("- l -"));
        QCOMPARE(result.patternPositions, 2);
    }

private:
    RenderRequest request(const QString &text) const;
    QByteArray expected(const QString &symbols) const;

    testsupport::RefFixture m_fixture;
    ToneBank m_bank;
    ToneSettings m_tone{{97, 291, 97, 291, 873}, "127", "700", "1"};
};

RenderRequest SoundRendererTest::request(const QString &text) const
{
    RenderRequest r;
    r.exerciseText = text;
    r.deb = "VVV";
    r.fin = "+";
    r.tone = m_tone;
    r.wavPath = m_fixture.path("test.wav");
    r.textPath = m_fixture.path("test.txt");
    return r;
}

// Space-separated tokens: a pattern of "." and "-" (its elements joined by element
// gaps), "l" a letter gap, "w" a word gap.
QByteArray SoundRendererTest::expected(const QString &tokens) const
{
    QByteArray samples;
    for (const QString &token : tokens.split(' ', Qt::SkipEmptyParts)) {
        if (token == "l") {
            samples += m_bank.letterGap;
        } else if (token == "w") {
            samples += m_bank.wordGap;
        } else {
            for (qsizetype j = 0; j < token.size(); ++j) {
                samples += token[j] == '.' ? m_bank.dot : m_bank.dash;
                if (j + 1 < token.size())
                    samples += m_bank.elementGap;
            }
        }
    }
    return wavHeader(quint32(samples.size())) + samples;
}

QTEST_GUILESS_MAIN(SoundRendererTest)
#include "tst_soundrenderer.moc"
