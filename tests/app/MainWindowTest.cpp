#include <app/AppDelegate.h>
#include <app/AppScenes.h>
#include <app/MainWindowController.h>
#include <base/UserDefaults.h>
#include <features/preferences/MenuForBindings.h>
#include <features/search/MainViewController.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/TitlebarAccessoryViewController.h>
#include <ui/window/Window.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        registerScenes();
        m_service = ScriptedSubtitleService::install();
        m_metadata = ScriptedMetadataService::install();
        m_delegate = std::make_unique<AppDelegate>();
    }
    void init()
    {
        m_controller = std::make_unique<MainWindowController>();
        m_controller->showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(m_controller->window()));
    }
    void cleanup()
    {
        m_controller.reset();
        UserDefaults::standard().removeObject(u"languageCode"_s);
    }

    void windowIsTransparentlyTitledWithATrailingAccessory()
    {
        QCOMPARE(m_controller->window()->windowTitle(), u"Plovendix"_s);
        QVERIFY(m_controller->window()->titlebarAppearsTransparent());
        QVERIFY(m_controller->titlebarViewController);
        QCOMPARE(static_cast<int>(m_controller->titlebarViewController->layoutAttribute()), 6);
        QVERIFY(m_controller->window()->contentViewController() == m_controller->mainViewController());
        QCOMPARE(ui::Window::openWindows().first(), m_controller->window());
        QCOMPARE(m_controller->window()->contentSize(), QSize(760, 640));
    }

    void accessoryIsPutAtTheTrailingEnd()
    {
        Storyboard::registerController(u"Main"_s, u"TitlebarViewController"_s, [] {
            const auto accessory = ViewController::make<TitlebarAccessoryViewController>();
            accessory->setLayoutAttribute(LayoutAttribute::Leading);
            return accessory;
        });
        MainWindowController other;
        const ui::Window *window = other.window();
        registerScenes();
        QCOMPARE(static_cast<int>(other.titlebarViewController->layoutAttribute()), 6);
        const QWidget *view = other.titlebarViewController->view();
        QVERIFY(view->mapTo(window, view->rect().center()).x() > window->width() / 2);
    }

    void windowComesUpInTheMiddleOfTheScreen()
    {
        const ui::Window *window = m_controller->window();
        const QPoint off = window->geometry().center() - window->screen()->availableGeometry().center();
        QVERIFY2(off.manhattanLength() <= 2, qPrintable(u"%1, %2"_s.arg(off.x()).arg(off.y())));
    }

    void accessoryOfTheWrongClassIsFatal()
    {
        Storyboard::registerController(u"Main"_s, u"TitlebarViewController"_s,
                                       [] { return ViewController::make<ViewController>(); });
        {
            const FatalFaultTrap trap;
            MainWindowController other;
            QVERIFY_EXCEPTION_THROWN(other.window(), FatalFaultCaught);
        }
        registerScenes();
    }

    void languagePopUpStoresTheCode()
    {
        auto *popUp = m_controller->window()->findChild<QComboBox *>(u"languagePopUp"_s);
        QVERIFY(popUp);
        QCOMPARE(popUp->currentData().toString(), u"en"_s);
        const int german = popUp->findData(u"de"_s);
        popUp->setCurrentIndex(german);
        Q_EMIT popUp->activated(german);
        QCOMPARE(UserDefaults::standard().string(u"languageCode"_s), u"de"_s);
        UserDefaults::standard().setObject(u"languageCode"_s, u"pb"_s);
        QCOMPARE(popUp->currentText(), u"Portuguese (Brazil)"_s);
        UserDefaults::standard().setObject(u"languageCode"_s, u"no such code"_s);
        QCOMPARE(popUp->currentIndex(), -1);
    }

    void languagePopUpIsAsWideAsItsName()
    {
        const auto *popUp = m_controller->window()->findChild<QComboBox *>(u"languagePopUp"_s);
        for (const QString &code : {u"th"_s, u"pb"_s, u"de"_s}) { // wider, then narrower again
            UserDefaults::standard().setObject(u"languageCode"_s, code);
            QTRY_COMPARE(popUp->width(), popUp->sizeHint().width());
        }
    }

    void languagePopUpHasTheCataloguesSeparator()
    {
        auto *popUp = m_controller->window()->findChild<QComboBox *>(u"languagePopUp"_s);
        auto *menu = qobject_cast<MenuForBindings *>(popUp->model());
        QVERIFY(menu);
        const QList<Language> languages = m_controller->mainViewController()->languagesArray();
        QCOMPARE(menu->rowCount(), int(languages.size()));
        const auto separator = static_cast<int>(languages.indexOf(Language(u"-"_s, u"-"_s)));
        QVERIFY(separator > 0);
        for (int row = 0; row < menu->rowCount(); ++row) {
            QCOMPARE(menu->isSeparator(row), row == separator);
            if (row != separator)
                QCOMPARE(popUp->itemData(row).toString(), languages.at(row).iso639_1());
        }
        // The keys step over it.
        popUp->setCurrentIndex(separator - 1);
        QTest::keyClick(popUp, Qt::Key_Down);
        QCOMPARE(popUp->currentIndex(), separator + 1);
        QCOMPARE(UserDefaults::standard().string(u"languageCode"_s), languages.at(separator + 1).iso639_1());
    }

    void languagesAreListedInFullHoweverShortTheCurrentOneIs()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"th"_s);
        auto *popUp = m_controller->window()->findChild<QComboBox *>(u"languagePopUp"_s);
        popUp->showPopup();
        QTRY_VERIFY(popUp->view()->isVisible());
        const QString longest = u"Portuguese (Brazil)"_s;
        QVERIFY(popUp->findText(longest) > 0);
        const int needed = popUp->view()->fontMetrics().horizontalAdvance(longest);
        // Some styles widen the list themselves; the program's does not.
        QVERIFY2(popUp->view()->minimumWidth() > needed, qPrintable(QString::number(needed)));
        QVERIFY(popUp->width() < needed);
        popUp->hidePopup();
    }

    void indicatorShowsSearches()
    {
        const auto *indicator = m_controller->window()->findChild<QWidget *>(u"searchIndicator"_s);
        QVERIFY(!indicator->isVisible());
        m_controller->mainViewController()->searchForText(u"a"_s, std::nullopt);
        QVERIFY(indicator->isVisible());
        m_controller->mainViewController()->cancelQuery(nullptr);
        QVERIFY(!indicator->isVisible());
    }

    void indicatorStaysDuringTheWordsSearch()
    {
        const auto *indicator = m_controller->window()->findChild<QWidget *>(u"searchIndicator"_s);
        m_service->queries.clear();
        m_controller->mainViewController()->searchForFile(QUrl(u"file:///v/A.mkv"_s), std::nullopt);
        m_service->finishLast(answerWith(0));
        QTRY_COMPARE(m_service->queries.size(), 2);
        QTRY_VERIFY(!m_controller->mainViewController()->isSearching());
        QVERIFY(indicator->isVisible());
        m_service->finishLast(answerWith(1));
        QTRY_VERIFY(!indicator->isVisible());
    }

    void indicatorShowsASearchThatBeganBeforeIt()
    {
        m_delegate->externalRequest = ExternalRequest{QUrl(u"file:///v/A.mkv"_s), {}};
        MainWindowController later;
        later.showWindow();
        QVERIFY(later.mainViewController()->isSearching());
        QVERIFY(later.window()->findChild<QWidget *>(u"searchIndicator"_s)->isVisible());
    }

    void controlsHaveTheirNames_data()
    {
        QTest::addColumn<QString>("widget");
        QTest::addColumn<QString>("name");
        QTest::newRow("field") << u"searchField"_s << u"Search"_s;
        QTest::newRow("list") << u"tableView"_s << u"Results"_s;
        QTest::newRow("cancel") << u"cancelSearchButton"_s << u"Cancel search"_s;
        QTest::newRow("menu") << u"menuButton"_s << u"Main menu"_s;
        QTest::newRow("download") << u"downloadButton"_s << u"Download"_s;
        QTest::newRow("drop area") << u"dropHeadline"_s << u"Drop a video here"_s;
    }
    void controlsHaveTheirNames()
    {
        QFETCH(QString, widget);
        QFETCH(QString, name);
        auto *control = m_controller->window()->findChild<QWidget *>(widget);
        QVERIFY(control);
        QCOMPARE(QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name), name);
    }

    void languagePopUpHasALabelAsBuddy()
    {
        auto *popUp = m_controller->window()->findChild<QComboBox *>(u"languagePopUp"_s);
        const auto relations = QAccessible::queryAccessibleInterface(popUp)->relations(QAccessible::Label);
        QCOMPARE(relations.size(), 1);
        QCOMPARE(relations.first().first->text(QAccessible::Name), u"Subtitle language"_s);
    }

    void tabWalksForthAndBack()
    {
        ui::Window *window = m_controller->window();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        auto *field = window->findChild<QWidget *>(u"searchField"_s);
        QTRY_VERIFY(field->hasFocus());
        QStringList forth;
        do {
            forth += QApplication::focusWidget()->objectName();
            QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
        } while (!field->hasFocus() && forth.size() < 20);
        QVERIFY(forth.contains(u"menuButton"_s));
        QVERIFY(forth.contains(u"languagePopUp"_s));
        QVERIFY(forth.contains(u"searchButton"_s));
        QStringList back;
        do {
            back += QApplication::focusWidget()->objectName();
            QTest::keyClick(window->windowHandle(), Qt::Key_Tab, Qt::ShiftModifier);
        } while (!field->hasFocus() && back.size() < 20);
        std::reverse(back.begin() + 1, back.end());
        QCOMPARE(back, forth);
    }

private:
    Sandbox m_sandbox;
    std::shared_ptr<ScriptedSubtitleService> m_service;
    std::shared_ptr<ScriptedMetadataService> m_metadata;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<MainWindowController> m_controller;
};

PLOVENDIX_GUI_TEST(MainWindowTest)
#include "MainWindowTest.moc"
