#include <base/Links.h>
#include <features/about/AboutViewController.h>
#include <features/about/AboutWindowController.h>

#include <base/Bundle.h>
#include <base/Workspace.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct OpenedURLs final : Workspace
{
    bool openURL(const QUrl &url) override
    {
        opened += url;
        return !refusedSchemes.contains(url.scheme());
    }
    QList<QUrl> opened;
    QStringList refusedSchemes;
};
} // namespace

/// The About window: its texts, its look and its buttons.
class AboutTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    QString m_resources = Bundle::main().folder();
    std::shared_ptr<OpenedURLs> m_workspace;
    std::unique_ptr<AboutWindowController> m_about;
    int m_bundles = 0;

    /// A bundle with these entries in its information dictionary; a text without "<" is one.
    void useInformation(const QMap<QString, QString> &entries)
    {
        QByteArray list = "<plist version=\"1.0\"><dict>";
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
            const QString value = entry.value().startsWith(u'<')
                                      ? entry.value()
                                      : u"<string>"_s + entry.value() + u"</string>"_s;
            list += "<key>" + entry.key().toUtf8() + "</key>" + value.toUtf8();
        }
        const QString bundle = u"bundle%1"_s.arg(++m_bundles);
        m_sandbox.writeFile(bundle + u"/Info.plist"_s, list + "</dict></plist>");
        Bundle::setMainFolder(m_sandbox.path(bundle));
    }
    static std::shared_ptr<AboutViewController> makeContent()
    {
        return Storyboard::named(u"Main"_s).instantiate<AboutViewController>(u"AboutViewController"_s);
    }
    void open()
    {
        m_about = std::make_unique<AboutWindowController>();
        m_about->showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(m_about->window()));
    }
    ui::Window &window() const { return *m_about->window(); }
    QString shownText(const char *label) const
    {
        return window().findChild<QLabel *>(QString::fromLatin1(label))->text();
    }
    void click(const char *button) const
    {
        QTest::mouseClick(window().findChild<QPushButton *>(QString::fromLatin1(button)), Qt::LeftButton);
    }
    bool isCentred() const
    {
        const QPoint middle = window().screen()->availableGeometry().center();
        return (window().geometry().center() - middle).manhattanLength() <= 2;
    }

