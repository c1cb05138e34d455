#pragma once

// What several benchmarks need: the reference table of the repository and the
// examination text they all render.
#include "DataBuilder.h"
#include "core/Random.h"
#include "words/WordDatabase.h"

#include <QString>

#include <cstdio>
#include <memory>

namespace kelvora::benchsupport {

// A word database at `path` holding the reference table of `tsvPath` (the repository's
// data/ref/ref.tsv), as the installation's data builder makes it.
inline std::unique_ptr<WordDatabase> referenceDatabase(const QString &path, const QString &tsvPath)
{
    QString error;
    if (!datagen::buildDatabase(path, tsvPath, {}, &error))
        std::fprintf(stderr, "reference table: %s\n", qPrintable(error));
    return std::make_unique<WordDatabase>(path);
}

// 36 five-character groups of the examination alphabet, always the same (seed 36).
inline QString examinationText()
{
    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*");
    random::seed(36);
    QString text;
    for (int g = 0; g < 36; ++g) {
        for (int c = 0; c < 5; ++c)
            text += alphabet[random::draw(int(alphabet.size()))];
        text += u' ';
    }
    return text;
}

} // namespace kelvora::benchsupport
