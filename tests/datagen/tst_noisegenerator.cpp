#include "NoiseGenerator.h"
#include "WavBuilder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

using namespace kelvora::noise;

Q_DECLARE_METATYPE(kelvora::noise::Kind)

namespace {

constexpr int kRate = 11025;

quint32 le(const QByteArray &b, qsizetype at, int bytes)
{
    quint32 v = 0;
    for (int i = bytes - 1; i >= 0; --i)
        v = (v << 8) | static_cast<quint8>(b[at + i]);
    return v;
}

// The samples after a canonical 44-byte header, read independently of the writer.
std::vector<int16_t> samplesOf(const QByteArray &wav)
{
    std::vector<int16_t> s;
    for (qsizetype at = 44; at + 1 < wav.size(); at += 2)
        s.push_back(static_cast<int16_t>(le(wav, at, 2)));
    return s;
}

double rmsDbfs(const std::vector<int16_t> &s, std::size_t from, std::size_t to)
{
    to = std::min(to, s.size());
    double sum = 0.0;
    for (std::size_t i = from; i < to; ++i)
        sum += static_cast<double>(s[i]) * s[i];
    return 20.0 * std::log10(std::max(std::sqrt(sum / std::max<double>(1, to - from)), 1e-9) / 32768.0);
}

} // namespace

class TestNoiseGenerator : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    std::map<Kind, QByteArray> m_installed; // the files written by writeQrmFiles

    static void addKindRows()
    {
        QTest::addColumn<Kind>("kind");
        QTest::newRow("qrm1") << Kind::Static;
        QTest::newRow("qrm2") << Kind::Station;
        QTest::newRow("qrm3") << Kind::Stations;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QString error = QStringLiteral("stale");
        const QString qrmDir = m_dir.filePath(QStringLiteral("qrm"));
        QVERIFY2(writeQrmFiles(qrmDir, &error), qPrintable(error));
        QVERIFY(error.isEmpty());
        for (const Kind kind : {Kind::Static, Kind::Station, Kind::Stations}) {
            QFile file(QDir(qrmDir).filePath(QStringLiteral("qrm%1.wav").arg(static_cast<int>(kind))));
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
            m_installed[kind] = file.readAll();
        }
    }

    void installedFile_data() { addKindRows(); }

    void installedFile()
    {
        QFETCH(Kind, kind);
        const QByteArray &b = m_installed[kind];
        QVERIFY(b.size() > 44);
        using namespace kelvora::wavbuilder; // the canonical header of 16-bit mono 11025 Hz
        QCOMPARE(b.left(44), wav(kelvora::PcmFormat{kRate, 1, kelvora::PcmSample::Int16}, b.mid(44)).left(44));
        const double seconds = (b.size() - 44) / 2.0 / kRate;
        QVERIFY2(seconds >= 60.0, qPrintable(QString::number(seconds)));
    }

    void levels_data() { addKindRows(); }

    void levels()
    {
        QFETCH(Kind, kind);
        const std::vector<int16_t> s = samplesOf(m_installed[kind]);
        const double rms = rmsDbfs(s, 0, s.size());
        QVERIFY2(rms >= -27.0 && rms <= -19.0, qPrintable(QStringLiteral("RMS %1 dBFS").arg(rms)));
        const auto [low, high] = std::minmax_element(s.begin(), s.end());
        QVERIFY2(*high < 32767 && *low > -32767, qPrintable(QStringLiteral("%1 %2").arg(*low).arg(*high)));
        // Heard from the first seconds on, since each exercise restarts it.
        const double opening = rmsDbfs(s, 0, 3 * kRate);
        QVERIFY2(opening >= rms - 12.0, qPrintable(QStringLiteral("first 3 s at %1 dBFS").arg(opening)));
    }

    void determinism_data() { addKindRows(); }

    void determinism()
    {
        QFETCH(Kind, kind);
        const QByteArray first = wavFile(generate(kind, 8.0, 1234));
        QCOMPARE(first.size(), 44 + 2 * 88200);
        QVERIFY(first == wavFile(generate(kind, 8.0, 1234)));
        QVERIFY(first != wavFile(generate(kind, 8.0, 1235)));
        // The installed file is exactly the output of its fixed seed.
        QVERIFY(m_installed[kind] == wavFile(generate(kind, kQrmSeconds, qrmSeed(kind))));
    }

    void writeError()
    {
        // The destination lies under a regular file, so the folder cannot be made.
        QTemporaryDir scratch;
        QFile blocker(scratch.filePath(QStringLiteral("blocker")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        QString error;
        QVERIFY(!writeQrmFiles(scratch.filePath(QStringLiteral("blocker/qrm")), &error));
        QVERIFY2(error.contains(QStringLiteral("Impossible")) && error.contains(QStringLiteral("blocker")),
                 qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TestNoiseGenerator)
#include "tst_noisegenerator.moc"
