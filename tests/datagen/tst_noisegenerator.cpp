#include "NoiseGenerator.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>
#include <vector>

using namespace kelvora::noise;

Q_DECLARE_METATYPE(kelvora::noise::Kind)

namespace {

constexpr double kLearnerPitchHz = 891.0; // the exercise tone with default settings
constexpr uint32_t kInstalled = 0;        // seed column: the file written by writeQrmFiles

// ---------------------------------------------------------------------------
// WAV reading, independent of the writer.

struct Wav {
    QString problem; // empty when the layout is valid
    quint32 riffSize = 0, fmtSize = 0, sampleRate = 0, byteRate = 0, dataSize = 0;
    quint16 format = 0, channels = 0, blockAlign = 0, bits = 0;
    std::vector<int16_t> samples;
};

quint16 le16(const QByteArray &b, qsizetype at)
{
    return static_cast<quint16>(static_cast<quint8>(b[at]) | (static_cast<quint8>(b[at + 1]) << 8));
}

quint32 le32(const QByteArray &b, qsizetype at)
{
    return static_cast<quint32>(le16(b, at)) | (static_cast<quint32>(le16(b, at + 2)) << 16);
}

Wav readWav(const QByteArray &bytes)
{
    Wav w;
    if (bytes.size() < 44) {
        w.problem = QStringLiteral("shorter than a header");
        return w;
    }
    if (bytes.mid(0, 4) != "RIFF" || bytes.mid(8, 4) != "WAVE" || bytes.mid(12, 4) != "fmt "
        || bytes.mid(36, 4) != "data") {
        w.problem = QStringLiteral("chunk tags not in canonical order");
        return w;
    }
    w.riffSize = le32(bytes, 4);
    w.fmtSize = le32(bytes, 16);
    w.format = le16(bytes, 20);
    w.channels = le16(bytes, 22);
    w.sampleRate = le32(bytes, 24);
    w.byteRate = le32(bytes, 28);
    w.blockAlign = le16(bytes, 32);
    w.bits = le16(bytes, 34);
    w.dataSize = le32(bytes, 40);
    for (qsizetype at = 44; at + 1 < bytes.size(); at += 2)
        w.samples.push_back(static_cast<int16_t>(le16(bytes, at)));
    return w;
}

// ---------------------------------------------------------------------------
// Measures.

double rmsDbfs(const std::vector<int16_t> &s, std::size_t from = 0, std::size_t to = SIZE_MAX)
{
    to = std::min(to, s.size());
    double sum = 0.0;
    for (std::size_t i = from; i < to; ++i)
        sum += static_cast<double>(s[i]) * s[i];
    const double rms = std::sqrt(sum / static_cast<double>(std::max<std::size_t>(1, to - from)));
    return 20.0 * std::log10(std::max(rms, 1e-9) / 32768.0);
}

std::vector<double> hann(int n)
{
    std::vector<double> w(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        w[static_cast<std::size_t>(i)] = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * i / n);
    return w;
}

// |X(f)|^2 of one block by the Goertzel recurrence.
double goertzel(const double *x, int n, double hz, int rate)
{
    const double coeff = 2.0 * std::cos(2.0 * std::numbers::pi * hz / rate);
    double s1 = 0.0, s2 = 0.0;
    for (int i = 0; i < n; ++i) {
        const double s0 = x[i] + coeff * s1 - s2;
        s2 = s1;
        s1 = s0;
    }
    return std::max(0.0, s1 * s1 + s2 * s2 - coeff * s1 * s2);
}

// Average power spectrum over Hann windows of 0.2 s (5 Hz bins) between
// lowHz and highHz, plus the one-sided total power (Parseval) for shares.
struct Spectrum {
    double firstHz = 0.0;
    double binHz = 0.0;
    std::vector<double> power;
    double total = 0.0;
};

Spectrum spectrum(const std::vector<int16_t> &s, int rate, double lowHz, double highHz)
{
    const int n = rate / 5;
    Spectrum sp;
    sp.binHz = static_cast<double>(rate) / n;
    const int firstBin = static_cast<int>(std::ceil(lowHz / sp.binHz));
    const int lastBin = static_cast<int>(std::floor(highHz / sp.binHz));
    sp.firstHz = firstBin * sp.binHz;
    sp.power.assign(static_cast<std::size_t>(lastBin - firstBin + 1), 0.0);
    const std::vector<double> window = hann(n);
    std::vector<double> y(static_cast<std::size_t>(n));
    for (std::size_t start = 0; start + static_cast<std::size_t>(n) <= s.size(); start += static_cast<std::size_t>(n)) {
        double energy = 0.0;
        for (int i = 0; i < n; ++i) {
            y[static_cast<std::size_t>(i)] = window[static_cast<std::size_t>(i)] * s[start + static_cast<std::size_t>(i)];
            energy += y[static_cast<std::size_t>(i)] * y[static_cast<std::size_t>(i)];
        }
        sp.total += energy * n / 2.0;
        for (int k = firstBin; k <= lastBin; ++k)
            sp.power[static_cast<std::size_t>(k - firstBin)] += goertzel(y.data(), n, k * sp.binHz, rate);
    }
    return sp;
}

double frequencyOf(const Spectrum &sp, std::size_t bin)
{
    return sp.firstHz + static_cast<double>(bin) * sp.binHz;
}

// Tonal peaks: bins at least 15 dB above the median that dominate +-50 Hz.
std::vector<double> spectralPeaks(const Spectrum &sp)
{
    std::vector<double> db;
    for (const double p : sp.power)
        db.push_back(10.0 * std::log10(std::max(p, 1e-30)));
    std::vector<double> sorted = db;
    std::sort(sorted.begin(), sorted.end());
    const double floor = sorted[sorted.size() / 2];
    const auto radius = static_cast<std::ptrdiff_t>(std::lround(50.0 / sp.binHz));
    std::vector<double> peaks;
    for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(db.size()); ++i) {
        if (db[static_cast<std::size_t>(i)] < floor + 15.0)
            continue;
        bool dominant = true;
        for (std::ptrdiff_t j = std::max<std::ptrdiff_t>(0, i - radius);
             j <= std::min<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(db.size()) - 1, i + radius); ++j) {
            const double a = db[static_cast<std::size_t>(j)];
            const double b = db[static_cast<std::size_t>(i)];
            if (j != i && (a > b || (a == b && j < i)))
                dominant = false;
        }
        if (dominant)
            peaks.push_back(frequencyOf(sp, static_cast<std::size_t>(i)));
    }
    return peaks;
}

