// The keyboard's grid (14 keys a line, a row without a character keeps its place) and
// its queue (a key waits while the player is busy and never overtakes one waiting).
#include "keyboard/KeyGrid.h"
#include "keyboard/KeyQueue.h"
#include "settings/Session.h"

#include <QtTest>

using namespace kelvora;

class KeyboardTest : public QObject {
    Q_OBJECT
private slots:
    void grid_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("nullRow");   // -1: none
        QTest::addColumn<QString>("places"); // "index:line,column" of each key
        QTest::addColumn<int>("waitingLine");
        QTest::newRow("14 rows: one line")
            << 14 << -1 << "0:1,1 1:1,2 2:1,3 3:1,4 4:1,5 5:1,6 6:1,7 7:1,8 8:1,9 9:1,10 10:1,11 11:1,12 12:1,13 13:1,14" << 2;
        QTest::newRow("15 rows: the 15th starts line 2")
            << 15 << -1 << "0:1,1 1:1,2 2:1,3 3:1,4 4:1,5 5:1,6 6:1,7 7:1,8 8:1,9 9:1,10 10:1,11 11:1,12 12:1,13 13:1,14 14:2,1" << 3;
        QTest::newRow("a null character keeps its place") << 4 << 1 << "0:1,1 2:1,3 3:1,4" << 2;
        QTest::newRow("no rows") << 0 << -1 << "" << 2;
    }
    void grid()
    {
        QFETCH(int, rows);
        QFETCH(int, nullRow);
        QFETCH(QString, places);
        QFETCH(int, waitingLine);
        std::vector<QString> characters;
        for (int k = 0; k < rows; ++k)
            characters.push_back(k == nullRow ? QString() : QString(QChar(u'a' + k)));
        const keyboard::KeyGrid grid = keyboard::layOut(characters);
        QStringList got;
        for (const keyboard::KeyPlace &key : grid.keys) {
            QCOMPARE(key.caption, characters[key.index]);
            got << QStringLiteral("%1:%2,%3").arg(key.index).arg(key.line).arg(key.column);
        }
        QCOMPARE(got.join(' '), places);
        QCOMPARE(grid.waitingLine, waitingLine);
        QCOMPARE(grid.sentLine, waitingLine + 1);
    }

    void queue()
    {
        Session session;
        keyboard::KeyQueue queue(session);
        QCOMPARE(queue.typed("e"), std::optional<QString>("e")); // free: at once
        session.playerFree = false;
        QCOMPARE(queue.typed("t"), std::nullopt);                // busy: waits
        QCOMPARE(queue.tick(), std::nullopt);
        session.playerFree = true;
        QCOMPARE(queue.typed("a"), std::nullopt); // free, but "t" waits first
        queue.clicked("n");                       // a click always waits
        QCOMPARE(queue.waiting(), QString("tan"));
        QCOMPARE(queue.tick(), std::optional<QString>("tan")); // all of it, as one text
        QCOMPARE(queue.waiting(), QString());
        QCOMPARE(queue.tick(), std::nullopt);
        queue.clicked("m");
        queue.clear(); // the window closes
        QCOMPARE(queue.tick(), std::nullopt);

        // A hundred keys in one second while a sound plays: none lost, none reordered.
        session.playerFree = false;
        QString typed;
        for (int i = 0; i < 100; ++i) {
            typed += QChar(u'a' + i % 26);
            queue.typed(typed.right(1));
        }
        session.playerFree = true;
        QCOMPARE(queue.tick(), std::optional<QString>(typed));
    }
};

QTEST_GUILESS_MAIN(KeyboardTest)
#include "tst_keyboard.moc"
