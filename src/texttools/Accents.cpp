#include "texttools/Accents.h"

namespace kelvora::textTools {

namespace {

// What each character below U+0100 becomes (itself when it stays). A table rather
// than a switch: a text of a megabyte is one look-up a character.
struct AccentTable {
    char16_t to[256] = {};
    constexpr AccentTable()
    {
        for (int c = 0; c < 256; ++c)
            to[c] = char16_t(c);
        const auto set = [this](const char16_t *from, char16_t plain) {
            for (; *from; ++from)
                to[*from] = plain;
        };
        set(u"àâä", u'a');
        set(u"éèêë", u'e');
        set(u"ïî", u'i');
        set(u"ôö", u'o');
        set(u"ùû", u'u'); // "ü" is not among them: kept as it is
        set(u"ñ", u'n');
        set(u"ç", u'c');
        set(u"-", u'/');
    }
};
constexpr AccentTable accents;

} // namespace

QString acc(const QString &text)
{
    QString out = text;
    QChar *c = out.data();
    for (const QChar *end = c + out.size(); c != end; ++c) {
        const char16_t u = c->unicode();
        if (u < 256)
            *c = QChar(accents.to[u]);
    }
    return out;
}

} // namespace kelvora::textTools
