#include "MainWindowFixture.h"
#include "ui/ColourScheme.h"
#include "app/MainPF.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QtTest>

using namespace kelvora;
using testsupport::MainWindowFixture;

namespace {
// What F2ch paints: the frame, its labels and check boxes, and the window around it.
const char *const framePainted[] = {"Frame2", "fond",  "Label26", "Label33", "Label24",
                                    "Text14", "Label37", "Label31", "Label13", "Label32",
                                    "Label34", "Label27", "Q1", "Q2", "Q3", "Check1",
                                    "Fcorrection", "debfin"};
const char *const textViews[] = {"EXO", "Text1", "List1", "File1"};
} // namespace

class ColoursTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void storedColoursArePainted_data();
    void storedColoursArePainted();
    void doubleClickChoosesAndSavesAColour_data();
    void doubleClickChoosesAndSavesAColour();
    void cancelledChoiceChangesNothing_data();
    void cancelledChoiceChangesNothing();
    void captionsStayReadable_data();
    void captionsStayReadable();
    void settingsPageAndControlBarsKeepTheirColours();
    void randomFrameColourIsNotSaved();

private:
    QWidget *control(const char *name) { return m_window->findChild<QWidget *>(name); }
    void open();
    void checkFrame(const QColor &colour);
    void checkTextViews(const QColor &background, const QColor &text);
    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
};

void ColoursTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
    QVERIFY(m_fixture->isValid());
}

void ColoursTest::cleanup()
{
    m_window.reset();
    m_fixture.reset();
}

void ColoursTest::open()
{
    m_window = m_fixture->openWindow();
    m_window->resize(1200, 820);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void ColoursTest::checkFrame(const QColor &colour)
{
    for (const char *name : framePainted) {
        QWidget *w = control(name);
        QVERIFY2(w, name);
        QCOMPARE(w->palette().color(QPalette::Window), colour);
    }
    QVERIFY(control("Frame2")->autoFillBackground());
}

void ColoursTest::checkTextViews(const QColor &background, const QColor &text)
{
    for (const char *name : textViews) {
        QCOMPARE(control(name)->palette().color(QPalette::Base), background);
        QCOMPARE(control(name)->palette().color(QPalette::Text), text);
    }
}

void ColoursTest::storedColoursArePainted_data()
{
    QTest::addColumn<QString>("color1");
    QTest::addColumn<QString>("color2");
    QTest::addColumn<QString>("color3");
    QTest::addColumn<QColor>("frame");
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("text");
    // Stored colours hold red in the low byte and blue in the high byte.
    QTest::addRow("defaults: blue frame, white text box, blue text")
        << "<absent>" << "<absent>" << "<absent>" << QColor(0, 0, 255) << QColor(255, 255, 255)
        << QColor(0, 0, 255);
    QTest::addRow("green frame, red box, cyan text")
        << "65280" << "255" << "16776960" << QColor(0, 255, 0) << QColor(255, 0, 0)
        << QColor(0, 255, 255);
    QTest::addRow("mixed") << "5649426" << "13426124" << "0" << QColor(0x12, 0x34, 0x56)
                           << QColor(0xCC, 0xDD, 0xCC) << QColor(0, 0, 0);
    QTest::addRow("unreadable values read as defaults")
        << "rouge" << "blanc" << "-5" << QColor(0, 0, 255) << QColor(255, 255, 255) << QColor(0, 0, 255);
}

void ColoursTest::storedColoursArePainted()
{
    QFETCH(QString, color1);
    QFETCH(QString, color2);
    QFETCH(QString, color3);
    QFETCH(QColor, frame);
    QFETCH(QColor, background);
    QFETCH(QColor, text);
    const std::pair<const char *, QString> stored[] = {{"color1", color1}, {"color2", color2}, {"color3", color3}};
    for (const auto &[key, value] : stored) {
        if (value != "<absent>")
            m_fixture->store("défaut", key, value);
    }
    open();
    checkFrame(frame);
    checkTextViews(background, text);
}

void ColoursTest::doubleClickChoosesAndSavesAColour_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QColor>("chosen");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addRow("frame") << "Frame2" << QColor(0x12, 0x34, 0x56) << "color1" << "5649426";
    QTest::addRow("exercise text") << "EXO" << QColor(255, 255, 0) << "color2" << "65535";
    QTest::addRow("answer line") << "Text1" << QColor(0x80, 0, 0) << "color3" << "128";
}

