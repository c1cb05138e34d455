#include "WavBuilder.h"
#include "audio/WavReader.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace kelvora;
using namespace kelvora::wavbuilder;

namespace {

const PcmFormat u8Mono8k{8000, 1, PcmSample::UInt8};
const PcmFormat s16Mono11k{11025, 1, PcmSample::Int16};

QByteArray extensibleWav(const QByteArray &pcm)
{
    // WAVE_FORMAT_EXTENSIBLE, 16-bit mono 8000 Hz, sub-format PCM.
    const QByteArray fmt = le16(0xFFFE) + le16(1) + le32(8000) + le32(16000) + le16(2) + le16(16)
                           + le16(22) + le16(16) + le32(4) + le16(1)
                           + QByteArray::fromHex("000000001000800000aa00389b71");
    const QByteArray body = "WAVE" + chunk("fmt ", fmt) + chunk("data", pcm);
    return "RIFF" + le32(quint32(body.size())) + body;
}

QByteArray withFmtTag(const PcmFormat &f, quint16 tag, quint16 bits, quint16 channels)
{
    QByteArray fmt = fmtChunk(f, tag);
    qToLittleEndian<quint16>(channels, fmt.data() + 10);
    qToLittleEndian<quint16>(bits, fmt.data() + 22);
    const QByteArray body = "WAVE" + fmt + "data" + le32(4) + QByteArray(4, '\0');
    return "RIFF" + le32(quint32(body.size())) + body;
}

} // namespace

class WavReaderTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
    }

    void reads_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("bytesPerSample");
        QTest::addColumn<QByteArray>("pcm");
        QTest::addColumn<qint64>("lengthMs");
        QTest::addColumn<bool>("truncated");

        const QByteArray morse = toneU8(300) + silenceU8(700);
        QTest::addRow("8-bit mono 8000 Hz") << wav(u8Mono8k, morse) << 8000 << 1 << 1 << morse
                                            << qint64(1000) << false;
        const QByteArray s16 = pcmFor(s16Mono11k, 500); // 5512 frames: 499.9 ms
        QTest::addRow("16-bit mono 11025 Hz") << wav(s16Mono11k, s16) << 11025 << 1 << 2 << s16
                                              << qint64(499) << false;
        const QByteArray oddBare = chunk("junk", "abc", false);
        QTest::addRow("odd-sized chunk without its pad byte")
            << wav(u8Mono8k, morse, oddBare) << 8000 << 1 << 1 << morse << qint64(1000) << false;
        const QByteArray part = toneU8(500);
        QTest::addRow("data size larger than the file") << wav(u8Mono8k, part, {}, 100000) << 8000
                                                        << 1 << 1 << part << qint64(500) << true;
        const QByteArray s16odd = pcmFor(s16Mono11k, 100) + 'x';
        QTest::addRow("16-bit data ending inside a frame")
            << wav(s16Mono11k, s16odd) << 11025 << 1 << 2 << s16odd.chopped(1) << qint64(99) << false;
        const QByteArray ext = pcmFor({8000, 1, PcmSample::Int16}, 200);
        QTest::addRow("extensible header naming PCM") << extensibleWav(ext) << 8000 << 1 << 2 << ext
                                                      << qint64(200) << false;
    }

    void reads()
    {
        QFETCH(QByteArray, file);
        QFETCH(int, rate);
        QFETCH(int, channels);
        QFETCH(int, bytesPerSample);
        QFETCH(QByteArray, pcm);
        QFETCH(qint64, lengthMs);
        QFETCH(bool, truncated);

        const QString path = m_dir.filePath(QStringLiteral("son.wav"));
        QVERIFY(writeFile(path, file));
        QString error = QStringLiteral("unchanged");
        const std::optional<WavSound> sound = WavReader::read(path, &error);
        QVERIFY2(sound.has_value(), qPrintable(error));
        QCOMPARE(sound->format.sampleRate, rate);
        QCOMPARE(sound->format.channels, channels);
        QCOMPARE(sound->format.bytesPerSample(), bytesPerSample);
        QCOMPARE(sound->pcm.size(), pcm.size());
        QVERIFY(sound->pcm == pcm);
        QCOMPARE(sound->lengthMs(), lengthMs);
        QCOMPARE(sound->truncated, truncated);
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("kind"); // "bytes", "missing" or "directory"
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("expected");

        const QString notWav = QStringLiteral("n'est pas un fichier WAV lisible.");
        const QString unsupported = QStringLiteral("format WAV non pris en charge");
        const QByteArray good = wav(u8Mono8k, toneU8(100));
        QTest::addRow("not RIFF") << "bytes" << QByteArray("Bonjour, ceci est du texte.\r\n") << notWav;
        QTest::addRow("no data chunk") << "bytes"
                                       << "RIFF" + le32(28) + "WAVE" + fmtChunk(u8Mono8k) << notWav;
        QTest::addRow("24-bit samples") << "bytes" << withFmtTag(u8Mono8k, 1, 24, 1) << unsupported;
        QTest::addRow("missing file") << "missing" << QByteArray()
                                      << QStringLiteral("est introuvable.");
        QTest::addRow("a directory") << "directory" << QByteArray()
                                     << QStringLiteral("ne peut pas être lu : c'est un dossier.");
    }

    void refuses()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, file);
        QFETCH(QString, expected);

        QString path = m_dir.filePath(QStringLiteral("mauvais.wav"));
        QFile::remove(path);
        if (kind == "bytes")
            QVERIFY(writeFile(path, file));
        else if (kind == "directory")
            QVERIFY(QDir(m_dir.path()).mkpath(path = m_dir.filePath(QStringLiteral("dossier.wav"))));
        else
            path = m_dir.filePath(QStringLiteral("absent.wav"));

        QString error;
        QVERIFY(!WavReader::read(path, &error).has_value());
        QVERIFY2(error.contains(expected), qPrintable(error));
        QVERIFY2(error.startsWith(QStringLiteral("Le fichier « %1 »").arg(QDir::toNativeSeparators(path))),
                 qPrintable(error));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(WavReaderTest)
#include "tst_wavreader.moc"
