#include "settings/ChoiceLists.h"

#include "core/Numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelvora::choiceLists {

QStringList groupCounts()
{
    QStringList list;
    for (int n = 6; n <= 102; n += 6)
        list << QString::number(n);
    return list;
}

QStringList wordDelays()
{
    return {"50",   "100",  "500",  "1000", "2000", "3000", "4000",
            "5000", "6000", "7000", "8000", "9000", "10000"};
}

QStringList correctionDelays()
{
    return {"1", "10", "100", "500", "1000", "2000", "3000", "4000", "5000", "10000"};
}

QStringList progressions()
{
    return {
        QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*"),
        QStringLiteral("egmz0"),
        QStringLiteral("egmz0ahtr1"),
        QStringLiteral("egmz0ahtr1nujf2"),
        QStringLiteral("egmz0ahtr1nujf2idpc3"),
        QStringLiteral("egmz0ahtr1nujf2idpc3wbyq4"),
        QStringLiteral("egmz0ahtr1nujf2idpc3wbyq4xovl5"),
        QStringLiteral("egmz0ahtr1nujf2idpc3wbyq4xovl5sk786"),
        QStringLiteral("egmz0ahtr1nujf2idpc3wbyq4xovl5sk786.+?/9"),
        QStringLiteral("egmz0ahtr1nujf2idpc3wbyq4xovl5sk786.+?/9,'<*"),
        QStringLiteral("eish5'"),
        QStringLiteral("eish5'ptmo08/"),
        QStringLiteral("eish5'ptmo08/awjqn1+"),
        QStringLiteral("eish5'ptmo08/awjqn1+dbkx6."),
        QStringLiteral("eish5'ptmo08/awjqn1+dbkx6.9,gz7?c"),
        QStringLiteral("eish5'ptmo08/awjqn1+dbkx6.9,gz7?cy4lrf2"),
        // "?" twice in the last stage is kept: that sign is drawn twice as often.
        QStringLiteral("eish5'ptmo08/awjqn1+dbkx6.9,gz7?cy4lrf2v3?<*"),
    };
}

QStringList stockQueries()
{
    // The missing blanks before most "and" and the final blank are part of the text.
    return {
        QStringLiteral("mot like '*'"),
        QStringLiteral("mot like '*û*' or mot like '*î*'"),
        QStringLiteral("mot like '????" "?'"), // split so that no trigraph is read
        QStringLiteral("mot like 'ab*'"),
        QStringLiteral("mot not like '*é*' and mot not like '*è*'and mot not like '*ê*'and "
                       "mot not like '*ç*'and mot not like '*-*'and mot not like '*ë*'and "
                       "mot not like '*ï*'and mot not like '*ô*'and mot not like '*â*'and "
                       "mot not like '*î*'and mot not like '*û*'and mot not like '*à*' "),
    };
}

QStringList portNumbers()
{
    QStringList list;
    for (int n = 1; n <= 10; ++n)
        list << QString::number(n);
    return list;
}

QStringList startupHints()
{
    return {QStringLiteral("Cliquez sur le boutton 'T'"),
            QStringLiteral("pour passer sur l'ecran exercice"),
            QStringLiteral("ou 'L' pour revenir ici")};
}

QString clampGroupCount(const QString &text)
{
    const double v = numbers::leadingNumber(text);
    if (v < 1)
        return QStringLiteral("1");
    if (v > 102)
        return QStringLiteral("102");
    return text;
}

QString clampWordDelay(const QString &text)
{
    const double v = numbers::leadingNumber(text);
    if (v < 50)
        return QStringLiteral("50");
    if (v > 10000)
        return QStringLiteral("10000");
    return text;
}

int wordDelayOf(const QString &text)
{
    return int(std::lround(std::clamp(numbers::leadingNumber(text), 0.0, 1e9)));
}

QString clampPortNumber(const QString &text)
{
    const double v = numbers::leadingNumber(text);
    if (v < 1)
        return QStringLiteral("1");
    if (v > 10)
        return QStringLiteral("9");
    return text;
}

int portNumberOf(const QString &text)
{
    // Whole-number conversion of the program rounds half to even.
    const double v = std::nearbyint(numbers::leadingNumber(text));
    return int(std::clamp(v, double(std::numeric_limits<int>::min()),
                          double(std::numeric_limits<int>::max())));
}

} // namespace kelvora::choiceLists
