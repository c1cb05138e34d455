#include "ui/ProfileController.h"
#include "settings/Session.h"
#include "settings/SettingsStore.h"
#include "settings/UserProfile.h"
#include "ScriptedPrompts.h"

#include <QtTest>

using namespace kelvora;

Q_DECLARE_METATYPE(std::optional<QString>)

class UserProfileTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        m_ini = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()) + ".ini");
        QFile::remove(m_ini);
        m_session = Session();
    }

    void defaults()
    {
        // What a new user starts with, read through the store and from the table alike.
        const QStringList expected{"1000", "12", "PARIS", "700", "127", "1", "3", "1", "3", "9", "5",
                                   "5", "VVV", "+", "1", "0", "0", "0", "36", "", "0", "1", "1", "1",
                                   "0", "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*", "16711680",
                                   "16777215", "16711680", "mot"};
        SettingsStore store(m_ini);
        const UserProfile stored = UserProfile::read(store, "défaut");
        const UserProfile fresh = UserProfile::defaults();
        QStringList read, made;
        for (const SettingKey &key : userKeys::all) {
            read << stored.text(key);
            made << fresh.text(key);
        }
        QCOMPARE(read, expected);
        QCOMPARE(made, expected);
        QCOMPARE(stored.portNumber(), 1);
    }

    void corruptValuesReadAsDefaults_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("read"); // the field as text
        QTest::addRow("noise flag not a number") << "qrm10" << "abc" << "0";
        QTest::addRow("colour as a word") << "color1" << "rouge" << "16711680";
        QTest::addRow("colour out of 24 bits") << "color2" << "99999999" << "16777215";
        QTest::addRow("port as a device name") << "ncom" << "COM3" << "1";
        QTest::addRow("empty last table") << "lasttable" << "" << "mot";
    }

    void corruptValuesReadAsDefaults()
    {
        QFETCH(QString, key);
        QFETCH(QString, stored);
        QFETCH(QString, read);
        SettingsStore store(m_ini);
        store.setValue("Léa", key, stored);
        const UserProfile p = UserProfile::read(store, "Léa");
        const auto it = std::find_if(userKeys::all.begin(), userKeys::all.end(),
                                     [&](const SettingKey &k) { return k.key() == key; });
        QVERIFY(it != userKeys::all.end());
        QCOMPARE(key == "ncom" ? QString::number(p.portNumber()) : p.text(*it), read);
    }

    void colourBytes_data()
    {
        QTest::addColumn<quint32>("stored");
        QTest::addColumn<QList<int>>("rgb");
        QTest::addRow("blue default") << quint32(16711680) << QList<int>{0, 0, 255};
        QTest::addRow("mixed") << quint32(0x204080) << QList<int>{0x80, 0x40, 0x20};
    }

    void colourBytes()
    {
        QFETCH(quint32, stored);
        QFETCH(QList<int>, rgb);
        QCOMPARE((QList<int>{redOf(stored), greenOf(stored), blueOf(stored)}), rgb);
        QCOMPARE(storedColour(rgb[0], rgb[1], rgb[2]), stored);
    }

    void startUser_data()
    {
        QTest::addColumn<QString>("lastUser"); // empty: fresh store
        QTest::addColumn<QStringList>("answers"); // "<cancel>" for a cancelled box
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("storedLastUser");
        QTest::addColumn<bool>("asked");
        QTest::addColumn<bool>("notice");
        QTest::addRow("fresh store, silently défaut") << "" << QStringList{} << "défaut" << "défaut" << false << false;
        QTest::addRow("known last user") << "Anne" << QStringList{} << "Anne" << "Anne" << false << false;
        QTest::addRow("first use answered") << "parametres" << QStringList{"Paul"} << "Paul" << "Paul" << true << false;
        QTest::addRow("first use blank keeps the marker") << "parametres" << QStringList{"  "} << "défaut"
                                                          << "parametres" << true << true;
        QTest::addRow("first use with a slash") << "parametres" << QStringList{"a/b"} << "défaut"
                                                << "parametres" << true << true;
    }

    void startUser()
    {
        QFETCH(QString, lastUser);
        QFETCH(QStringList, answers);
        QFETCH(QString, user);
        QFETCH(QString, storedLastUser);
        QFETCH(bool, asked);
        QFETCH(bool, notice);
        SettingsStore store(m_ini);
        if (!lastUser.isEmpty())
            store.setLastUser(lastUser);
        testsupport::ScriptedPrompts prompts;
        for (const QString &a : answers)
            prompts.textAnswers.push_back(a == "<cancel>" ? std::nullopt : std::optional<QString>(a));
        ProfileController controller(store, m_session, prompts);
        QSignalSpy notices(&controller, &ProfileController::notice);
        QCOMPARE(controller.startUser(nullptr), user);
        QCOMPARE(m_session.currentUser, user);
        QCOMPARE(store.lastUser(), storedLastUser);
        QCOMPARE(prompts.questions.size(), asked ? 1 : 0);
        if (asked)
            QCOMPARE(prompts.questions.first(), QString::fromUtf8(firstUsePrompt));
        QCOMPARE(notices.size(), notice ? 1 : 0);
    }

    void changeUser_data()
    {
        QTest::addColumn<std::optional<QString>>("answer");
        QTest::addColumn<bool>("changed");
        QTest::addColumn<QString>("user");
        QTest::addRow("new name") << std::optional<QString>("Marie") << true << "Marie";
        QTest::addRow("existing name switches to it") << std::optional<QString>("Anne") << true << "Anne";
        QTest::addRow("cancelled") << std::optional<QString>() << false << "Jean";
        QTest::addRow("blank") << std::optional<QString>("") << false << "Jean";
    }

    void changeUser()
    {
        QFETCH(std::optional<QString>, answer);
        QFETCH(bool, changed);
        QFETCH(QString, user);
        SettingsStore store(m_ini);
        store.setValue("Anne", "vitesse", "20");
        store.setValue("Jean", "vitesse", "8");
        store.setLastUser("Jean");
        m_session.currentUser = "Jean";
        testsupport::ScriptedPrompts prompts;
        prompts.textAnswers.push_back(answer);
        ProfileController controller(store, m_session, prompts);
        QSignalSpy notices(&controller, &ProfileController::notice);
        QCOMPARE(controller.utilchanger(nullptr), changed);
        QCOMPARE(prompts.questions, QStringList{QString::fromUtf8(changeUserPrompt)});
        QCOMPARE(m_session.currentUser, user);
        QCOMPARE(store.lastUser(), user);
        QCOMPARE(notices.size(), changed ? 0 : 1);
        if (!changed)
            QVERIFY(notices.first().first().toString().contains("Jean"));
        // The other profiles are left as they were.
        QCOMPARE(store.value("Anne", userKeys::vitesse), QStringLiteral("20"));
        QCOMPARE(store.value("Jean", userKeys::vitesse), QStringLiteral("8"));
    }

private:
    QTemporaryDir m_dir;
    QString m_ini;
    Session m_session;
};

QTEST_GUILESS_MAIN(UserProfileTest)
#include "tst_userprofile.moc"
