#include <features/about/AboutViewController.h>
#include <features/about/AboutWindowController.h>
#include <features/about/RtfReader.h>

#include <base/Bundle.h>
#include <base/Links.h>
#include <tests/support/FakeWorkspace.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

/// The About window: its texts, look, buttons and credits.
class AboutViewControllerTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    QString m_resources = Bundle::main().folder();
    std::shared_ptr<FakeWorkspace> m_workspace;
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
    /// The program's bundle with other credits; nothing for none.
    void useCredits(const std::optional<QByteArray> &credits)
    {
        useInformation({});
        if (credits)
            m_sandbox.writeFile(u"bundle%1/Credits.rtf"_s.arg(m_bundles), *credits);
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
        m_about->window()->setContentSize(QSize(402, 502));
    }
    ui::Window &window() const { return *m_about->window(); }
    template <class Widget>
    Widget *child(const char *name) const
    {
        return window().findChild<Widget *>(QString::fromLatin1(name));
    }
    QTextBrowser &credits() const { return *child<QTextBrowser>("creditsTextView"); }
    QString shownCredits() const { return credits().toPlainText(); }
    QList<QTextCharFormat> creditsFormats() const
    {
        QList<QTextCharFormat> found;
        for (QTextBlock block = credits().document()->begin(); block.isValid(); block = block.next()) {
            for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment)
                found += fragment.fragment().charFormat();
        }
        return found;
    }
    /// Whether the credits draw anything that is clearly red.
    bool drawsRed() const
    {
        const QImage picture = credits().viewport()->grab().toImage();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                if (color.red() > color.green() + 60 && color.red() > color.blue() + 60)
                    return true;
            }
        }
        return false;
    }
    QStringList failuresPrinted() const
    {
        return m_sandbox.printedLines().filter(u"Couldn't set the credits"_s);
    }

