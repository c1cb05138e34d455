#include "RefFixture.h"
#include "app/FoundationWindow.h"
#include "app/GlobalState.h"
#include "app/SettingsStore.h"
#include "words/WordDatabase.h"

#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

using namespace kelvora;

class FoundationWindowTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void bannerNamesVersionTableAndUser();
    void prepareWritesTheExerciseSound_data();
    void prepareWritesTheExerciseSound();
    void calculationErrorIsShownAndNothingWritten();

private:
    QString answerNextMessageBox();
    testsupport::RefFixture m_fixture;
    QString m_root;
    QString m_ini;
    QString m_lastMessage;
};

void FoundationWindowTest::initTestCase()
{
    QVERIFY(m_fixture.isValid());
    m_root = m_fixture.path("root");
    QVERIFY(QDir().mkpath(m_root + "/db"));
    QVERIFY(QDir().mkpath(m_root + "/tmp"));
    QVERIFY(QFile::copy(m_fixture.databasePath(), m_root + "/db/kvmot.sqlite"));
    WordDatabase db(m_root + "/db/kvmot.sqlite");
    for (const char *w : {"avion", "bateau", "chemin"})
        QVERIFY(db.exec("INSERT INTO mot (mot) VALUES (?)", {QString::fromUtf8(w)}));
    globalState().paths = AppPaths::fromProgramDir(m_root);
}

void FoundationWindowTest::init()
{
    m_ini = m_fixture.path("settings.ini");
    QFile::remove(m_ini);
    QFile::remove(m_root + "/tmp/test.wav");
    m_lastMessage.clear();
}

void FoundationWindowTest::bannerNamesVersionTableAndUser()
{
    FoundationWindow window(m_ini);
    QCOMPARE(window.windowTitle(),
             QStringLiteral("Kelvora Version 3.2.5, Table : mot (3),   Utilisateur=défaut"));
}

void FoundationWindowTest::prepareWritesTheExerciseSound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("selectFrom"); // UTF-16 positions, as the box counts them
    QTest::addColumn<int>("selectTo");
    QTest::addColumn<QString>("boxAfter");
    QTest::addColumn<QString>("selectedAfter");
    QTest::addRow("whole text") << "  E E  " << 0 << 0 << "E E" << "";
    QTest::addRow("selection survives the trim") << "  ET TE" << 5 << 7 << "ET TE" << "TE";
    QTest::addRow("emoji before the selection") << "😀 ET" << 3 << 5 << "😀 ET" << "ET";
}

void FoundationWindowTest::prepareWritesTheExerciseSound()
{
    QFETCH(QString, text);
    QFETCH(int, selectFrom);
    QFETCH(int, selectTo);
    QFETCH(QString, boxAfter);
    QFETCH(QString, selectedAfter);
    FoundationWindow window(m_ini);
    window.show();
    auto *exo = window.findChild<QPlainTextEdit *>("EXO");
    auto *prepare = window.findChild<QPushButton *>("Command1");
    QVERIFY(exo && prepare);
    QCOMPARE(prepare->text(), QStringLiteral("Préparer la musique"));
    exo->setPlainText(text);
    QTextCursor c = exo->textCursor();
    c.setPosition(selectFrom);
    c.setPosition(selectTo, QTextCursor::KeepAnchor);
    exo->setTextCursor(c);
    QTest::mouseClick(prepare, Qt::LeftButton);
    QCOMPARE(exo->toPlainText(), boxAfter);
    QCOMPARE(exo->textCursor().selectedText(), selectedAfter);
    const QByteArray wav = testsupport::readFile(m_root + "/tmp/test.wav");
    QVERIFY(wav.size() > 44);
    QCOMPARE(wav.left(4), QByteArray("RIFF"));
    QCOMPARE(qFromLittleEndian<quint32>(wav.constData() + 40), quint32(wav.size() - 44));
}

QString FoundationWindowTest::answerNextMessageBox()
{
    QTimer::singleShot(0, this, [this] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            m_lastMessage = box->text();
            box->accept();
        }
    });
    return {};
}

void FoundationWindowTest::calculationErrorIsShownAndNothingWritten()
{
    {
        SettingsStore store(m_ini);
        for (const char *key : {"ct", "cs", "cl", "cm"})
            store.setValue("défaut", key, "-10");
    }
    FoundationWindow window(m_ini);
    window.show();
    answerNextMessageBox();
    QVERIFY(!window.prepareSound());
    QVERIFY2(m_lastMessage.contains("positif"), qPrintable(m_lastMessage));
    QVERIFY(!QFile::exists(m_root + "/tmp/test.wav"));
}

QTEST_MAIN(FoundationWindowTest)
#include "tst_foundationwindow.moc"
