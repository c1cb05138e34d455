#include "words/WordFile.h"

#include "core/TextUtils.h"
#include "core/Windows1252.h"

#include <algorithm>

namespace kelvora::wordFile {

QString exportName(const QString &table, const QDateTime &when)
{
    return table + when.toString(QStringLiteral("MM-dd_HHmmss")) + QStringLiteral(".txt");
}

void appendLine(QByteArray &out, const QString &word)
{
    out += windows1252::encode(text::trimBlanks(word));
    out += "\r\n";
}

bool forEachWord(QByteArrayView bytes, const std::function<bool(const QString &word, qsizetype read)> &visit)
{
    const qsizetype size = bytes.size();
    qsizetype start = 0;
    for (qsizetype i = 0; i < size; ++i) {
        if (bytes[i] != '\r')
            continue;
        const QString word = windows1252::decode(bytes.sliced(start, i - start).toByteArray());
        ++i; // the byte after the CR is read and thrown away
        start = i + 1;
        if (!visit(word, std::min(start, size)))
            return false;
    }
    return true;
}

} // namespace kelvora::wordFile
