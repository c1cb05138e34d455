#include "texttools/Transforms.h"

#include "core/TextUtils.h"

namespace kelvora::textTools {

// The tools walk UTF-16 units with raw pointers (a text of a megabyte takes a few
// milliseconds), keeping a surrogate pair together as the one character it is.

QString fiveCharacterGroups(const QString &text)
{
    const QChar *s = text.constData();
    const qsizetype n = text.size();
    const QStringView view(text);
    QString out(n + n / 5 + 1, Qt::Uninitialized);
    QChar *o = out.data();
    qsizetype w = 0;
    qsizetype characters = 0;
    // Where the output stood after the last group and the one before.
    qsizetype lastGroupEnd = 0;
    qsizetype groupEndBefore = 0;
    const auto keepAt = [&](qsizetype &j) {
        o[w++] = s[j];
        if (text::characterWidth(view, j) == 2)
            o[w++] = s[++j];
        if (++characters % 5 == 0) {
            o[w++] = u' ';
            groupEndBefore = lastGroupEnd;
            lastGroupEnd = w;
        }
    };
    // Each blank removed shifts the text under an index that moves on regardless: the
    // character after a removed blank is never looked at, so it stays even if blank.
    for (qsizetype j = 0; j < n; ++j) {
        if (s[j] != u' ')
            keepAt(j);
        else if (++j < n)
            keepAt(j);
    }
    // A group is kept only when at least one character follows it.
    out.truncate(characters > 0 && characters % 5 == 0 ? groupEndBefore : lastGroupEnd);
    return out;
}

QString reversed(const QString &text)
{
    const QString trimmed = text::trimBlanks(text);
    const QChar *s = trimmed.constData();
    const qsizetype n = trimmed.size();
    QString out(n, Qt::Uninitialized);
    QChar *o = out.data();
    qsizetype w = 0;
    for (qsizetype i = n - 1; i >= 0; --i) {
        // A surrogate pair and a CR LF line end keep their order.
        if (i > 0 && ((s[i].isLowSurrogate() && s[i - 1].isHighSurrogate()) || (s[i] == u'\n' && s[i - 1] == u'\r'))) {
            o[w++] = s[i - 1];
            o[w++] = s[i];
            --i;
        } else {
            o[w++] = s[i];
        }
    }
    return out;
}

QString spacedOut(const QString &text)
{
    const QString trimmed = text::trimBlanks(text);
    const QChar *s = trimmed.constData();
    const qsizetype n = trimmed.size();
    QString out(2 * n, Qt::Uninitialized);
    QChar *o = out.data();
    qsizetype w = 0;
    for (qsizetype i = 0; i < n; ++i) {
        o[w++] = s[i];
        if (text::characterWidth(trimmed, i) == 2)
            o[w++] = s[++i];
        o[w++] = u' ';
    }
    out.truncate(w);
    return out;
}

} // namespace kelvora::textTools
