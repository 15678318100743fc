#include <panels/Links.h>
#include <panels/PanelScenes.h>
#include <panels/PrefsServicesViewController.h>
#include <panels/ServiceAccounts.h>
#include <platform/Bundle.h>
#include <platform/MainQueue.h>
#include <platform/Storyboard.h>
#include <platform/UserDefaults.h>
#include <platform/Window.h>
#include <platform/Workspace.h>
#include <support/Sandbox.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
using Item = ServiceAccounts::Item;

/// Accounts that answer as the test says, when it says.
class FakeAccounts final : public ServiceAccounts
{
public:
    QString text(Item item) const override { return texts.value(item); }
    bool isFixed(Item item) const override { return fixed.contains(item); }
    void setText(Item item, const QString &text, std::function<void(Result<void>)> completion) override
    {
        texts[item] = text.simplified();
        ++changes;
        Q_EMIT changed();
        completion(kept);
    }
    void testSubtitles(std::function<void(Result<Connection>)> completion) override
    {
        textsWhenTested = texts;
        answerSubtitles = std::move(completion);
    }
    void testFilms(std::function<void(Result<void>)> completion) override
    {
        answerFilms = std::move(completion);
    }
    Catalogue catalogue() const override { return place; }

    QMap<Item, QString> texts;
    QSet<Item> fixed;
    Result<void> kept;
    int changes = 0;
    QMap<Item, QString> textsWhenTested;
    std::function<void(Result<Connection>)> answerSubtitles;
    std::function<void(Result<void>)> answerFilms;
    Catalogue place{QDir::homePath() + u"/data & more/catalogue.sqlite"_s, 2'500'000, true};
};

struct FakeWorkspace final : Workspace
{
    bool openURL(const QUrl &url) override
    {
        opened += url.toString();
        return true;
    }
    bool showInFileBrowser(const QUrl &file) override
    {
        shown += file.toLocalFile();
        return true;
    }
    QStringList opened;
    QStringList shown;
};

Error refusal(const QString &sentence)
{
    return {u"test"_s, 1, sentence};
}
} // namespace

/// The Services pane in a window, used as a person does.
class PrefsServicesTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::shared_ptr<FakeAccounts> m_accounts;
    std::shared_ptr<FakeWorkspace> m_workspace;
    std::shared_ptr<PrefsServicesViewController> m_pane;
    std::unique_ptr<Window> m_window;
    int m_files = 0;

    static UserDefaults &defaults() { return UserDefaults::standard(); }
    template <class Type>
    Type *child(const char *name) const
    {
        return m_window->findChild<Type *>(QString::fromLatin1(name));
    }
    QLineEdit *keyField() const { return child<QLineEdit>("keyField"); }
    QPushButton *testButton() const { return child<QPushButton>("testButton"); }
    QString status() const { return child<QLabel>("statusLabel")->text(); }
    void open()
    {
        m_pane = Storyboard::named(u"Preferences"_s)
                     .instantiate<PrefsServicesViewController>(u"PrefsServicesViewController"_s);
        m_window = std::make_unique<Window>();
        m_window->setContentViewController(m_pane);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    static void type(QLineEdit *field, const QString &text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text);
    }

