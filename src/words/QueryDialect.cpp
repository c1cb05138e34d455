#include "words/QueryDialect.h"

#include "words/SqlToken.h"

#include <vector>

namespace kelvora::queryDialect {
namespace {

using Kind = SqlToken::Kind;
using Tokens = std::vector<SqlToken>;

qsizetype nextSignificant(const Tokens &tokens, qsizetype i)
{
    for (++i; i < qsizetype(tokens.size()); ++i) {
        if (!tokens[size_t(i)].isBlank())
            return i;
    }
    return -1;
}

qsizetype previousSignificant(const Tokens &tokens, qsizetype i)
{
    for (--i; i >= 0; --i) {
        if (!tokens[size_t(i)].isBlank())
            return i;
    }
    return -1;
}

bool isWord(QStringView sql, const Tokens &tokens, qsizetype i, QStringView word)
{
    return i >= 0 && tokens[size_t(i)].isWord(sql, word);
}

bool isComparison(QStringView sql, const Tokens &tokens, qsizetype i)
{
    if (i < 0 || tokens[size_t(i)].kind != Kind::Operator)
        return false;
    const QStringView op = tokens[size_t(i)].text(sql);
    return op == u"=" || op == u"==" || op == u"<>" || op == u"!=" || op == u"<" || op == u">"
        || op == u"<=" || op == u">=";
}

bool isIdentifier(QStringView sql, const SqlToken &token)
{
    if (token.kind == Kind::Bracketed || token.kind == Kind::Backtick)
        return true;
    if (token.kind != Kind::Word)
        return false;
    for (QStringView keyword : {u"asc", u"desc", u"nulls", u"first", u"last", u"collate", u"null"}) {
        if (token.isWord(sql, keyword))
            return false;
    }
    return true;
}

// A literal or placeholder on either side of a comparison compares in Jet's way.
void markComparedLiterals(QStringView sql, const Tokens &tokens, std::vector<bool> &collate)
{
    for (qsizetype i = 0; i < qsizetype(tokens.size()); ++i) {
        const Kind kind = tokens[size_t(i)].kind;
        if (kind != Kind::SingleString && kind != Kind::DoubleString && kind != Kind::Param)
            continue;
        const qsizetype next = nextSignificant(tokens, i);
        if ((isComparison(sql, tokens, previousSignificant(tokens, i)) || isComparison(sql, tokens, next))
            && !isWord(sql, tokens, next, u"collate"))
            collate[size_t(i)] = true;
    }
}

// name, table.name or [name], optionally followed by ASC/DESC and NULLS FIRST/LAST.
void markPlainColumn(QStringView sql, const Tokens &tokens, const std::vector<qsizetype> &term,
                     std::vector<bool> &collate)
{
    size_t m = term.size();
    if (m >= 2 && isWord(sql, tokens, term[m - 2], u"nulls")
        && (isWord(sql, tokens, term[m - 1], u"first") || isWord(sql, tokens, term[m - 1], u"last")))
        m -= 2;
    if (m >= 1 && (isWord(sql, tokens, term[m - 1], u"asc") || isWord(sql, tokens, term[m - 1], u"desc")))
        m -= 1;
    if (m % 2 == 0)
        return;
    for (size_t k = 0; k < m; ++k) {
        const SqlToken &token = tokens[size_t(term[k])];
        if (k % 2 == 0 ? !isIdentifier(sql, token) : !token.isPunct(sql, '.'))
            return;
    }
    collate[size_t(term[m - 1])] = true;
}

void markOrderList(QStringView sql, const Tokens &tokens, qsizetype start, std::vector<bool> &collate)
{
    static constexpr QStringView ends[] = {u"limit", u"offset", u"rows", u"range", u"groups",
                                           u"union", u"except", u"intersect"};
    std::vector<qsizetype> term;
    int depth = 0;
    for (qsizetype k = start; k < qsizetype(tokens.size()); ++k) {
        const SqlToken &t = tokens[size_t(k)];
        if (t.isBlank())
            continue;
        bool end = t.isPunct(sql, ';') || (depth == 0 && t.isPunct(sql, ')'));
        for (QStringView word : ends)
            end = end || (depth == 0 && t.isWord(sql, word));
        if (end)
            break;
        if (depth == 0 && t.isPunct(sql, ',')) {
            markPlainColumn(sql, tokens, term, collate);
            term.clear();
            continue;
        }
        depth += t.isPunct(sql, '(') ? 1 : t.isPunct(sql, ')') ? -1 : 0;
        term.push_back(k);
    }
    markPlainColumn(sql, tokens, term, collate);
}

void markOrderByColumns(QStringView sql, const Tokens &tokens, std::vector<bool> &collate)
{
    for (qsizetype i = 0; i < qsizetype(tokens.size()); ++i) {
        const qsizetype by = nextSignificant(tokens, i);
        if (isWord(sql, tokens, i, u"order") && isWord(sql, tokens, by, u"by"))
            markOrderList(sql, tokens, by + 1, collate);
    }
}

QString translated(QStringView sql, const Tokens &tokens, qsizetype i)
{
    const SqlToken &t = tokens[size_t(i)];
    const QStringView text = t.text(sql);
    switch (t.kind) {
    case Kind::DoubleString: {
        QString inner = text.sliced(1, text.size() - 2).toString();
        inner.replace(QLatin1String("\"\""), QLatin1String("\""));
        inner.replace(QLatin1Char('\''), QLatin1String("''"));
        return QLatin1Char('\'') + inner + QLatin1Char('\'');
    }
    case Kind::Bracketed: {
        QString inner = text.sliced(1, text.size() - 2).toString();
        inner.replace(QLatin1Char('"'), QLatin1String("\"\""));
        return QLatin1Char('"') + inner + QLatin1Char('"');
    }
    case Kind::Word: {
        const qsizetype next = nextSignificant(tokens, i);
        if (next >= 0 && tokens[size_t(next)].isPunct(sql, '(')) {
            if (t.isWord(sql, u"left"))
                return QLatin1String(leftFunction);
            if (t.isWord(sql, u"right"))
                return QLatin1String(rightFunction);
        }
        return text.toString();
    }
    default:
        return text.toString();
    }
}

} // namespace

QString translate(const QString &programSql)
{
    const Tokens tokens = SqlToken::tokenize(programSql);
    std::vector<bool> collate(tokens.size(), false);
    markComparedLiterals(programSql, tokens, collate);
    markOrderByColumns(programSql, tokens, collate);

    QString out;
    out.reserve(programSql.size() + 32);
    for (qsizetype i = 0; i < qsizetype(tokens.size()); ++i) {
        out += translated(programSql, tokens, i);
        if (!collate[size_t(i)])
            continue;
        out += QLatin1String(" COLLATE ") + QLatin1String(collationName);
        if (i + 1 < qsizetype(tokens.size())) {
            const Kind next = tokens[size_t(i + 1)].kind;
            if (next != Kind::Space && next != Kind::Punct && next != Kind::Operator)
                out += QLatin1Char(' '); // "'a'and" must not become "KVFRand"
        }
    }
    return out;
}

} // namespace kelvora::queryDialect