// Share of the whole energy within +-50 Hz of the strongest bin.
double narrowBandShare(const Spectrum &sp)
{
    const auto top = static_cast<std::size_t>(std::max_element(sp.power.begin(), sp.power.end()) - sp.power.begin());
    double band = 0.0;
    for (std::size_t i = 0; i < sp.power.size(); ++i) {
        if (std::fabs(frequencyOf(sp, i) - frequencyOf(sp, top)) <= 50.0)
            band += sp.power[i];
    }
    return sp.total > 0.0 ? band / sp.total : 0.0;
}

// Loud broadband transients: 20 ms blocks whose energy in 1900-2700 Hz (above
// every station, so only static, crashes or key clicks land there) is 8 dB
// over the median; bursts closer than 0.3 s count once.
int loudTransients(const std::vector<int16_t> &s, int rate)
{
    const int n = 220;
    const std::vector<double> window = hann(n);
    const double binHz = static_cast<double>(rate) / n;
    std::vector<double> energies;
    std::vector<double> y(static_cast<std::size_t>(n));
    for (std::size_t start = 0; start + static_cast<std::size_t>(n) <= s.size(); start += static_cast<std::size_t>(n)) {
        for (int i = 0; i < n; ++i)
            y[static_cast<std::size_t>(i)] = window[static_cast<std::size_t>(i)] * s[start + static_cast<std::size_t>(i)];
        double e = 0.0;
        for (int k = static_cast<int>(std::ceil(1900.0 / binHz)); k * binHz <= 2700.0; ++k)
            e += goertzel(y.data(), n, k * binHz, rate);
        energies.push_back(e);
    }
    std::vector<double> sorted = energies;
    std::sort(sorted.begin(), sorted.end());
    const double threshold = sorted[sorted.size() / 2] * std::pow(10.0, 0.8);
    const double blockSeconds = static_cast<double>(n) / rate;
    int count = 0;
    double lastLoud = -1e9;
    for (std::size_t b = 0; b < energies.size(); ++b) {
        if (energies[b] < threshold)
            continue;
        const double t = static_cast<double>(b) * blockSeconds;
        if (t - lastLoud > 0.3)
            ++count;
        lastLoud = t;
    }
    return count;
}

