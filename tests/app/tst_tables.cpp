#include "MainWindowFixture.h"
#include "app/MainPF.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

using namespace kelvora;
using testsupport::MainWindowFixture;

class TablesTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void listShowsOnlyWordTables();
    void storedTableIsShownAtStart_data();
    void storedTableIsShownAtStart();
    void choosingATableMakesItCurrent_data();
    void choosingATableMakesItCurrent();
    void arrowsMoveThroughTheTable_data();
    void arrowsMoveThroughTheTable();
    void storedTableThatNoLongerExistsShowsNothing();
    void queryNarrowsTheWords_data();
    void queryNarrowsTheWords();
    void activationReadsTheTableAgain();

private:
    template<typename T = QWidget>
    T *control(const char *name) { return m_window->findChild<T *>(QString::fromUtf8(name)); }
    QString caption() { return control<QLabel>("Data1caption")->text(); }
    QString word() { return control<QLabel>("Text14")->text(); }
    void open();
    void choose(const QString &table);
    QString banner(const QString &table) const;
    std::unique_ptr<MainWindowFixture> m_fixture;
    std::unique_ptr<MainPF> m_window;
};

void TablesTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
    QVERIFY(m_fixture->isValid());
}

void TablesTest::cleanup()
{
    m_window.reset();
    m_fixture.reset();
}

void TablesTest::open()
{
    m_window = m_fixture->openWindow();
    m_window->resize(1200, 820);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

// Picks a table in the list with the arrow keys, as a user can.
void TablesTest::choose(const QString &table)
{
    auto *tables = control<QComboBox>("TABLES");
    const int target = tables->findText(table);
    QVERIFY(target >= 0);
    tables->setFocus();
    while (tables->currentIndex() < target)
        QTest::keyClick(tables, Qt::Key_Down);
    while (tables->currentIndex() > target)
        QTest::keyClick(tables, Qt::Key_Up);
}

QString TablesTest::banner(const QString &table) const
{
    return QStringLiteral("Kelvora Version 3.2.5, Table : %1 (%2),   Utilisateur=défaut")
        .arg(table)
        .arg(m_fixture->words(table).size());
}

void TablesTest::listShowsOnlyWordTables()
{
    open();
    auto *tables = control<QComboBox>("TABLES");
    QStringList listed;
    for (int i = 0; i < tables->count(); ++i)
        listed << tables->itemText(i);
    // Neither the reference table nor the engine's own tables.
    QCOMPARE(listed, MainWindowFixture::wordTables());
    QCOMPARE(tables->toolTip(), QStringLiteral("Sélectionne une Table"));
}

void TablesTest::storedTableIsShownAtStart_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("table");
    QTest::addRow("nothing stored") << "<absent>" << "mot";
    QTest::addRow("stored empty") << "" << "mot";
    QTest::addRow("qcode") << "qcode" << "qcode";
    QTest::addRow("animaux") << "animaux" << "animaux";
}

void TablesTest::storedTableIsShownAtStart()
{
    QFETCH(QString, stored);
    QFETCH(QString, table);
    if (stored != "<absent>")
        m_fixture->store("défaut", "lasttable", stored);
    open();
    const QStringList words = m_fixture->words(table);
    QCOMPARE(control<QComboBox>("TABLES")->currentText(), table);
    QCOMPARE(m_window->windowTitle(), banner(table));
    QCOMPARE(caption(), QString::number(words.size()));
    QCOMPARE(word(), words.front());
    QCOMPARE(control<QLabel>("Label31")->text(), "Requête sur les mots de la Table " + table);
    const std::pair<const char *, QString> captions[] = {
        {"importmot1", "Importer des mots dans '" + table + "'"},
        {"exportmot", "Exporter les mots de '" + table + "'"},
        {"edittablcourante", "Editer '" + table + "'"},
        {"videtable", "Vider '" + table + "'"},
        {"supprimetable", "Supprimer '" + table + "'"},
    };
    for (const auto &[name, text] : captions)
        QCOMPARE(control<QAction>(name)->text(), text);
}

void TablesTest::choosingATableMakesItCurrent_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addRow("mot to qcode") << "mot" << "qcode";
    QTest::addRow("mot to animaux") << "mot" << "animaux";
    QTest::addRow("qcode back to mot") << "qcode" << "mot";
}

void TablesTest::choosingATableMakesItCurrent()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    m_fixture->store("défaut", "lasttable", from);
    open();
    auto *query = control<QComboBox>("REQ");
    query->setCurrentIndex(3);
    choose(to);

    const QStringList words = m_fixture->words(to);
    QCOMPARE(m_window->windowTitle(), banner(to));
    QCOMPARE(caption(), QString::number(words.size()));
    QCOMPARE(word(), words.front());
    QCOMPARE(control<QLabel>("Label31")->text(), "Requête sur les mots de la Table " + to);
    QCOMPARE(m_fixture->stored("défaut", "lasttable"), to);
    QCOMPARE(query->currentText(), QStringLiteral("mot like '*'"));
    const std::pair<const char *, QString> captions[] = {
        {"importmot1", "Importer des mots dans la table '" + to + "'"},
        {"exportmot", "Exporter les mots de la table '" + to + "'"},
        {"edittablcourante", "Editer la table '" + to + "'"},
        {"videtable", "Vider '" + to + "'"},
        {"supprimetable", "Supprimer '" + to + "'"},
    };
    for (const auto &[name, text] : captions)
        QCOMPARE(control<QAction>(name)->text(), text);
}

