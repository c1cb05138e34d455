#include "words/QueryComposer.h"

#include "core/TextUtils.h"

namespace kelvora::queryComposer {

QString escapeLetter(const QString &letter)
{
    if (letter == u"?")
        return QStringLiteral("[?]");
    if (letter == u"*")
        return QStringLiteral("[*]");
    if (letter == u"#")
        return QStringLiteral("[#]");
    if (letter == u"'")
        return QStringLiteral("''");
    return letter;
}

namespace {

QString eachLetter(const QString &text, const QString &test)
{
    QString out;
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype width = text::characterWidth(text, i);
        if (!out.isEmpty())
            out += QStringLiteral(" and ");
        out += test + escapeLetter(text.mid(i, width)) + QStringLiteral("*' ");
        i += width;
    }
    return out;
}

} // namespace

QString piece(Piece piece, const QString &text, const QString &number)
{
    switch (piece) {
    case Piece::And:
        return QStringLiteral("and ");
    case Piece::Or:
        return QStringLiteral("or ");
    case Piece::AtLeast:
        return QStringLiteral("len(mot) >= ") + number + u' ';
    case Piece::AtMost:
        return QStringLiteral("len(mot) <= ") + number + u' ';
    case Piece::HasLetters:
        return eachLetter(text, QStringLiteral("mot like '*"));
    case Piece::LacksLetters:
        return eachLetter(text, QStringLiteral("mot not like '*"));
    case Piece::HasString:
        return QStringLiteral("mot  like '*") + text + QStringLiteral("*'");
    case Piece::LacksString:
        return QStringLiteral("mot not like '*") + text + QStringLiteral("*'");
    case Piece::StartsWith:
        return QStringLiteral("mot like '") + text + QStringLiteral("*'");
    case Piece::EndsWith:
        return QStringLiteral("mot like '*") + text + u'\'';
    }
    return {};
}

QString finished(QString condition)
{
    if (condition.endsWith(QLatin1String("or ")))
        condition.chop(3);
    if (condition.endsWith(QLatin1String("and ")))
        condition.chop(4);
    return condition;
}

QString progressionCondition(const QString &progression)
{
    const QString group = u'[' + progression.toLower() + u']';
    QString condition;
    for (int n = 1; n <= 26; ++n)
        condition += QStringLiteral("mot like '") + group.repeated(n) + QStringLiteral("' or ");
    condition.chop(3);
    return condition;
}

QString recordSource(const QString &table, const QString &condition)
{
    return QStringLiteral("select * from ") + table + QStringLiteral(" where ") + condition
        + QStringLiteral(" order by mot");
}

} // namespace kelvora::queryComposer
