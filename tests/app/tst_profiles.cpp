// Profiles in the main window: who is asked for a name, what each change shows and
// stores. Which names are refused is the profile controller's test.
#include "WindowTest.h"
#include "settings/SettingKeys.h"

#include <QComboBox>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QtTest>

using namespace kelvora;

Q_DECLARE_METATYPE(std::optional<QString>)

class ProfilesTest : public testsupport::WindowTest {
    Q_OBJECT
    void checkUser(const QString &user)
    {
        QVERIFY2(win->windowTitle().endsWith(",   Utilisateur=" + user), qPrintable(win->windowTitle()));
        QCOMPARE(w<QMenu>("Putilisateur")->title(), "Utilisateurs (" + user + ")");
    }

private slots:
    void change_data()
    {
        QTest::addColumn<std::optional<QString>>("answer");
        QTest::addColumn<QString>("user");     // shown afterwards
        QTest::addColumn<QString>("speed");    // VITESSE afterwards
        QTest::addRow("an existing user finds its values") << std::optional<QString>("Anne") << "Anne" << "25";
        QTest::addRow("cancelled: nothing changes") << std::optional<QString>() << "Paul" << "18";
    }
    void change()
    {
        QFETCH(std::optional<QString>, answer);
        QFETCH(QString, user);
        QFETCH(QString, speed);
        fx->store("lastuser", "user", "Paul");
        for (const auto &[user, key, value] : {std::tuple{"Paul", "vitesse", "18"}, {"Paul", "qrm20", "1"}, {"Anne", "vitesse", "25"}, {"Anne", "lasttable", "qcode"}})
            fx->store(user, key, value);
        open();
        const QByteArray before = testsupport::fileBytes(fx->settingsPath());
        fx->prompts.textAnswers.push_back(answer);
        trigger("utilchanger");
        QCOMPARE(fx->prompts.questions, QStringList{"Entrez un nom d'utilisateur different de ceux déjà existant ce-ci vous permetre de retrouver "
                                                    "vos propres paramètres "});
        checkUser(user);
        QCOMPARE(valueOf("VITESSE"), speed);
        QCOMPARE(valueOf("Q2"), user == "Paul" ? "1" : "0");
        QCOMPARE(win->windowTitle().contains("Table : qcode (4)"), user == "Anne");
        if (!answer) {
            QCOMPARE(testsupport::fileBytes(fx->settingsPath()), before);
            QVERIFY2(statusText().contains("« Paul »"), qPrintable(statusText()));
        } else {
            QCOMPARE(fx->stored("lastuser", "user"), user);
            QCOMPARE(fx->stored("Paul", "vitesse"), QStringLiteral("18")); // the previous profile is left as it was
        }
    }

    // "Quitter" ends the program and writes nothing; "R.A.Z" forgets every profile, so
    // the next start is a fresh installation.
    void ending_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addRow("quit") << "quitter";
        QTest::addRow("reset") << "raz";
    }
    void ending()
    {
        QFETCH(QString, action);
        fx->store("lastuser", "user", "Paul");
        fx->store("Paul", "vitesse", "18");
        open();
        const QByteArray before = testsupport::fileBytes(fx->settingsPath());
        QSignalSpy ending(win.get(), &MainPF::programEnding);
        trigger(action);
        QCOMPARE(ending.size(), 1);
        if (action == "quitter") {
            QCOMPARE(testsupport::fileBytes(fx->settingsPath()), before);
            return;
        }
        QCOMPARE(fx->storedSections(), QStringList());
        win.reset();
        open();
        checkUser("défaut");
        QCOMPARE(valueOf("VITESSE"), QStringLiteral("12"));
    }

    void memoriseStoresSeventeenKeysAndANewWindowRestoresThem()
    {
        open();
        trigger("reglager");
        const std::pair<const char *, const char *> typed[] = {{"VITESSE", "18"}, {"MOT", "CODEX"}, {"FRE", "850"}, {"VOL", "90"}, {"CT", "4"},
                                                               {"CS", "2"}, {"CL", "4"}, {"CM", "8"}, {"DEB", "CQ"}, {"FIN", "AR"},
                                                               {"SUP", "1.5"}, {"NCOM", "3"}, {"cdelai", "500"}};
        for (const auto &[name, text] : typed)
            paste(name, QString::fromUtf8(text));
        for (auto [name, index] : {std::pair{"GRMIN", 2}, {"GRMAX", 6}}) {
            w<QComboBox>(name)->setFocus();
            w<QComboBox>(name)->setCurrentIndex(index);
        }
        click("Activecom");
        w<QPushButton>("memoriser")->click();
        // In the order of "Mémoriser": the group lengths, the typed boxes, the group count
        // left as it was, the port and the ticked push-to-talk.
        const QStringList values = {"3", "7", "18", "CODEX", "850", "90", "4", "2", "4", "8", "CQ", "AR", "1.5", "36", "3", "1", "500"};
        QCOMPARE(qsizetype(userKeys::memorised.size()), values.size());
        for (qsizetype i = 0; i < values.size(); ++i)
            QCOMPARE(fx->stored("défaut", userKeys::memorised[i].key()), values[i]);
        win.reset();
        open();
        for (qsizetype i = 0; i < values.size(); ++i)
            QCOMPARE(valueOf(userKeys::memorised[i].control), values[i]);
    }

    void eachControlSavesItsKeyAtItsMoment_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("gesture"); // "click" or "pick N"
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addRow("delaimot picked") << "delaimot" << "pick 4" << "delaimot" << "2000";
        QTest::addRow("QRM3") << "Q3" << "click" << "qrm30" << "1";
        QTest::addRow("correction") << "Fcorrection" << "click" << "fcorrection" << "0";
        QTest::addRow("hide the text") << "Check1" << "click" << "cache" << "1";
        QTest::addRow("group count picked") << "nbgroup" << "pick 0" << "nbgroup" << "6";
    }
    void eachControlSavesItsKeyAtItsMoment()
    {
        QFETCH(QString, control);
        QFETCH(QString, gesture);
        QFETCH(QString, key);
        QFETCH(QString, value);
        fx->store("lastuser", "user", "Zoé");
        open();
        QCOMPARE(fx->stored("Zoé", key), QStringLiteral("<absent>"));
        if (gesture == "click")
            click(control);
        else
            choose(control, gesture.mid(5).toInt());
        QCOMPARE(fx->stored("Zoé", key), value);
        QCOMPARE(fx->storedSections(), (QStringList{"Zo\u00e9", "lastuser"}));
    }
};

QTEST_MAIN(ProfilesTest)
#include "tst_profiles.moc"