void TablesTest::arrowsMoveThroughTheTable_data()
{
    // The caption shows where the record set stood when it was asked to move; the word
    // is the one it moved to. Words of mot: avion Bateau chemin dune éclair.
    QTest::addColumn<QString>("arrows"); // F first, P previous, N next, L last
    QTest::addColumn<QString>("shownCaption");
    QTest::addColumn<int>("wordIndex");
    QTest::addRow("next") << "N" << "0" << 1;
    QTest::addRow("next twice") << "NN" << "1" << 2;
    QTest::addRow("last") << "L" << "0" << 4;
    QTest::addRow("last then previous") << "LP" << "4" << 3;
    QTest::addRow("next at the end stays") << "LN" << "4" << 4;
    QTest::addRow("previous at the start stays") << "P" << "0" << 0;
    QTest::addRow("back to the first") << "NNF" << "2" << 0;
}

void TablesTest::arrowsMoveThroughTheTable()
{
    QFETCH(QString, arrows);
    QFETCH(QString, shownCaption);
    QFETCH(int, wordIndex);
    open();
    choose("qcode");
    choose("mot");
    QCOMPARE(caption(), QStringLiteral("5"));
    for (QChar arrow : arrows) {
        const char *name = arrow == 'F'   ? "Data1premier"
                           : arrow == 'P' ? "Data1precedent"
                           : arrow == 'N' ? "Data1suivant"
                                          : "Data1dernier";
        QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton);
    }
    QCOMPARE(caption(), shownCaption);
    QCOMPARE(word(), m_fixture->words("mot").at(wordIndex));
}

void TablesTest::storedTableThatNoLongerExistsShowsNothing()
{
    m_fixture->store("défaut", "lasttable", "disparue");
    open();
    QCOMPARE(control<QComboBox>("TABLES")->currentText(), QString());
    QCOMPARE(caption(), QStringLiteral("0"));
    QCOMPARE(word(), QString());
    QCOMPARE(m_window->windowTitle(),
             QStringLiteral("Kelvora Version 3.2.5, Table : disparue (0),   Utilisateur=défaut"));
    QTest::mouseClick(control<QAbstractButton>("Data1suivant"), Qt::LeftButton);
    QCOMPARE(caption(), QStringLiteral("0"));
    QCOMPARE(word(), QString());
    // Nothing repairs the setting until another table is chosen.
    QCOMPARE(m_fixture->stored("défaut", "lasttable"), QStringLiteral("disparue"));
    choose("qcode");
    QCOMPARE(m_fixture->stored("défaut", "lasttable"), QStringLiteral("qcode"));
    QCOMPARE(word(), QStringLiteral("QRM"));
}

void TablesTest::queryNarrowsTheWords_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("first");
    QTest::addRow("starting with a or b") << "mot like '[ab]*'" << 2 << "avion";
    QTest::addRow("five letters") << "mot like '?" "?" "?" "?" "?'" << 1 << "avion";
    QTest::addRow("six letters, accents and case ignored") << "mot like '?" "?" "?" "?" "?" "?'" << 3 << "Bateau";
    QTest::addRow("empty means every word") << "" << 5 << "avion";
    QTest::addRow("refused by the engine") << "mot lik 'a'" << 0 << "";
}

void TablesTest::queryNarrowsTheWords()
{
    QFETCH(QString, condition);
    QFETCH(int, count);
    QFETCH(QString, first);
    open();
    QLineEdit *query = control<QComboBox>("REQ")->lineEdit();
    query->setFocus();
    query->selectAll();
    QTest::keyClick(query, Qt::Key_Delete);
    QTest::keyClicks(query, condition);
    QTest::keyClick(query, Qt::Key_Return);
    QCOMPARE(caption(), QString::number(count));
    QCOMPARE(word(), first);
    QVERIFY(m_window->windowTitle().contains(QStringLiteral("Table : mot (%1)").arg(count)));
    if (condition.isEmpty())
        QCOMPARE(query->text(), QStringLiteral("mot like '*'"));
    QVERIFY(m_fixture->prompts.messages.isEmpty());
}

void TablesTest::activationReadsTheTableAgain()
{
    open();
    QCOMPARE(word(), QStringLiteral("avion"));
    QVERIFY(m_fixture->addWord("mot", "abeille"));
    QCOMPARE(word(), QStringLiteral("avion"));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QCOMPARE(word(), QStringLiteral("abeille"));
}

QTEST_MAIN(TablesTest)
#include "tst_tables.moc"
