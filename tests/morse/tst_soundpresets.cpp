#include "morse/SoundPresets.h"

#include <QtTest>

using namespace kelvora;

// A list of whole numbers from `first` to `last` by `step`, as the boxes offer them.
static QStringList range(int first, int last, int step)
{
    QStringList out;
    for (int v = first; v <= last; v += step)
        out << QString::number(v);
    return out;
}

static QStringList flatten(const QList<soundPresets::PresetValue> &values)
{
    QStringList out;
    for (const auto &v : values)
        out << v.box + '=' + v.text;
    return out;
}

class SoundPresetsTest : public QObject {
    Q_OBJECT
private slots:
    void choices_data()
    {
        QTest::addColumn<QStringList>("actual");
        QTest::addColumn<QStringList>("expected");
        QTest::addRow("speed") << soundPresets::speedChoices() << range(5, 50, 1);
        QTest::addRow("frequency") << soundPresets::frequencyChoices() << range(200, 2000, 25);
        QTest::addRow("volume: 127 is typed, not listed") << soundPresets::volumeChoices() << range(0, 125, 5);
        QTest::addRow("group length") << soundPresets::groupLengthChoices() << range(1, 12, 1);
        QTest::addRow("reference word") << soundPresets::referenceWordChoices() << QStringList{"PARIS", "CODEX"};
        // Ten tenths from 1 to 1.9 (the accumulated sum never reaches 2), then 2 to 5.
        QTest::addRow("thinking time") << soundPresets::thinkingTimeChoices()
                                       << QStringList{"1", "1.1", "1.2", "1.3", "1.4", "1.5", "1.6",
                                                      "1.7", "1.8", "1.9", "2", "3", "4", "5"};
        const QStringList examination = {
            "VITESSE=12", "FRE=700", "VOL=127", "MOT=PARIS", "CT=3", "CS=1", "CL=3", "CM=9",
            "DEB=VVV", "FIN=+", "SUP=1", "PROGRESS=ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*",
            "GRMIN=5", "GRMAX=5"};
        QTest::addRow("examination preset") << flatten(soundPresets::examination()) << examination;
        QTest::addRow("handicapped: examination, then SUP 3")
            << flatten(soundPresets::handicapped()) << (QStringList(examination) << "SUP=3");
    }
    void choices()
    {
        QFETCH(QStringList, actual);
        QFETCH(QStringList, expected);
        QCOMPARE(actual, expected);
    }

    void handicappedSummaryTellsTheLearner()
    {
        for (const char *phrase : {"12 groupes de 5 caractères au lieu de 36 groupes", "60 caractères au lieu de 180",
                                   "12 mots par minute", "2 secondes entre les caractères",
                                   "5 à 6 secondes entre les mots", "multipliés par 3"})
            QVERIFY2(soundPresets::handicappedSummary().contains(QString::fromUtf8(phrase)), phrase);
    }
};

QTEST_APPLESS_MAIN(SoundPresetsTest)
#include "tst_soundpresets.moc"
