#include "WavBuilder.h"
#include "audio/PcmConverter.h"

#include <QtTest>

using namespace kelvora;
using namespace kelvora::wavbuilder;

Q_DECLARE_METATYPE(kelvora::PcmFormat)

namespace {

QByteArray s16(std::initializer_list<int> values)
{
    QByteArray out;
    for (int v : values)
        out += le16(quint16(qint16(v)));
    return out;
}

QByteArray u8(std::initializer_list<int> values)
{
    QByteArray out;
    for (int v : values)
        out += char(v);
    return out;
}

// Zero crossings upwards per second of a mono 16-bit signal: its pitch.
double pitch(const QByteArray &pcm, int rate)
{
    const auto at = [&](qsizetype i) { return qFromLittleEndian<qint16>(pcm.constData() + 2 * i); };
    const qsizetype n = pcm.size() / 2;
    int crossings = 0;
    for (qsizetype i = 1; i < n; ++i) {
        if (at(i - 1) < 0 && at(i) >= 0)
            ++crossings;
    }
    return crossings * double(rate) / double(n);
}

} // namespace

class PcmConverterTest : public QObject {
    Q_OBJECT
private slots:
    void convert_data()
    {
        QTest::addColumn<PcmFormat>("from");
        QTest::addColumn<PcmFormat>("to");
        QTest::addColumn<QByteArray>("in");
        QTest::addColumn<QByteArray>("out");

        const PcmFormat u8m{8000, 1, PcmSample::UInt8};
        const PcmFormat s16m{8000, 1, PcmSample::Int16};
        const PcmFormat s16s{8000, 2, PcmSample::Int16};
        QTest::addRow("8-bit unsigned to 16-bit signed")
            << u8m << s16m << u8({128, 0, 255, 192}) << s16({0, -32768, 32512, 16384});
        QTest::addRow("16-bit signed to 8-bit unsigned")
            << s16m << u8m << s16({0, -32768, 32767, 16384}) << u8({128, 0, 255, 192});
        QTest::addRow("mono to stereo copies") << u8m << s16s << u8({128, 192}) << s16({0, 0, 16384, 16384});
        QTest::addRow("stereo to mono averages") << s16s << s16m << s16({1000, 3000, -200, 200})
                                                 << s16({2000, 0});
        QTest::addRow("doubling the rate interpolates")
            << s16m << PcmFormat{16000, 1, PcmSample::Int16} << s16({0, 1000, 2000})
            << s16({0, 500, 1000, 1500, 2000, 2000});
        QTest::addRow("halving the rate keeps every other frame")
            << s16m << PcmFormat{4000, 1, PcmSample::Int16} << s16({0, 1, 2, 3, 4, 5}) << s16({0, 2, 4});
    }

    void convert()
    {
        QFETCH(PcmFormat, from);
        QFETCH(PcmFormat, to);
        QFETCH(QByteArray, in);
        QFETCH(QByteArray, out);
        const QByteArray got = PcmConverter::convert(in, from, to);
        QCOMPARE(got.toHex(' '), out.toHex(' '));
    }

    void resampleKeepsDurationAndPitch_data()
    {
        QTest::addColumn<int>("toRate");
        QTest::addRow("8000 to 44100") << 44100;
    }

    void resampleKeepsDurationAndPitch()
    {
        QFETCH(int, toRate);
        const PcmFormat from{8000, 1, PcmSample::UInt8};
        const PcmFormat to{toRate, 1, PcmSample::Int16};
        const QByteArray tone = toneU8(1000, 8000, 600);
        const QByteArray out = PcmConverter::convert(tone, from, to);
        QCOMPARE(to.msForBytes(out.size()), qint64(1000));
        const double before = pitch(PcmConverter::convert(tone, from, {8000, 1, PcmSample::Int16}), 8000);
        const double after = pitch(out, toRate);
        QVERIFY2(std::abs(before - 600) <= 2, qPrintable(QString::number(before)));
        QVERIFY2(std::abs(after - 600) <= 2, qPrintable(QString::number(after)));
    }
};

QTEST_GUILESS_MAIN(PcmConverterTest)
#include "tst_pcmconverter.moc"
