#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kelvora::textFile {

// The text files offered in the file list: "*.txt" in any case, in name order.
QStringList list(const QString &folder);

// What a file's bytes give the exercise: Windows-1252 characters, line feeds and
// carriage returns dropped, so its lines are joined with nothing between them.
QString textOf(const QByteArray &bytes);

// The exercise text once `fileText` is loaded: it replaces `current`, or follows it
// after one blank when the exercises are appended.
QString loaded(const QString &current, bool append, const QString &fileText);

struct Read {
    bool ok = false;
    QString text;  // textOf() the file's bytes
    QString error; // French, naming the file, when !ok
};
// Reads `path`; a file that is missing or unreadable is an error and nothing is made.
Read read(const QString &path);

} // namespace kelvora::textFile
