#include "texttools/Accents.h"

namespace kelvora::textTools {

QString acc(const QString &text)
{
    QString out = text;
    for (QChar &c : out) {
        switch (c.unicode()) {
        case u'à': case u'â': case u'ä': c = u'a'; break;
        case u'é': case u'è': case u'ê': case u'ë': c = u'e'; break;
        case u'ï': case u'î': c = u'i'; break;
        case u'ô': case u'ö': c = u'o'; break;
        case u'ù': case u'û': c = u'u'; break;
        case u'ñ': c = u'n'; break;
        case u'ç': c = u'c'; break;
        case u'-': c = u'/'; break;
        default: break; // "ü" among them: kept as it is
        }
    }
    return out;
}

} // namespace kelvora::textTools
