#include "core/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace kelvora::numbers {

namespace {

bool isSkipped(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n';
}

double radixNumber(QStringView text, qsizetype pos, int radix)
{
    double value = 0;
    for (; pos < text.size(); ++pos) {
        const QChar c = text[pos];
        if (isSkipped(c))
            continue;
        const int digit = c.isDigit() ? c.unicode() - u'0'
                          : (radix == 16 && c.toLower() >= u'a' && c.toLower() <= u'f')
                              ? c.toLower().unicode() - u'a' + 10
                              : -1;
        if (digit < 0 || digit >= radix)
            break;
        value = value * radix + digit;
    }
    return value;
}

} // namespace

double leadingNumber(QStringView text)
{
    std::string digits;
    qsizetype pos = 0;
    auto skip = [&] {
        while (pos < text.size() && isSkipped(text[pos]))
            ++pos;
    };
    skip();
    if (pos + 1 < text.size() && text[pos] == u'&') {
        const QChar kind = text[pos + 1].toLower();
        if (kind == u'h')
            return radixNumber(text, pos + 2, 16);
        if (kind == u'o')
            return radixNumber(text, pos + 2, 8);
        return 0;
    }
    if (pos < text.size() && (text[pos] == u'-' || text[pos] == u'+')) {
        if (text[pos] == u'-')
            digits += '-';
        ++pos;
    }
    bool seenDigit = false;
    bool seenPoint = false;
    for (; pos < text.size(); ++pos) {
        const QChar c = text[pos];
        if (isSkipped(c))
            continue;
        if (c >= u'0' && c <= u'9') {
            digits += char(c.unicode());
            seenDigit = true;
        } else if (c == u'.' && !seenPoint) {
            digits += '.';
            seenPoint = true;
        } else {
            break;
        }
    }
    if (!seenDigit)
        return 0;
    // Exponent: only taken when at least one digit follows it.
    if (pos < text.size() && (text[pos].toLower() == u'e' || text[pos].toLower() == u'd')) {
        std::string exponent = "e";
        qsizetype p = pos + 1;
        while (p < text.size() && isSkipped(text[p]))
            ++p;
        if (p < text.size() && (text[p] == u'-' || text[p] == u'+'))
            exponent += char(text[p++].unicode());
        bool expDigit = false;
        for (; p < text.size(); ++p) {
            const QChar c = text[p];
            if (isSkipped(c))
                continue;
            if (c < u'0' || c > u'9')
                break;
            exponent += char(c.unicode());
            expDigit = true;
        }
        if (expDigit)
            digits += exponent;
    }
    return std::strtod(digits.c_str(), nullptr);
}

QString format(double value)
{
    if (value == 0)
        return QStringLiteral("0");
    std::array<char, 400> buffer{};
    const double magnitude = std::fabs(value);
    const auto style = (std::isfinite(value) && magnitude < 1e15 && magnitude >= 1e-5)
                           ? std::chars_format::fixed
                           : std::chars_format::general;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, style);
    return QString::fromLatin1(buffer.data(), result.ptr - buffer.data());
}

} // namespace kelvora::numbers
