#include <base/Bundle.h>
#include <base/Workspace.h>
#include <features/about/AboutViewController.h>
#include <features/about/AboutWindowController.h>
#include <features/about/RtfReader.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QFile>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace
{
struct OpenedURLs final : Workspace
{
    bool openURL(const QUrl &url) override
    {
        opened += url;
        return true;
    }
    QList<QUrl> opened;
};
constexpr auto Failed = "Couldn't set the credits";
} // namespace

/// The credits of the About window, from the file to what is seen.
class CreditsTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    QString m_resources = Bundle::main().folder();
    std::shared_ptr<OpenedURLs> m_workspace;
    std::shared_ptr<AboutViewController> m_content;
    std::unique_ptr<ui::Window> m_window;

    /// The program's bundle with other credits; nothing for none.
    void useCredits(const std::optional<QByteArray> &credits)
    {
        QFile::remove(m_sandbox.path(u"bundle/Credits.rtf"_s));
        QFile information(m_resources + u"/Info.plist"_s);
        QVERIFY(information.open(QIODevice::ReadOnly));
        m_sandbox.writeFile(u"bundle/Info.plist"_s, information.readAll());
        if (credits)
            m_sandbox.writeFile(u"bundle/Credits.rtf"_s, *credits);
        Bundle::setMainFolder(m_sandbox.path(u"bundle"_s));
    }
    void open()
    {
        m_content = Storyboard::named(u"Main"_s).instantiate<AboutViewController>(u"AboutViewController"_s);
        m_window = std::make_unique<ui::Window>();
        m_window->setContentSize(QSize(402, 502));
        m_window->setContentViewController(m_content);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void openAgain()
    {
        m_window->close();
        m_window->show();
    }
    QTextBrowser &view() const { return *m_content->view()->findChild<QTextBrowser *>(u"creditsTextView"_s); }
    QString shown() const { return view().toPlainText(); }
    QList<QTextCharFormat> formats() const
    {
        QList<QTextCharFormat> found;
        for (QTextBlock block = view().document()->begin(); block.isValid(); block = block.next()) {
            for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment)
                found += fragment.fragment().charFormat();
        }
        return found;
    }
    /// Whether the view draws anything that is clearly red.
    bool drawsRed() const
    {
        const QImage picture = view().viewport()->grab().toImage();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                if (color.red() > color.green() + 60 && color.red() > color.blue() + 60)
                    return true;
            }
        }
        return false;
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
        m_window.reset();
        m_content.reset();
        Workspace::setSharedWorkspace({});
    }

    void theProgramsOwnCreditsAreShown()
    {
        open();
        QVERIFY(shown().startsWith(u"Credits\n"_s));
        QVERIFY(view().verticalScrollBar()->maximum() > 0);
        QCOMPARE(view().verticalScrollBar()->value(), 0);
        QCOMPARE(m_window->focusWidget(), &view());
        QVERIFY(
            shown().contains(u"This product uses TMDB and the TMDB APIs but is not endorsed, certified, or "
                             "otherwise approved by TMDB."_s));
        QVERIFY(shown().contains(u"OpenSubtitles.com"_s));
        QStringList links;
        for (const QTextCharFormat &format : formats()) {
            if (format.isAnchor())
                links += format.anchorHref();
        }
        QCOMPARE(links, (QStringList{u"https://www.opensubtitles.com/"_s, u"https://www.themoviedb.org/"_s}));
        QVERIFY(m_sandbox.printedLines().filter(QLatin1String(Failed)).isEmpty());
    }

    void redCreditsAppearInTheLabelColour()
    {
        useCredits("{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\\cf1\\b\\fs60 RED RED RED\\par MMM}");
        open();
        QCOMPARE(shown(), u"RED RED RED\nMMM"_s);
        for (const QTextCharFormat &format : formats())
            QVERIFY(!format.hasProperty(QTextFormat::ForegroundBrush));
        QVERIFY(!drawsRed());
        // The label colour is the palette's, now and when it changes: this is what makes text red.
        QPalette palette = view().palette();
        palette.setColor(QPalette::Text, Qt::red);
        view().setPalette(palette);
        QVERIFY(drawsRed());
    }

    void looksOfTheFileAreKept()
    {
        useCredits("{\\rtf1 a{\\b b}{\\i c}{\\fs48 d}"
                   "{\\field{\\*\\fldinst HYPERLINK \"https://a.example/\"}{\\fldrslt e}}}");
        open();
        const auto found = formats();
        QCOMPARE(found.size(), 5);
        QVERIFY(!found.at(0).font().bold());
        QVERIFY(found.at(1).font().bold());
        QVERIFY(found.at(2).font().italic());
        QCOMPARE(found.at(3).font().pointSizeF(), 2 * found.at(0).font().pointSizeF());
        QVERIFY(found.at(4).font().underline());
        QCOMPARE(found.at(4).anchorHref(), u"https://a.example/"_s);
    }

    void aLinkOpensInTheBrowser()
    {
        useCredits("{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"https://a.example/\"}{\\fldrslt LINK}}}");
        open();
        QTextCursor cursor(view().document());
        cursor.setPosition(2);
        QTest::mouseMove(view().viewport(), view().cursorRect(cursor).center());
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().cursorRect(cursor).center());
        QCOMPARE(m_workspace->opened, QList<QUrl>{QUrl(u"https://a.example/"_s)});
        QCOMPARE(shown(), u"LINK"_s);
    }

    void withoutAFileTheViewStaysAsItIs()
    {
        useCredits(std::nullopt);
        open();
        QCOMPARE(shown(), QString());
        QVERIFY(m_sandbox.printedLines().filter(QLatin1String(Failed)).isEmpty());
    }

    void anUnreadableFileIsPrintedAndTheWindowOpens_data()
    {
        QTest::addColumn<QByteArray>("credits");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("not rich text") << QByteArray("hello");
        QTest::newRow("truncated") << QByteArray("{\\rtf1 hello");
        QTest::newRow("huge") << "{\\rtf1 " + QByteArray(3'000'000, 'x') + "}";
        QTest::newRow("deep") << "{\\rtf1" + QByteArray(100'000, '{');
    }
    void anUnreadableFileIsPrintedAndTheWindowOpens()
    {
        QFETCH(QByteArray, credits);
        useCredits(credits);
        open();
        QVERIFY(m_window->isVisible());
        QCOMPARE(m_sandbox.printedLines().filter(QLatin1String(Failed)).size(), 1);
        QCOMPARE(shown(), QString());
    }

    void creditsAreReadAnewEachTime()
    {
        useCredits("{\\rtf1 one}");
        open();
        QCOMPARE(shown(), u"one"_s);
        m_sandbox.writeFile(u"bundle/Credits.rtf"_s, "{\\rtf1 two}");
        openAgain();
        QCOMPARE(shown(), u"two"_s);
        m_sandbox.writeFile(u"bundle/Credits.rtf"_s, "{\\rtf1 thr");
        openAgain();
        QCOMPARE(shown(), u"two"_s);
        QCOMPARE(m_sandbox.printedLines().filter(QLatin1String(Failed)).size(), 1);
    }

    void withoutAWindowNothingHappens()
    {
        useCredits("{\\rtf1 broken");
        m_content = Storyboard::named(u"Main"_s).instantiate<AboutViewController>(u"AboutViewController"_s);
        QVERIFY(m_content->view());
        m_content->notifyWillAppear();
        QVERIFY(m_sandbox.printedLines().filter(QLatin1String(Failed)).isEmpty());
        QCOMPARE(shown(), QString());
    }

    void theFileIsWhatWordProcessorsWrite()
    {
        const auto credits = readRtfFile(m_resources + u"/Credits.rtf"_s);
        QVERIFY(credits);
        // The file has colours, so that the recolouring has something to do.
        bool isColoured = false;
        for (const RtfRun &run : *credits) {
            QVERIFY(!run.text.contains(QChar::ReplacementCharacter));
            isColoured |= run.look.hasProperty(QTextFormat::ForegroundBrush);
        }
        QVERIFY(isColoured);
    }
};

PLOVENDIX_GUI_TEST(CreditsTest)
#include "CreditsTest.moc"
