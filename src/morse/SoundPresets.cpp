#include "morse/SoundPresets.h"

#include "core/Numbers.h"

namespace kelvora::soundPresets {

namespace {
QStringList range(int from, int to, int step)
{
    QStringList list;
    for (int v = from; v <= to; v += step)
        list << numbers::format(v);
    return list;
}
} // namespace

QList<PresetValue> examination()
{
    return {
        {QStringLiteral("VITESSE"), QStringLiteral("12")},
        {QStringLiteral("FRE"), QStringLiteral("700")},
        {QStringLiteral("VOL"), QStringLiteral("127")},
        {QStringLiteral("MOT"), QStringLiteral("PARIS")},
        {QStringLiteral("CT"), QStringLiteral("3")},
        {QStringLiteral("CS"), QStringLiteral("1")},
        {QStringLiteral("CL"), QStringLiteral("3")},
        {QStringLiteral("CM"), QStringLiteral("9")},
        {QStringLiteral("DEB"), QStringLiteral("VVV")},
        {QStringLiteral("FIN"), QStringLiteral("+")},
        {QStringLiteral("SUP"), QStringLiteral("1")},
        {QString::fromLatin1(characterSetBox), QString::fromLatin1(examinationCharacterSet)},
        {QStringLiteral("GRMIN"), QStringLiteral("5")},
        {QStringLiteral("GRMAX"), QStringLiteral("5")},
    };
}

QList<PresetValue> handicapped()
{
    QList<PresetValue> values = examination();
    values.append({QStringLiteral("SUP"), QStringLiteral("3")});
    return values;
}

QString handicappedSummary()
{
    return QStringLiteral(
        "Mode « handicapé » : 12 groupes de 5 caractères au lieu de 36 groupes, et un texte "
        "en clair d'environ 60 caractères au lieu de 180. Les caractères sont transmis à la "
        "vitesse normale de 12 mots par minute, avec environ 2 secondes entre les caractères "
        "et 5 à 6 secondes entre les mots : les temps entre caractères et entre mots sont "
        "multipliés par 3 environ.");
}

QStringList speedChoices()
{
    return range(5, 50, 1);
}

QStringList frequencyChoices()
{
    return range(200, 2000, 25);
}

QStringList volumeChoices()
{
    return range(0, 125, 5);
}

QStringList thinkingTimeChoices()
{
    QStringList list;
    // The tenths come from adding 0.1 in double precision, so 2 itself is never reached
    // (the sum after nine steps is 1.9000000000000008). The sums carry binary noise in
    // the 16th digit; 15 significant digits, as the number-to-text conversion of the
    // time showed, give back the plain tenths.
    for (double v = 1; v < 2; v += 0.1)
        list << numbers::format(QString::number(v, 'g', 15).toDouble());
    list << range(2, 5, 1);
    return list;
}

QStringList referenceWordChoices()
{
    return {QStringLiteral("PARIS"), QStringLiteral("CODEX")};
}

QStringList groupLengthChoices()
{
    return range(1, 12, 1);
}

} // namespace kelvora::soundPresets
