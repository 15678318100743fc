#include <base/Bundle.h>
#include <base/UserDefaults.h>
#include <features/preferences/MenuForBindings.h>
#include <features/preferences/PrefsWindowController.h>
#include <features/preferences/PrefsGeneralViewController.h>
#include <features/preferences/PrefsTabViewController.h>
#include <features/preferences/PrefsWindowController.h>
#include <model/LocaleUtilities.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A second pane, which counts its appearances.
class OtherPane final : public ViewController
{
public:
    OtherPane() { setTitle(u"Other & more"_s); }
    void loadView() override
    {
        auto root = std::make_unique<QWidget>();
        root->resize(560, 300);
        setView(std::move(root));
    }
    void viewWillAppear() override { ++willAppear; }
    void viewDidAppear() override { ++didAppear; }

    int willAppear = 0;
    int didAppear = 0;
};
std::shared_ptr<OtherPane> lastOtherPane;
} // namespace

/// The preferences window with its General pane, used as a person does.
class PreferencesWindowTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<PrefsWindowController> m_preferences;
    int m_files = 0;

    ui::Window *window() const { return m_preferences->window(); }
    QComboBox *popUp() const { return window()->findChild<QComboBox *>(u"languagePopUp"_s); }
    QList<QPushButton *> tabs() const
    {
        return window()->findChild<QWidget *>(u"tabBar"_s)->findChildren<QPushButton *>();
    }
    void open(const QStringList &panes = {u"PrefsGeneralViewController"_s})
    {
        m_preferences = std::make_unique<PrefsWindowController>(panes);
        m_preferences->showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(window()));
    }
    static std::shared_ptr<PrefsGeneralViewController> makePane()
    {
        return Storyboard::named(u"Preferences"_s)
            .instantiate<PrefsGeneralViewController>(u"PrefsGeneralViewController"_s);
    }

