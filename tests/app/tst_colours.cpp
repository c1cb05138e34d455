// The three colours of a profile: painted at start, chosen by a double click, stored.
#include "WindowTest.h"

#include <QPlainTextEdit>
#include <QtTest>

using namespace kelvora;

class ColoursTest : public testsupport::WindowTest {
    Q_OBJECT
    // The frame with a label and a check box on it, and the two text views.
    void checkColours(const QColor &frame, const QColor &background, const QColor &text)
    {
        for (const char *name : {"Frame2", "Label31", "Check1"})
            QVERIFY2(w(name)->palette().color(QPalette::Window) == frame, name);
        for (const char *name : {"EXO", "List1"})
            QVERIFY2(w(name)->palette().color(QPalette::Base) == background && w(name)->palette().color(QPalette::Text) == text, name);
    }

private slots:
    void storedColoursArePainted_data()
    {
        QTest::addColumn<QStringList>("stored"); // color1 to color3; red in the low byte, blue in the high byte
        QTest::addColumn<QColor>("frame");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("text");
        QTest::addRow("defaults") << QStringList() << QColor(Qt::blue) << QColor(Qt::white) << QColor(Qt::blue);
        QTest::addRow("stored") << QStringList{"65280", "255", "16776960"} << QColor(Qt::green) << QColor(Qt::red) << QColor(Qt::cyan);
        QTest::addRow("unreadable: defaults") << QStringList{"rouge", "blanc", "-5"} << QColor(Qt::blue) << QColor(Qt::white) << QColor(Qt::blue);
    }
    void storedColoursArePainted()
    {
        QFETCH(QStringList, stored);
        QFETCH(QColor, frame);
        QFETCH(QColor, background);
        QFETCH(QColor, text);
        for (qsizetype i = 0; i < stored.size(); ++i)
            fx->store("défaut", QStringLiteral("color%1").arg(i + 1), stored[i]);
        open();
        checkColours(frame, background, text);
        // Captions keep a contrast of 4.5 : 1 on any frame colour.
        const auto luminance = [](const QColor &c) {
            const auto lin = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
            return 0.2126 * lin(c.redF()) + 0.7152 * lin(c.greenF()) + 0.0722 * lin(c.blueF()) + 0.05;
        };
        const double a = luminance(w("Label31")->palette().color(QPalette::Window)), b = luminance(w("Label31")->palette().color(QPalette::WindowText));
        QVERIFY(std::max(a, b) / std::min(a, b) >= 4.5);
    }

    void doubleClickChoosesAColour_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QColor>("chosen"); // invalid: the choice is cancelled
        QTest::addColumn<QString>("stored"); // color1, color2, color3
        QTest::addRow("frame") << "Frame2" << QColor(0x12, 0x34, 0x56) << "5649426 <absent> <absent>";
        QTest::addRow("exercise text") << "EXO" << QColor(Qt::yellow) << "<absent> 65535 <absent>";
        QTest::addRow("cancelled") << "Text1" << QColor() << "<absent> <absent> <absent>";
    }
    void doubleClickChoosesAColour()
    {
        QFETCH(QString, target);
        QFETCH(QColor, chosen);
        QFETCH(QString, stored);
        open();
        if (chosen.isValid())
            fx->prompts.colourAnswers.push_back(chosen);
        QWidget *c = w(target);
        if (auto *text = qobject_cast<QPlainTextEdit *>(c))
            c = text->viewport();
        QTest::mouseDClick(c, Qt::LeftButton, {}, QPoint(3, 3)); // a corner of the frame holds no control
        QVERIFY(fx->prompts.colourAnswers.empty());
        QCOMPARE(fx->stored("défaut", "color1") + ' ' + fx->stored("défaut", "color2") + ' ' + fx->stored("défaut", "color3"), stored);
        win.reset();
        open(); // the next start shows it
        checkColours(target == "Frame2" ? chosen : QColor(Qt::blue), target == "EXO" ? chosen : QColor(Qt::white), Qt::blue);
    }
};

QTEST_MAIN(ColoursTest)
#include "tst_colours.moc"