void ColoursTest::doubleClickChoosesAndSavesAColour()
{
    QFETCH(QString, target);
    QFETCH(QColor, chosen);
    QFETCH(QString, key);
    QFETCH(QString, stored);
    open();
    m_fixture->prompts.colourAnswers.push_back(chosen);
    QWidget *w = m_window->findChild<QWidget *>(target);
    if (auto *text = qobject_cast<QPlainTextEdit *>(w))
        w = text->viewport();
    // A corner of the frame holds no control.
    QTest::mouseDClick(w, Qt::LeftButton, {}, QPoint(3, 3));
    QVERIFY(m_fixture->prompts.colourAnswers.empty());
    QCOMPARE(m_fixture->stored("défaut", key), stored);
    if (key == "color1")
        checkFrame(chosen);
    else if (key == "color2")
        checkTextViews(chosen, QColor(0, 0, 255));
    else
        checkTextViews(Qt::white, chosen);

    // The next start shows it.
    m_window.reset();
    open();
    if (key == "color1")
        checkFrame(chosen);
    else if (key == "color2")
        checkTextViews(chosen, QColor(0, 0, 255));
    else
        checkTextViews(Qt::white, chosen);
}

void ColoursTest::cancelledChoiceChangesNothing_data()
{
    QTest::addColumn<QString>("target");
    QTest::addRow("frame") << "Frame2";
    QTest::addRow("exercise text") << "EXO";
    QTest::addRow("answer line") << "Text1";
}

void ColoursTest::cancelledChoiceChangesNothing()
{
    QFETCH(QString, target);
    open();
    const QByteArray before = testsupport::fileBytes(m_fixture->settingsPath());
    QWidget *w = m_window->findChild<QWidget *>(target);
    if (auto *text = qobject_cast<QPlainTextEdit *>(w))
        w = text->viewport();
    QTest::mouseDClick(w, Qt::LeftButton, {}, QPoint(3, 3)); // no answer queued: cancelled
    QCOMPARE(testsupport::fileBytes(m_fixture->settingsPath()), before);
    checkFrame(QColor(0, 0, 255));
    checkTextViews(Qt::white, QColor(0, 0, 255));
}

void ColoursTest::captionsStayReadable_data()
{
    QTest::addColumn<QString>("color1");
    QTest::addRow("blue") << "16711680";
    QTest::addRow("yellow") << "65535";
    QTest::addRow("black") << "0";
    QTest::addRow("white") << "16777215";
    QTest::addRow("grey") << "8421504";
}

void ColoursTest::captionsStayReadable()
{
    QFETCH(QString, color1);
    m_fixture->store("défaut", "color1", color1);
    open();
    for (const char *name : {"Label26", "Label31", "Check1", "debfin"}) {
        const QPalette p = control(name)->palette();
        const QColor back = p.color(QPalette::Window);
        const QColor fore = p.color(QPalette::WindowText);
        // Relative luminance contrast of at least 4.5 : 1.
        const auto lum = [](const QColor &c) {
            const auto lin = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
            return 0.2126 * lin(c.redF()) + 0.7152 * lin(c.greenF()) + 0.0722 * lin(c.blueF());
        };
        const double a = lum(back) + 0.05, b = lum(fore) + 0.05;
        QVERIFY2(std::max(a, b) / std::min(a, b) >= 4.5, name);
    }
}

void ColoursTest::settingsPageAndControlBarsKeepTheirColours()
{
    m_fixture->store("défaut", "color1", "255");
    open();
    const QColor standard = QApplication::palette().color(QPalette::Window);
    for (const char *name : {"Frame1", "pageReglages", "Data1", "PLAYER"})
        QCOMPARE(control(name)->palette().color(QPalette::Window), standard);
    QCOMPARE(m_window->menuBar()->palette().color(QPalette::Window), standard);
}

void ColoursTest::randomFrameColourIsNotSaved()
{
    open();
    const QByteArray before = testsupport::fileBytes(m_fixture->settingsPath());
    const QColor initial = control("Frame2")->palette().color(QPalette::Window);
    QSet<QRgb> seen;
    for (int i = 0; i < 5; ++i) {
        m_window->colours()->randomFrameColour();
        seen.insert(control("Frame2")->palette().color(QPalette::Window).rgb());
    }
    QVERIFY(seen.size() > 1 || !seen.contains(initial.rgb()));
    QCOMPARE(control("Label26")->palette().color(QPalette::Window),
             control("Frame2")->palette().color(QPalette::Window));
    QCOMPARE(testsupport::fileBytes(m_fixture->settingsPath()), before);
}

QTEST_MAIN(ColoursTest)
#include "tst_colours.moc"
