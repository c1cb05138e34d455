#include "exercises/CorrectionStepper.h"

#include <QtTest>

using namespace kelvora;
using Selection = CorrectionStepper::Selection;

class CorrectionStepperTest : public QObject {
    Q_OBJECT
private slots:
    void steps_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("caret");
        QTest::addColumn<int>("selected"); // the learner's selection from the caret
        // t: a tick of the stepping timer (it ticks only while running), p: cpause, x: cstop
        QTest::addColumn<QString>("script");
        QTest::addColumn<QStringList>("heard"); // the selection at each step that sounds
        QTest::addColumn<bool>("running");
        QTest::addColumn<int>("caretAfter");
        QTest::addRow("from the start, to the end of the text")
            << "ab " << 0 << 0 << "tttt" << QStringList{"a", "ab", "ab "} << false << 0;
        QTest::addRow("a selection stops at its length")
            << "abcdef" << 2 << 2 << "tttt" << QStringList{"c", "cd"} << false << 2;
        QTest::addRow("a later caret ends at the end without repeating")
            << "abcdef" << 4 << 0 << "tttt" << QStringList{"e", "ef"} << false << 4;
        QTest::addRow("a caret after the last character sounds nothing")
            << "abc" << 3 << 0 << "tt" << QStringList{} << false << 3;
        QTest::addRow("pause holds, resume goes on")
            << "abc" << 0 << 0 << "tpttpt" << QStringList{"a", "ab"} << true << 0;
        QTest::addRow("resumed past the stop length, on to the end")
            << "abcd" << 1 << 1 << "ttptt" << QStringList{"b", "bc", "bcd"} << false << 1;
        QTest::addRow("stop takes the caret home")
            << "abc" << 1 << 0 << "txtp" << QStringList{"b"} << true << 0;
        QTest::addRow("an empty text starts nothing") << "" << 0 << 0 << "tt" << QStringList{} << false << 0;
    }

    void steps()
    {
        QFETCH(QString, text);
        QFETCH(int, caret);
        QFETCH(int, selected);
        QFETCH(QString, script);
        QFETCH(QStringList, heard);
        QFETCH(bool, running);
        QFETCH(int, caretAfter);

        CorrectionStepper stepper;
        Selection box{caret, selected};
        if (stepper.start(text, box, 500, &box)) {
            QCOMPARE(stepper.stopLength(), qsizetype(selected));
            QCOMPARE(box, (Selection{caret, 0}));
            QCOMPARE(stepper.interval(), 500);
        }
        QStringList played;
        for (QChar command : script) {
            if (command == u'p') {
                stepper.pause(500);
            } else if (command == u'x') {
                box = stepper.stop();
            } else if (stepper.isRunning()) {
                const CorrectionStepper::Step step = stepper.step(text, box);
                box = step.selection;
                if (step.played) {
                    played << text.mid(box.start, box.length);
                    QCOMPARE(step.character, played.last().right(1));
                }
            }
        }
        QCOMPARE(played, heard);
        QCOMPARE(stepper.isRunning(), running);
        QCOMPARE(box.start, qsizetype(caretAfter));
    }
};

QTEST_GUILESS_MAIN(CorrectionStepperTest)
#include "tst_correctionstepper.moc"
