#include "ServicesPaneFixture.h"

#include <tests/support/TestMain.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

/// Keys, login and their test in the Services pane, used as a person does.
class PrefsServicesTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<ServicesPaneFixture> m_fixture;
    int m_turn = 0;

    static UserDefaults &defaults() { return UserDefaults::standard(); }
    void open() const { m_fixture->open(); }
    template <class Type>
    Type *child(const char *name) const
    {
        return m_fixture->child<Type>(name);
    }
    QLineEdit *keyField() const { return child<QLineEdit>("keyField"); }
    QPushButton *testButton() const { return child<QPushButton>("testButton"); }
    QString status() const { return child<QLabel>("statusLabel")->text(); }
    static void type(QLineEdit *field, const QString &text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text);
    }

private Q_SLOTS:
    void initTestCase() { registerPreferencesScenes(); }
    void init() { m_fixture = std::make_unique<ServicesPaneFixture>(m_sandbox, ++m_turn); }
    void cleanup() { m_fixture.reset(); }

    void whatIsInUseIsShown()
    {
        m_fixture->accounts->texts = {{Item::SubtitleKey, u"key"_s}, {Item::SubtitlePassword, u"word"_s}};
        defaults().setObject(u"SubtitleServiceUser"_s, u"reader"_s);
        open();
        QCOMPARE(keyField()->text(), u"key"_s);
        QCOMPARE(child<QLineEdit>("passwordField")->text(), u"word"_s);
        QCOMPARE(child<QLineEdit>("passwordField")->echoMode(), QLineEdit::Password);
        QCOMPARE(child<QLineEdit>("userField")->text(), u"reader"_s);
        QCOMPARE(child<QLineEdit>("metadataKeyField")->text(), QString());
        m_fixture->accounts->texts[Item::MetadataKey] = u"film key"_s;
        Q_EMIT m_fixture->accounts->changed(); // the keyring was opened
        QCOMPARE(child<QLineEdit>("metadataKeyField")->text(), u"film key"_s);
    }

    void endOfAnEditKeepsIt()
    {
        open();
        type(keyField(), u" new-key "_s);
        QCOMPARE(m_fixture->accounts->changes, 0);
        Q_EMIT m_fixture->accounts->changed(); // while somebody types
        QCOMPARE(keyField()->text(), u" new-key "_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(m_fixture->accounts->texts.value(Item::SubtitleKey), u"new-key"_s);
        QCOMPARE(keyField()->text(), u"new-key"_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(m_fixture->accounts->changes, 1);
    }

    void closingTheWindowKeepsItToo()
    {
        open();
        type(child<QLineEdit>("metadataKeyField"), u"films"_s);
        m_fixture->window->close();
        QTRY_COMPARE(m_fixture->accounts->texts.value(Item::MetadataKey), u"films"_s);
    }

    void userNameIsASetting()
    {
        open();
        type(child<QLineEdit>("userField"), u"reader"_s);
        QTest::keyClick(child<QLineEdit>("userField"), Qt::Key_Return);
        QCOMPARE(defaults().string(u"SubtitleServiceUser"_s), u"reader"_s);
    }

    void whatCanBeReadAgainIsNotComplainedOf()
    {
        open();
        QCOMPARE(status(), QString());
        m_fixture->accounts->unread = u"The keys cannot be read."_s;
        Q_EMIT m_fixture->accounts->changed();
        QCOMPARE(status(), u"The keys cannot be read."_s);
        testButton()->click();
        m_fixture->accounts->answerSubtitles(ServiceAccounts::Connection{});
        QCOMPARE(status(), u"The keys cannot be read.\nThe subtitle service accepts the key."_s);
        m_fixture->accounts->unread.clear();
        type(keyField(), u"new"_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(status(), QString());
    }

    void whatCouldNotBeKeptIsSaidBesideTheAnswerOfATest()
    {
        m_fixture->accounts->kept = refusal(u"Only until the end."_s);
        open();
        type(keyField(), u"new"_s);
        testButton()->click();
        QCOMPARE(status(), u"Only until the end.\nTesting…"_s);
        m_fixture->accounts->answerSubtitles(ServiceAccounts::Connection{});
        QCOMPARE(status(), u"Only until the end.\nThe subtitle service accepts the key."_s);
        m_fixture->accounts->kept = {};
        type(keyField(), u"newer"_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(status(), QString()); // neither is true of this one
        testButton()->click();
        QCOMPARE(status(), u"Testing…"_s);
    }

    void editDuringATestLeavesItsAnswersToCome()
    {
        open();
        testButton()->click();
        type(keyField(), u"new"_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(status(), u"Testing…"_s);
        QVERIFY(!testButton()->isEnabled());
        m_fixture->accounts->answerSubtitles(ServiceAccounts::Connection{});
        QVERIFY(testButton()->isEnabled());
    }

    void environmentCannotBeOverwritten()
    {
        m_fixture->accounts->texts = {{Item::SubtitleKey, u"given"_s}};
        m_fixture->accounts->fixed = {Item::SubtitleKey};
        open();
        QVERIFY(!keyField()->isEnabled());
        QCOMPARE(keyField()->text(), u"given"_s);
        QCOMPARE(keyField()->toolTip(), u"Set by the environment"_s);
        QVERIFY(child<QLineEdit>("passwordField")->isEnabled());
    }

    void answerOfATestIsSaidInWords_data()
    {
        QTest::addColumn<bool>("isLoggedIn");
        QTest::addColumn<int>("allowed"); // negative for unknown
        QTest::addColumn<int>("remaining");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("key") << false << -1 << -1 << u"The subtitle service accepts the key."_s;
        QTest::newRow("key, told before")
            << false << -1 << 4 << u"The subtitle service accepts the key. Downloads left today: 4."_s;
        QTest::newRow("login")
            << true << 20 << 17
            << u"The subtitle service accepts the key and the login. Downloads left today: 17 of 20."_s;
    }
    void answerOfATestIsSaidInWords()
    {
        QFETCH(const bool, isLoggedIn);
        QFETCH(const int, allowed);
        QFETCH(const int, remaining);
        open();
        testButton()->click();
        QCOMPARE(status(), u"Testing…"_s);
        QVERIFY(!testButton()->isEnabled());
        const auto known = [](int count) { return count < 0 ? std::nullopt : std::optional(count); };
        m_fixture->accounts->answerSubtitles(
            ServiceAccounts::Connection{isLoggedIn, known(allowed), known(remaining)});
        QTEST(status(), "sentence");
        QVERIFY(testButton()->isEnabled());
        QVERIFY(!m_fixture->accounts->answerFilms);
    }

    void halfAnAccountIsNoLogin_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("isHalf");
        QTest::newRow("none") << QString() << QString() << false;
        QTest::newRow("name alone") << u"reader"_s << QString() << true;
        QTest::newRow("password alone") << u" "_s << u"word"_s << true;
    }
    void halfAnAccountIsNoLogin()
    {
        QFETCH(const QString, user);
        QFETCH(const QString, password);
        QFETCH(const bool, isHalf);
        defaults().setObject(u"SubtitleServiceUser"_s, user);
        m_fixture->accounts->texts = {{Item::SubtitlePassword, password}};
        open();
        testButton()->click();
        m_fixture->accounts->answerSubtitles(ServiceAccounts::Connection{});
        QVERIFY(status().startsWith(u"The subtitle service accepts the key."_s));
        QCOMPARE(status().endsWith(u" No login was tried: it takes both user name and password."_s), isHalf);
        testButton()->click();
        m_fixture->accounts->answerSubtitles(refusal(u"Not this key."_s));
        QCOMPARE(status(), u"Not this key."_s);
    }

    void filmDatabaseIsTestedBesideWhereThereIsAKey()
    {
        m_fixture->accounts->texts = {{Item::MetadataKey, u"films"_s}};
        open();
        testButton()->click();
        QVERIFY(m_fixture->accounts->answerFilms); // asked without waiting for the other
        QCOMPARE(status(), u"Testing…"_s);
        m_fixture->accounts->answerFilms({});
        QCOMPARE(status(), u"Testing…\nThe film database accepts its key."_s);
        QVERIFY(!testButton()->isEnabled());
        m_fixture->accounts->answerSubtitles(refusal(u"Not this key."_s));
        QCOMPARE(status(), u"Not this key.\nThe film database accepts its key."_s);
        QVERIFY(testButton()->isEnabled());
    }

    void secondTestForgetsTheFirstOnesAnswers()
    {
        m_fixture->accounts->texts = {{Item::MetadataKey, u"films"_s}};
        open();
        testButton()->click();
        m_fixture->accounts->answerSubtitles(refusal(u"Not this key."_s));
        QCOMPARE(status(), u"Not this key.\nTesting…"_s);
        m_fixture->accounts->answerFilms({});
        testButton()->click();
        QCOMPARE(status(), u"Testing…"_s);
        m_fixture->accounts->answerSubtitles(ServiceAccounts::Connection{});
        m_fixture->accounts->answerFilms(refusal(u"Nor that one."_s));
        QCOMPARE(status(), u"The subtitle service accepts the key.\nNor that one."_s);
    }

    void testUsesWhatIsTyped()
    {
        open();
        type(keyField(), u"typed"_s);
        testButton()->click(); // without going there first
        QCOMPARE(m_fixture->accounts->textsWhenTested.value(Item::SubtitleKey), u"typed"_s);
    }

    void answerAfterTheEndIsDropped()
    {
        open();
        testButton()->click();
        m_fixture->window.reset();
        const std::weak_ptr gone = m_fixture->pane;
        m_fixture->pane.reset();
        QVERIFY(gone.expired());
        m_fixture->accounts->answerSubtitles(ServiceAccounts::Connection{}); // must not crash
    }
};

PLOVENDIX_GUI_TEST(PrefsServicesTest)
#include "PrefsServicesTest.moc"
