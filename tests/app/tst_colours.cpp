// The three colours of a profile: painted at start, chosen by a double click, stored.
#include "WindowTest.h"
#include "ui/ColourScheme.h"

#include <QMenuBar>
#include <QPlainTextEdit>
#include <QtTest>

using namespace kelvora;

class ColoursTest : public testsupport::WindowTest {
    Q_OBJECT
    // What the frame colour paints: the frame, its labels and check boxes.
    void checkFrame(const QColor &colour)
    {
        for (const char *name : {"Frame2", "fond", "Label26", "Label33", "Label24", "Text14", "Label37", "Label31", "Label13", "Label32",
                                 "Label34", "Label27", "Q1", "Q2", "Q3", "Check1", "Fcorrection", "debfin"})
            QVERIFY2(w(name)->palette().color(QPalette::Window) == colour, name);
        QVERIFY(w("Frame2")->autoFillBackground());
    }
    void checkTextViews(const QColor &background, const QColor &text)
    {
        for (const char *name : {"EXO", "Text1", "List1", "File1"})
            QVERIFY2(w(name)->palette().color(QPalette::Base) == background && w(name)->palette().color(QPalette::Text) == text, name);
    }
    void checkColours(const QString &key, const QColor &chosen)
    {
        if (key == "color1")
            checkFrame(chosen);
        else
            checkTextViews(key == "color2" ? chosen : Qt::white, key == "color3" ? chosen : Qt::blue);
    }

private slots:
    void storedColoursArePainted_data()
    {
        QTest::addColumn<QStringList>("stored"); // color1 to color3; red in the low byte, blue in the high byte
        QTest::addColumn<QColor>("frame");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("text");
        QTest::addRow("defaults: blue frame, white text box, blue text") << QStringList() << QColor(Qt::blue) << QColor(Qt::white) << QColor(Qt::blue);
        QTest::addRow("green frame, red box, cyan text") << QStringList{"65280", "255", "16776960"} << QColor(Qt::green) << QColor(Qt::red) << QColor(Qt::cyan);
        QTest::addRow("unreadable values read as defaults") << QStringList{"rouge", "blanc", "-5"} << QColor(Qt::blue) << QColor(Qt::white) << QColor(Qt::blue);
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
        checkFrame(frame);
        checkTextViews(background, text);
    }

    void doubleClickChoosesAColour_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QColor>("chosen"); // invalid: the choice is cancelled
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");
        QTest::addRow("frame") << "Frame2" << QColor(0x12, 0x34, 0x56) << "color1" << "5649426";
        QTest::addRow("exercise text") << "EXO" << QColor(Qt::yellow) << "color2" << "65535";
        QTest::addRow("answer line") << "Text1" << QColor(0x80, 0, 0) << "color3" << "128";
        for (const char *target : {"Frame2", "EXO", "Text1"})
            QTest::addRow("%s cancelled", target) << target << QColor() << "color1" << "<absent>";
    }
    void doubleClickChoosesAColour()
    {
        QFETCH(QString, target);
        QFETCH(QColor, chosen);
        QFETCH(QString, key);
        QFETCH(QString, stored);
        open();
        const QByteArray before = testsupport::fileBytes(fx->settingsPath());
        if (chosen.isValid())
            fx->prompts.colourAnswers.push_back(chosen);
        QWidget *c = w(target);
        if (auto *text = qobject_cast<QPlainTextEdit *>(c))
            c = text->viewport();
        QTest::mouseDClick(c, Qt::LeftButton, {}, QPoint(3, 3)); // a corner of the frame holds no control
        QVERIFY(fx->prompts.colourAnswers.empty());
        QCOMPARE(fx->stored("défaut", key), stored);
        if (!chosen.isValid()) {
            QCOMPARE(testsupport::fileBytes(fx->settingsPath()), before);
            checkFrame(Qt::blue);
            return checkTextViews(Qt::white, Qt::blue);
        }
        checkColours(key, chosen);
        win.reset();
        open(); // the next start shows it
        checkColours(key, chosen);
    }

    // Captions keep a contrast of 4.5 : 1 on any frame colour.
    void captionsStayReadable_data()
    {
        QTest::addColumn<QString>("color1");
        for (const char *colour : {"16711680", "65535", "0", "16777215", "8421504"})
            QTest::addRow("%s", colour) << colour;
    }
    void captionsStayReadable()
    {
        QFETCH(QString, color1);
        open({{"color1", color1}});
        const auto luminance = [](const QColor &c) {
            const auto lin = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
            return 0.2126 * lin(c.redF()) + 0.7152 * lin(c.greenF()) + 0.0722 * lin(c.blueF()) + 0.05;
        };
        for (const char *name : {"Label26", "Label31", "Check1", "debfin"}) {
            const double a = luminance(w(name)->palette().color(QPalette::Window));
            const double b = luminance(w(name)->palette().color(QPalette::WindowText));
            QVERIFY2(std::max(a, b) / std::min(a, b) >= 4.5, name);
        }
    }

    void settingsPageAndControlBarsKeepTheirColours()
    {
        open({{"color1", "255"}});
        const QColor standard = QApplication::palette().color(QPalette::Window);
        for (const char *name : {"Frame1", "pageReglages", "Data1", "PLAYER"})
            QCOMPARE(w(name)->palette().color(QPalette::Window), standard);
        QCOMPARE(win->menuBar()->palette().color(QPalette::Window), standard);
    }

    void randomFrameColourIsNotSaved()
    {
        open();
        const QByteArray before = testsupport::fileBytes(fx->settingsPath());
        QSet<QRgb> seen;
        for (int i = 0; i < 5; ++i) {
            win->colours()->randomFrameColour();
            seen.insert(w("Frame2")->palette().color(QPalette::Window).rgb());
        }
        QVERIFY(seen.size() > 1 || !seen.contains(QColor(Qt::blue).rgb()));
        QCOMPARE(w("Label26")->palette().color(QPalette::Window), w("Frame2")->palette().color(QPalette::Window));
        QCOMPARE(testsupport::fileBytes(fx->settingsPath()), before);
    }
};

QTEST_MAIN(ColoursTest)
#include "tst_colours.moc"