private Q_SLOTS:
    void initTestCase() { registerPanelScenes(); }
    void init()
    {
        UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_files)));
        defaults().registerDefaults({{u"SubtitleHearingImpaired"_s, u"neutral"_s},
                                     {u"SubtitleForeignPartsOnly"_s, u"avoided"_s},
                                     {u"SubtitleMachineTranslated"_s, u"avoided"_s}});
        m_accounts = std::make_shared<FakeAccounts>();
        m_workspace = std::make_shared<FakeWorkspace>();
        ServiceAccounts::setShared(m_accounts);
        Workspace::setSharedWorkspace(m_workspace);
    }
    void cleanup()
    {
        m_window.reset();
        m_pane.reset();
        ServiceAccounts::setShared({});
        Workspace::setSharedWorkspace({});
        Bundle::main().setPreferredLocalizations({});
    }

    void titleIsAlwaysServices()
    {
        open();
        QCOMPARE(m_pane->title(), u"Services"_s);
        m_pane->setTitle(u"Other"_s);
        QCOMPARE(m_pane->title(), u"Services"_s);
    }

    void whatIsInUseIsShown()
    {
        m_accounts->texts = {{Item::SubtitleKey, u"key"_s}, {Item::SubtitlePassword, u"word"_s}};
        defaults().setObject(u"SubtitleServiceUser"_s, u"reader"_s);
        open();
        QCOMPARE(keyField()->text(), u"key"_s);
        QCOMPARE(child<QLineEdit>("passwordField")->text(), u"word"_s);
        QCOMPARE(child<QLineEdit>("passwordField")->echoMode(), QLineEdit::Password);
        QCOMPARE(child<QLineEdit>("userField")->text(), u"reader"_s);
        QCOMPARE(child<QLineEdit>("metadataKeyField")->text(), QString());
        m_accounts->texts[Item::MetadataKey] = u"film key"_s;
        Q_EMIT m_accounts->changed(); // the keyring was opened
        QCOMPARE(child<QLineEdit>("metadataKeyField")->text(), u"film key"_s);
    }

    void endOfAnEditKeepsIt()
    {
        open();
        type(keyField(), u" new-key "_s);
        QCOMPARE(m_accounts->changes, 0);
        Q_EMIT m_accounts->changed(); // while somebody types
        QCOMPARE(keyField()->text(), u" new-key "_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(m_accounts->texts.value(Item::SubtitleKey), u"new-key"_s);
        QCOMPARE(keyField()->text(), u"new-key"_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(m_accounts->changes, 1);
    }

    void goingElsewhereKeepsItToo()
    {
        open();
        type(child<QLineEdit>("passwordField"), u"hush"_s);
        QTest::keyClick(child<QLineEdit>("passwordField"), Qt::Key_Tab);
        QCOMPARE(m_accounts->texts.value(Item::SubtitlePassword), u"hush"_s);
    }

    void closingTheWindowKeepsItToo()
    {
        open();
        type(child<QLineEdit>("metadataKeyField"), u"films"_s);
        m_window->close();
        QTRY_COMPARE(m_accounts->texts.value(Item::MetadataKey), u"films"_s);
    }

    void userNameIsASetting()
    {
        open();
        type(child<QLineEdit>("userField"), u"reader"_s);
        QTest::keyClick(child<QLineEdit>("userField"), Qt::Key_Return);
        QCOMPARE(defaults().string(u"SubtitleServiceUser"_s), u"reader"_s);
    }

    void whatCouldNotBeKeptIsSaid()
    {
        m_accounts->kept = refusal(u"Only until the end."_s);
        open();
        type(keyField(), u"new"_s);
        QTest::keyClick(keyField(), Qt::Key_Return);
        QCOMPARE(status(), u"Only until the end."_s);
    }

    void environmentCannotBeOverwritten()
    {
        m_accounts->texts = {{Item::SubtitleKey, u"given"_s}};
        m_accounts->fixed = {Item::SubtitleKey};
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
        m_accounts->answerSubtitles(
            ServiceAccounts::Connection{isLoggedIn, known(allowed), known(remaining)});
        QTEST(status(), "sentence");
        QVERIFY(testButton()->isEnabled());
        QVERIFY(!m_accounts->answerFilms);
    }

    void refusalIsSaidInItsOwnWords()
    {
        open();
        testButton()->click();
        m_accounts->answerSubtitles(refusal(u"Not this key."_s));
        QCOMPARE(status(), u"Not this key."_s);
        QVERIFY(testButton()->isEnabled());
    }

    void filmDatabaseIsTestedWhereThereIsAKey()
    {
        m_accounts->texts = {{Item::MetadataKey, u"films"_s}};
        open();
        testButton()->click();
        m_accounts->answerSubtitles(refusal(u"Not this key."_s));
        QCOMPARE(status(), u"Testing…"_s);
        m_accounts->answerFilms({});
        QCOMPARE(status(), u"Not this key.\nThe film database accepts its key."_s);
        testButton()->click();
        m_accounts->answerSubtitles(ServiceAccounts::Connection{});
        m_accounts->answerFilms(refusal(u"Nor that one."_s));
        QCOMPARE(status(), u"The subtitle service accepts the key.\nNor that one."_s);
    }

    void testUsesWhatIsTyped()
    {
        open();
        type(keyField(), u"typed"_s);
        testButton()->click(); // without going there first
        QCOMPARE(m_accounts->textsWhenTested.value(Item::SubtitleKey), u"typed"_s);
    }

    void answerAfterTheEndIsDropped()
    {
        open();
        testButton()->click();
        m_window.reset();
        const std::weak_ptr gone = m_pane;
        m_pane.reset();
        QVERIFY(gone.expired());
        m_accounts->answerSubtitles(ServiceAccounts::Connection{}); // must not crash
    }

    void likingsAreSettings_data()
    {
        QTest::addColumn<QString>("popUp");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("registered");
        QTest::newRow("hearing") << u"hearingPopUp"_s << u"SubtitleHearingImpaired"_s << u"No preference"_s;
        QTest::newRow("foreign") << u"foreignPopUp"_s << u"SubtitleForeignPartsOnly"_s << u"Avoided"_s;
        QTest::newRow("machine") << u"machinePopUp"_s << u"SubtitleMachineTranslated"_s << u"Avoided"_s;
    }
    void likingsAreSettings()
    {
        QFETCH(const QString, popUp);
        QFETCH(const QString, key);
        open();
        auto *pane = m_window->findChild<QComboBox *>(popUp);
        QTEST(pane->currentText(), "registered");
        QTest::keyClick(pane, Qt::Key_Home);
        QCOMPARE(pane->currentText(), u"No preference"_s);
        for (const auto &[text, value] :
             {std::pair{u"Preferred"_s, u"preferred"_s}, std::pair{u"Avoided"_s, u"avoided"_s}}) {
            QTest::keyClick(pane, Qt::Key_Down);
            QCOMPARE(pane->currentText(), text);
            QCOMPARE(defaults().string(key), value);
        }
        QTest::keyClick(pane, Qt::Key_Home);
        QCOMPARE(defaults().string(key), u"neutral"_s);
    }

    void originalBytesAreASetting()
    {
        open();
        child<QCheckBox>("originalBytesCheckbox")->click();
        QVERIFY(defaults().boolean(u"SubtitleKeepsOriginalBytes"_s));
    }

    void catalogueIsAPlaceWithASize()
    {
        open();
        QCOMPARE(child<QPushButton>("catalogueButton")->text(), u"~/data && more"_s);
        QCOMPARE(child<QLabel>("catalogueSizeLabel")->text(), QLocale().formattedDataSize(2'500'000));
        QCOMPARE(child<QPushButton>("catalogueButton")->toolTip(), QDir::homePath() + u"/data & more"_s);
        child<QPushButton>("catalogueButton")->click();
        QCOMPARE(m_workspace->shown, QStringList{m_accounts->place.file});
    }

    void appearingBeforeTheViewIsLoadedDoesNoHarm()
    {
        const auto pane = ViewController::make<PrefsServicesViewController>();
        pane->notifyWillAppear();
        QVERIFY(!pane->isViewLoaded());
    }

    void catalogueIsLookedAtEachTimeThePaneAppears()
    {
        open();
        m_window->hide();
        m_accounts->place.bytes = 7'000'000;
        m_window->show();
        QCOMPARE(child<QLabel>("catalogueSizeLabel")->text(), QLocale().formattedDataSize(7'000'000));
    }

    void longPathIsShortened()
    {
        m_accounts->place.file = u"/data/"_s + u"folder/"_s.repeated(50) + u"catalogue.sqlite"_s;
        open();
        const QString text = child<QPushButton>("catalogueButton")->text();
        QVERIFY(text.contains(u'…') && text.startsWith(u"/data/"_s) && text.endsWith(u"folder"_s));
        QVERIFY(m_pane->view()->minimumSizeHint().width() <= 560);
    }

    void windowStaysOnTheScreen()
    {
        open();
        const QRect room = m_window->screen()->availableGeometry();
        m_window->move(m_window->x(), room.bottom() - 100);
        m_pane->notifyDidAppear();
        const int bottom = m_window->geometry().bottom();
        QVERIFY2(bottom <= room.bottom() || m_window->y() == room.top(), qPrintable(QString::number(bottom)));
        m_window->move(room.left() + 3, room.top());
        m_pane->notifyDidAppear();
        QCOMPARE(m_window->pos(), QPoint(room.left() + 3, room.top()));
    }

    void starterCatalogueIsCalledSo()
    {
        m_accounts->place.isOwn = false;
        open();
        QVERIFY(child<QLabel>("catalogueSizeLabel")->text().endsWith(u", comes with the program"_s));
    }

    void keysAreToBeHadOnTheWeb()
    {
        open();
        child<QPushButton>("getKeyButton")->click();
        QCOMPARE(m_workspace->opened, QStringList{Links::SubtitleKeyPage});
    }

    void withoutServicesNothingCanBeTyped()
    {
        ServiceAccounts::setShared({});
        open();
        QVERIFY(!keyField()->isEnabled());
        QVERIFY(!testButton()->isEnabled());
        QVERIFY(!child<QPushButton>("catalogueButton")->isEnabled());
    }

    void everyControlHasAName()
    {
        open();
        const auto nameOf = [this](const char *name) {
            return QAccessible::queryAccessibleInterface(child<QWidget>(name))->text(QAccessible::Name);
        };
        QCOMPARE(nameOf("keyField"), u"API key"_s);
        QCOMPARE(nameOf("userField"), u"User name"_s);
        QCOMPARE(nameOf("passwordField"), u"Password"_s);
        QCOMPARE(nameOf("metadataKeyField"), u"Film database key"_s);
        for (const char *popUp : {"hearing", "foreign", "machine"}) {
            const auto *label = child<QLabel>((QByteArray(popUp) + "Label").constData());
            QCOMPARE(label->buddy(), child<QWidget>((QByteArray(popUp) + "PopUp").constData()));
        }
    }

    void textsFitInEveryLanguage_data()
    {
        QTest::addColumn<QString>("language");
        for (const char *language : {"en", "de", "fr", "es", "pt-BR", "ja"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }
    void textsFitInEveryLanguage()
    {
        QFETCH(const QString, language);
        Bundle::main().setPreferredLocalizations({language});
        open();
        for (const QWidget *widget : m_window->findChildren<QWidget *>()) {
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *box = qobject_cast<const QCheckBox *>(widget);
            if (!widget->isVisible() || !(label || box))
                continue;
            const int needed = label && label->wordWrap() ? label->heightForWidth(label->width())
                                                          : widget->sizeHint().width();
            const int given = label && label->wordWrap() ? label->height() : widget->width();
            QVERIFY2(needed <= given, qPrintable(widget->objectName()));
        }
        QVERIFY(m_pane->view()->minimumSizeHint().width() <= 560);
        QVERIFY(m_pane->view()->minimumSizeHint().height() <= 590);
    }
};

QTEST_MAIN(PrefsServicesTest)
#include "PrefsServicesTest.moc"
