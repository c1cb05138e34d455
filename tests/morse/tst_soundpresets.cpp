#include "core/Numbers.h"
#include "morse/SoundPresets.h"

#include <QtTest>

using namespace kelvora;

class SoundPresetsTest : public QObject {
    Q_OBJECT
private slots:
    void numericChoices_data();
    void numericChoices();
    void thinkingTimeChoices_data();
    void thinkingTimeChoices();
    void referenceWords();
    void presets_data();
    void presets();
    void handicappedSummaryTellsTheLearner_data();
    void handicappedSummaryTellsTheLearner();
};

namespace {
QStringList flatten(const QList<soundPresets::PresetValue> &values)
{
    QStringList out;
    for (const auto &v : values)
        out << v.box + '=' + v.text;
    return out;
}
} // namespace

void SoundPresetsTest::numericChoices_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<int>("step");
    QTest::addColumn<QString>("absent"); // a value a user might expect but must type
    QTest::addRow("speed") << soundPresets::speedChoices() << 46 << "5" << "50" << 1 << "4";
    QTest::addRow("frequency") << soundPresets::frequencyChoices() << 73 << "200" << "2000"
                               << 25 << "2025";
    QTest::addRow("volume: 127 is typed, not listed") << soundPresets::volumeChoices() << 26
                                                      << "0" << "125" << 5 << "127";
    QTest::addRow("group length") << soundPresets::groupLengthChoices() << 12 << "1" << "12"
                                  << 1 << "0";
}

void SoundPresetsTest::numericChoices()
{
    QFETCH(QStringList, list);
    QFETCH(int, count);
    QFETCH(QString, first);
    QFETCH(QString, last);
    QFETCH(int, step);
    QFETCH(QString, absent);
    QCOMPARE(list.size(), count);
    QCOMPARE(list.first(), first);
    QCOMPARE(list.last(), last);
    QVERIFY(!list.contains(absent));
    for (qsizetype i = 1; i < list.size(); ++i) {
        // Whole numbers, no blank, no decimal part: what a user would type.
        QCOMPARE(list[i], QString::number(list[i].toInt()));
        QCOMPARE(list[i].toInt() - list[i - 1].toInt(), step);
    }
}

void SoundPresetsTest::thinkingTimeChoices_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    const QStringList expected = {"1",   "1.1", "1.2", "1.3", "1.4", "1.5", "1.6",
                                  "1.7", "1.8", "1.9", "2",   "3",   "4",   "5"};
    const double values[] = {1, 1.1, 1.2, 1.3, 1.4, 1.5, 1.6, 1.7, 1.8, 1.9, 2, 3, 4, 5};
    for (int i = 0; i < expected.size(); ++i)
        QTest::addRow("entry %d", i) << i << expected[i] << values[i];
}

void SoundPresetsTest::thinkingTimeChoices()
{
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(double, value);
    const QStringList list = soundPresets::thinkingTimeChoices();
    // Ten tenths from 1 to 1.9 (the accumulated sum never reaches 2), then 2 to 5.
    QCOMPARE(list.size(), 14);
    QCOMPARE(list.at(index), text);
    // The synthesiser reads the box with the leading-number parse.
    QCOMPARE(numbers::leadingNumber(list.at(index)), value);
}

void SoundPresetsTest::referenceWords()
{
    QCOMPARE(soundPresets::referenceWordChoices(), QStringList({"PARIS", "CODEX"}));
}

void SoundPresetsTest::presets_data()
{
    QTest::addColumn<QStringList>("actual");
    QTest::addColumn<QStringList>("expected");
    const QStringList examination = {
        "VITESSE=12", "FRE=700", "VOL=127", "MOT=PARIS", "CT=3",    "CS=1",
        "CL=3",       "CM=9",    "DEB=VVV", "FIN=+",     "SUP=1",
        "PROGRESS=ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*", "GRMIN=5", "GRMAX=5"};
    QTest::addRow("examination") << flatten(soundPresets::examination()) << examination;
    QTest::addRow("handicapped: examination, then SUP 3")
        << flatten(soundPresets::handicapped()) << (QStringList(examination) << "SUP=3");
}

void SoundPresetsTest::presets()
{
    QFETCH(QStringList, actual);
    QFETCH(QStringList, expected);
    QCOMPARE(actual, expected);
}

void SoundPresetsTest::handicappedSummaryTellsTheLearner_data()
{
    QTest::addColumn<QString>("phrase");
    QTest::addRow("groups") << "12 groupes de 5 caractères au lieu de 36 groupes";
    QTest::addRow("plain text") << "60 caractères au lieu de 180";
    QTest::addRow("character speed") << "12 mots par minute";
    QTest::addRow("gap between characters") << "2 secondes entre les caractères";
    QTest::addRow("gap between words") << "5 à 6 secondes entre les mots";
    QTest::addRow("factor") << "multipliés par 3";
}

void SoundPresetsTest::handicappedSummaryTellsTheLearner()
{
    QFETCH(QString, phrase);
    QVERIFY2(soundPresets::handicappedSummary().contains(phrase), qPrintable(phrase));
}

QTEST_APPLESS_MAIN(SoundPresetsTest)
#include "tst_soundpresets.moc"