// Tone amplitude at hz in consecutive blocks.
std::vector<double> toneAmplitude(const std::vector<int16_t> &s, int rate, double hz, int block, bool windowed)
{
    const std::vector<double> window = windowed ? hann(block) : std::vector<double>(static_cast<std::size_t>(block), 1.0);
    std::vector<double> out;
    std::vector<double> y(static_cast<std::size_t>(block));
    for (std::size_t start = 0; start + static_cast<std::size_t>(block) <= s.size(); start += static_cast<std::size_t>(block)) {
        for (int i = 0; i < block; ++i)
            y[static_cast<std::size_t>(i)] = window[static_cast<std::size_t>(i)] * s[start + static_cast<std::size_t>(i)];
        out.push_back(std::sqrt(goertzel(y.data(), block, hz, rate)));
    }
    return out;
}

double percentile(std::vector<double> v, double p)
{
    std::sort(v.begin(), v.end());
    return v[static_cast<std::size_t>(p * static_cast<double>(v.size() - 1))];
}

// The interfering station as a listener would copy it: on/off runs of the
// tone, their lengths in dots, and the text they spell.
struct Keying {
    double dotSeconds = 0.0;
    int runs = 0;
    double fitShare = 0.0; // runs of 1 or 3 dots (on), 1, 3 or >= 7 dots (off)
    QString text;
};

const QHash<QString, QChar> &morseToChar()
{
    static const QHash<QString, QChar> table = [] {
        const char *codes[] = {"A.-",    "B-...",  "C-.-.",  "D-..",   "E.",     "F..-.",  "G--.",   "H....",
                               "I..",    "J.---",  "K-.-",   "L.-..",  "M--",    "N-.",    "O---",   "P.--.",
                               "Q--.-",  "R.-.",   "S...",   "T-",     "U..-",   "V...-",  "W.--",   "X-..-",
                               "Y-.--",  "Z--..",  "0-----", "1.----", "2..---", "3...--", "4....-", "5.....",
                               "6-....", "7--...", "8---..", "9----.", "/-..-.", "?..--..", "=-...-"};
        QHash<QString, QChar> h;
        for (const char *code : codes)
            h.insert(QString::fromLatin1(code + 1), QLatin1Char(code[0]));
        return h;
    }();
    return table;
}

Keying decodeKeying(const std::vector<int16_t> &s, int rate, double pitchHz)
{
    const int block = 44; // 4 ms
    const double blockSeconds = static_cast<double>(block) / rate;
    const std::vector<double> amp = toneAmplitude(s, rate, pitchHz, block, false);
    const double reference = percentile(amp, 0.95);
    // Half of the local maximum follows the slow fading; the floor ignores hiss.
    const auto reach = static_cast<std::ptrdiff_t>(1.5 / blockSeconds);
    std::vector<bool> on(amp.size());
    for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(amp.size()); ++i) {
        double local = 0.0;
        for (std::ptrdiff_t j = std::max<std::ptrdiff_t>(0, i - reach);
             j < std::min<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(amp.size()), i + reach); ++j)
            local = std::max(local, amp[static_cast<std::size_t>(j)]);
        on[static_cast<std::size_t>(i)] = amp[static_cast<std::size_t>(i)] >= std::max(0.5 * local, 0.2 * reference);
    }
    std::vector<std::pair<bool, int>> runs;
    for (const bool b : on) {
        if (!runs.empty() && runs.back().first == b)
            ++runs.back().second;
        else
            runs.emplace_back(b, 1);
    }
    // Leading silence, trailing silence and an element cut by the end say nothing.
    if (!runs.empty() && !runs.front().first)
        runs.erase(runs.begin());
    if (!runs.empty() && !runs.back().first)
        runs.pop_back();
    if (!runs.empty())
        runs.pop_back();

    Keying k;
    std::vector<int> onRuns;
    for (const auto &[isOn, length] : runs) {
        if (isOn)
            onRuns.push_back(length);
    }
    if (onRuns.size() < 20)
        return k;
    std::sort(onRuns.begin(), onRuns.end());
    const int shortest = onRuns[onRuns.size() / 10];
    std::vector<double> dots;
    for (const int r : onRuns) {
        if (r <= 2 * shortest)
            dots.push_back(r);
    }
    const double dot = percentile(dots, 0.5);
    k.dotSeconds = dot * blockSeconds;
    k.runs = static_cast<int>(runs.size());

    int fitting = 0;
    QString symbol;
    auto flush = [&] {
        if (!symbol.isEmpty())
            k.text += morseToChar().value(symbol, QLatin1Char('#'));
        symbol.clear();
    };
    for (const auto &[isOn, length] : runs) {
        const double units = length / dot;
        const bool one = std::fabs(units - 1.0) <= 0.3;
        const bool three = std::fabs(units - 3.0) <= 0.6;
        if (isOn) {
            fitting += (one || three) ? 1 : 0;
            symbol += units < 2.0 ? QLatin1Char('.') : QLatin1Char('-');
        } else {
            fitting += (one || three || units >= 6.3) ? 1 : 0;
            if (units >= 5.0) {
                flush();
                k.text += QLatin1Char(' ');
            } else if (units >= 2.0) {
                flush();
            }
        }
    }
    flush();
    k.fitShare = static_cast<double>(fitting) / static_cast<double>(runs.size());
    return k;
}

