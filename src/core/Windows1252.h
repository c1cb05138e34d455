#pragma once

#include <QByteArray>
#include <QString>

namespace kelvora::windows1252 {

// Word files, text exercises and the exercise text copy are Windows-1252 bytes.
// A character the code page cannot hold is written as one "?" (an emoji too).
QByteArray encode(const QString &text);
bool canEncode(char32_t codePoint);
// The five bytes the code page leaves undefined decode to the C1 control of the same value.
QString decode(const QByteArray &bytes);
// The same with every CR and LF byte left out (a text file's lines joined), in one pass.
QString decodeJoiningLines(const QByteArray &bytes);

} // namespace kelvora::windows1252
