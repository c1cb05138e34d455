#pragma once

#include <QStringView>

#include <vector>

namespace kelvora {

// One lexical piece of an SQL text, as a range of that text. Enough lexing to rewrite
// the program's dialect without ever touching what lies inside literals or comments.
struct SqlToken {
    enum class Kind {
        Space,
        Comment,      // -- to end of line, /* ... */
        Word,         // keyword or bare identifier
        Number,
        SingleString, // 'text' with '' inside
        DoubleString, // "text" with "" inside: a string literal in the program's dialect
        Bracketed,    // [name]
        Backtick,     // `name`
        Param,        // ? ?1 :name @name $name
        Operator,
        Punct,        // ( ) , ; .
        Other,        // anything else, including an unterminated quote
    };

    Kind kind;
    qsizetype begin;
    qsizetype end;

    QStringView text(QStringView sql) const { return sql.sliced(begin, end - begin); }
    bool isBlank() const { return kind == Kind::Space || kind == Kind::Comment; }
    bool isWord(QStringView sql, QStringView word) const;
    bool isPunct(QStringView sql, char16_t c) const;

    static std::vector<SqlToken> tokenize(QStringView sql);
};

} // namespace kelvora