// When a station at hz is heard, in 0.1 s Hann blocks (narrow enough to
// separate stations 80 Hz apart).
std::vector<bool> activity(const std::vector<int16_t> &s, int rate, double hz)
{
    const std::vector<double> amp = toneAmplitude(s, rate, hz, rate / 10, true);
    const double reference = percentile(amp, 0.99);
    std::vector<bool> active;
    for (const double a : amp)
        active.push_back(a >= 0.2 * reference);
    return active;
}

QString describe(const std::vector<double> &hz)
{
    QStringList parts;
    for (const double f : hz)
        parts << QString::number(f, 'f', 0);
    return parts.join(QLatin1Char(' '));
}

} // namespace

class TestNoiseGenerator : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::map<Kind, QByteArray> m_installed;
    std::map<std::pair<Kind, uint32_t>, std::vector<int16_t>> m_cache;
    std::map<std::pair<Kind, uint32_t>, Spectrum> m_spectra;

    // 65 s of a kind: the installed file for kInstalled, else freshly generated.
    const std::vector<int16_t> &samples(Kind kind, uint32_t seed)
    {
        auto &slot = m_cache[{kind, seed}];
        if (slot.empty()) {
            slot = seed == kInstalled ? readWav(m_installed[kind]).samples
                                      : generate(kind, kQrmSeconds, seed).samples;
        }
        return slot;
    }

    // Its average spectrum over 400-1600 Hz, where the stations are.
    const Spectrum &spectrumOf(Kind kind, uint32_t seed)
    {
        const auto key = std::make_pair(kind, seed);
        auto found = m_spectra.find(key);
        if (found == m_spectra.end())
            found = m_spectra.emplace(key, spectrum(samples(kind, seed), 11025, 400.0, 1600.0)).first;
        return found->second;
    }

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
        const QByteArray &bytes = m_installed[kind];
        const Wav w = readWav(bytes);
        QVERIFY2(w.problem.isEmpty(), qPrintable(w.problem));
        QCOMPARE(w.riffSize, static_cast<quint32>(bytes.size() - 8));
        QCOMPARE(w.fmtSize, 16u);
        QCOMPARE(w.format, quint16(1));
        QCOMPARE(w.channels, quint16(1));
        QCOMPARE(w.bits, quint16(16));
        QCOMPARE(w.blockAlign, quint16(2));
        QCOMPARE(w.sampleRate, 11025u);
        QCOMPARE(w.byteRate, 22050u);
        QCOMPARE(w.dataSize, static_cast<quint32>(bytes.size() - 44));
        const double seconds = static_cast<double>(w.samples.size()) / w.sampleRate;
        QVERIFY2(seconds >= 60.0, qPrintable(QString::number(seconds)));
        // The installation is reproducible: the file is exactly the seeded output.
        QVERIFY(bytes == wavFile(generate(kind, kQrmSeconds, qrmSeed(kind))));
    }

    void levels_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<uint32_t>("seed");
        QTest::addColumn<double>("seconds");
        QTest::newRow("qrm1") << Kind::Static << kInstalled << kQrmSeconds;
        QTest::newRow("qrm2") << Kind::Station << kInstalled << kQrmSeconds;
        QTest::newRow("qrm3") << Kind::Stations << kInstalled << kQrmSeconds;
        QTest::newRow("qrm1 graine 99, 240 s") << Kind::Static << 99u << 240.0;
        QTest::newRow("qrm2 graine 99, 240 s") << Kind::Station << 99u << 240.0;
        QTest::newRow("qrm3 graine 99, 240 s") << Kind::Stations << 99u << 240.0;
    }

    void levels()
    {
        QFETCH(Kind, kind);
        QFETCH(uint32_t, seed);
        QFETCH(double, seconds);
        const std::vector<int16_t> s = seed == kInstalled ? samples(kind, seed) : generate(kind, seconds, seed).samples;
        QVERIFY(!s.empty());
        const double rms = rmsDbfs(s);
        QVERIFY2(rms >= -27.0 && rms <= -19.0, qPrintable(QStringLiteral("RMS %1 dBFS").arg(rms)));
        const auto [low, high] = std::minmax_element(s.begin(), s.end());
        QVERIFY2(*high < 32767 && *low > -32767, qPrintable(QStringLiteral("%1 %2").arg(*low).arg(*high)));
        // Heard from the first seconds on, since each exercise restarts it.
        const double opening = rmsDbfs(s, 0, 3 * 11025);
        QVERIFY2(opening >= rms - 12.0, qPrintable(QStringLiteral("first 3 s at %1 dBFS").arg(opening)));
    }

    void determinism_data() { addKindRows(); }

    void determinism()
    {
        QFETCH(Kind, kind);
        const QByteArray first = wavFile(generate(kind, 8.0, 1234));
        const QByteArray again = wavFile(generate(kind, 8.0, 1234));
        const QByteArray other = wavFile(generate(kind, 8.0, 1235));
        QCOMPARE(first.size(), 44 + 2 * 88200);
        QVERIFY(first == again);
        QCOMPARE(other.size(), first.size());
        QVERIFY(first != other);
    }

    void sampleCount_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<int>("expected");
        QTest::newRow("qrm1 zéro") << Kind::Static << 0.0 << 0;
        QTest::newRow("qrm2 négatif") << Kind::Station << -3.0 << 0;
        QTest::newRow("qrm3 NaN") << Kind::Stations << std::nan("") << 0;
        QTest::newRow("qrm1 1 ms") << Kind::Static << 0.001 << 11;
        QTest::newRow("qrm2 0,5 s") << Kind::Station << 0.5 << 5513;
        QTest::newRow("qrm3 2 s") << Kind::Stations << 2.0 << 22050;
        QTest::newRow("qrm3 1 ms") << Kind::Stations << 0.001 << 11;
    }

    void sampleCount()
    {
        QFETCH(Kind, kind);
        QFETCH(double, seconds);
        QFETCH(int, expected);
        const Pcm16 pcm = generate(kind, seconds, 7);
        QCOMPARE(pcm.sampleRate, 11025);
        QCOMPARE(static_cast<int>(pcm.samples.size()), expected);
        QCOMPARE(wavFile(pcm).size(), 44 + 2 * expected);
    }

    void wavHeader_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<QList<int>>("values");
        QTest::addColumn<QByteArray>("hex");
        QTest::newRow("vide, 8000 Hz") << 8000 << QList<int>{}
                                       << QByteArray("52494646" "24000000" "57415645" "666d7420" "10000000"
                                                     "0100" "0100" "401f0000" "803e0000" "0200" "1000"
                                                     "64617461" "00000000");
        QTest::newRow("extrêmes, 11025 Hz") << 11025 << QList<int>{1, -2, 32767, -32768}
                                            << QByteArray("52494646" "2c000000" "57415645" "666d7420" "10000000"
                                                          "0100" "0100" "112b0000" "22560000" "0200" "1000"
                                                          "64617461" "08000000" "0100" "feff" "ff7f" "0080");
    }

    void wavHeader()
    {
        QFETCH(int, rate);
        QFETCH(QList<int>, values);
        QFETCH(QByteArray, hex);
        Pcm16 pcm;
        pcm.sampleRate = rate;
        for (const int v : values)
            pcm.samples.push_back(static_cast<int16_t>(v));
        QCOMPARE(wavFile(pcm).toHex(), hex);
    }

    void loudTransients_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<uint32_t>("seed");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        // Crashes make qrm1; the stations' soft keying makes none.
        QTest::newRow("qrm1") << Kind::Static << kInstalled << 5 << 40;
        QTest::newRow("qrm1 graine 21") << Kind::Static << 21u << 5 << 40;
        QTest::newRow("qrm2") << Kind::Station << kInstalled << 0 << 0;
        QTest::newRow("qrm2 graine 5") << Kind::Station << 5u << 0 << 0;
        QTest::newRow("qrm3") << Kind::Stations << kInstalled << 0 << 0;
        QTest::newRow("qrm3 graine 11") << Kind::Stations << 11u << 0 << 0;
    }

    void loudTransients()
    {
        QFETCH(Kind, kind);
        QFETCH(uint32_t, seed);
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        const int count = ::loudTransients(samples(kind, seed), 11025);
        QVERIFY2(count >= minimum && count <= maximum, qPrintable(QString::number(count)));
    }

    void spectralPeaks_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<uint32_t>("seed");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<double>("lowHz");
        QTest::addColumn<double>("highHz");
        QTest::newRow("qrm1") << Kind::Static << kInstalled << 0 << 0 << 0.0 << 0.0;
        QTest::newRow("qrm1 graine 21") << Kind::Static << 21u << 0 << 0 << 0.0 << 0.0;
        QTest::newRow("qrm2") << Kind::Station << kInstalled << 1 << 1 << 945.0 << 1055.0;
        QTest::newRow("qrm2 graine 5") << Kind::Station << 5u << 1 << 1 << 945.0 << 1055.0;
        QTest::newRow("qrm3") << Kind::Stations << kInstalled << 4 << 6 << 500.0 << 1500.0;
        QTest::newRow("qrm3 graine 11") << Kind::Stations << 11u << 4 << 6 << 500.0 << 1500.0;
        QTest::newRow("qrm3 graine 12") << Kind::Stations << 12u << 4 << 6 << 500.0 << 1500.0;
    }

    void spectralPeaks()
    {
        QFETCH(Kind, kind);
        QFETCH(uint32_t, seed);
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        QFETCH(double, lowHz);
        QFETCH(double, highHz);
        const std::vector<double> peaks = ::spectralPeaks(spectrumOf(kind, seed));
        const QString found = describe(peaks);
        QVERIFY2(static_cast<int>(peaks.size()) >= minimum && static_cast<int>(peaks.size()) <= maximum,
                 qPrintable(found));
        for (const double hz : peaks) {
            QVERIFY2(hz >= lowHz && hz <= highHz, qPrintable(found));
            // The learner's tone keeps a clear channel.
            QVERIFY2(std::fabs(hz - kLearnerPitchHz) >= 60.0, qPrintable(found));
        }
    }

    void narrowBandShare_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<uint32_t>("seed");
        QTest::addColumn<double>("minimum");
        QTest::addColumn<double>("maximum");
        QTest::newRow("qrm1") << Kind::Static << kInstalled << 0.0 << 0.15;
        QTest::newRow("qrm2") << Kind::Station << kInstalled << 0.6 << 1.0;
        QTest::newRow("qrm2 graine 5") << Kind::Station << 5u << 0.6 << 1.0;
        QTest::newRow("qrm3") << Kind::Stations << kInstalled << 0.0 << 0.5;
    }

    void narrowBandShare()
    {
        QFETCH(Kind, kind);
        QFETCH(uint32_t, seed);
        QFETCH(double, minimum);
        QFETCH(double, maximum);
        const double share = ::narrowBandShare(spectrumOf(kind, seed));
        QVERIFY2(share >= minimum && share <= maximum, qPrintable(QString::number(share)));
    }

    void stationKeying_data()
    {
        QTest::addColumn<uint32_t>("seed");
        QTest::newRow("qrm2") << kInstalled;
        QTest::newRow("qrm2 graine 5") << 5u;
        QTest::newRow("qrm2 graine 6") << 6u;
        QTest::newRow("qrm2 graine 7") << 7u;
    }

    void stationKeying()
    {
        QFETCH(uint32_t, seed);
        const std::vector<int16_t> &s = samples(Kind::Station, seed);
        const Spectrum &sp = spectrumOf(Kind::Station, seed);
        const auto top = static_cast<std::size_t>(std::max_element(sp.power.begin(), sp.power.end()) - sp.power.begin());
        const Keying k = decodeKeying(s, 11025, frequencyOf(sp, top));
        const QString detail = QStringLiteral("dot %1 s, %2 runs, fit %3, text: %4")
                                   .arg(k.dotSeconds).arg(k.runs).arg(k.fitShare).arg(k.text);
        QVERIFY2(k.runs >= 200, qPrintable(detail));
        const double wpm = 1.2 / k.dotSeconds;
        QVERIFY2(wpm >= 15.5 && wpm <= 20.5, qPrintable(detail));
        // Marks of 1 or 3 dots, spaces of 1, 3 or at least 7.
        QVERIFY2(k.fitShare >= 0.97, qPrintable(detail));
        QVERIFY2(k.text.count(QLatin1Char('#')) <= k.text.size() / 50, qPrintable(detail));
        QVERIFY2(k.text.contains(QStringLiteral("CQ")), qPrintable(detail));
        QVERIFY2(k.text.contains(QStringLiteral(" DE ")), qPrintable(detail));
        static const QRegularExpression call(QStringLiteral("\\b[A-Z0-9]{0,2}[A-Z][0-9][A-Z]{1,3}\\b"));
        QVERIFY2(k.text.contains(call), qPrintable(detail));
    }

    void stationsComeAndGo_data()
    {
        QTest::addColumn<uint32_t>("seed");
        QTest::newRow("qrm3") << kInstalled;
        QTest::newRow("qrm3 graine 11") << 11u;
        QTest::newRow("qrm3 graine 12") << 12u;
    }

    void stationsComeAndGo()
    {
        QFETCH(uint32_t, seed);
        const std::vector<int16_t> &s = samples(Kind::Stations, seed);
        const std::vector<double> peaks = ::spectralPeaks(spectrumOf(Kind::Stations, seed));
        QVERIFY2(peaks.size() >= 4, qPrintable(describe(peaks)));
        std::vector<double> onsets;
        double longestSilence = 0.0;
        for (const double hz : peaks) {
            const std::vector<bool> active = activity(s, 11025, hz);
            const auto first = std::find(active.begin(), active.end(), true);
            QVERIFY(first != active.end());
            onsets.push_back(0.1 * static_cast<double>(first - active.begin()));
            int gap = 0;
            for (auto it = first; it != active.end(); ++it) {
                gap = *it ? 0 : gap + 1;
                longestSilence = std::max(longestSilence, 0.1 * gap);
            }
        }
        const auto [earliest, latest] = std::minmax_element(onsets.begin(), onsets.end());
        const QString detail = QStringLiteral("onsets %1, longest silence %2 s").arg(describe(onsets)).arg(longestSilence);
        QVERIFY2(*earliest <= 1.0, qPrintable(detail));
        QVERIFY2(*latest - *earliest >= 3.0, qPrintable(detail));
        QVERIFY2(longestSilence >= 3.5, qPrintable(detail));
    }

    void writeErrors_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<bool>("wantMessage");
        QTest::addColumn<QString>("mentions");
        QTest::newRow("dossier vide") << QStringLiteral("empty") << true << QStringLiteral("dossier");
        QTest::newRow("dossier sous un fichier") << QStringLiteral("underFile") << true << QStringLiteral("blocker");
        QTest::newRow("qrm2.wav est un dossier") << QStringLiteral("dirInTheWay") << true << QStringLiteral("qrm2.wav");
        QTest::newRow("sans message") << QStringLiteral("underFile") << false << QString();
    }

    void writeErrors()
    {
        QFETCH(QString, setup);
        QFETCH(bool, wantMessage);
        QFETCH(QString, mentions);
        QTemporaryDir scratch;
        QVERIFY(scratch.isValid());
        QString target;
        if (setup == QLatin1String("underFile")) {
            QFile blocker(scratch.filePath(QStringLiteral("blocker")));
            QVERIFY(blocker.open(QIODevice::WriteOnly));
            blocker.close();
            target = scratch.filePath(QStringLiteral("blocker/qrm"));
        } else if (setup == QLatin1String("dirInTheWay")) {
            target = scratch.filePath(QStringLiteral("qrm"));
            QVERIFY(QDir().mkpath(target + QStringLiteral("/qrm2.wav")));
        }
        QString error;
        QCOMPARE(writeQrmFiles(target, wantMessage ? &error : nullptr), false);
        if (wantMessage) {
            QVERIFY(!error.isEmpty());
            QVERIFY2(error.contains(mentions), qPrintable(error));
            QVERIFY2(error.contains(QStringLiteral("Impossible")) || error.contains(QStringLiteral("Aucun")),
                     qPrintable(error));
        }
    }
};

QTEST_GUILESS_MAIN(TestNoiseGenerator)
#include "tst_noisegenerator.moc"
