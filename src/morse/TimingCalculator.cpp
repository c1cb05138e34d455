#include "morse/TimingCalculator.h"

#include "core/Numbers.h"
#include "core/TextUtils.h"
#include "morse/PatternLookup.h"

#include <cmath>

namespace kelvora {

namespace {

TimingResult fail(TimingResult result, const QString &message)
{
    result.ok = false;
    result.error = message;
    return result;
}

QString overflowMessage()
{
    return QStringLiteral("Erreur de calcul du timing : dépassement de capacité "
                          "(un nombre saisi est trop grand).");
}

} // namespace

TimingResult CALCCONFIG(const TimingInputs &inputs, PatternLookup &lookup)
{
    using numbers::leadingNumber;
    TimingResult r;
    TimingGrid &g = r.grid;

    g.NT = 0;
    g.NP = 0;
    g.ES = 0;
    r.trimmedWord = text::trimBlanks(inputs.mot);
    const double speed = leadingNumber(inputs.vitesse);
    const QString &word = r.trimmedWord;

    g.EM = speed - 1;
    if (!std::isfinite(g.EM))
        return fail(r, overflowMessage());
    g.EL = double(text::characterCount(word) - 1) * speed;
    if (!std::isfinite(g.EL))
        return fail(r, overflowMessage());

    for (qsizetype i = 0; i < word.size(); i += text::characterWidth(word, i)) {
        QString lookupError;
        const QString pattern =
            lookup.findPattern(word.mid(i, text::characterWidth(word, i)), &lookupError);
        if (!lookupError.isEmpty())
            return fail(r, QStringLiteral("Erreur de lecture de la table de référence : ")
                               + lookupError);
        for (qsizetype j = 0; j < pattern.size(); j += text::characterWidth(pattern, j)) {
            if (pattern[j] == u'.')
                g.NP += 1;
            if (pattern[j] == u'-')
                g.NT += 1;
            g.ES += 1;
        }
        g.ES -= 1;
    }

    g.NP *= speed;
    g.NT *= speed;
    g.ES *= speed;
    if (!std::isfinite(g.NP) || !std::isfinite(g.NT) || !std::isfinite(g.ES))
        return fail(r, overflowMessage());

    g.VP = g.NP;
    g.VT = leadingNumber(inputs.ct) * g.NT;
    g.VS = leadingNumber(inputs.cs) * g.ES;
    g.VL = leadingNumber(inputs.cl) * g.EL;
    g.VM = leadingNumber(inputs.cm) * g.EM;
    for (const double v : {g.VT, g.VS, g.VL, g.VM}) {
        if (!std::isfinite(v))
            return fail(r, overflowMessage());
    }

    g.TT = g.VP + g.VT + g.VS + g.VL + g.VM;
    if (std::isnan(g.TT) || std::isinf(g.TT))
        return fail(r, overflowMessage());
    if (g.TT <= 0) {
        return fail(r, QStringLiteral("Erreur de calcul du timing : le total des points par "
                                      "minute (TT = %1) doit être positif. Vérifiez la vitesse "
                                      "et les nombres de points.")
                           .arg(numbers::format(g.TT)));
    }

    const double dot = std::floor(60000.0 / g.TT);
    r.information = QStringLiteral("Soit ") + numbers::format(dot)
                    + QStringLiteral(" Millièmes de secondes pour un point (arrondie à l'unité "
                                     "inférieure)");
    r.plan.dot = dot;
    r.plan.dash = dot * leadingNumber(inputs.ct);
    r.plan.elementGap = dot * leadingNumber(inputs.cs);
    r.plan.letterGap = dot * leadingNumber(inputs.cl);
    r.plan.wordGap = dot * leadingNumber(inputs.cm);
    r.ok = true;
    return r;
}

} // namespace kelvora