private Q_SLOTS:
    void initTestCase()
    {
        registerPreferencesScenes();
        Storyboard::registerController(u"Preferences"_s, u"OtherPane"_s, [] {
            lastOtherPane = ViewController::make<OtherPane>();
            return lastOtherPane;
        });
    }
    void init() { UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_files))); }
    void cleanup()
    {
        m_preferences.reset();
        lastOtherPane.reset();
        Bundle::main().setPreferredLocalizations({});
    }

    void windowIsCentredWhenItLoadsAndStaysWhereItWasPut()
    {
        for (int time = 0; time < 2; ++time) {
            open();
            const QPoint middle = window()->screen()->availableGeometry().center();
            QVERIFY((window()->geometry().center() - middle).manhattanLength() <= 2);
            window()->move(3, 4);
            window()->close();
            m_preferences->showWindow();
            QCOMPARE(window()->pos(), QPoint(3, 4));
        }
    }

    void titlesAreTheirOwnInThePersonsLanguage_data()
    {
        QTest::addColumn<QString>("pane");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("title");
        QTest::newRow("general") << u"PrefsGeneralViewController"_s << u"en"_s << u"General"_s;
        QTest::newRow("services") << u"PrefsServicesViewController"_s << u"en"_s << u"Services"_s;
        QTest::newRow("updates") << u"PrefsUpdatesViewController"_s << u"en"_s << u"Updates"_s;
        QTest::newRow("in German") << u"PrefsGeneralViewController"_s << u"de"_s << u"Allgemein"_s;
        QTest::newRow("in Japanese") << u"PrefsUpdatesViewController"_s << u"ja"_s << u"アップデート"_s;
    }
    void titlesAreTheirOwnInThePersonsLanguage()
    {
        QFETCH(const QString, pane);
        QFETCH(const QString, language);
        QFETCH(const QString, title);
        Bundle::main().setPreferredLocalizations({language});
        const auto made = Storyboard::named(u"Preferences"_s).instantiateController(pane);
        QSignalSpy changes(made.get(), &ViewController::titleChanged);
        made->setTitle(u"Something else"_s);
        QCOMPARE(made->title(), title);
        // The text did reach the base class, which reports a change.
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.first().first().toString(), title);
    }

    void titleIsThePanesTitle()
    {
        open();
        QCOMPARE(window()->windowTitle(), u"General"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(window())->text(QAccessible::Name), u"General"_s);
        QCOMPARE(tabs().size(), 1);
        QCOMPARE(tabs().first()->text(), u"General"_s);
        QVERIFY(tabs().first()->isChecked());
        QCOMPARE(window()->contentSize(), QSize(560, 242));
        QVERIFY(!window()->isResizable());
        QVERIFY(window()->isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
        QVERIFY(window()->isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QVERIFY(!window()->isStandardButtonHidden(ui::Window::StandardButton::Close));
    }

    void popUpShowsTheCatalogueOfTheTimeWhenThePaneWasMade()
    {
        open();
        const QList<Language> languages = LocaleUtilities::shared().languages();
        QCOMPARE(makePane()->languagesArray(), languages);
        QCOMPARE(popUp()->count(), languages.size());
        QStringList names;
        QStringList shown;
        for (int row = 0; row < popUp()->count(); ++row) {
            const bool isSeparator = qobject_cast<MenuForBindings *>(popUp()->model())->isSeparator(row);
            names += languages.at(row).name() + languages.at(row).iso639_1();
            shown +=
                isSeparator ? names.constLast() : popUp()->itemText(row) + popUp()->itemData(row).toString();
            QCOMPARE(isSeparator, languages.at(row).name() == u"-"_s);
        }
        QCOMPARE(shown, names);
        const auto pane = makePane();
        m_sandbox.clearPrintedLines();
        qputenv("LC_ALL", "de_DE.UTF-8"); // a catalogue that was built now would have other names
        const auto bound =
            pane->view() ? pane->property("languagesArray").value<QList<Language>>() : languages;
        qputenv("LC_ALL", "en_US.UTF-8");
        QCOMPARE(bound, languages);
        QCOMPARE(bound.constFirst().name(), u"English"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList()); // the catalogue prints as it is built
    }

    void storedLanguageIsSelected_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("registered");
        QTest::addColumn<QString>("shown");
        QTest::newRow("stored") << u"pb"_s << u"de"_s << u"Portuguese (Brazil)"_s;
        QTest::newRow("registered") << QString() << u"de"_s << u"German"_s;
        QTest::newRow("none") << QString() << QString() << u"English"_s;
        QTest::newRow("outside the catalogue") << QString() << u"q0"_s << QString();
    }
    void storedLanguageIsSelected()
    {
        QFETCH(const QString, stored);
        QFETCH(const QString, registered);
        UserDefaults &defaults = UserDefaults::standard();
        if (!stored.isEmpty())
            defaults.setObject(u"languageCode"_s, stored);
        if (!registered.isEmpty())
            defaults.registerDefaults({{u"languageCode"_s, registered}});
        const auto before = defaults.string(u"languageCode"_s);
        open();
        QTEST(popUp()->currentText(), "shown");
        QCOMPARE(defaults.string(u"languageCode"_s), before);
        defaults.setObject(u"languageCode"_s, u"fr"_s);
        QTRY_COMPARE(popUp()->currentText(), u"French"_s);
        const auto relations = QAccessible::queryAccessibleInterface(popUp())->relations(QAccessible::Label);
        QCOMPARE(relations.size(), 1);
        QCOMPARE(relations.first().first->text(QAccessible::Name), u"Subtitle language"_s);
    }

    void choosingStoresTheCode_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("code");
        QTest::newRow("German") << u"germ"_s << u"de"_s;
        QTest::newRow("Brazilian Portuguese") << u"portuguese ("_s << u"pb"_s;
        QTest::newRow("below the line") << u"zulu"_s << u"zu"_s;
    }
    void choosingStoresTheCode()
    {
        QFETCH(QString, typed);
        QFETCH(QString, code);
        open();
        popUp()->setFocus();
        QTest::keyClick(popUp(), Qt::Key_Space); // opens the list
        QTRY_VERIFY(popUp()->view()->isVisible());
        QTest::keyClicks(popUp()->view(), typed);
        QTest::keyClick(popUp()->view(), Qt::Key_Return);
        QTRY_COMPARE(UserDefaults::standard().string(u"languageCode"_s), code);
        QCOMPARE(popUp()->currentData().toString(), code);
    }

    void choosingTheLanguageThatShowsStoresIt()
    {
        UserDefaults::standard().registerDefaults({{u"languageCode"_s, u"de"_s}});
        open();
        QCOMPARE(popUp()->currentText(), u"German"_s);
        popUp()->setFocus();
        QTest::keyClick(popUp(), Qt::Key_Space); // opens the list
        QTRY_VERIFY(popUp()->view()->isVisible());
        QTest::keyClick(popUp()->view(), Qt::Key_Return);
        UserDefaults::standard().synchronize();
        const UserDefaults restarted(UserDefaults::standard().path()); // with nothing registered
        QTRY_COMPARE(restarted.string(u"languageCode"_s), u"de"_s);
    }

    void escapeClosesTheWindow()
    {
        open({u"PrefsGeneralViewController"_s, u"OtherPane"_s});
        QTRY_COMPARE(QApplication::activeWindow(), window());
        popUp()->showPopup();
        QTRY_VERIFY(popUp()->view()->isVisible());
        QTest::keyClick(window()->windowHandle(), Qt::Key_Escape); // the list alone
        QTRY_VERIFY(!popUp()->view()->isVisible());
        QVERIFY(window()->isVisible());
        window()->activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), window()->windowHandle());
        QTest::keyClick(window()->windowHandle(), Qt::Key_Escape);
        QVERIFY(!window()->isVisible());
        m_preferences->showWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), window()->windowHandle());
        QTest::mouseClick(tabs().last(), Qt::LeftButton);
        QTest::keyClick(window()->windowHandle(), Qt::Key_Escape);
        QVERIFY(!window()->isVisible());
    }

    void aTabShowsItsPane()
    {
        open({u"PrefsGeneralViewController"_s, u"OtherPane"_s});
        QCOMPARE(tabs().size(), 2);
        QCOMPARE(tabs().last()->text(), u"Other && more"_s);
        QVERIFY(!lastOtherPane->isViewLoaded());
        QCOMPARE(window()->focusWidget(), tabs().first());
        QTest::mouseClick(tabs().last(), Qt::LeftButton);
        QCOMPARE(window()->windowTitle(), u"Other & more"_s);
        QVERIFY(lastOtherPane->view()->isVisible());
        QVERIFY(!popUp()->isVisible());
        QCOMPARE(window()->contentSize(), QSize(560, 347));
        QCOMPARE(lastOtherPane->willAppear, 1);
        QCOMPARE(lastOtherPane->didAppear, 1);
        QTest::keyClick(tabs().last(), Qt::Key_Left);
        QCOMPARE(window()->windowTitle(), u"General"_s);
        QVERIFY(popUp()->isVisible());
        QVERIFY(!lastOtherPane->view()->isVisible());
        QCOMPARE(window()->contentSize(), QSize(560, 242));
    }

    void theShownPaneAppearsWithTheWindow()
    {
        open({u"PrefsGeneralViewController"_s, u"OtherPane"_s});
        m_preferences->showPane(u"OtherPane"_s);
        QCOMPARE(window()->windowTitle(), u"Other & more"_s);
        QCOMPARE(lastOtherPane->willAppear, 1);
        window()->close();
        m_preferences->showWindow();
        QCOMPARE(lastOtherPane->willAppear, 2);
        QCOMPARE(lastOtherPane->didAppear, 2);
        m_preferences->showPane(u"no such pane"_s);
        QCOMPARE(window()->windowTitle(), u"Other & more"_s);
        lastOtherPane->setTitle(u"Renamed"_s);
        QCOMPARE(window()->windowTitle(), u"Renamed"_s);
        QCOMPARE(tabs().last()->text(), u"Renamed"_s);
        m_preferences->showPane(u"PrefsGeneralViewController"_s);
        lastOtherPane->setTitle(u"Hidden"_s);
        QCOMPARE(tabs().last()->text(), u"Hidden"_s);
        QCOMPARE(window()->windowTitle(), u"General"_s);
    }

    void everyPaneWithASceneHasATab()
    {
        QCOMPARE(PrefsWindowController::availablePanes(),
                 (QStringList{u"PrefsGeneralViewController"_s, u"PrefsServicesViewController"_s,
                              u"PrefsUpdatesViewController"_s, u"OtherPane"_s}));
        m_preferences = std::make_unique<PrefsWindowController>();
        QCOMPARE(tabs().size(), 4);
    }
};

PLOVENDIX_GUI_TEST(PreferencesWindowTest)
#include "PreferencesWindowTest.moc"
