#include "words/JetFunctions.h"

#include "words/FrenchCollation.h"
#include "words/JetPattern.h"
#include "words/QueryDialect.h"

#include <QString>

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace kelvora::jetFunctions {
namespace {

// UTF-8 text of an argument; isNull for an SQL NULL.
struct Utf8Arg {
    const char *data = nullptr;
    int size = 0;
    bool isNull = true;
};

Utf8Arg utf8Arg(sqlite3_value *v)
{
    if (sqlite3_value_type(v) == SQLITE_NULL)
        return {};
    const auto *data = reinterpret_cast<const char *>(sqlite3_value_text(v));
    return {data ? data : "", sqlite3_value_bytes(v), false};
}

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

qint64 codePointCount(const Utf8Arg &s)
{
    qint64 n = 0;
    for (int i = 0; i < s.size; ++i)
        n += isContinuation(s.data[i]) ? 0 : 1;
    return n;
}

// Byte offset of the code point numbered `index` (0-based), or the size past the end.
int byteOffset(const Utf8Arg &s, qint64 index)
{
    int i = 0;
    for (qint64 k = 0; k < index && i < s.size; ++k) {
        ++i;
        while (i < s.size && isContinuation(s.data[i]))
            ++i;
    }
    return i;
}

void resultSlice(sqlite3_context *ctx, const Utf8Arg &s, int from, int to)
{
    sqlite3_result_text(ctx, s.data + from, to - from, SQLITE_TRANSIENT);
}

void resultQString(sqlite3_context *ctx, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_result_text(ctx, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

void resultError(sqlite3_context *ctx, const QString &message)
{
    const QByteArray utf8 = message.toUtf8();
    sqlite3_result_error(ctx, utf8.constData(), int(utf8.size()));
}

bool anyNull(int argc, sqlite3_value **argv)
{
    for (int i = 0; i < argc; ++i) {
        if (sqlite3_value_type(argv[i]) == SQLITE_NULL)
            return true;
    }
    return false;
}

// X LIKE Y calls like(Y, X). The compiled pattern is kept with the statement while the
// pattern argument stays the same, so a table scan compiles it once.
void like(sqlite3_context *ctx, int argc, sqlite3_value **argv)
{
    if (anyNull(argc, argv)) {
        sqlite3_result_null(ctx);
        return;
    }
    // UTF-8 as stored: a scan converts nothing per row.
    const auto *patternText = reinterpret_cast<const char *>(sqlite3_value_text(argv[0]));
    const QByteArrayView pattern(patternText, sqlite3_value_bytes(argv[0]));
    std::unique_ptr<JetPattern> fresh;
    const auto *compiled = static_cast<const JetPattern *>(sqlite3_get_auxdata(ctx, 0));
    if (!compiled || compiled->patternUtf8() != pattern) {
        fresh = std::make_unique<JetPattern>(QString::fromUtf8(pattern));
        compiled = fresh.get();
    }
    if (!compiled->isValid()) {
        resultError(ctx, compiled->errorString());
        return;
    }
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(argv[1]));
    sqlite3_result_int(ctx, compiled->matchesUtf8(text, sqlite3_value_bytes(argv[1])) ? 1 : 0);
    if (fresh) // SQLite owns it from here and may free it at once: not used after this
        sqlite3_set_auxdata(ctx, 0, fresh.release(), [](void *p) { delete static_cast<JetPattern *>(p); });
}

void likeWithEscape(sqlite3_context *ctx, int, sqlite3_value **)
{
    resultError(ctx, QStringLiteral("La clause ESCAPE n'existe pas avec like : "
                                    "écrivez le caractère entre crochets, par exemple [*]."));
}

void len(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const Utf8Arg s = utf8Arg(argv[0]);
    if (s.isNull)
        sqlite3_result_null(ctx);
    else
        sqlite3_result_int64(ctx, codePointCount(s));
}

void lcase(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const Utf8Arg s = utf8Arg(argv[0]);
    if (s.isNull)
        sqlite3_result_null(ctx);
    else
        resultQString(ctx, QString::fromUtf8(s.data, s.size).toLower());
}

void ucase(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const Utf8Arg s = utf8Arg(argv[0]);
    if (s.isNull)
        sqlite3_result_null(ctx);
    else
        resultQString(ctx, QString::fromUtf8(s.data, s.size).toUpper());
}

void trim(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const Utf8Arg s = utf8Arg(argv[0]);
    if (s.isNull) {
        sqlite3_result_null(ctx);
        return;
    }
    int from = 0, to = s.size;
    while (from < to && s.data[from] == ' ')
        ++from;
    while (to > from && s.data[to - 1] == ' ')
        --to;
    resultSlice(ctx, s, from, to);
}

bool readCount(sqlite3_context *ctx, sqlite3_value *v, const char *function, qint64 minimum, qint64 &out)
{
    out = sqlite3_value_int64(v);
    if (out >= minimum)
        return true;
    resultError(ctx, QStringLiteral("Argument incorrect pour %1 : %2.").arg(QLatin1String(function)).arg(out));
    return false;
}

void left(sqlite3_context *ctx, int argc, sqlite3_value **argv)
{
    qint64 n = 0;
    if (anyNull(argc, argv)) {
        sqlite3_result_null(ctx);
    } else if (readCount(ctx, argv[1], "left", 0, n)) {
        const Utf8Arg s = utf8Arg(argv[0]);
        resultSlice(ctx, s, 0, byteOffset(s, n));
    }
}

void right(sqlite3_context *ctx, int argc, sqlite3_value **argv)
{
    qint64 n = 0;
    if (anyNull(argc, argv)) {
        sqlite3_result_null(ctx);
    } else if (readCount(ctx, argv[1], "right", 0, n)) {
        const Utf8Arg s = utf8Arg(argv[0]);
        resultSlice(ctx, s, byteOffset(s, std::max<qint64>(0, codePointCount(s) - n)), s.size);
    }
}

void mid(sqlite3_context *ctx, int argc, sqlite3_value **argv)
{
    qint64 start = 0, length = 0;
    if (anyNull(argc, argv)) {
        sqlite3_result_null(ctx);
        return;
    }
    if (!readCount(ctx, argv[1], "mid", 1, start))
        return;
    if (argc == 3 && !readCount(ctx, argv[2], "mid", 0, length))
        return;
    const Utf8Arg s = utf8Arg(argv[0]);
    const int from = byteOffset(s, start - 1);
    const Utf8Arg rest{s.data + from, s.size - from, false};
    resultSlice(ctx, s, from, argc == 3 ? from + byteOffset(rest, length) : s.size);
}

// madeof(word, characters): 1 when every character of the word is one of `characters`
// (an empty or NULL word qualifies), else 0. UTF-8 being self-synchronising, a whole
// character found inside valid UTF-8 is found on a character boundary.
void madeOf(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const Utf8Arg word = utf8Arg(argv[0]);
    const Utf8Arg set = utf8Arg(argv[1]);
    const std::string_view characters(set.data ? set.data : "", size_t(set.size));
    int i = 0;
    while (i < word.size) {
        int end = i + 1;
        while (end < word.size && isContinuation(word.data[end]))
            ++end;
        if (characters.find(std::string_view(word.data + i, size_t(end - i))) == std::string_view::npos) {
            sqlite3_result_int(ctx, 0);
            return;
        }
        i = end;
    }
    sqlite3_result_int(ctx, 1);
}

int frenchCompare(void *, int sizeA, const void *a, int sizeB, const void *b)
{
    return frenchCollation::compareUtf8(std::string_view(static_cast<const char *>(a), size_t(sizeA)),
                                        std::string_view(static_cast<const char *>(b), size_t(sizeB)));
}

} // namespace

int install(sqlite3 *db)
{
    using Function = void (*)(sqlite3_context *, int, sqlite3_value **);
    struct Entry {
        const char *name;
        int argc;
        Function function;
    };
    const Entry entries[] = {
        {"like", 2, like},
        {"like", 3, likeWithEscape},
        {"len", 1, len},
        {"lcase", 1, lcase},
        {"ucase", 1, ucase},
        {"trim", 1, trim},
        {queryDialect::leftFunction, 2, left},
        {queryDialect::rightFunction, 2, right},
        {"mid", 2, mid},
        {"mid", 3, mid},
        {queryDialect::madeOfFunction, 2, madeOf},
    };
    for (const Entry &e : entries) {
        const int rc = sqlite3_create_function_v2(db, e.name, e.argc, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                                  nullptr, e.function, nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK)
            return rc;
    }
    return sqlite3_create_collation_v2(db, queryDialect::collationName, SQLITE_UTF8, nullptr,
                                       frenchCompare, nullptr);
}

} // namespace kelvora::jetFunctions
