#include "morse/ToneBank.h"

#include <QtTest>

#include <cmath>

using namespace kelvora;

Q_DECLARE_METATYPE(kelvora::TimingPlan)

namespace {
ToneSettings settings(TimingPlan plan, const QString &sup = "1", const QString &volume = "127",
                      const QString &frequency = "700")
{
    return {plan, volume, frequency, sup};
}

QList<int> bytes(const QByteArray &b)
{
    QList<int> out;
    for (const char c : b)
        out << static_cast<unsigned char>(c);
    return out;
}
} // namespace

class ToneBankTest : public QObject {
    Q_OBJECT
private slots:
    void bufferSizes_data()
    {
        QTest::addColumn<TimingPlan>("plan");
        QTest::addColumn<QString>("sup");
        QTest::addColumn<QList<int>>("sizes"); // dot dash element letter word
        QTest::addRow("examination timing") << TimingPlan{97, 291, 97, 291, 873} << "1"
                                            << QList<int>{776, 2328, 776, 2328, 6984};
        QTest::addRow("SUP stretches letter and word gaps only")
            << TimingPlan{97, 291, 97, 291, 873} << "3" << QList<int>{776, 2328, 776, 6984, 20952};
        QTest::addRow("fractional dash") << TimingPlan{93, 325.5, 93, 279, 837} << "1"
                                         << QList<int>{744, 2604, 744, 2232, 6696};
        QTest::addRow("negative counts give empty buffers") << TimingPlan{97, -291, -97, -1, -2} << "1"
                                                            << QList<int>{776, 0, 0, 0, 0};
        QTest::addRow("SUP that is not a number") << TimingPlan{97, 291, 97, 291, 873} << "beaucoup"
                                                  << QList<int>{776, 2328, 776, 0, 0};
    }

    void bufferSizes()
    {
        QFETCH(TimingPlan, plan);
        QFETCH(QString, sup);
        QFETCH(QList<int>, sizes);
        QString error;
        const auto bank = calech(settings(plan, sup), &error);
        QVERIFY2(bank, qPrintable(error));
        QCOMPARE((QList<int>{int(bank->dot.size()), int(bank->dash.size()), int(bank->elementGap.size()),
                             int(bank->letterGap.size()), int(bank->wordGap.size())}),
                 sizes);
        for (const QByteArray *gap : {&bank->elementGap, &bank->letterGap, &bank->wordGap})
            QVERIFY(gap->count(char(128)) == gap->size());
    }

    void decay_data()
    {
        QTest::addColumn<double>("durationMs");
        QTest::addColumn<QList<int>>("amplitudes"); // of the last samples, by Int(A / 1.2)
        QTest::addRow("long tone: last ten samples")
            << 97.0 << QList<int>{127, 105, 87, 72, 60, 50, 41, 34, 28, 23, 19};
        QTest::addRow("tone shorter than ten samples decays from its first")
            << 0.5 << QList<int>{105, 87, 72, 60};
    }

    void decay()
    {
        QFETCH(double, durationMs);
        QFETCH(QList<int>, amplitudes);
        // 1000 gives a phase step of exactly 1 rad, so the samples sweep the whole sine.
        QString error;
        const auto tone = toneBuffer(durationMs, 127, 1000, &error);
        QVERIFY2(tone, qPrintable(error));
        const QList<int> values = bytes(*tone);
        const int n = int(values.size());
        const int k = int(amplitudes.size());
        QVERIFY(n >= k);
        for (int idx = 0; idx < k; ++idx) {
            const int i = n - k + idx;
            QCOMPARE(values[i], 128 + int(std::floor(amplitudes[idx] * std::sin(double(i)))));
        }
    }

    void waveform()
    {
        // The phase step is F × 8 / 8000 radians: 700 gives 0.7 rad per sample (891 Hz heard).
        QString error;
        const auto tone = toneBuffer(97, 127, 700, &error);
        QVERIFY(tone);
        const QList<int> v = bytes(*tone);
        QCOMPARE(v.size(), 776);
        QCOMPARE(v[0], 128); // no rise: the tone starts at phase 0
        for (int i : {1, 2, 3, 10, 100, 765}) {
            const int expected = 128 + int(std::floor(127 * std::sin(i * 0.7)));
            QCOMPARE(v[i], expected);
        }
    }

    void sampleRange_data()
    {
        QTest::addColumn<QString>("volume");
        QTest::addColumn<int>("low");
        QTest::addColumn<int>("high");
        QTest::addRow("full volume: 1 to 254, 255 only at an exact peak") << "127" << 1 << 254;
        QTest::addRow("volume 0 is silence") << "0" << 128 << 128;
    }

    void sampleRange()
    {
        QFETCH(QString, volume);
        QFETCH(int, low);
        QFETCH(int, high);
        QString error;
        const auto bank = calech(settings({500, 1500, 1, 1, 1}, "1", volume, "700"), &error);
        QVERIFY2(bank, qPrintable(error));
        const QList<int> v = bytes(bank->dot + bank->dash);
        QCOMPARE(*std::min_element(v.begin(), v.end()), low);
        QCOMPARE(*std::max_element(v.begin(), v.end()), high);
    }

    // A volume above 127, absurd durations or spacing: no buffers, and why.
    void refused()
    {
        QString error;
        QVERIFY(!calech(settings({97, 291, 97, 291, 873}, "1", "128"), &error) && error.contains("Volume"));
        QVERIFY(!calech(settings({97, 291, 97, 291, 873}, "1", "-300"), &error) && error.contains("Volume"));
        QVERIFY(!calech(settings({1e9, 3e9, 1e9, 3e9, 9e9}), &error));
        QVERIFY(!calech(settings({97, 291, 97, 291, 873}, "1e12"), &error));
    }
};

QTEST_GUILESS_MAIN(ToneBankTest)
#include "tst_tonebank.moc"
