#include "words/WordFile.h"

#include "core/TextUtils.h"
#include "core/Windows1252.h"

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

std::vector<QString> parseWords(QByteArrayView bytes)
{
    std::vector<QString> words;
    const qsizetype size = bytes.size();
    qsizetype start = 0;
    for (qsizetype i = 0; i < size; ++i) {
        if (bytes[i] != '\r')
            continue;
        words.push_back(windows1252::decode(bytes.sliced(start, i - start).toByteArray()));
        ++i; // the byte after the CR is read and thrown away
        start = i + 1;
    }
    return words;
}

} // namespace kelvora::wordFile
