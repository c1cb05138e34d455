#pragma once

// What several benchmarks need: the reference table of the repository and the
// examination text they all render.
#include "core/Random.h"
#include "words/Transaction.h"
#include "words/WordDatabase.h"

#include <QFile>
#include <QString>

namespace kelvora::benchsupport {

// Creates `ref` in `db` from data/ref/ref.tsv (car TAB cw TAB wav, '#' comments).
inline void loadReferenceTable(WordDatabase &db, const QString &tsvPath)
{
    db.exec("CREATE TABLE ref (car TEXT, cw TEXT, wav TEXT)");
    QFile tsv(tsvPath);
    tsv.open(QIODevice::ReadOnly);
    Transaction t(db);
    for (const QString &line : QString::fromUtf8(tsv.readAll()).split('\n')) {
        const QStringList f = line.split('\t');
        if (f.size() == 3 && !line.startsWith('#'))
            db.exec("INSERT INTO ref (car, cw, wav) VALUES (?, ?, ?)", {f[0], f[1], f[2]});
    }
    t.commit();
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
