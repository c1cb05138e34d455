#include "words/RecordSet.h"
#include "exercises/Generators.h"
#include "exercises/TableWords.h"
#include "core/Random.h"
#include "words/WordDatabase.h"
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <sqlite3.h>
#include <cstdio>
using namespace kelvora;
int main()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("w.sqlite");
    {
        WordDatabase db(path, WordDatabase::OpenMode::ReadWriteCreate);
        db.exec("create table mot (mot text(50))");
        QFile f("/usr/share/dict/french");
        f.open(QIODevice::ReadOnly);
        const QList<QByteArray> lines = f.readAll().split('\n');
        db.write([&](WordDatabase &w) {
            for (const QByteArray &l : lines)
                if (!l.isEmpty())
                    w.exec("insert into mot (mot) values (?)", {QString::fromUtf8(l)});
            return true;
        });
    }
    QElapsedTimer t;
    sqlite3 *raw = nullptr;
    sqlite3_open(path.toUtf8(), &raw);
    for (int i = 0; i < 3; ++i) {
        t.start();
        sqlite3_stmt *s;
        sqlite3_prepare_v2(raw, "select count(*) from mot where mot like '%e%'", -1, &s, nullptr);
        sqlite3_step(s);
        int n = sqlite3_column_int(s, 0);
        sqlite3_finalize(s);
        std::printf("like scan %d: %lld ms\n", n, t.elapsed());
    }
    for (int i = 0; i < 3; ++i) {
        TableWords tw(path, "mot");
        exercises::Options o; o.groupCount = "102"; o.progression = "egmz0ahtr1";
        t.start();
        int n = tw.count();
        std::printf("count %d: %lld ms\n", n, t.elapsed());
        t.start();
        tw.wordsAt({});
        std::printf("scan only: %lld ms\n", t.elapsed());
        std::vector<int> pos; for (int k = 0; k < 102; ++k) pos.push_back(random::draw(n));
        t.start();
        tw.wordsAt(pos);
        std::printf("scan + 102 ranks: %lld ms\n", t.elapsed());
        t.start();
        auto r = exercises::generate(exercises::Kind::Words, {}, false, o, &tw);
        std::printf("words: %lld ms %s\n", t.elapsed(), qPrintable(r.text.left(60)));
        t.start();
        r = exercises::generate(exercises::Kind::ProgressionWords, {}, false, o, &tw);
        std::printf("prog: %lld ms %s\n", t.elapsed(), qPrintable(r.text.left(60)));
    }
    for (const char *src : {"select * from mot order by mot", "select * from mot"}) {
        RecordSet rs(path, src);
        t.start();
        rs.refresh();
        std::printf("%s: %d rows %lld ms\n", src, rs.count(), t.elapsed());
    }
}
