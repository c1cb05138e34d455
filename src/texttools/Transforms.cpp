#include "texttools/Transforms.h"

#include "core/TextUtils.h"

#include <algorithm>

namespace kelvora::textTools {

// The tools walk UTF-16 units with raw pointers (a text of a megabyte takes a few
// milliseconds), keeping a surrogate pair together as the one character it is.

QString fiveCharacterGroups(const QString &text)
{
    const QChar *s = text.constData();
    const qsizetype n = text.size();
    // First the blanks out. Each blank removed shifts the text under an index that moves
    // on regardless: the character after a removed blank is never looked at, so it stays
    // even if blank. A blank is thus dropped when the one before it was not; counted
    // without a branch, as blanks fall at random.
    QString kept(n, Qt::Uninitialized);
    QChar *k = kept.data();
    qsizetype w = 0;
    bool dropped = false;
    bool surrogates = false;
    for (qsizetype j = 0; j < n; ++j) {
        const QChar c = s[j];
        dropped = c == u' ' && !dropped;
        surrogates |= c.isSurrogate();
        k[w] = c;
        w += !dropped;
    }
    // Then groups of five characters, each followed by a blank; a group is kept only when
    // at least one character follows it, so the last 1 to 5 characters go.
    QString out(w + w / 5 + 1, Qt::Uninitialized);
    QChar *o = out.data();
    qsizetype written = 0;
    if (!surrogates) {
        const qsizetype groups = w > 0 ? (w - 1) / 5 : 0;
        for (qsizetype g = 0; g < groups; ++g) {
            std::copy_n(k + 5 * g, 5, o + 6 * g);
            o[6 * g + 5] = u' ';
        }
        written = 6 * groups;
    } else {
        // An emoji is one character: its two UTF-16 units go together.
        qsizetype lastGroupEnd = 0;
        qsizetype groupEndBefore = 0;
        int inGroup = 0;
        bool full = false; // the last character written ended a group
        for (qsizetype j = 0; j < w; ++j) {
            o[written++] = k[j];
            if (k[j].isHighSurrogate() && j + 1 < w && k[j + 1].isLowSurrogate())
                o[written++] = k[++j];
            full = ++inGroup == 5;
            if (full) {
                inGroup = 0;
                o[written++] = u' ';
                groupEndBefore = lastGroupEnd;
                lastGroupEnd = written;
            }
        }
        written = full ? groupEndBefore : lastGroupEnd;
    }
    out.truncate(written);
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