private Q_SLOTS:
    void initTestCase() { registerAboutScene(); }
    void init()
    {
        Bundle::setMainFolder(m_resources);
        m_workspace = std::make_shared<OpenedURLs>();
        Workspace::setSharedWorkspace(m_workspace);
        m_sandbox.clearPrintedLines();
    }
    void cleanup()
    {
        m_about.reset();
        Workspace::setSharedWorkspace({});
    }

    void versionIsReadFromTheInformation_data()
    {
        QTest::addColumn<QString>("shortVersion");
        QTest::addColumn<QString>("build");
        QTest::addColumn<QString>("expected");
        QTest::newRow("both") << u"1.4"_s << u"87"_s << u"Version 1.4 (87)"_s;
        QTest::newRow("no build number") << u"1.4"_s << QString() << u"Unknown"_s;
        QTest::newRow("no version") << QString() << u"87"_s << u"Unknown"_s;
        QTest::newRow("neither") << QString() << QString() << u"Unknown"_s;
        QTest::newRow("a number for the build") << u"1.4"_s << u"<integer>87</integer>"_s << u"Unknown"_s;
        QTest::newRow("a number for the version") << u"<real>1.4</real>"_s << u"87"_s << u"Unknown"_s;
        QTest::newRow("a mark in the version") << u"%@"_s << u"87"_s << u"Version %@ (87)"_s;
    }
    void versionIsReadFromTheInformation()
    {
        QFETCH(QString, shortVersion);
        QFETCH(QString, build);
        QFETCH(QString, expected);
        QMap<QString, QString> entries;
        if (!shortVersion.isEmpty())
            entries[u"CFBundleShortVersionString"_s] = shortVersion;
        if (!build.isEmpty())
            entries[u"CFBundleVersion"_s] = build;
        useInformation(entries);
        QCOMPARE(makeContent()->appVersion(), expected);
    }

    void versionIsReadAnewAndTheRestIsNot()
    {
        useInformation({{u"CFBundleName"_s, u"One"_s}, {u"NSHumanReadableCopyright"_s, u"© One"_s}});
        const auto content = makeContent();
        useInformation({{u"CFBundleName"_s, u"Two"_s},
                        {u"NSHumanReadableCopyright"_s, u"© Two"_s},
                        {u"CFBundleShortVersionString"_s, u"2.1"_s},
                        {u"CFBundleVersion"_s, u"214"_s}});
        QCOMPARE(content->appName().toString(), u"One"_s);
        QCOMPARE(content->appCopyright().toString(), u"© One"_s);
        QCOMPARE(content->appVersion(), u"Version 2.1 (214)"_s);
    }

    void versionWithoutAnInformationDictionaryIsUnknown()
    {
        const auto content = makeContent();
        Bundle::setMainFolder(m_sandbox.path(u"nowhere"_s));
        QCOMPARE(content->appVersion(), u"Unknown"_s);
    }

    void noInformationDictionaryIsFatal()
    {
        Bundle::setMainFolder(m_sandbox.path(u"nowhere"_s));
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(makeContent(), FatalFaultCaught);
    }

    void absentEntriesReadAsNothing()
    {
        useInformation({{u"NSHumanReadableCopyright"_s, u"<integer>7</integer>"_s}});
        const auto content = makeContent();
        QVERIFY(!content->appName().isValid());
        QCOMPARE(content->appCopyright().toInt(), 7);
        QVERIFY(content->view());
        QCOMPARE(content->view()->findChild<QLabel *>(u"nameLabel"_s)->text(), QString());
        QCOMPARE(content->view()->findChild<QLabel *>(u"copyrightLabel"_s)->text(), u"7"_s);
    }

    void versionAndButtonsAreInThePersonsLanguage()
    {
        Bundle::main().setPreferredLocalizations({u"fr"_s});
        const auto content = makeContent();
        QCOMPARE(content->visitWebSiteButtonTitle(), u"Visiter le site de Quorvane"_s);
        QCOMPARE(content->rateAppButtonTitle(), u"Quorvane dans l’App Store"_s);
        Bundle::main().setPreferredLocalizations({u"ja"_s});
        QCOMPARE(content->appVersion(), u"バージョン 1.0 (100)"_s);
        QCOMPARE(content->rateAppButtonTitle(), u"Quorvane dans l’App Store"_s); // fixed when it was made
    }

    void windowShowsTheTexts()
    {
        open();
        QCOMPARE(shownText("nameLabel"), u"Plovendix"_s);
        QCOMPARE(shownText("versionLabel"), u"Version 1.0 (100)"_s);
        QCOMPARE(shownText("copyrightLabel"), u"Copyright © 2026 Quorvane"_s);
        QCOMPARE(window().findChild<QPushButton *>(u"visitWebSiteButton"_s)->text(),
                 u"Visit the Quorvane Website"_s);
        QCOMPARE(window().findChild<QPushButton *>(u"rateAppButton"_s)->text(),
                 u"Quorvane in the App Store"_s);
        QCOMPARE(window().windowTitle(), u"About Plovendix"_s);
    }

    void showingStylesTheWindow()
    {
        open();
        QVERIFY(window().isFullSizeContentView());
        QVERIFY(window().titlebarAppearsTransparent());
        QCOMPARE(window().titleVisibility(), ui::Window::TitleVisibility::Hidden);
        QVERIFY(window().isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
        QVERIFY(window().isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QVERIFY(!window().isStandardButtonHidden(ui::Window::StandardButton::Close));
        QVERIFY(isCentred());
        QCOMPARE(window().contentSize(), QSize(402, 502));
    }

    void showingItAgainStylesAndCentresAgain()
    {
        open();
        window().close();
        window().setFullSizeContentView(false);
        window().setTitlebarAppearsTransparent(false);
        window().setTitleVisibility(ui::Window::TitleVisibility::Visible);
        window().setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, false);
        window().setStandardButtonHidden(ui::Window::StandardButton::Zoom, false);
        window().move(1, 2);
        m_about->showWindow();
        QVERIFY(window().isFullSizeContentView());
        QVERIFY(window().titlebarAppearsTransparent());
        QCOMPARE(window().titleVisibility(), ui::Window::TitleVisibility::Hidden);
        QVERIFY(window().isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
        QVERIFY(window().isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QVERIFY(isCentred());
    }

    void websiteButtonOpensTheWebsite()
    {
        open();
        click("visitWebSiteButton");
        QCOMPARE(m_workspace->opened, QList<QUrl>{QUrl(Links::Website)});
        QCOMPARE(QUrl(Links::Website).scheme(), u"https"_s);
        m_workspace->refusedSchemes = {u"https"_s};
        click("visitWebSiteButton"); // nobody took it: nothing more happens
        QCOMPARE(m_workspace->opened.size(), 2);
    }

    void storeButtonOpensTheStore()
    {
        open();
        click("rateAppButton");
        QCOMPARE(m_workspace->opened, QList<QUrl>{QUrl(Links::AppStorePage)});
        QCOMPARE(QUrl(Links::AppStorePage).scheme(), u"macappstore"_s);
    }

    void storeButtonOpensTheWebsiteWhereNothingTakesItsLink()
    {
        open();
        m_workspace->refusedSchemes = {u"macappstore"_s};
        click("rateAppButton");
        QCOMPARE(m_workspace->opened, (QList<QUrl>{QUrl(Links::AppStorePage), QUrl(Links::Website)}));
        m_workspace->refusedSchemes = {u"macappstore"_s, u"https"_s};
        click("rateAppButton"); // left at that
        QCOMPARE(m_workspace->opened.size(), 4);
    }

    void anAddressThatIsNoURLIsFatal()
    {
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(Links::open(u"https://a b/"_s), FatalFaultCaught);
        QVERIFY(m_workspace->opened.isEmpty());
    }
};

PLOVENDIX_GUI_TEST(AboutTest)
#include "AboutTest.moc"
