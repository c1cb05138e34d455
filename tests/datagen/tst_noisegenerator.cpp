#include "NoiseGenerator.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <numeric>
#include <vector>

using namespace kelvora::noise;

Q_DECLARE_METATYPE(kelvora::noise::Kind)

namespace {

constexpr int kRate = 11025;
constexpr double kLearnerPitchHz = 891.0; // the exercise tone with default settings

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

// Hann-windowed power at each frequency of hz, one row per block of n samples;
// `total` gets the one-sided power of every block (Parseval), for shares.
std::vector<std::vector<double>> blockPowers(const std::vector<int16_t> &s, int n,
                                             const std::vector<double> &hz, double *total = nullptr)
{
    std::vector<std::vector<double>> rows;
    std::vector<double> y(static_cast<std::size_t>(n));
    for (std::size_t start = 0; start + y.size() <= s.size(); start += y.size()) {
        for (std::size_t i = 0; i < y.size(); ++i) {
            y[i] = (0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * static_cast<double>(i) / n)) * s[start + i];
            if (total)
                *total += y[i] * y[i] * n / 2.0;
        }
        std::vector<double> row;
        for (const double f : hz) { // Goertzel
            const double coeff = 2.0 * std::cos(2.0 * std::numbers::pi * f / kRate);
            double s1 = 0.0, s2 = 0.0;
            for (const double x : y) {
                const double s0 = x + coeff * s1 - s2;
                s2 = s1;
                s1 = s0;
            }
            row.push_back(std::max(0.0, s1 * s1 + s2 * s2 - coeff * s1 * s2));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

// What tells the three recordings apart by ear.
struct Character {
    double share = 0.0;       // energy within +-50 Hz of the strongest pitch
    std::vector<double> peaks; // tonal peaks between 400 and 1600 Hz
    int transients = 0;        // loud broadband bursts (crashes)
};

Character characterOf(const std::vector<int16_t> &s)
{
    Character c;
    // Average spectrum in 5 Hz bins over 400-1600 Hz, where the stations are.
    std::vector<double> hz;
    for (double f = 400.0; f <= 1600.0; f += 5.0)
        hz.push_back(f);
    double total = 0.0;
    std::vector<double> power(hz.size(), 0.0);
    for (const auto &row : blockPowers(s, kRate / 5, hz, &total))
        std::transform(power.begin(), power.end(), row.begin(), power.begin(), std::plus<>());
    const auto top = std::max_element(power.begin(), power.end()) - power.begin();
    std::vector<double> db;
    for (std::size_t i = 0; i < power.size(); ++i) {
        if (std::fabs(hz[i] - hz[top]) <= 50.0)
            c.share += power[i] / total;
        db.push_back(10.0 * std::log10(std::max(power[i], 1e-30)));
    }
    // A peak stands 15 dB over the median and dominates +-50 Hz (10 bins).
    std::vector<double> sorted = db;
    std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
    const double floor = sorted[sorted.size() / 2];
    for (std::ptrdiff_t i = 0; i < std::ssize(db); ++i) {
        bool dominant = db[i] >= floor + 15.0;
        for (std::ptrdiff_t j = std::max<std::ptrdiff_t>(0, i - 10); j <= std::min(std::ssize(db) - 1, i + 10); ++j)
            dominant = dominant && (j == i || db[j] < db[i] || (db[j] == db[i] && j > i));
        if (dominant)
            c.peaks.push_back(hz[i]);
    }
    // Transients: 20 ms blocks whose energy in 1900-2700 Hz (above every station)
    // is 8 dB over the median; bursts closer than 0.3 s count once.
    std::vector<double> band;
    for (int k = 38; k * kRate / 220.0 <= 2700.0; ++k) // bins of 50.1 Hz from 1904 Hz
        band.push_back(k * kRate / 220.0);
    std::vector<double> energies;
    for (const auto &row : blockPowers(s, 220, band))
        energies.push_back(std::accumulate(row.begin(), row.end(), 0.0));
    sorted = energies;
    std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
    const double threshold = sorted[sorted.size() / 2] * std::pow(10.0, 0.8);
    double lastLoud = -1e9;
    for (std::size_t b = 0; b < energies.size(); ++b) {
        const double t = static_cast<double>(b) * 220.0 / kRate;
        if (energies[b] >= threshold) {
            c.transients += t - lastLoud > 0.3 ? 1 : 0;
            lastLoud = t;
        }
    }
    return c;
}

QString describe(const Character &c)
{
    QStringList peaks;
    for (const double f : c.peaks)
        peaks << QString::number(f);
    return QStringLiteral("share %1, peaks [%2], transients %3").arg(c.share).arg(peaks.join(' ')).arg(c.transients);
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
        QCOMPARE(b.left(4), QByteArray("RIFF"));
        QCOMPARE(b.mid(8, 8), QByteArray("WAVEfmt "));
        QCOMPARE(b.mid(36, 4), QByteArray("data"));
        // RIFF size, fmt size, PCM, mono, rate, byte rate, block align, bits, data size.
        const QList<quint32> fields = {le(b, 4, 4),  le(b, 16, 4), le(b, 20, 2), le(b, 22, 2), le(b, 24, 4),
                                       le(b, 28, 4), le(b, 32, 2), le(b, 34, 2), le(b, 40, 4)};
        const auto size = static_cast<quint32>(b.size());
        QCOMPARE(fields, QList<quint32>({size - 8, 16, 1, 1, 11025, 22050, 2, 16, size - 44}));
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

    void kindsSoundDifferent_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<double>("minShare");
        QTest::addColumn<double>("maxShare");
        QTest::addColumn<int>("minPeaks");
        QTest::addColumn<int>("maxPeaks");
        QTest::addColumn<double>("lowHz"); // where the peaks may lie
        QTest::addColumn<double>("highHz");
        QTest::addColumn<int>("minTransients");
        QTest::addColumn<int>("maxTransients");
        // Static: broadband with crashes; one station near 1 kHz; 4 to 6 stations.
        QTest::newRow("qrm1") << Kind::Static << 0.0 << 0.15 << 0 << 0 << 0.0 << 0.0 << 5 << 40;
        QTest::newRow("qrm2") << Kind::Station << 0.6 << 1.0 << 1 << 1 << 945.0 << 1055.0 << 0 << 0;
        QTest::newRow("qrm3") << Kind::Stations << 0.0 << 0.5 << 4 << 6 << 500.0 << 1500.0 << 0 << 0;
    }

    void kindsSoundDifferent()
    {
        QFETCH(Kind, kind);
        QFETCH(double, minShare);
        QFETCH(double, maxShare);
        QFETCH(int, minPeaks);
        QFETCH(int, maxPeaks);
        QFETCH(double, lowHz);
        QFETCH(double, highHz);
        QFETCH(int, minTransients);
        QFETCH(int, maxTransients);
        const Character c = characterOf(samplesOf(m_installed[kind]));
        const QByteArray detail = describe(c).toUtf8();
        QVERIFY2(c.share >= minShare && c.share <= maxShare, detail);
        QVERIFY2(std::ssize(c.peaks) >= minPeaks && std::ssize(c.peaks) <= maxPeaks, detail);
        for (const double hz : c.peaks) {
            QVERIFY2(hz >= lowHz && hz <= highHz, detail);
            QVERIFY2(std::fabs(hz - kLearnerPitchHz) >= 60.0, detail); // the learner's tone stays clear
        }
        QVERIFY2(c.transients >= minTransients && c.transients <= maxTransients, detail);
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
