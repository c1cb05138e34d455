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

// The most characters the exercise box takes from a file: the box lays out a text with
// no line break as one paragraph, about 0.7 s a million characters, and a million is
// already far more than the three hours of Morse a sound may last.
inline constexpr qsizetype boxLimit = 1'000'000;
// `text` cut to at most `limit` characters, at the last blank that fits when there is
// one (a word is not cut in two); `text` itself when it fits.
QString cutAtBlank(const QString &text, qsizetype limit);

struct Read {
    bool ok = false;
    QString text;  // textOf() the file's bytes
    QString error; // French, naming the file, when !ok
};
// Reads `path`; a file that is missing or unreadable is an error and nothing is made.
Read read(const QString &path);

} // namespace kelvora::textFile
