#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <functional>

namespace kelvora::wordFile {

// Word files hold one word a line as Windows-1252 bytes, each line ended by CR LF.

// The export file's name: table + MM-DD_hhmmss + ".txt" ("mot11-16_013207.txt"); the
// year is not part of it, so a table exported twice in one second keeps one file.
QString exportName(const QString &table, const QDateTime &when);

// One exported line: the word without its outer blanks, in Windows-1252, then CR LF.
void appendLine(QByteArray &out, const QString &word);

// The words of an import file, read byte by byte as the import always has: a CR ends a
// word and the byte after it is skipped unread (the LF, or whatever stands there); every
// other byte belongs to the word. So a last line without CR is not imported, lines ended
// by LF alone give nothing, and a CR without LF eats the first character of the next line.
// Words keep their blanks. `visit` gets each word, and how many bytes have been read,
// one word at a time (a large file is never held as words); it returns false to stop.
// False when it stopped.
bool forEachWord(QByteArrayView bytes, const std::function<bool(const QString &word, qsizetype read)> &visit);

} // namespace kelvora::wordFile