private Q_SLOTS:
    void initTestCase() { registerAboutScene(); }
    void init()
    {
        Bundle::setMainFolder(m_resources);
        Bundle::main().setPreferredLocalizations({});
        m_workspace = FakeWorkspace::install();
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
        useInformation({{u"CFBundleName"_s, u"One"_s}, {u"NSHumanReadableCopyright"_s, u"© One"_s}});
        const auto content = makeContent();
        useInformation(entries);
        QCOMPARE(content->appVersion(), expected); // read anew, and the rest is not
        QCOMPARE(content->appName().toString(), u"One"_s);
        QCOMPARE(content->appCopyright().toString(), u"© One"_s);
    }

    void missingInformationDictionaryIsFatalWhenTheContentIsMade()
    {
        const auto content = makeContent();
        Bundle::setMainFolder(m_sandbox.path(u"nowhere"_s));
        QCOMPARE(content->appVersion(), u"Unknown"_s);
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(makeContent(), FatalFaultCaught);
    }

    void absentEntriesReadAsNothing()
    {
        useInformation({{u"NSHumanReadableCopyright"_s, u"<integer>7</integer>"_s}});
        m_sandbox.writeFile(u"bundle%1/Credits.rtf"_s.arg(m_bundles), "{\\rtf1 broken");
        const auto content = makeContent();
        QVERIFY(!content->appName().isValid());
        QCOMPARE(content->appCopyright().toInt(), 7);
        content->notifyWillAppear(); // which does nothing without a window
        QVERIFY(failuresPrinted().isEmpty());
        QCOMPARE(content->view()->findChild<QLabel *>(u"nameLabel"_s)->text(), QString());
        QCOMPARE(content->view()->findChild<QLabel *>(u"copyrightLabel"_s)->text(), u"7"_s);
    }

    void versionAndButtonsAreInThePersonsLanguage()
    {
        Bundle::main().setPreferredLocalizations({u"fr"_s});
        const auto content = makeContent();
        QCOMPARE(content->visitWebSiteButtonTitle(), u"Visiter le site de Quorvane"_s);
        Bundle::main().setPreferredLocalizations({u"ja"_s});
        QCOMPARE(content->appVersion(), u"バージョン 1.0 (100)"_s);
        QCOMPARE(content->rateAppButtonTitle(), u"Quorvane dans l’App Store"_s); // fixed when it was made
    }

    void windowShowsTheTexts()
    {
        open();
        QCOMPARE(child<QLabel>("nameLabel")->text(), u"Plovendix"_s);
        QCOMPARE(child<QLabel>("versionLabel")->text(), u"Version 1.0 (100)"_s);
        QCOMPARE(child<QLabel>("copyrightLabel")->text(), u"Copyright © 2026 Quorvane"_s);
        QCOMPARE(child<QPushButton>("visitWebSiteButton")->text(), u"Visit the Quorvane Website"_s);
        QCOMPARE(child<QPushButton>("rateAppButton")->text(), u"Quorvane in the App Store"_s);
        QCOMPARE(window().windowTitle(), u"About Plovendix"_s);
    }

    void showingStylesAndCentresTheWindowEachTime()
    {
        using Button = ui::Window::StandardButton;
        open();
        for (int times = 0; times < 2; ++times) {
            QVERIFY(window().isFullSizeContentView());
            QVERIFY(window().titlebarAppearsTransparent());
            QCOMPARE(window().titleVisibility(), ui::Window::TitleVisibility::Hidden);
            QVERIFY(window().isStandardButtonHidden(Button::Miniaturize));
            QVERIFY(window().isStandardButtonHidden(Button::Zoom));
            QVERIFY(!window().isStandardButtonHidden(Button::Close));
            const QPoint middle = window().screen()->availableGeometry().center();
            QVERIFY((window().geometry().center() - middle).manhattanLength() <= 2);
            window().close();
            window().setFullSizeContentView(false);
            window().setTitlebarAppearsTransparent(false);
            window().setTitleVisibility(ui::Window::TitleVisibility::Visible);
            window().setStandardButtonHidden(Button::Miniaturize, false);
            window().setStandardButtonHidden(Button::Zoom, false);
            window().move(1, 2);
            m_about->showWindow();
        }
        QCOMPARE(window().contentSize(), QSize(402, 502));
    }

    void buttonsOpenTheMakersPages_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QStringList>("refused");
        QTest::addColumn<QStringList>("opened");
        const QString website = u"visitWebSiteButton"_s;
        const QString store = u"rateAppButton"_s;
        QTest::newRow("website") << website << QStringList() << QStringList{Links::Website};
        QTest::newRow("website refused") << website << QStringList{u"https"_s} << QStringList{Links::Website};
        QTest::newRow("store") << store << QStringList() << QStringList{Links::AppStorePage};
        QTest::newRow("store refused") << store << QStringList{u"macappstore"_s, u"https"_s}
                                       << QStringList{Links::AppStorePage, Links::Website};
    }
    void buttonsOpenTheMakersPages()
    {
        QFETCH(QString, button);
        QFETCH(QStringList, refused);
        QFETCH(QStringList, opened);
        m_workspace->refusedSchemes = refused;
        open();
        QTest::mouseClick(child<QPushButton>(qPrintable(button)), Qt::LeftButton);
        QCOMPARE(QUrl::toStringList(m_workspace->opened), opened);
    }

    void addressThatIsNoURLIsFatal()
    {
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(Links::open(u"https://a b/"_s), FatalFaultCaught);
        QVERIFY(m_workspace->opened.isEmpty());
    }

    void programsOwnCreditsAreShown()
    {
        open();
        QVERIFY(shownCredits().startsWith(u"Credits\n"_s));
        QVERIFY(credits().verticalScrollBar()->maximum() > 0);
        QCOMPARE(credits().verticalScrollBar()->value(), 0);
        QCOMPARE(window().focusWidget(), &credits());
        QVERIFY(shownCredits().contains(
            u"This product uses TMDB and the TMDB APIs but is not endorsed, certified, or "
            "otherwise approved by TMDB."_s));
        QVERIFY(shownCredits().contains(u"OpenSubtitles.com"_s));
        QStringList links;
        for (const QTextCharFormat &format : creditsFormats()) {
            if (format.isAnchor())
                links += format.anchorHref();
        }
        QCOMPARE(links, (QStringList{u"https://www.opensubtitles.com/"_s, u"https://www.themoviedb.org/"_s}));
        QVERIFY(failuresPrinted().isEmpty());
        // The file is in colour, so that there is something to take away.
        const auto runs = readRtfFile(m_resources + u"/Credits.rtf"_s);
        QVERIFY(runs && std::ranges::any_of(*runs, [](const RtfRun &run) {
                    return run.look.hasProperty(QTextFormat::ForegroundBrush);
                }));
        QVERIFY(!shownCredits().contains(QChar::ReplacementCharacter));
    }

    void redCreditsAppearInTheLabelColour()
    {
        useCredits("{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\\cf1\\b\\fs60 RED RED RED\\par MMM}");
        open();
        QCOMPARE(shownCredits(), u"RED RED RED\nMMM"_s);
        QVERIFY(!drawsRed());
        // The label colour is the palette's, now and when it changes: this is what makes text red.
        QPalette palette = credits().palette();
        palette.setColor(QPalette::Text, Qt::red);
        credits().setPalette(palette);
        QVERIFY(drawsRed());
    }

    void looksOfTheFileAreKept()
    {
        useCredits("{\\rtf1 a{\\b b}{\\i c}{\\fs48 d}"
                   "{\\field{\\*\\fldinst HYPERLINK \"https://a.example/\"}{\\fldrslt e}}}");
        open();
        const auto found = creditsFormats();
        QCOMPARE(found.size(), 5);
        QVERIFY(!found.at(0).font().bold());
        QVERIFY(found.at(1).font().bold());
        QVERIFY(found.at(2).font().italic());
        QCOMPARE(found.at(3).font().pointSizeF(), 2 * found.at(0).font().pointSizeF());
        QVERIFY(found.at(4).font().underline());
        QCOMPARE(found.at(4).anchorHref(), u"https://a.example/"_s);
    }

    void linkOpensInTheBrowser()
    {
        useCredits("{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"https://a.example/\"}{\\fldrslt LINK}}}");
        open();
        QTextCursor cursor(credits().document());
        cursor.setPosition(2);
        QTest::mouseMove(credits().viewport(), credits().cursorRect(cursor).center());
        QTest::mouseClick(credits().viewport(), Qt::LeftButton, {}, credits().cursorRect(cursor).center());
        QCOMPARE(m_workspace->opened, QList<QUrl>{QUrl(u"https://a.example/"_s)});
        QCOMPARE(shownCredits(), u"LINK"_s);
    }

    void creditsAreReadAnewEachTime()
    {
        useCredits(std::nullopt);
        open();
        QCOMPARE(shownCredits(), QString()); // without a file the view stays as it is
        QVERIFY(failuresPrinted().isEmpty());
        for (const QByteArray text : {"{\\rtf1 one}", "{\\rtf1 two}", "{\\rtf1 thr"}) {
            m_sandbox.writeFile(u"bundle%1/Credits.rtf"_s.arg(m_bundles), text);
            window().close();
            window().show();
            QCOMPARE(shownCredits(), text.endsWith("one}") ? u"one"_s : u"two"_s);
        }
        QCOMPARE(failuresPrinted().size(), 1);
        QVERIFY(window().isVisible());
    }
};

PLOVENDIX_GUI_TEST(AboutViewControllerTest)
#include "AboutViewControllerTest.moc"
