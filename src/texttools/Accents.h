#pragma once

#include <QString>

namespace kelvora::textTools {

// acc: the lower-case accented letters become their plain letter and "-" becomes "/",
// so that a learner who has not met the accented signs hears plain letters. Capitals
// are kept, and so is "ü" (written back as itself). Case-sensitive, one character for
// one character.
QString acc(const QString &text);

} // namespace kelvora::textTools
