#include "texttools/Transforms.h"

#include "core/TextUtils.h"

#include <QList>

namespace kelvora::textTools {

namespace {

QList<char32_t> codePoints(const QString &text)
{
    QList<char32_t> points;
    points.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text::characterWidth(text, i) == 2) {
            points.append(QChar::surrogateToUcs4(text[i], text[i + 1]));
            ++i;
        } else {
            points.append(text[i].unicode());
        }
    }
    return points;
}

QString fromCodePoints(const QList<char32_t> &points)
{
    return QString::fromUcs4(points.constData(), points.size());
}

} // namespace

QString fiveCharacterGroups(const QString &text)
{
    const QList<char32_t> s = codePoints(text);
    // Each blank removed shifts the text under an index that moves on regardless: the
    // character after a removed blank is never looked at, so it stays even if blank.
    QList<char32_t> kept;
    kept.reserve(s.size());
    for (qsizetype j = 0; j < s.size(); ++j) {
        if (s[j] != U' ')
            kept.append(s[j]);
        else if (++j < s.size())
            kept.append(s[j]);
    }
    // Groups start at 1, 6, 11...; one is written only while a character follows it.
    QList<char32_t> out;
    out.reserve(kept.size() + kept.size() / 5);
    for (qsizetype end = 5; end < kept.size(); end += 5) {
        out.append(kept.mid(end - 5, 5));
        out.append(U' ');
    }
    return fromCodePoints(out);
}

QString reversed(const QString &text)
{
    const QList<char32_t> s = codePoints(text::trimBlanks(text));
    QList<char32_t> out;
    out.reserve(s.size());
    for (qsizetype i = s.size() - 1; i >= 0; --i) {
        if (s[i] == U'\n' && i > 0 && s[i - 1] == U'\r') { // a line end, not "\n\r"
            out.append({U'\r', U'\n'});
            --i;
        } else {
            out.append(s[i]);
        }
    }
    return fromCodePoints(out);
}

QString spacedOut(const QString &text)
{
    const QList<char32_t> s = codePoints(text::trimBlanks(text));
    QList<char32_t> out;
    out.reserve(s.size() * 2);
    for (char32_t c : s)
        out.append({c, U' '});
    return fromCodePoints(out);
}

} // namespace kelvora::textTools
